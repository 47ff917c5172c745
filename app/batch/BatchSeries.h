#pragma once

#include "app/batch/BatchRun.h"
#include "app/batch/arguments.h"

#include <QVector>

/// The runs of one recipe over several DEMs, one after another: a line on standard output for each. A run that
/// fails does not keep the others from being made.
class BatchSeries : public QObject
{
    Q_OBJECT

public:
    /// runs: of splitBatch().
    explicit BatchSeries(const QVector<BatchArguments> &runs);

    /// finished() follows, possibly from inside this call.
    void start() { next(); }

signals:
    /// Failed where one of the runs failed, or when they were stopped.
    void finished(BatchExit exit);

private:
    void next();
    void onRunFinished(BatchExit exit);

    QVector<BatchArguments> m_runs;
    int m_at = -1;      ///< the run that is on
    QString m_output;   ///< its product
    QStringList m_made; ///< the products so far, none of which replaces another
    WorkFolder m_workFolder;
    BatchRun m_run{true};
    BatchExit m_exit = BatchExit::Done;
};
