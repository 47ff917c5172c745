#include "app/preview/map/scalebar.h"

#include "messages/shownnumber.h"

#include <cmath>

ScaleBar scaleBar(double metresPerPixel, double room, bool known, const QLocale &locale)
{
    const double most = metresPerPixel * room;
    if (!(most > 0.0) || !std::isfinite(most))
        return {};
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    const double factor = most / power;
    const double metres = power * (factor >= 5.0 ? 5.0 : factor >= 2.0 ? 2.0 : 1.0);
    constexpr double kilometre = 1000.0;
    const bool inKilometres = known && metres >= kilometre;
    const double number = inKilometres ? metres / kilometre : metres;
    const QString unit = !known ? QString() : inKilometres ? QStringLiteral(" km") : QStringLiteral(" m");
    return {metres, metres / metresPerPixel, shownNumber(number, 'g', 6, locale) + unit};
}
