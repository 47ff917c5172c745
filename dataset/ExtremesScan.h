#pragma once

#include "dataset/extremes.h"

#include <QObject>
#include <QTimer>

#include <memory>

/// Finds the extreme values of a band in slices of the event loop, so that a window stays awake meanwhile.
class ExtremesScan : public QObject
{
    Q_OBJECT

public:
    explicit ExtremesScan(QObject *parent = nullptr);
    ~ExtremesScan() override;

    /// Begins anew; a scan that is under way is given up. progress() and one finished() follow, from the event
    /// loop.
    void start(const QString &path, int band, ExtremesReader::Effort effort);

    /// Gives the scan up; no signal follows.
    void stop();

    bool isRunning() const { return m_reader != nullptr; }

signals:
    void progress(int percent);
    /// Not known where the band holds no value, or cannot be read.
    void finished(const Extremes &extremes);

private:
    void advance();

    QTimer m_timer;
    std::unique_ptr<ExtremesReader> m_reader;
};
