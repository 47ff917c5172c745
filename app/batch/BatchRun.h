#pragma once

#include "app/batch/request.h"
#include "app/batch/terminalprogress.h"
#include "app/run/ProductRun.h"
#include "app/startup/StopSignals.h"
#include "runner/QuvoScriptRunner.h"

#include <QObject>

/// One run of the batch program. Prints the progress on standard output; the tool's text, warnings and problems
/// on standard error.
class BatchRun : public QObject
{
    Q_OBJECT

public:
    /// `oneOfSeveral`: when the run fails, the caller completes the line of progress.
    /// `stopSignals` outlives this object.
    explicit BatchRun(const StopSignals &stopSignals, bool oneOfSeveral = false);

    /// Starts a plan that has no problem. `overwrite`: the run may replace existing files. finished() follows,
    /// possibly from inside this call.
    void start(const RunPlan &plan, bool overwrite);

signals:
    void finished(BatchExit exit);

private:
    void onFinished();
    void onAborted();
    void onFailed();
    void abandonProgress();
    void end(BatchExit exit, const QString &problem);

    QuvoScriptRunner m_scriptRunner;
    ProductRun m_run;
    TerminalProgress m_progress;
    bool m_oneOfSeveral;
};

/// A sentence: the run was stopped.
QString stoppedText();
