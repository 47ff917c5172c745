#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/io/observers.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/lineofsight.h"
#include "viewshed/options.h"

#include <optional>

namespace viewshed
{

/// What observers see of a raster. Both grids have the raster's size.
struct Analysis
{
    BitGrid seen;                 ///< 1 for each cell that is seen
    std::optional<BitGrid> voids; ///< 1 for each cell without data; may be empty if there is none
};

/// Computes and combines what the observers see of the raster, one observer after the other. The elevations of
/// an observer's window are read when they are needed, and only one window is in memory at a time. With a
/// single observer it is only half of a window. At the end the rows that were not read yet are searched for
/// voids.
///
/// Throws Problem if an observer is too far from the raster, or if the largest window does not fit into the
/// available memory; the sentence then names the greatest Max_Dist that would. Also throws what Raster::read()
/// throws.
Analysis analysed(const Raster &raster, const std::vector<Observer> &observers, const Options &options,
                  int threads, const Progress &progress);

} // namespace viewshed
