#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/lineofsight.h"
#include "viewshed/observers.h"
#include "viewshed/options.h"
#include "viewshed/raster_io.h"

#include <optional>

namespace viewshed
{

struct Analysis
{
    BitGrid seen;                   ///< of the raster's size
    std::optional<Terrain> terrain; ///< the whole raster, if it was read as one
};

/// What the observers see of the raster, one after the other; their windows are read as they are needed, and
/// only one is kept. Throws Failure if the largest does not fit into memory, naming the distance that would.
Analysis analysed(const Raster &raster, const std::vector<Observer> &observers, const Options &options,
                  int threads, const Progress &progress);

} // namespace viewshed
