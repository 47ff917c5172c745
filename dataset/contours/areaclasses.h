#pragma once

#include <QVector>

/// The elevations of an area between two contour levels, in the DEM's unit.
struct AreaBounds
{
    double lowest = 0.0;
    double highest = 0.0;

    bool operator==(const AreaBounds &other) const = default;
};

/// An area's true bounds, and its place among the areas.
struct AreaClass
{
    AreaBounds bounds;
    int rank = 0; ///< 0: the lowest area; the next higher one has 1

    bool operator==(const AreaClass &other) const = default;
};

/// Mends the bounds that the contour tool wrote: its lowest area begins at 0 whatever the elevations are, and
/// its highest one ends at the next level or, with fixed levels, at 4294967295. Here they are the lowest and
/// the highest elevation of the DEM. `written`: of all areas, one for each class, in any order; the result has
/// the same order.
QVector<AreaClass> areaClasses(const QVector<AreaBounds> &written, const AreaBounds &dem);
