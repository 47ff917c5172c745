#include "viewshed/io/observersight.h"

#include "viewshed/problem.h"

#include <cmath>

namespace viewshed
{

namespace
{

/// The rise in metres for each metre on the ground of a line at an angle in degrees; infinite for a vertical
/// one.
double slopeOf(double angle)
{
    constexpr double upright = 90.0;
    if (std::abs(angle) >= upright)
        return std::copysign(std::numeric_limits<double>::infinity(), angle);
    return std::tan(angle * std::numbers::pi / 180.0);
}

} // namespace

Sight sightOf(const Observer &observer, const Georeference &georeference, double metresOfHeight,
              const SightOptions &options)
{
    const auto [column, row] = georeference.positionOf(observer.x, observer.y);
    if (!(std::abs(column) < largestSide && std::abs(row) < largestSide))
        throw Problem(observer.name + " is too far from the raster.");
    Sight sight;
    sight.eye = Eye::at(column, row, observer.z);
    sight.targetHeight = observer.targetHeight.value_or(options.targetHeight);
    sight.steps = georeference.stepsAt(observer.y);
    sight.ground = sight.steps.form();
    sight.curvatureDrop = options.curvature / (2.0 * georeference.semiMajorAxis()) / metresOfHeight;
    sight.reach = observer.reach;
    sight.field = {.fromAzimuth = observer.fromAzimuth,
                   .toAzimuth = observer.toAzimuth,
                   .lowestSlope = slopeOf(observer.lowestAngle) / metresOfHeight,
                   .highestSlope = slopeOf(observer.highestAngle) / metresOfHeight,
                   .nearest = observer.nearest};
    return sight;
}

} // namespace viewshed
