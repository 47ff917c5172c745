#pragma once

#include "viewshed/io/analysis.h"
#include "viewshed/options.h"

namespace viewshed
{

/// Writes the analysis of the raster to options.destination: a GeoTIFF of three bands (red, green, blue) with
/// the raster's size and georeference. From the
/// creation of the file on, the signals SIGTERM and SIGINT end the work with a Problem.
///
/// Throws Problem if the file cannot be created or written. Each file that this call created is then deleted.
/// An older file at the destination stays as it was unless the driver accepts the creation options.
void writePicture(const Analysis &analysis, const Raster &raster, const Options &options);

} // namespace viewshed
