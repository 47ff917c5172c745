#pragma once

#include "app/batch/exitcode.h"
#include "app/batch/tilearguments.h"
#include "app/batch/tilelog.h"
#include "app/run/PartFolder.h"
#include "app/run/outputlock.h"
#include "app/startup/StopSignals.h"
#include "app/tiles/tileplan.h"
#include "dataset/workfolder.h"
#include "runner/QuvoScriptRunner.h"

/// Makes one product of the finished tiles: a virtual raster or a GeoTIFF, or a file of the contour lines that
/// continue from tile to tile.
class TileJoiner : public QObject
{
    Q_OBJECT

public:
    /// `stopSignals`, `plan` and `log` outlive this object. `join`: the form of a joined raster, Vrt or Cog.
    TileJoiner(const StopSignals &stopSignals, const TilePlan &plan, const QString &folder, TileJoin join,
               TileLog &log);

    /// Begins; finished() follows, possibly from inside this call. Fails where a tile is not done.
    void start();

signals:
    void finished(BatchExit exit);

private:
    void writeView(const QStringList &products);
    void writeGeoTiff(const QStringList &products);
    void writeContours();
    void writeSights();
    QString addStatistics(const QString &raster);
    bool hasTime(double share);
    bool beginFile(const QuvoOutputFile &file, const QString &name);
    void place();
    void end(const QString &problem);

    const TilePlan &m_plan;
    QString m_folder;
    TileJoin m_join;
    TileLog &m_log;
    WorkFolder m_workFolder;
    QuvoScriptRunner m_scriptRunner;
    QuvoOutputFile m_file; ///< the product while it is being written
    std::unique_ptr<OutputLock> m_lock;
    std::unique_ptr<PartFolder> m_part;
};
