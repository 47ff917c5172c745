#pragma once

#include "viewshed/io/analysis.h"
#include "viewshed/options.h"

namespace viewshed
{

/// Writes the picture of what is seen as a GeoTIFF with the raster's georeference. The raster is read a second
/// time if the cells without data are not known. From the creation of the file on, SIGTERM and SIGINT stop the
/// work.
///
/// Throws Problem. Nothing that was created is left then, nor is anything deleted that stood there before: that
/// is replaced at the creation, once the driver has accepted the options.
void writePicture(const Analysis &analysis, const Raster &raster, const Options &options, int threads);

/// Throws Problem if the picture would replace one of the files that are read.
void checkDestination(const Options &options, const Raster &raster);

} // namespace viewshed
