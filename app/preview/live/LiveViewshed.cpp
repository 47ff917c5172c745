#include "app/preview/live/LiveViewshed.h"

#include <algorithm>
#include <memory>
#include <new>

namespace
{

/// Thrown inside a computation whose result nobody needs any more.
struct Interrupted
{ };

/// The worker and one helper: a second thread halves the time (18 instead of 33 ms for a million cells), and
/// more would leave no core to the window on most machines.
constexpr int threads = 2;

/// A computation goes on beside a request that has waited for less than this. A drag sends a request every few
/// milliseconds, so the newest one never waits so long, and each computation reaches its end and is shown. A
/// request that nothing has followed for so long is where the user stopped: it must not wait any more.
constexpr std::chrono::milliseconds patience(100);

/// The estimate before the first computation.
constexpr double firstMillisecondsPerCell = 3e-5;

} // namespace

LiveViewshed::LiveViewshed(QObject *parent)
    : QObject(parent)
    , m_millisecondsPerCell(firstMillisecondsPerCell)
    , m_worker([this] { work(); })
{ }

LiveViewshed::~LiveViewshed()
{
    {
        const std::lock_guard lock(m_guard);
        m_ending = true;
    }
    m_wake.notify_one();
    m_worker.join();
}

void LiveViewshed::request(LiveRequest request)
{
    {
        const std::lock_guard lock(m_guard);
        m_waiting = Waiting{std::move(request), Clock::now()};
    }
    m_wake.notify_one();
}

void LiveViewshed::cancel()
{
    const std::lock_guard lock(m_guard);
    m_waiting.reset();
    ++m_era;
}

double LiveViewshed::expectedMilliseconds(const LiveRequest &request) const
{
    return cellsToSweep(request) * m_millisecondsPerCell;
}

void LiveViewshed::work()
{
    std::unique_lock lock(m_guard);
    while (true) {
        m_wake.wait(lock, [this] { return m_ending || m_waiting; });
        if (m_ending)
            return;
        const LiveRequest request = std::move(m_waiting->request);
        m_waiting.reset();
        const int era = m_era;
        lock.unlock();
        compute(request, era);
        lock.lock();
    }
}

void LiveViewshed::compute(const LiveRequest &request, int era)
{
    const Clock::time_point start = Clock::now();
    try {
        const auto cells = std::make_shared<SeenCells>(
            SeenCells{seenCells(request, threads, [&](double) { checkInterruption(era); }), request.ground});
        cells->milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        const double cost = cells->milliseconds / std::max(cellsToSweep(request), 1.0);
        m_mayInterrupt = true;
        QMetaObject::invokeMethod(
            this,
            [this, era, number = request.number, cost, cells] {
                m_millisecondsPerCell = cost;
                deliver(era, number, *cells);
            },
            Qt::QueuedConnection);
    } catch (const Interrupted &) {
        // A computation in the place of an interrupted one runs to its end. If each could be interrupted, a
        // hand that moves on every 150 ms would never see a picture that takes 200 ms. After cancel()
        // nobody waits for a picture, so the next computation may be interrupted again.
        const std::lock_guard lock(m_guard);
        m_mayInterrupt = era != m_era;
    } catch (const std::bad_alloc &) {
        m_mayInterrupt = true; // the tool's own run of the same request reports that memory is short
    }
}

void LiveViewshed::checkInterruption(int era) const
{
    const std::lock_guard lock(m_guard);
    const bool stoppedElsewhere = m_waiting && Clock::now() - m_waiting->since > patience;
    if (m_ending || era != m_era || (stoppedElsewhere && m_mayInterrupt))
        throw Interrupted();
}

void LiveViewshed::deliver(int era, int number, const SeenCells &cells)
{
    if (era == m_era) // this thread alone writes m_era
        emit computed(number, cells);
}
