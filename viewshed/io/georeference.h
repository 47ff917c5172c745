#pragma once

#include "viewshed/sight.h"

#include <array>
#include <memory>

class GDALDataset;
class OGRSpatialReference;

namespace viewshed
{

/// How a raster lies on the ground.
class Georeference
{
public:
    /// Without a geotransform the ground control points' best one counts, without those the pixels' own
    /// coordinates. Throws Problem if the geotransform has no inverse.
    explicit Georeference(GDALDataset &dataset);
    ~Georeference();

    /// A point in cells, (0, 0) at the centre of the first.
    struct Position
    {
        double column;
        double row;
    };
    Position positionOf(double x, double y) const;

    /// Metres on the ground around a point of the raster's coordinates: degrees by the ellipsoid's radii of
    /// curvature at its latitude, other units by their factor; without a CRS a unit is a metre.
    GroundForm groundAt(double y) const;

    /// Half the Earth's greatest diameter in metres.
    double semiMajorAxis() const;

private:
    std::array<double, 6> m_transform;
    std::array<double, 6> m_inverse{};
    std::unique_ptr<OGRSpatialReference> m_crs; ///< null without one
};

} // namespace viewshed
