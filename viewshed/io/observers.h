#pragma once

#include <limits>
#include <string>
#include <vector>

namespace viewshed
{

/// A point from which an observer looks.
struct Observer
{
    std::string name; ///< for problems: "Observer 3 of points.shp", counted from 1
    double x = 0.0;   ///< in the DEM's coordinate system
    double y = 0.0;   ///< in the DEM's coordinate system
    double z = 0.0;   ///< altitude of the eye (not its height above the ground), in the DEM's vertical unit
    double reach = std::numeric_limits<double>::infinity(); ///< greatest distance of a target, in metres
};

/// Reads the points of a vector file's first layer, in the layer's order; returns one at least. The coordinates
/// are taken to be in the DEM's coordinate system. The reach is the field Max_Dist; it is infinite without the
/// field and for an empty, zero or negative value.
///
/// Throws Problem if the file cannot be read or has no feature, if the field is not numeric, or with the
/// observer's name if a feature is not a point, has no altitude, or has a coordinate that is not a number or is
/// impossibly large.
std::vector<Observer> readObservers(const std::string &path);

} // namespace viewshed
