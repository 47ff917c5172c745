#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Turns the signals that ask a process to end (Ctrl-C, SIGTERM, a closed terminal) into a Qt signal of the
/// event loop. Does nothing on a platform without such signals. A process has at most one object of this class.
/// While it exists SIGPIPE is ignored: a run goes on when nobody reads its progress any more.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    StopSignals();
    ~StopSignals() override;

    /// Whether a signal asked the process to end. True at once, before the event loop emits stopRequested().
    static bool stopWasRequested();

signals:
    void stopRequested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
