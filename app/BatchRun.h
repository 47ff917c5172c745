#pragma once

#include "app/StopSignals.h"
#include "app/batchrequest.h"
#include "app/outputlock.h"
#include "app/runplan.h"
#include "app/terminalprogress.h"
#include "runner/QuvoScriptRunner.h"

#include <QObject>

#include <memory>

/// One run of the batch program: progress on standard output, the tool's text and our sentences on standard
/// error.
class BatchRun : public QObject
{
    Q_OBJECT

public:
    BatchRun();

    /// Starts a plan without a fault; finished() follows, possibly from inside this call.
    void start(const RunPlan &plan, bool overwrite);

signals:
    void finished(BatchExit exit);

private:
    void onDone();
    void onStopped();
    void onError(const QString &toolText);
    void end(BatchExit exit, const QString &sentence);

    QuvoScriptRunner m_runner;
    StopSignals m_stopSignals;
    RunPlan m_plan;
    std::unique_ptr<OutputLock> m_lock;
    TerminalProgress m_progress;
};
