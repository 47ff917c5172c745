#include "app/preview/map/histogram.h"

#include <algorithm>
#include <cmath>

Histogram histogramOf(const ElevationGrid &sample, const Extremes &extremes, int bars)
{
    const SampleSummary summary = summaryOf(sample);
    if (!summary.known)
        return {};
    Histogram histogram{summary.minimum, summary.maximum, QVector<double>(bars, 0.0)};
    if (extremes.known) {
        histogram.minimum = std::min(histogram.minimum, extremes.minimum);
        histogram.maximum = std::max(histogram.maximum, extremes.maximum);
    }
    const double span = histogram.maximum - histogram.minimum;
    for (const float cell : sample.cells) {
        if (std::isnan(cell))
            continue;
        const double place = span > 0.0 ? (cell - histogram.minimum) / span * bars : 0.0;
        histogram.shares[std::clamp(static_cast<int>(place), 0, bars - 1)] += 1.0;
    }
    const double most = *std::max_element(histogram.shares.cbegin(), histogram.shares.cend());
    for (double &share : histogram.shares)
        share /= most;
    return histogram;
}
