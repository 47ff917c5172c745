#pragma once

#include "viewshed/io/georeference.h"
#include "viewshed/io/observers.h"
#include "viewshed/sight.h"

namespace viewshed
{

/// What a sight takes from the options of a run; Options has the same members.
struct SightOptions
{
    double targetHeight; ///< above the ground, in the DEM's vertical unit
    double curvature;    ///< factor on the Earth's curvature
};

/// The observer's sight; the eye's position counts from the raster's first cell. `metresOfHeight` is the length
/// of the DEM's vertical unit (Raster::metresOfHeight()). Throws Problem if the observer is too far from the
/// raster.
Sight sightOf(const Observer &observer, const Georeference &georeference, double metresOfHeight,
              const SightOptions &options);

} // namespace viewshed
