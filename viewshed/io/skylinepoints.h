#pragma once

#include "viewshed/io/skylinefile.h"

#include <vector>

namespace viewshed
{

/// A point of a horizon in the DEM's coordinate system.
struct SkylinePoint
{
    double azimuth;  ///< degrees clockwise from north
    double angle;    ///< degrees above the horizontal
    double distance; ///< metres on the ground
    double x;
    double y;
    double z;
    bool startsAnew; ///< there is no ground, or nothing is written, between the point before and this one
};

/// The points of the horizon that a file gets, within the sector of the observer's field of view, by growing
/// azimuth. `step` is that of SkylineOptions.
std::vector<SkylinePoint> skylinePoints(const ObserverHorizon &horizon, double step,
                                        const Georeference &georeference);

} // namespace viewshed
