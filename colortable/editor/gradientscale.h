#pragma once

#include <QVector>

/// The values that a gradient shows from its left to its right end, and their places.
struct GradientScale
{
    double first = 0.0; ///< value at the left end
    double last = 1.0;  ///< value at the right end; above `first`
    int left = 0;       ///< pixel of the left end
    int width = 1;      ///< pixels

    double placeOf(double value) const { return left + (value - first) / (last - first) * width; }
    double valueAt(double place) const { return first + (place - left) / width * (last - first); }
};

/// The range of values to show: the values and the DEM's elevations, with a margin. Percentages: 0 to 100.
GradientScale gradientScale(const QVector<double> &values, const QVector<double> &sample, bool percent);

/// The step of the arrow keys: a round part of the range, 0.1 at least.
double keyStep(const GradientScale &scale);
