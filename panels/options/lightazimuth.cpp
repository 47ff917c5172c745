#include "panels/options/lightazimuth.h"

#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QLocale>

#include <cmath>
#include <iterator>

namespace
{

/// The points from which the light may come, clockwise from the north, each with its article.
constexpr Label points[] = {
    {"MESS_LUM_N", "du nord"},     {"MESS_LUM_NE", "du nord-est"},   {"MESS_LUM_E", "de l'est"},
    {"MESS_LUM_SE", "du sud-est"}, {"MESS_LUM_S", "du sud"},         {"MESS_LUM_SO", "du sud-ouest"},
    {"MESS_LUM_O", "de l'ouest"},  {"MESS_LUM_NO", "du nord-ouest"},
};

} // namespace

double lightAzimuth(double compass)
{
    const double turn = std::fmod(270.0 - compass, 360.0);
    return turn < 0.0 ? turn + 360.0 : turn;
}

QString lightText(double compass, const QLocale &locale)
{
    constexpr int count = static_cast<int>(std::size(points));
    const double azimuth = lightAzimuth(compass);
    const int point = qRound(azimuth * count / 360.0) % count;
    return labelText({"MESS_LUMIERE", "Lumière venant %1, azimut %2°"})
        .arg(labelText(points[point]), shownNumber(azimuth, 'g', 6, locale));
}
