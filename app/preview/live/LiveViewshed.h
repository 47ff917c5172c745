#pragma once

#include "app/preview/live/liverequest.h"

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

/// Computes viewsheds in one thread, the newest request first: while one is computed, only the last of the
/// requests that follow waits. Use it from the thread in which it was created.
///
/// The thread receives plain arrays and numbers only; the results come back through the event loop.
class LiveViewshed : public QObject
{
    Q_OBJECT

public:
    explicit LiveViewshed(QObject *parent = nullptr);
    /// Interrupts a computation, which ends within a few milliseconds.
    ~LiveViewshed() override;

    /// Replaces the request that waits, if there is one. computed() follows, unless a newer request replaces
    /// this one or cancel() is called. The request must be free of problems.
    void request(LiveRequest request);

    /// Drops all requests: no computed() follows any more for those made so far. To be called when the
    /// observers are gone, or the copy is another one.
    void cancel();

    /// How long the request will take, in milliseconds: estimated from its cellsToSweep() and the last
    /// computation. So the caller can leave thousands of observers to the tool.
    double expectedMilliseconds(const LiveRequest &request) const;

signals:
    /// A request was computed. Numbers arrive in the order of their requests; some are left out. While the user
    /// drags, a newer request may already wait: the result is shown all the same, for otherwise a drag that is
    /// faster than the computation would show nothing before its end.
    void computed(int number, const SeenCells &cells);

private:
    using Clock = std::chrono::steady_clock;
    /// What the calling thread hands to the worker.
    struct Waiting
    {
        LiveRequest request;
        Clock::time_point since; ///< when it was requested
    };

    void work();
    void compute(const LiveRequest &request, int era);
    void checkInterruption(int era) const;
    void deliver(int era, int number, const SeenCells &cells);

    double m_millisecondsPerCell; ///< of the last computation; the calling thread's own
    mutable std::mutex m_guard;   ///< of m_waiting, m_era and m_ending
    std::condition_variable m_wake;
    std::optional<Waiting> m_waiting;
    int m_era = 0; ///< counts the calls of cancel()
    bool m_ending = false;
    bool m_mayInterrupt = true; ///< the worker's own: the computation before was not interrupted
    std::thread m_worker;       ///< last: it uses the other members
};
