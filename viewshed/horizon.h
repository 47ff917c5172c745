#pragma once

#include "viewshed/blockmaxima.h"
#include "viewshed/lineofsight.h"
#include "viewshed/skylinekernels.h"

/// Glossary of the fast viewshed
///
/// eye          the point from which an observer looks; sight: all that decides what the observer sees
/// void         a cell without data (NaN)
/// sector       a quarter of the view around the eye: up, down, left or right, between the two diagonals
/// line         a row or column of the grid that lies across the view of a sector; place: a cell's number in it
/// ahead, side  distances of a cell from the eye in cells, along a sector's middle axis and across it
/// direction    m = side / ahead, from -1 to 1 in a sector
/// leaf         one of the 64 ranges of directions into which a sector is cut; the unit of work of a thread
/// ring         the part of a line that a leaf crosses; vertex: one of its cell centres; interval: between two
/// edge         the straight ground between two neighbouring cell centres, in one ring or from ring to ring
/// horizon      for each direction the greatest g = height above the eye / ahead of all edges so far; skyline
/// piece        the part of one edge that is the horizon, g = a + b · m, from one end to the next
/// kink         a direction at which two pieces meet; gap: a range of directions without an edge so far
/// limit        the height above the eye that the horizon reaches at a vertex
/// block        16 × 16 cells; panel: a copy of the heights around a leaf's part of a row of blocks
/// window       a rectangle of the raster; part: a window and the rows for which its cells suffice
namespace viewshed
{

/// Returns the same grid as plainViewshed(), on every terrain and for every sight, but much faster. Each leaf
/// is swept once from the eye outwards with the exact horizon (Skyline). A cell that is too near to the horizon
/// for its rounding is decided by sees(); leafsweep.h derives the bound.
///
/// `maxima` must be those of `terrain`, and `path` must be supported; the result does not depend on `path` or
/// `threads`.
BitGrid horizonViewshed(const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight, int threads,
                        const Progress &progress = {}, VectorPath path = bestPath());

/// Sets the bits of the same cells in `seen`, a grid of the terrain's size, and clears none.
void addHorizonViewshed(BitGrid &seen, const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight,
                        int threads, const Progress &progress = {}, VectorPath path = bestPath());

} // namespace viewshed
