#pragma once

#include "viewshed/sight.h"

#include <array>
#include <memory>

class GDALDataset;
class OGRSpatialReference;

namespace viewshed
{

/// Leads from the coordinates of a raster's coordinate system to its cells and to lengths on the ground.
class Georeference
{
public:
    /// Copies all it needs. A raster without a geotransform gets the one that fits its ground control points
    /// best; without these, x is the column and y the row, counted from the outer corner of the first cell.
    /// Throws Problem if the ground control points yield no geotransform or if it has no inverse.
    explicit Georeference(GDALDataset &dataset);
    ~Georeference();
    Georeference(Georeference &&) noexcept;

    /// A position in cells; (0, 0) is the centre of the raster's first cell.
    struct Position
    {
        double column;
        double row;
    };
    /// x and y are coordinates of the raster's coordinate system. The result may lie outside the raster.
    Position positionOf(double x, double y) const;

    /// Coordinates of the raster's coordinate system.
    struct Coordinates
    {
        double x;
        double y;
    };
    /// The reverse of positionOf().
    Coordinates coordinatesOf(const Position &position) const;

    /// The squared metres of a step in cells near a point with the coordinate y. In a geographic coordinate
    /// system, y is the latitude, and the ellipsoid's radii of curvature at that latitude count; otherwise the
    /// coordinate system's linear unit counts. Without a coordinate system, a unit is a metre.
    GroundForm groundAt(double y) const { return stepsAt(y).form(); }
    /// The same as the way that a step leads. North is where y grows, or up where the raster has no
    /// georeference.
    GroundSteps stepsAt(double y) const;

    /// The semi-major axis of the coordinate system's ellipsoid in metres; that of WGS 84 if it is not known.
    double semiMajorAxis() const;

private:
    std::array<double, 6> m_transform;
    std::array<double, 6> m_inverse{};
    double m_north = 1.0;                       ///< 1 if y grows to the north, else -1
    std::unique_ptr<OGRSpatialReference> m_crs; ///< null without a coordinate system
};

} // namespace viewshed
