#pragma once

#include "viewshed/io/analysis.h"
#include "viewshed/io/productfile.h"
#include "viewshed/options.h"

namespace viewshed
{

inline constexpr ProductForm pictureForm{.bands = 3, .type = GDT_Byte};

/// Writes the colours of the analysis's cells to a product of pictureForm. Throws Problem if it cannot be
/// written, or if a signal has requested a stop.
void writePicture(GDALDataset &picture, const Analysis &analysis, const Options &options);

} // namespace viewshed
