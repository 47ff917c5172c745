#pragma once

#include "runner/QuvoProgressDialog.h"
#include "runner/QuvoUtilityRunner.h"
#include "runner/processing.h"

#include <QObject>

/// Runs a list of commands one after another, shows the progress of the whole in a window of its own, and
/// deletes every declared output when the list is stopped or one of its commands fails.
///
/// Each list that run() starts ends with exactly one of done(), aborted() and error(), unless stop() or the end
/// of this object cuts it short, which tell nobody. A listener may start the next list from inside any of them;
/// one that is told of the end of a list from inside run() may do so only by a queued call.
class QuvoScriptRunner : public QObject
{
    Q_OBJECT

public:
    explicit QuvoScriptRunner(QObject *parent);

    /// Ends a list that is still running like stop().
    ~QuvoScriptRunner() override;

    /// What the last command wrote on its standard error, also after exit code 0.
    QString lastStandardError() const { return m_runner.lastStandardError(); }

    /// Exit code of the last command that ended.
    int lastExitCode() const { return m_runner.exitCode(); }

signals:
    void done();
    /// The user stopped the list, or another run() took its place.
    void aborted();
    /// A command failed; the text is what it wrote on its standard error, possibly nothing.
    void error(const QString &standardError);
    /// Percentage of the running step. The window shows the percentage of the list instead: kept so on purpose.
    void updateProgress(int percent);

public slots:
    /// Starts a list; one that is still running is closed first. `icon` is the resource or file path of the
    /// window's picture.
    void run(QuvoProcessingCollection tProcessCollection,
             QuvoOutputFilesListCollection tOutputFilesListCollection,
             QuvoProgressDialogType tProgressWindowType, const QString &qsIcon);
    void run(QuvoProcessingCollection tProcessCollection,
             QuvoOutputFilesListCollection tOutputFilesListCollection,
             QuvoProgressDialogType tProgressWindowType);

    /// Kills the running command and deletes the outputs; no signal follows. While nothing runs it deletes the
    /// outputs of the last list all the same, finished ones too.
    void stop();
    void setProgress(int iPercent);
    void doNext();
    /// stop(), then aborted().
    void processUserCancel();
    void processError(const QString &qsError);

private:
    void endRunningList();

    QuvoUtilityRunner m_runner;
    QuvoProgressDialog m_progressDialog;
    int m_iCurrent = -1; ///< index of the running step
    QuvoProcessingCollection m_processes;
    QuvoOutputFilesListCollection m_outputFiles;
    bool m_bRunning = false;
    bool m_bUserCancel = false; ///< a stop is in progress: the end of the child starts no further step
};

/// Percentage of a list of `steps` steps of which the one at index `current` (from 0) is at `percent`.
int overallProgress(int current, int steps, int percent);
