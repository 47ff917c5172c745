#pragma once

#include "viewshed/io/analysis.h"
#include "viewshed/io/georeference.h"
#include "viewshed/io/sidefile.h"

namespace viewshed
{

/// Writes the areas that the observers see as CSV: a row for each observer, in their order, and one with "all"
/// in the place of the observer's number. Columns: observer (from 1), name, x, y, z, seen_km2, reach_percent
/// (the area seen in percent of the cells with data within reach and the sector), farthest_m, farthest_x and
/// farthest_y (the farthest cell seen; empty if none is). Throws Problem.
void writeStatistics(SideText &file, const Analysis &analysis, const std::vector<Observer> &observers,
                     const Georeference &georeference);

} // namespace viewshed
