#include "colortable/editor/gradientscale.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The next of 1, 2, 5, 10 … that is not below `least`.
double roundStep(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least * (1.0 - 1e-9))
            return factor * power;
    }
    return 10.0 * power;
}

} // namespace

GradientScale gradientScale(const QVector<double> &values, const QVector<double> &sample, bool percent)
{
    constexpr double margin = 0.03; // of the range, at both ends
    GradientScale scale;
    if (percent) {
        scale.last = 100.0;
        return scale;
    }
    const QVector<double> ends = values.isEmpty() ? sample : values;
    if (ends.isEmpty())
        return scale;
    double first = *std::min_element(ends.begin(), ends.end());
    double last = *std::max_element(ends.begin(), ends.end());
    if (!sample.isEmpty()) {
        first = std::min(first, sample.first());
        last = std::max(last, sample.last());
    }
    const double room = last > first ? (last - first) * margin : 1.0;
    scale.first = first - room;
    scale.last = last + room;
    return scale;
}

QVector<double> roundTicks(double first, double last, int most)
{
    QVector<double> ticks;
    if (!(last > first) || most < 1)
        return ticks;
    const double step = roundStep((last - first) / most);
    for (double number = std::ceil(first / step - 1e-9); number * step <= last + step * 1e-9; number += 1.0)
        ticks += number * step;
    return ticks;
}

double keyStep(const GradientScale &scale)
{
    constexpr double steps = 200.0;
    return std::max(0.1, roundStep((scale.last - scale.first) / steps));
}
