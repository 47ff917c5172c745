#pragma once

#include "app/preview/map/histogram.h"

#include <QObject>
#include <QTimer>

#include <memory>

/// The histogram of a DEM's elevations. A sample of the DEM's cells is read in slices of a few milliseconds,
/// and the event loop handles the user's input between two slices.
class DemHistogram : public QObject
{
    Q_OBJECT

public:
    explicit DemHistogram(QObject *parent);

    /// Begins to read a band of a DEM; an empty path: there is no DEM. The histogram is empty until changed().
    void begin(const QString &dem, int band);

    /// The extremes of the DEM became known, or are not known any more. changed() follows.
    void setExtremes(const Extremes &extremes);

    const Histogram &histogram() const { return m_histogram; }

signals:
    void changed();

private:
    void read();
    void update();

    std::unique_ptr<ElevationGridReader> m_reader; ///< null while nothing is being read
    QTimer m_slices;
    ElevationGrid m_sample;
    Extremes m_extremes;
    Histogram m_histogram;
};
