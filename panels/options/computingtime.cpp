#include "panels/options/computingtime.h"

#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QLocale>

#include <algorithm>
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

double cellsWithinReach(const ToolObserver &observer, const DemGround &dem)
{
    const double width = dem.width();
    const double height = dem.height();
    if (observer.maxDistance <= 0.0)
        return width * height;
    constexpr double pi = 3.14159265358979;
    const QPointF place(observer.x, observer.y);
    const QSizeF metres = dem.metresPerUnit(place);
    const double reach = observer.maxDistance / std::sqrt(metres.width() * metres.height()) / dem.cellSize();
    const QPointF cell = dem.toCells(place);
    const auto covered = [reach](double at, double end) {
        return std::max(0.0, std::min(at + reach, end) - std::max(at - reach, 0.0));
    };
    return std::max(1.0, std::min(covered(cell.x(), width) * covered(cell.y(), height), pi * reach * reach));
}

double sightWork(const QList<ToolObserver> &observers, const DemGround &dem)
{
    constexpr double growth = 0.85;
    double work = 0.0;
    for (const ToolObserver &observer : observers)
        work += std::pow(cellsWithinReach(observer, dem), growth);
    return work;
}

int timedObservers(double count, double work)
{
    constexpr double fewest = 10.0;
    constexpr double most = 2000.0;
    constexpr double enough = 1e7; // about half a second
    const double tenth = std::clamp(count / 10.0, fewest, most);
    return static_cast<int>(std::min(count, std::clamp(enough / work, fewest, tenth)));
}

QList<ToolObserver> spread(const QList<ToolObserver> &observers, int most)
{
    if (observers.size() <= most)
        return observers;
    QList<ToolObserver> some;
    some.reserve(most);
    for (int at = 0; at < most; ++at)
        some += observers.at(static_cast<int>(static_cast<qint64>(at) * observers.size() / most));
    return some;
}

double secondsHere(const SightTimes &times, double timedWork, double work)
{
    return times.start + std::max(0.0, times.run - times.start) * work / timedWork;
}

QString hereText(double seconds)
{
    if (seconds < 1.0)
        return labelText({"MESS_TPS_ICI_MOINS", "ici moins de 1 s"});
    constexpr double longest = 100.0; // of a unit, before the next one is more readable
    const char *unit = "s";
    if (seconds >= longest) {
        seconds /= 60.0;
        unit = "min";
        if (seconds >= longest) {
            seconds /= 60.0;
            unit = "h";
        }
    }
    const double step = seconds < 10.0 ? 1.0 : 5.0 * std::pow(10.0, std::floor(std::log10(seconds)) - 1.0);
    const QString number = shownNumber(std::round(seconds / step) * step, 'f', 0);
    return labelText({"MESS_TPS_ICI", "ici environ %1"}).arg(number + QChar(QChar::Nbsp) + QLatin1String(unit));
}
