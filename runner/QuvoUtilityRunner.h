#pragma once

#include "runner/progress.h"

#include <QProcess>
#include <QString>

/// Runs one external tool at a time as a child process, follows its standard output and tells how it ended.
///
/// It knows nothing of what the tool computes. It is the child process itself: to cancel, call close().
class QuvoUtilityRunner : public QProcess
{
    Q_OBJECT

public:
    explicit QuvoUtilityRunner(QObject *parent);

    /// Starts the command line (program and arguments in one text, quoted as splitProcessCommand() reads it)
    /// and returns at once. A program that cannot be started may be reported by error() from inside this call.
    void runCommand(const QString &command);

    /// How many passes the tool makes over its work, each with its own " - done."; 1 at first.
    void setStepCount(int passes) { m_iNbSteps = qMax(1, passes); }

    /// The command line last started.
    QString command() const { return m_qsCommand; }

    /// The end of what the tool wrote on its standard output since the last start (Latin-1), at most 64 KiB.
    QString outputTail() const { return m_qsOutput; }

    /// What the tool wrote on its standard error, known once it has ended, whatever its exit code.
    QString lastStandardError() const { return m_lastStandardError; }

    /// The percentage that an output stands for, with this tool's number of passes.
    double parseProgress(const QString &output) const;

signals:
    /// The percentage changed; truncated towards zero.
    void updateProgress(int percent);
    /// The tool ended with exit code 0. There is no last updateProgress(100).
    void normalTermination();
    /// The tool ended with another exit code, crashed (then twice) or could not be started (then with an empty
    /// text).
    void error(const QString &standardError);

public slots:
    void processStdout();
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processError(QProcess::ProcessError kind);

private:
    QString takeStandardError();

    QString m_qsOutput;
    double m_dProgress = 0.0;
    QString m_qsCommand;
    int m_iNbSteps = 1;
    ProgressReader m_progress;
    QString m_lastStandardError;
    int m_run = 0;                ///< counts the commands started
    bool m_errorHeldBack = false; ///< an error was reported while the child was not yet seen as ended
    QString m_heldBackText;
};
