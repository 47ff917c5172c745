#pragma once

#include "dataset/extremes.h"

#include <QObject>
#include <QTimer>

#include <memory>

/// Finds the extreme values of a band in slices of about 30 ms of the event loop, so that a window stays
/// responsive.
class ExtremesScan : public QObject
{
    Q_OBJECT

public:
    explicit ExtremesScan(QObject *parent = nullptr);
    ~ExtremesScan() override;

    /// Starts a scan; a scan that is under way is dropped without a signal. progress() and one finished()
    /// follow from the event loop. band: from 1.
    void start(const QString &path, int band, ExtremesReader::Effort effort);

    /// Drops the scan; no signal follows.
    void stop();

    bool isRunning() const { return m_reader != nullptr; }

signals:
    /// percent: part of the blocks that has been read, 0 to 100.
    void progress(int percent);
    /// `extremes` is not known when the band holds no value or cannot be read.
    void finished(const Extremes &extremes);

private:
    void advance();

    QTimer m_timer;
    std::unique_ptr<ExtremesReader> m_reader;
};
