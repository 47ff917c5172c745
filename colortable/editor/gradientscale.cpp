#include "colortable/editor/gradientscale.h"

#include "colortable/roundticks.h"

#include <algorithm>

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

double keyStep(const GradientScale &scale)
{
    constexpr double steps = 200.0;
    return std::max(0.1, roundStep((scale.last - scale.first) / steps));
}
