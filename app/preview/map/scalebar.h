#pragma once

#include <QLocale>
#include <QString>

/// A scale bar: a round length on the ground.
struct ScaleBar
{
    double metres = 0.0; ///< 0: there is no bar
    double length = 0.0; ///< of the bar, in pixels
    QString text;        ///< "500 m", "2 km", or a number of cells
};

/// The longest bar of 1, 2 or 5 times a power of ten metres that is at most `room` pixels long.
/// metresPerPixel: along the bar; not positive: no bar. known: false where nothing says how long a unit of the
/// DEM's coordinates is; the bar then counts units without naming them.
ScaleBar scaleBar(double metresPerPixel, double room, bool known, const QLocale &locale);
