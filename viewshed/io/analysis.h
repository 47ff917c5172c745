#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/io/observers.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/io/skylinefile.h"
#include "viewshed/lineofsight.h"
#include "viewshed/options.h"
#include "viewshed/seenarea.h"
#include "viewshed/sightcounter.h"
#include "viewshed/sweep/heightgrid.h"

#include <optional>

namespace viewshed
{

/// What observers see of a raster. All grids have the raster's size.
struct Analysis
{
    /// For a picture 1 for each cell that is seen. For other outputs, with statistics, 1 for each cell that
    /// some observer sees.
    BitGrid seen;
    std::optional<BitGrid> voids;       ///< 1 for each cell without data; may be empty if there is none
    std::optional<SightCounter> counts; ///< only for Output::Count
    std::optional<HeightGrid> heights;  ///< only for Output::Height
    std::vector<SeenArea> areas;        ///< for each observer; only with statistics
    SeenArea together;                  ///< of `seen`, and of all that some observer reaches
};

/// Computes and combines what the observers see of the raster. The elevations around observers near to each
/// other are read once for all of them, as far as they fit into the available memory; many observers are shared
/// among the threads, of a few each one is computed by all threads. With a single observer, half of the
/// elevations around it is in memory at a time. At the end the rows that were not read yet are searched for
/// voids. `skylines` may be null; it receives the observers' horizons, in their order.
///
/// Throws Problem if an observer is too far from the raster, or if its elevations do not fit into the available
/// memory; the sentence then names the greatest Max_Dist that would. Also throws what Raster::read() and
/// SkylineFile::write() throw.
Analysis analysed(const Raster &raster, const Georeference &georeference,
                  const std::vector<Observer> &observers, const Options &options, SkylineFile *skylines,
                  int threads, const Progress &progress);

} // namespace viewshed
