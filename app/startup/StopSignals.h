#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Turns the signals that ask a process to end (Ctrl-C, SIGTERM, a closed terminal) into a Qt signal of the
/// event loop. Does nothing on a platform without such signals. A process has at most one object of this class.
/// The object also ignores SIGPIPE, so that a run continues after the reader of its progress has closed the
/// pipe, and SIGXFSZ, so that writing beyond a limit to the size of files fails with a message.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    StopSignals();
    ~StopSignals() override;

    /// Whether a signal asked the process to end. True at once, before the event loop emits stopRequested().
    static bool stopWasRequested();

    /// Number of the signal that asked first (SIGINT is 2); 0 where none did.
    static int stopSignal();

signals:
    void stopRequested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
