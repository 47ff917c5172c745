#include "dataset/ExtremesScan.h"

namespace
{

constexpr int sliceLength = 30; // ms

} // namespace

ExtremesScan::ExtremesScan(QObject *parent)
    : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &ExtremesScan::advance);
}

ExtremesScan::~ExtremesScan() = default;

void ExtremesScan::start(const QString &path, int band, ExtremesReader::Effort effort)
{
    m_reader = std::make_unique<ExtremesReader>(path, band, effort);
    m_timer.start(0);
}

void ExtremesScan::stop()
{
    m_timer.stop();
    m_reader.reset();
}

void ExtremesScan::advance()
{
    const bool hasMore = m_reader->advance(sliceLength);
    const Extremes found = m_reader->extremes();
    const int percent = m_reader->percent();
    if (!hasMore)
        stop(); // before the signals: a slot may start the next scan
    emit progress(percent);
    if (!hasMore)
        emit finished(found);
}
