#include "app/startup/StopSignals.h"

#include <QSocketNotifier>

#include <atomic>
#include <csignal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace
{

// A signal handler reaches the rest of the program only through globals: kept so on purpose.
std::atomic<int> requested{0}; // number of the first signal
int wakeUpPipe[2] = {-1, -1};

#ifdef Q_OS_UNIX

constexpr int stopSignals[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void onStopSignal(int signal)
{
    int none = 0;
    requested.compare_exchange_strong(none, signal);
    [[maybe_unused]] const auto written = ::write(wakeUpPipe[1], "", 1);
}

/// Installs the handler, unless the process was started with the signal ignored (nohup, a script's background
/// job).
void handle(int signal)
{
    struct sigaction before
    { };
    ::sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN)
        std::signal(signal, onStopSignal);
}

#endif

} // namespace

StopSignals::StopSignals()
{
#ifdef Q_OS_UNIX
    if (::pipe(wakeUpPipe) != 0)
        return; // the signals end the process as usual
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
    for (const int signal : stopSignals)
        handle(signal);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // inherited by the tools
#endif
}

StopSignals::~StopSignals()
{
#ifdef Q_OS_UNIX
    for (const int signal : stopSignals) {
        struct sigaction now
        { };
        ::sigaction(signal, nullptr, &now);
        if (now.sa_handler == onStopSignal)
            std::signal(signal, SIG_DFL);
    }
    m_notifier.reset();
    for (int &end : wakeUpPipe) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
#endif
}

bool StopSignals::stopWasRequested()
{
    return requested != 0;
}

int StopSignals::stopSignal()
{
    return requested;
}
