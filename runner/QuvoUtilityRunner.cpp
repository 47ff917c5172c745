#include "runner/QuvoUtilityRunner.h"

#include "messages/logging.h"
#include "runner/commandsplit.h"

#include <QCoreApplication>
#include <QProcessEnvironment>

#include <utility>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/types.h>
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace
{

constexpr int outputTailLength = 64 * 1024;
constexpr qint64 chunkSize = 64LL * 1024;

/// Called in the child process, before the tool takes its place: only what is safe after fork() may stand here.
/// On Linux the tool is killed when the program dies. `program` is the program's process number.
void leadOwnGroup([[maybe_unused]] qint64 program)
{
#ifdef Q_OS_UNIX
    ::setpgid(0, 0);
#endif
#ifdef Q_OS_LINUX
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != program) // it died before the call, which therefore never takes effect
        ::_exit(1);
#endif
}

/// The program's environment without the variables that send GDAL's messages to a file: the product check reads
/// the tool's errors from its standard error.
QProcessEnvironment toolEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("CPL_LOG"));
    environment.remove(QStringLiteral("CPL_LOG_ERRORS"));
    return environment;
}

} // namespace

QuvoUtilityRunner::QuvoUtilityRunner(QObject *parent)
    : QProcess(parent)
    , m_program(QCoreApplication::applicationPid())
{
    connect(this, &QProcess::readyReadStandardOutput, this, &QuvoUtilityRunner::processStdout);
    connect(this, &QProcess::readyReadStandardError, this, &QuvoUtilityRunner::processStderr);
    connect(this, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &QuvoUtilityRunner::processFinished);
    connect(this, &QProcess::errorOccurred, this, &QuvoUtilityRunner::processError);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0) && defined(Q_OS_UNIX)
    setChildProcessModifier([this] { leadOwnGroup(m_program); });
#endif
}

QuvoUtilityRunner::~QuvoUtilityRunner()
{
    disconnect(); // nobody is to hear of the kill
    QuvoUtilityRunner::close();
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
void QuvoUtilityRunner::setupChildProcess()
{
    leadOwnGroup(m_program);
}
#endif

void QuvoUtilityRunner::close()
{
#ifdef Q_OS_UNIX
    // While the tool runs its group exists. It bears the tool's number once the child has made it.
    if (state() == QProcess::Running && processId() > 1)
        ::kill(-static_cast<pid_t>(processId()), SIGKILL);
#endif
    QProcess::close();
}

void QuvoUtilityRunner::runCommand(const QString &command)
{
    ++m_run;
    m_qsCommand = command;
    m_qsOutput.clear();
    m_progress = {};
    m_dProgress = 0.0;
    m_allText = {};
    m_nextText = {};
    m_errorHeldBack = false;
    m_heldBackText.clear();

    qCDebug(lcRunner, "starting %s", qUtf8Printable(command));
    const ProcessCommand split = splitProcessCommand(command);
    setProcessEnvironment(toolEnvironment());
    start(split.program, split.arguments, QIODevice::ReadWrite | QIODevice::Unbuffered);
}

double QuvoUtilityRunner::parseProgress(const QString &output) const
{
    return ::parseProgress(output, m_iNbSteps);
}

void QuvoUtilityRunner::processStdout()
{
    setReadChannel(QProcess::StandardOutput);
    while (bytesAvailable() > 0) {
        const QByteArray chunk = read(chunkSize);
        if (chunk.isEmpty())
            break;
        m_progress.feed(chunk);
        m_qsOutput += QString::fromLatin1(chunk.constData(), chunk.size()); // NULs, too
        if (m_qsOutput.size() > 2 * outputTailLength)
            m_qsOutput = m_qsOutput.right(outputTailLength);
    }
    m_qsOutput = m_qsOutput.right(outputTailLength);

    const double percent = m_progress.percentage(m_iNbSteps);
    if (percent != m_dProgress) {
        m_dProgress = percent;
        emit updateProgress(static_cast<int>(percent));
    }
}

/// Reads at once what has arrived, so that it does not pile up in the process object.
void QuvoUtilityRunner::processStderr()
{
    if (!isOpen())
        return; // the program could not be started, or close() was called
    const QByteArray bytes = readAllStandardError();
    m_allText.feed(bytes);
    m_nextText.feed(bytes);
}

void QuvoUtilityRunner::processFinished(int exitCode, QProcess::ExitStatus)
{
    if (m_errorHeldBack) {
        m_errorHeldBack = false;
        const int run = m_run;
        const QString text = m_heldBackText; // the next command clears the member
        emit error(text);
        if (m_run != run)
            return; // a slot has started the next command, and the end of this one must not be reported for it
    }
    if (exitCode != 0) {
        emit error(takeStandardErrorText());
    } else {
        processStderr();
        emit normalTermination();
    }
}

void QuvoUtilityRunner::processError(QProcess::ProcessError kind)
{
    qCDebug(lcRunner, "process error %d, state %d", static_cast<int>(kind), static_cast<int>(state()));
    const QString text = takeStandardErrorText();
    if (kind != QProcess::Crashed && state() == QProcess::NotRunning) {
        emit error(text);
        return;
    }
    // Qt 5 reports a crash while state() is still Running: a slot that answered with close() would wait forever
    // for an end that has already happened. Qt 6 reports it when state() is NotRunning: a command that a slot
    // started would meet the finished() of the crashed one. finished() always follows, so the error is emitted
    // from there.
    m_errorHeldBack = true;
    m_heldBackText = text;
}

/// Returns what arrived on standard error since the last call, shortened where it is long.
QString QuvoUtilityRunner::takeStandardErrorText()
{
    processStderr();
    return QString::fromLocal8Bit(std::exchange(m_nextText, {}).text());
}

QString QuvoUtilityRunner::startProblem() const
{
    // The text of a failed start is "<system call>: <reason>".
    return QProcess::error() == QProcess::FailedToStart ? errorString().section(QStringLiteral(": "), -1)
                                                        : QString();
}
