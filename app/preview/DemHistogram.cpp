#include "app/preview/DemHistogram.h"

#include "app/preview/previewgeometry.h"

DemHistogram::DemHistogram(QObject *parent)
    : QObject(parent)
{
    connect(&m_slices, &QTimer::timeout, this, &DemHistogram::read);
}

void DemHistogram::begin(const QString &dem, int band)
{
    m_sample = {};
    m_histogram = {};
    m_reader = dem.isEmpty() ? nullptr : std::make_unique<ElevationGridReader>(dem, band, longestReducedSide);
    m_slices.start(0);
}

void DemHistogram::setExtremes(const Extremes &extremes)
{
    m_extremes = extremes;
    update();
}

void DemHistogram::read()
{
    constexpr int slice = 8; // ms
    if (m_reader && m_reader->advance(slice))
        return;
    m_slices.stop();
    if (m_reader)
        m_sample = m_reader->grid();
    m_reader.reset();
    update();
}

void DemHistogram::update()
{
    constexpr int bars = 48;
    m_histogram = histogramOf(m_sample, m_extremes, bars);
    emit changed();
}
