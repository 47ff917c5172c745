#pragma once

#include "runner/progress.h"
#include "runner/tooltext.h"

#include <QProcess>
#include <QString>

/// Runs one external tool at a time as a child process, reads the progress from its standard output and reports
/// how it ended. The object is the child process itself. On Unix the tool leads a process group of its own:
/// if the tool is a script, the programs that it started end with it. On Linux the tool also ends when this
/// program is killed. The tool does not receive the variables CPL_LOG and CPL_LOG_ERRORS.
class QuvoUtilityRunner : public QProcess
{
    Q_OBJECT

public:
    explicit QuvoUtilityRunner(QObject *parent);
    ~QuvoUtilityRunner() override;

    /// Starts a command line (program and arguments in one text, quoted as splitProcessCommand() reads it) and
    /// returns at once. If the program cannot be started, error() may be emitted before this call returns.
    void runCommand(const QString &command);

    /// Number of passes that the tool makes over its work, each ending in its own " - done."; 1 by default.
    void setStepCount(int passes) { m_iNbSteps = qMax(1, passes); }

    /// Kills the tool with all of its process group and waits for its end; does nothing when no tool runs.
    void close() override;

    /// The last 64 KiB at most of what the tool wrote on its standard output since the last start (Latin-1).
    QString outputTail() const { return m_qsOutput; }

    /// What the tool wrote on its standard error (local 8-bit encoding), shortened where it is long
    /// (runner/tooltext.h). Complete once the tool has ended, whatever its exit code.
    QString lastStandardError() const { return QString::fromLocal8Bit(m_allText.text()); }

    /// Why the last command could not be started, in the system's words; empty when it was started.
    QString startProblem() const;

    /// Percentage that `output`, all that the tool has written so far, stands for, with this tool's number of
    /// passes (runner/progress.h).
    double parseProgress(const QString &output) const;

signals:
    /// The percentage changed; truncated towards zero.
    void updateProgress(int percent);
    /// The tool ended with exit code 0. updateProgress(100) precedes it only if the tool wrote so.
    void normalTermination();
    /// The tool ended with another exit code, crashed (the signal is then emitted twice) or could not be
    /// started (the text is then empty).
    void error(const QString &standardError);

public slots:
    void processStdout();
    void processStderr();
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processError(QProcess::ProcessError kind);

protected:
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    void setupChildProcess() override;
#endif

private:
    QString takeStandardErrorText();

    qint64 m_program; ///< process number of this program
    QString m_qsOutput;
    double m_dProgress = 0.0;
    QString m_qsCommand;
    int m_iNbSteps = 1;
    ProgressReader m_progress;
    ToolText m_allText;  ///< since the start
    ToolText m_nextText; ///< since the last error()
    int m_run = 0;       ///< number of commands started
    /// Qt reported a crash before it reported the end: error() waits for finished().
    bool m_errorHeldBack = false;
    QString m_heldBackText;
};
