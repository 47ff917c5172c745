#pragma once

#include "viewshed/options.h"

#include <filesystem>
#include <string>
#include <vector>

namespace viewshed
{

/// What a run reads.
struct InputFiles
{
    /// The existing local files of the inputs: also their companions (world file, projection, index), the
    /// archive around a virtual path, and what virtual rasters and vector files refer to, however deeply.
    std::vector<std::filesystem::path> files;
    /// The references that lead to no local file, for example to a database.
    std::vector<std::string> unknown;
};

/// Finds the files of the raster and of the observers; of the companions of a file that an input refers to,
/// only those that may be the destination. An input that GDAL cannot open is no failure here. Throws Problem if
/// an input is a pipe, a socket or a device, because opening it could wait for ever.
InputFiles inputFiles(const Options &options);

/// Throws Problem if the destination exists and is not a regular file, if the product, what it replaces or a
/// side file is one of the inputs, or if the destination exists and an input's files are unknown.
void checkDestination(const Options &options, const InputFiles &inputs);

/// The files besides `destination` that creating the picture may write with these creation options.
std::vector<std::filesystem::path> sideFiles(const std::string &destination,
                                             const std::vector<std::string> &creationOptions);

/// Whether the file is a GeoTIFF, so that GDAL replaces it together with its companions.
bool isGeoTiff(const std::string &path);

} // namespace viewshed
