#pragma once

#include <limits>
#include <optional>
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
    double nearest = 0.0;                                   ///< least distance of a target, in metres
    std::string ownName;                ///< that the file gives it, in UTF-8; empty if it gives none
    std::optional<double> targetHeight; ///< instead of that of the run, in the DEM's vertical unit
    double fromAzimuth = 0.0;           ///< of the sector that is seen, see FieldOfView
    double toAzimuth = 0.0;
    double highestAngle = 90.0; ///< of a line of sight above the horizontal, in degrees
    double lowestAngle = -90.0;
};

/// Reads the points of a vector file's first layer, in the layer's order; returns one at least. The coordinates
/// are taken to be in the DEM's coordinate system. Fields, whatever the case of their names, all of them
/// optional; an empty value is as if the field were not there:
///
/// - Max_Dist and RADIUS2: the reach, the smaller of the two; infinite if zero or negative
/// - RADIUS1: `nearest`; OFFSETA is added to the altitude; OFFSETB: `targetHeight`; NAME: `ownName`
/// - AZIMUTH1 and AZIMUTH2: the sector; equal azimuths are the whole circle
/// - VERT1 and VERT2: highestAngle and lowestAngle
///
/// Throws Problem if the file cannot be read or has no feature, if a field of numbers is not numeric, or with
/// the observer's name if a feature is not a point, has no altitude, or has a number that is impossible.
std::vector<Observer> readObservers(const std::string &path);

} // namespace viewshed
