#include "viewshed/io/observersight.h"

#include "viewshed/problem.h"

#include <cmath>

namespace viewshed
{

Sight sightOf(const Observer &observer, const Georeference &georeference, double metresOfHeight,
              const SightOptions &options)
{
    const auto [column, row] = georeference.positionOf(observer.x, observer.y);
    if (!(std::abs(column) < largestSide && std::abs(row) < largestSide))
        throw Problem(observer.name + " is too far from the raster.");
    Sight sight;
    sight.eye = Eye::at(column, row, observer.z);
    sight.targetHeight = options.targetHeight;
    sight.ground = georeference.groundAt(observer.y);
    sight.curvatureDrop = options.curvature / (2.0 * georeference.semiMajorAxis()) / metresOfHeight;
    sight.reach = observer.reach;
    return sight;
}

} // namespace viewshed
