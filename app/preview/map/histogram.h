#pragma once

#include "dataset/elevationgrid.h"
#include "dataset/extremes.h"

#include <QVector>

/// How often elevations occur in a DEM.
struct Histogram
{
    double minimum = 0.0;   ///< lower end of the first bar, in the unit of the elevations
    double maximum = 0.0;   ///< upper end of the last bar
    QVector<double> shares; ///< of each bar, as a part of the highest bar, 0 to 1; empty: no cell has data

    bool isEmpty() const { return shares.isEmpty(); }
};

/// The histogram of a sample in bars of equal width. extremes: those of the DEM, which a sample may miss; the
/// sample's own count where they are not known.
Histogram histogramOf(const ElevationGrid &sample, const Extremes &extremes, int bars);
