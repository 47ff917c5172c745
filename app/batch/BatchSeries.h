#pragma once

#include "app/batch/BatchRun.h"
#include "app/batch/arguments.h"

#include <QVector>

/// Runs one recipe over several DEMs, one after another, with a line on standard output for each DEM. A failed
/// run does not stop the series.
class BatchSeries : public QObject
{
    Q_OBJECT

public:
    /// `runs`: the result of splitBatch().
    explicit BatchSeries(const StopSignals &stopSignals, const QVector<BatchArguments> &runs);

    /// Starts the first run; finished() follows, possibly from inside this call.
    void start() { next(); }

signals:
    /// All runs have ended, or the user stopped them. `exit` is Failed when a run failed or was stopped.
    void finished(BatchExit exit);

private:
    void next();
    void onRunFinished(BatchExit exit);

    QVector<BatchArguments> m_runs;
    int m_current = -1;     ///< index of the current run; -1 before start()
    QString m_output;       ///< path of the current run's product
    QStringList m_products; ///< paths of the products made so far, which no later run may replace
    WorkFolder m_workFolder;
    BatchRun m_run;
    BatchExit m_exit = BatchExit::Done;
};
