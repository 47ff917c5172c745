#include "viewshed/io/statisticsfile.h"

namespace viewshed
{

namespace
{

/// The fields from seen_km2 on.
std::string fieldsOf(const SeenArea &area, const Georeference &georeference)
{
    constexpr double squareKilometre = 1e6;
    constexpr double percent = 100.0;
    std::string fields = ',' + digitsOf(area.seen / squareKilometre) + ',';
    if (area.reach > 0.0)
        fields += digitsOf(area.seen / area.reach * percent);
    fields += ',' + digitsOf(area.farthest);
    if (area.seen == 0.0)
        return fields + ",,\n";
    const auto [x, y] =
        georeference.coordinatesOf({.column = double(area.farthestColumn), .row = double(area.farthestRow)});
    return fields + ',' + digitsOf(x) + ',' + digitsOf(y) + '\n';
}

} // namespace

void writeStatistics(SideText &file, const Analysis &analysis, const std::vector<Observer> &observers,
                     const Georeference &georeference)
{
    file.write("observer,name,x,y,z,seen_km2,reach_percent,farthest_m,farthest_x,farthest_y\n");
    for (std::size_t index = 0; index < observers.size(); ++index) {
        const Observer &observer = observers[index];
        file.write(std::to_string(index + 1) + ',' + csvField(observer.ownName) + ',' + digitsOf(observer.x)
                   + ',' + digitsOf(observer.y) + ',' + digitsOf(observer.z)
                   + fieldsOf(analysis.areas[index], georeference));
    }
    file.write("all,,,," + fieldsOf(analysis.together, georeference));
}

} // namespace viewshed
