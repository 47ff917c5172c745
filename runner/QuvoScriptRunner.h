#pragma once

#include "runner/QuvoProgressDialog.h"
#include "runner/QuvoUtilityRunner.h"
#include "runner/processing.h"

#include <QObject>

/// Runs a list of commands one after another and shows its progress in a window of its own. When the list is
/// stopped or one of its commands fails, every declared output is deleted.
///
/// Each list that run() starts ends with exactly one of the signals done(), aborted() and error(); stop() and
/// the destructor end it without a signal. A slot may start the next list from inside any of these signals,
/// with one exception: a signal that run() itself emits (its list ended at once, or it replaced a running one)
/// may be answered with run() through a queued connection only.
class QuvoScriptRunner : public QObject
{
    Q_OBJECT

public:
    explicit QuvoScriptRunner(QObject *parent);

    /// Ends a running list as stop() does.
    ~QuvoScriptRunner() override;

    /// Sets the folder in which the commands of the next lists are called; empty: this program's current
    /// folder.
    void setWorkingFolder(const QString &folder) { m_runner.setWorkingDirectory(folder); }

    /// Sets the steps' parts of the progress of the next list, relative to each other. Without them, and for a
    /// list of another length, all steps have the same part.
    void setShares(const QVector<double> &shares) { m_nextShares = shares; }

    /// Sets the next list's part of the window's bar, in percent; from 0 to 100 without this call. A list whose
    /// part begins above 0 continues the bar and the clock of the list before it. The window stays after a list
    /// that ends well and whose part ends below 100, until the next list or hideProgress().
    void setPartOfBar(int begin, int end) { m_nextPart = {begin, end}; }

    /// Hides a window that stayed.
    void hideProgress() { m_progressDialog.hide(); }

    /// What the commands of the last list wrote on their standard error so far, in their order, also after exit
    /// code 0.
    QString standardErrorOfList() const { return m_earlierText + m_runner.lastStandardError(); }

    /// Percentage of the bar while the running step is at `percent`.
    int listProgress(int percent) const;

    /// The command line of the last command.
    QString lastCommand() const { return m_iCurrent < 0 ? QString() : m_processes.value(m_iCurrent).first; }

    /// Says in a sentence which program of the last command could not be started, and why; empty when it was
    /// started.
    QString startProblem() const;

    /// Exit code of the last command that ended.
    int lastExitCode() const { return m_runner.exitCode(); }

signals:
    void done();
    /// The user stopped the list, or another run() took its place.
    void aborted();
    /// A command failed. standardError: what it wrote on its standard error, possibly nothing.
    void error(const QString &standardError);
    /// Percentage of the running step. The window shows the percentage of the whole list instead: kept so on
    /// purpose (listProgress()).
    void updateProgress(int percent);

public slots:
    /// Starts a list; a list that still runs is ended first. `qsIcon` is the resource or file path of the
    /// window's picture, empty for none.
    void run(QuvoProcessingCollection tProcessCollection,
             QuvoOutputFilesListCollection tOutputFilesListCollection,
             QuvoProgressDialogType tProgressWindowType, const QString &qsIcon);
    void run(QuvoProcessingCollection tProcessCollection,
             QuvoOutputFilesListCollection tOutputFilesListCollection,
             QuvoProgressDialogType tProgressWindowType);

    /// Kills the running command and deletes the outputs; no signal follows. While nothing runs it deletes the
    /// outputs of the last list as well, even those of a list that ended well.
    void stop();
    void setProgress(int iPercent);
    void doNext();
    /// Calls stop(), then emits aborted().
    void processUserCancel();
    void processError(const QString &qsError);

private:
    void endRunningList();

    QuvoUtilityRunner m_runner;
    QuvoProgressDialog m_progressDialog;
    int m_iCurrent = -1; ///< index of the running step, -1 before the first
    QuvoProcessingCollection m_processes;
    QuvoOutputFilesListCollection m_outputFiles;
    QVector<double> m_nextShares;
    QVector<double> m_shares; ///< of the running list; empty: equal shares
    QPair<int, int> m_nextPart{0, 100};
    QPair<int, int> m_part{0, 100}; ///< of the bar: begin and end of the running list
    QString m_earlierText;          ///< standard error of the commands before the current one
    bool m_bRunning = false;
    bool m_bUserCancel = false; ///< a stop is in progress: the end of the command starts no further step
};

/// Percentage of a whole list of `steps` steps while the step with index `current` (from 0) is at `percent`.
int overallProgress(int current, int steps, int percent);

/// The same for steps with shares of their own; 0 where no share is positive.
int overallProgress(int current, const QVector<double> &shares, int percent);
