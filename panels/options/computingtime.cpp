#include "panels/options/computingtime.h"

#include <cmath>

double estimatedSeconds(double width, double height, double observers)
{
    constexpr double secondsPerCell = 6.954651038793044e-07; // measured average for a cell and an observer
    return width * height * observers * secondsPerCell;
}

QString computingTimeText(double seconds)
{
    struct Bucket
    {
        double atMost;
        const char *text;
    };
    static constexpr Bucket buckets[] = {{60, "< 1 minute"},    {300, "> 1 minute"},   {600, "> 5 minutes"},
                                         {1800, ">10 minutes"}, {3600, ">30 minutes"}, {18000, ">1 heure"},
                                         {36000, ">5 heures"}};
    for (const Bucket &bucket : buckets) {
        if (seconds <= bucket.atMost)
            return QString::fromLatin1(bucket.text);
    }
    return QStringLiteral(">%1 heures").arg(std::pow(10.0, std::floor(std::log10(seconds / 3600.0))));
}
