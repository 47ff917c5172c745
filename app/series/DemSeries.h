#pragma once

#include "app/recipe/recipe.h"
#include "app/run/ProductRun.h"
#include "dataset/workfolder.h"
#include "runner/QuvoProgressDialog.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// One DEM of a series.
struct SeriesRow
{
    enum End
    {
        Waiting, ///< the run has not begun, or the series was stopped before it did
        Done,
        Kept, ///< the product exists already, and stays
        Stopped,
        Failed
    };
    QString dem;     ///< path
    QString product; ///< path of the product
    End end = Waiting;
    QString text = {}; ///< sentences: why there is no new product, or warnings beside a new one
};

/// The rows of a series: the product of each DEM has the name that is proposed for it, beside the DEM.
QVector<SeriesRow> seriesRows(const Recipe &recipe, const QStringList &dems);

/// How many of the products exist.
int existingProducts(const QVector<SeriesRow> &rows);

/// Runs one process with the same options on several DEMs, one after another. A failed run does not end the
/// series; the user's stop does, and products that are finished stay.
class DemSeries : public QObject
{
    Q_OBJECT

public:
    /// All three outlive this object. While no series is on, the runner belongs to others.
    DemSeries(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder);

    /// Starts the first run; finished() follows after the last. The recipe's own input and output do not count.
    /// `overwrite`: the runs may replace existing files, but no product of the same series.
    void start(const Recipe &recipe, const QVector<SeriesRow> &rows, bool overwrite);

    /// Stops the series; finished() follows. Does nothing while no series is on.
    void stop();

    /// Stops the series without a signal. Does nothing while no series is on.
    void abandon();

    bool isRunning() const { return m_current >= 0; }

    const QVector<SeriesRow> &rows() const { return m_rows; }

signals:
    /// All runs have ended, or the user stopped them.
    void finished();

private:
    void next();
    void begin(SeriesRow &row);
    RunPlan planOf(const SeriesRow &row);
    bool readingWasStopped();
    void endRun(SeriesRow::End end, const QString &text);

    ToolPaths m_tools;
    WorkFolder &m_workFolder;
    ProductRun m_run;
    QuvoProgressDialog m_reading; ///< shown while the elevations of a DEM are read before its run
    Recipe m_recipe;
    QVector<SeriesRow> m_rows;
    int m_current = -1; ///< index of the current row; -1 while no series is on
    bool m_overwrite = false;
    bool m_stopped = false;
};
