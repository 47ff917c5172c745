#include "app/StopSignals.h"

#include <QSocketNotifier>

#include <atomic>
#include <csignal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace
{

// A signal handler has no other way to the rest of the program: kept global on purpose.
std::atomic<bool> asked{false};
int wakeUpPipe[2] = {-1, -1};

extern "C" void onStopSignal(int)
{
    asked = true;
#ifdef Q_OS_UNIX
    [[maybe_unused]] const auto written = ::write(wakeUpPipe[1], "", 1);
#endif
}

} // namespace

StopSignals::StopSignals()
{
#ifdef Q_OS_UNIX
    if (::pipe(wakeUpPipe) == 0) {
        for (const int end : wakeUpPipe) {
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
            ::fcntl(end, F_SETFL, O_NONBLOCK);
        }
        m_notifier = std::make_unique<QSocketNotifier>(wakeUpPipe[0], QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
            char bytes[16];
            [[maybe_unused]] const auto taken = ::read(wakeUpPipe[0], bytes, sizeof bytes);
            emit stopRequested();
        });
    }
    std::signal(SIGHUP, onStopSignal);
    std::signal(SIGPIPE, SIG_IGN);
#endif
    std::signal(SIGINT, onStopSignal);
    std::signal(SIGTERM, onStopSignal);
}

StopSignals::~StopSignals()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
#ifdef Q_OS_UNIX
    std::signal(SIGHUP, SIG_DFL);
    std::signal(SIGPIPE, SIG_DFL);
    m_notifier.reset();
    for (int &end : wakeUpPipe) {
        ::close(end);
        end = -1;
    }
#endif
}

bool StopSignals::wasAsked()
{
    return asked;
}
