#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Turns the signals by which a process is asked to end (Ctrl-C, SIGTERM, a closed terminal) into a Qt signal
/// of the event loop; does nothing where the platform has none. One object a process. While it lives a closed
/// pipe ends nothing: a run does not stop because nobody reads its progress any more.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    StopSignals();
    ~StopSignals() override;

    /// Whether the process was asked to end, told at once, before the event loop comes round.
    static bool wasAsked();

signals:
    void stopRequested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
