#include "runner/QuvoScriptRunner.h"

#include "messages/label.h"
#include "runner/commandsplit.h"
#include "runner/outputfiles.h"

#include <QPixmap>

#include <numeric>

int overallProgress(int current, int steps, int percent)
{
    const int shareOfStep = percent / steps; // truncated on purpose
    return static_cast<int>((100.0 / steps) * current + shareOfStep);
}

int overallProgress(int current, const QVector<double> &shares, int percent)
{
    const double all = std::accumulate(shares.begin(), shares.end(), 0.0);
    const double before = std::accumulate(shares.begin(), shares.begin() + current, 0.0);
    return all > 0.0 ? static_cast<int>((100.0 * before + shares.at(current) * percent) / all) : 0;
}

QuvoScriptRunner::QuvoScriptRunner(QObject *parent)
    : QObject(parent)
    , m_runner(this)
{
    connect(&m_runner, &QuvoUtilityRunner::updateProgress, this, &QuvoScriptRunner::setProgress);
    connect(&m_runner, &QuvoUtilityRunner::error, this, &QuvoScriptRunner::processError);
    connect(&m_runner, &QuvoUtilityRunner::normalTermination, this, &QuvoScriptRunner::doNext);
    connect(&m_progressDialog, &QuvoProgressDialog::cancelled, this, &QuvoScriptRunner::processUserCancel);
}

QuvoScriptRunner::~QuvoScriptRunner()
{
    if (m_bRunning)
        stop();
}

void QuvoScriptRunner::run(QuvoProcessingCollection tProcessCollection,
                           QuvoOutputFilesListCollection tOutputFilesListCollection,
                           QuvoProgressDialogType tProgressWindowType)
{
    run(std::move(tProcessCollection), std::move(tOutputFilesListCollection), tProgressWindowType, QString());
}

void QuvoScriptRunner::run(QuvoProcessingCollection tProcessCollection,
                           QuvoOutputFilesListCollection tOutputFilesListCollection,
                           QuvoProgressDialogType tProgressWindowType, const QString &qsIcon)
{
    while (m_bRunning)
        endRunningList();
    m_bUserCancel = false;

    m_processes = std::move(tProcessCollection);
    m_outputFiles = std::move(tOutputFilesListCollection);
    m_shares = m_nextShares.size() == m_processes.size() ? m_nextShares : QVector<double>();
    m_nextShares.clear();
    m_earlierText.clear();

    m_part = m_nextPart;
    m_nextPart = {0, 100};
    const bool isContinued = m_part.first > 0 && m_progressDialog.isVisible();
    if (tProgressWindowType != NoProgressWindow && !isContinued) {
        m_progressDialog.setStopButtonVisible(tProgressWindowType == ProgressWindowWithStop);
        m_progressDialog.setProgress(0);
        m_progressDialog.setPixmap(qsIcon.isEmpty() ? QPixmap() : QPixmap(qsIcon));
        m_progressDialog.show();
    }

    m_iCurrent = -1;
    doNext();
}

/// Ends the running list because another one replaces it. The child process may report the kill as an error,
/// which ends the old list with error(). If it had already ended well it reports none, and the old list ends
/// with aborted().
void QuvoScriptRunner::endRunningList()
{
    m_bUserCancel = true;
    m_runner.close();
    if (!m_bRunning)
        return;
    stop();
    m_progressDialog.hide();
    emit aborted();
}

void QuvoScriptRunner::doNext()
{
    if (m_bUserCancel)
        return; // the command ended well before the stop reached it, and the list is stopped anyway

    ++m_iCurrent;
    if (m_iCurrent >= m_processes.size()) {
        m_bRunning = false;
        if (m_part.second >= 100)
            m_progressDialog.hide();
        emit done();
        return;
    }
    const QuvoProcessing step = m_processes.at(m_iCurrent);
    if (m_progressDialog.isVisible())
        m_progressDialog.setTitle(step.second);
    if (m_iCurrent > 0)
        m_earlierText += m_runner.lastStandardError();
    m_bRunning = true; // before runCommand(), which may report an error at once
    m_runner.runCommand(step.first);
}

void QuvoScriptRunner::setProgress(int iPercent)
{
    if (m_progressDialog.isVisible())
        m_progressDialog.setProgress(listProgress(iPercent));
    emit updateProgress(iPercent);
}

QString QuvoScriptRunner::startProblem() const
{
    const QString reason = m_runner.startProblem();
    if (reason.isEmpty())
        return {};
    return labelText({"MESS_OUTIL_NON_LANCE", "« %1 » n'a pas pu être lancé : %2"})
        .arg(splitProcessCommand(lastCommand()).program, reason);
}

int QuvoScriptRunner::listProgress(int percent) const
{
    const int ofList = m_shares.isEmpty()
        ? overallProgress(m_iCurrent, static_cast<int>(m_processes.size()), percent)
        : overallProgress(m_iCurrent, m_shares, percent);
    return m_part.first + (m_part.second - m_part.first) * ofList / 100;
}

void QuvoScriptRunner::stop()
{
    if (m_bRunning) {
        m_bUserCancel = true;
        m_bRunning = false;
        disconnect(&m_runner, &QuvoUtilityRunner::error, this, &QuvoScriptRunner::processError);
        m_runner.close();
        connect(&m_runner, &QuvoUtilityRunner::error, this, &QuvoScriptRunner::processError);
    }
    deleteOutputFiles(m_outputFiles);
}

void QuvoScriptRunner::processUserCancel()
{
    stop();
    m_progressDialog.hide();
    emit aborted();
}

void QuvoScriptRunner::processError(const QString &qsError)
{
    if (!m_bRunning)
        return;
    stop();
    m_progressDialog.hide();
    emit error(qsError);
}
