#pragma once

#include <limits>
#include <string>
#include <vector>

namespace viewshed
{

struct Observer
{
    std::string name; ///< for messages: "Observer 3 of points.shp"
    double x = 0.0;   ///< in the coordinates of the DEM, as y
    double y = 0.0;
    double z = 0.0;                                         ///< absolute, in the DEM's vertical unit
    double reach = std::numeric_limits<double>::infinity(); ///< in metres
};

/// The points of a vector file's first layer, in its order; at least one. What is no usable observer (no point,
/// no altitude, a coordinate that is no number) throws a Problem that names it.
std::vector<Observer> readObservers(const std::string &path);

} // namespace viewshed
