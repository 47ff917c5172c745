#include "app/preview/SightClock.h"

#include "app/preview/Previews.h"
#include "app/process/commandline.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int timedStarts = 3; // the first one may read the tool from the disk

} // namespace

SightClock::SightClock(const Previews &previews, const ToolPaths &tools, WorkFolder &workFolder)
    : m_previews(previews)
    , m_tools(tools)
    , m_workFolder(workFolder)
    , m_runner(nullptr)
{
    connect(&m_runner, &QuvoUtilityRunner::normalTermination, this, &SightClock::onEnd);
    connect(&m_runner, &QuvoUtilityRunner::error, this, &SightClock::stop);
}

SightClock::~SightClock()
{
    stop();
}

QString SightClock::copy() const
{
    return m_previews.wholeCopy();
}

void SightClock::measure(const QString &fragment, std::function<void(const SightTimes &)> then)
{
    stop();
    if (m_tools.intervisibility.isEmpty())
        return;
    m_fragment = fragment;
    m_then = std::move(then);
    runNextLater();
}

void SightClock::stop()
{
    m_then = nullptr;
    m_isRun = m_isRunning = false;
    {
        const QSignalBlocker quiet(&m_runner); // a tool that was killed on purpose reports no failure
        m_runner.close();
    }
    removeProduct();
}

/// A process cannot begin inside the signal with which another one ends.
void SightClock::runNextLater()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_then && !m_isRunning)
                runNext();
        },
        Qt::QueuedConnection);
}

void SightClock::runNext()
{
    const bool knowsStart = m_starts >= timedStarts;
    if (knowsStart && (m_isRun || m_fragment.isEmpty())) {
        removeProduct();
        std::exchange(m_then, nullptr)(m_times);
        return;
    }
    QString command = processCommand(m_tools.intervisibility, QStringLiteral("--version"));
    if (knowsStart) {
        m_isRun = true;
        m_firstFolder = m_workFolder.folderCount();
        const QString folder = m_workFolder.newFolder();
        m_endOfFolders = m_workFolder.folderCount();
        command = runCommand({.process = Process::Intervisibility,
                              .mode = {},
                              .input = copy(),
                              .band = m_previews.dem().band,
                              .output = folder + QStringLiteral("/timed.tif"),
                              .outputOptions = {},
                              .toolInput = {.fragment = m_fragment}},
                             m_tools);
    }
    m_isRunning = true;
    m_clock.start();
    m_runner.runCommand(command);
}

void SightClock::onEnd()
{
    const double seconds = static_cast<double>(m_clock.nsecsElapsed()) / 1e9;
    m_isRunning = false;
    if (m_isRun)
        m_times.run = seconds;
    else
        m_times.start = m_starts++ > 0 ? std::min(m_times.start, seconds) : seconds;
    runNextLater();
}

void SightClock::removeProduct()
{
    m_workFolder.removeFolders(m_firstFolder, m_endOfFolders);
    m_firstFolder = m_endOfFolders = 0;
}
