#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/options.h"
#include "viewshed/raster_io.h"

namespace viewshed
{

/// Writes the picture of what is seen as a GeoTIFF with the raster's georeference. terrain: the whole raster if
/// it is at hand, else null, and it is read a second time for the cells without data. From the creation of the
/// file on, SIGTERM and SIGINT stop the work.
///
/// Throws Failure. Nothing that was created is left then, nor is anything deleted that stood there before: that
/// is replaced at the creation, once the driver has accepted the options.
void writePicture(const BitGrid &seen, const Raster &raster, const Terrain *terrain, const Options &options,
                  int threads);

/// Throws Failure if the picture would replace one of the files that are read.
void checkDestination(const Options &options, const Raster &raster);

} // namespace viewshed
