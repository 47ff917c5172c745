#pragma once

#include "viewshed/blockmaxima.h"
#include "viewshed/lineofsight.h"
#include "viewshed/skylinekernels.h"

namespace viewshed
{

/// The same cells as plainViewshed(), on every terrain and for every sight, much faster: one pass outwards from
/// the eye that keeps the horizon exactly (Skyline), and leaves the cells too near to it for its rounding to
/// the line of sight itself. maxima: the terrain's own. path: a supported one; all give the same.
BitGrid horizonViewshed(const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight, int threads,
                        const Progress &progress = {}, VectorPath path = bestPath());

/// Adds the same cells to a grid of the terrain's size.
void addHorizonViewshed(BitGrid &seen, const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight,
                        int threads, const Progress &progress = {}, VectorPath path = bestPath());

} // namespace viewshed
