#include "dataset/contours/indexlevels.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

bool IndexLevels::hold(double level) const
{
    if (!exist())
        return false;
    // The tool computes a level by a product and a sum; each may be wrong by half a unit of the last place.
    constexpr double roundings = 4.0;
    constexpr double leastTolerance = 1e-6; // steps
    const double steps = (level - offset) / interval;
    const double tolerance = std::max(leastTolerance,
                                      roundings * std::numeric_limits<double>::epsilon()
                                          * (std::abs(level) + std::abs(offset)) / interval);
    const double nearest = std::round(steps);
    return std::abs(steps - nearest) <= tolerance && std::fmod(nearest, every) == 0.0;
}

QString levelText(double level)
{
    constexpr int digits = 12;
    const double rounded = QString::number(level, 'g', digits).toDouble();
    return QString::number(rounded == 0.0 ? 0.0 : rounded, 'f', QLocale::FloatingPointShortest);
}
