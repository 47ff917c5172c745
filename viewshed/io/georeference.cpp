#include "viewshed/io/georeference.h"

#include "viewshed/problem.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

namespace viewshed
{

namespace
{

/// The length of a unit of x and of a unit of y on the ground, in metres.
struct Metres
{
    double x;
    double y;
};

/// Lengths for a geographic coordinate system at a latitude in its angular unit, with the ellipsoid's radius of
/// curvature N = a / √(1 − e² sin² φ) in the prime vertical: a unit of angle is N · cos φ wide along the
/// parallel, and N · (1 − e²) / (1 − e² sin² φ) high along the meridian.
Metres metresOfAngle(const OGRSpatialReference &crs, double latitude)
{
    const double angle = crs.GetAngularUnits();
    const double a = crs.GetSemiMajor();
    const double flattening = crs.GetInvFlattening() > 0.0 ? 1.0 / crs.GetInvFlattening() : 0.0;
    const double e2 = flattening * (2.0 - flattening);
    const double sine = std::sin(latitude * angle);
    const double w = 1.0 - e2 * sine * sine;
    const double primeVertical = a / std::sqrt(w);
    return {.x = angle * primeVertical * std::abs(std::cos(latitude * angle)),
            .y = angle * primeVertical * (1.0 - e2) / w};
}

constexpr double half = 0.5; // the geotransform counts from the first cell's corner

} // namespace

Georeference::Georeference(GDALDataset &dataset)
    : m_transform{0.0, 1.0, 0.0, 0.0, 0.0, 1.0}
{
    const OGRSpatialReference *crs = dataset.GetSpatialRef();
    if (dataset.GetGeoTransform(m_transform.data()) != CE_None) {
        m_transform = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
        m_north = dataset.GetGCPCount() > 0 ? 1.0 : -1.0;
        if (dataset.GetGCPCount() > 0) {
            if (GDALGCPsToGeoTransform(dataset.GetGCPCount(), dataset.GetGCPs(), m_transform.data(), TRUE) == 0)
                throw Problem("The raster's ground control points yield no geotransform.");
            crs = dataset.GetGCPSpatialRef();
        }
    }
    if (crs != nullptr)
        m_crs.reset(crs->Clone());
    if (GDALInvGeoTransform(m_transform.data(), m_inverse.data()) == 0)
        throw Problem("The raster's cells have no extent on the ground.");
}

Georeference::~Georeference() = default;
Georeference::Georeference(Georeference &&) noexcept = default;

Georeference::Position Georeference::positionOf(double x, double y) const
{
    return {.column = m_inverse[0] + m_inverse[1] * x + m_inverse[2] * y - half,
            .row = m_inverse[3] + m_inverse[4] * x + m_inverse[5] * y - half};
}

Georeference::Coordinates Georeference::coordinatesOf(const Position &position) const
{
    const double column = position.column + half;
    const double row = position.row + half;
    return {.x = m_transform[0] + m_transform[1] * column + m_transform[2] * row,
            .y = m_transform[3] + m_transform[4] * column + m_transform[5] * row};
}

GroundSteps Georeference::stepsAt(double y) const
{
    Metres metres{1.0, 1.0};
    if (m_crs && m_crs->IsGeographic())
        metres = metresOfAngle(*m_crs, y);
    else if (m_crs)
        metres = {m_crs->GetLinearUnits(), m_crs->GetLinearUnits()};
    return {.columnEast = m_transform[1] * metres.x,
            .columnNorth = m_transform[4] * metres.y * m_north,
            .rowEast = m_transform[2] * metres.x,
            .rowNorth = m_transform[5] * metres.y * m_north};
}

double Georeference::semiMajorAxis() const
{
    OGRErr error = OGRERR_NONE;
    const double axis = m_crs ? m_crs->GetSemiMajor(&error) : SRS_WGS84_SEMIMAJOR;
    return error == OGRERR_NONE && axis > 0.0 ? axis : SRS_WGS84_SEMIMAJOR;
}

} // namespace viewshed
