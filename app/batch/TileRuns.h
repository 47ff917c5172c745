#pragma once

#include "app/batch/TileJoiner.h"
#include "app/batch/exitcode.h"
#include "app/batch/tilearguments.h"
#include "app/batch/tilelog.h"
#include "app/run/ProductRun.h"
#include "app/startup/StopSignals.h"
#include "app/tiles/makeplan.h"
#include "runner/QuvoScriptRunner.h"

/// Makes a share of the tiles of a plan, one after another, and joins the tiles where it is asked to. A failed
/// tile does not keep the next ones from being made; a full disk does.
class TileRuns : public QObject
{
    Q_OBJECT

public:
    /// `folder`: absolute path of the folder of the tiles. `overwrite`: existing products may be replaced, as
    /// those that a changed plan makes anew may be with --skip-done. `stopSignals` outlives this object.
    TileRuns(const StopSignals &stopSignals, const TilePlan &plan, const QString &folder,
             const TileArguments &arguments, bool overwrite);

    /// Begins; finished() follows, possibly from inside this call.
    void start();

signals:
    void finished(BatchExit exit);

private:
    void nextLater();
    void next();
    QString prepare();
    void startTile(const PlannedTile &tile);
    void startRun(const RunPlan &run);
    void endTile(const char *state, BatchExit exit, const QString &problem);
    void onFinished();
    void onAborted();
    void onFailed();

    TilePlan m_plan;
    QString m_folder;
    TileArguments m_arguments;
    bool m_overwrite;
    TileShare m_share;
    qint64 m_next = 0;
    PlannedTile m_tile; ///< the tile that is being made
    WorkFolder m_workFolder;
    RecipeInput m_input;
    QString m_treatmentNote; ///< said once
    PlannedTiles m_tiles;
    TileLog m_log;
    QuvoScriptRunner m_scriptRunner;
    ProductRun m_run;
    TileJoiner m_joiner;
    BatchExit m_exit = BatchExit::Done;
};
