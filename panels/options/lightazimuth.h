#pragma once

#include <QString>

class QLocale;

/// Azimuth of the light of a shaded relief in degrees, from 0 up to but not including 360, clockwise from the
/// north: 270 minus the compass reading, like the argument of the tool, which may be negative.
double lightAzimuth(double compass);

/// Says where the light comes from for a compass reading: the nearest of eight points, and the azimuth with six
/// significant digits at most, in the way that the locale writes numbers.
QString lightText(double compass, const QLocale &locale);
