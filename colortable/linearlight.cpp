#include "colortable/linearlight.h"

#include <algorithm>
#include <cmath>

double linearPart(int level)
{
    const double part = level / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

int screenLevel(double part)
{
    const double encoded = part <= 0.0031308 ? part * 12.92 : 1.055 * std::pow(part, 1.0 / 2.4) - 0.055;
    return static_cast<int>(std::lround(std::clamp(encoded, 0.0, 1.0) * 255.0));
}
