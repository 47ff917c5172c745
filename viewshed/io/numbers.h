#pragma once

#include "viewshed/io/analysis.h"
#include "viewshed/io/productfile.h"

namespace viewshed
{

/// The type of counts of up to so many observers: UInt16, or UInt32 where that is too small.
ProductForm countForm(std::size_t observers);
inline constexpr ProductForm heightForm{.bands = 1, .type = GDT_Float32};

/// Write the counts, or the heights, of the analysis to a product of that form. The no-data value is the
/// greatest number of the type for counts, and -9999 for heights; cells without elevation get it, and cells
/// that no height makes visible. Throw Problem if the product cannot be written, or if a signal has requested a
/// stop.
void writeCounts(GDALDataset &product, const Analysis &analysis);
void writeHeights(GDALDataset &product, const Analysis &analysis);

} // namespace viewshed
