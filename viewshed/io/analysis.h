#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/io/observers.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/lineofsight.h"
#include "viewshed/options.h"

#include <optional>

namespace viewshed
{

struct Analysis
{
    BitGrid seen;                 ///< of the raster's size
    bool knowsVoids = false;      ///< whether all of the raster was read
    std::optional<BitGrid> voids; ///< the cells without data, if that is known and there are some
};

/// What the observers see of the raster, one after the other; their windows are read as they are needed, and
/// only one is kept; only half of one where there is a single observer. Throws Problem if the largest does not
/// fit into memory, naming the distance that would.
Analysis analysed(const Raster &raster, const std::vector<Observer> &observers, const Options &options,
                  int threads, const Progress &progress);

} // namespace viewshed
