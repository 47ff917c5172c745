#include "colortable/roundticks.h"

#include <cmath>

double roundStep(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least * (1.0 - 1e-9))
            return factor * power;
    }
    return 10.0 * power;
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
