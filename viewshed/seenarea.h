#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/combine.h"
#include "viewshed/terrain.h"

#include <vector>

namespace viewshed
{

/// How much one observer sees, or all together.
struct SeenArea
{
    double seen = 0.0;      ///< square metres of the cells that are seen
    double reach = 0.0;     ///< square metres of the cells with data within reach and within the sector
    double farthest = 0.0;  ///< metres from the eye to the farthest cell that is seen; 0 if none is
    int farthestColumn = 0; ///< of that cell in the raster
    int farthestRow = 0;
};

/// Square metres of the cells whose bits are set. `grid` begins at the raster's row `top`; `rowAreas` has the
/// area of one cell for each row of the raster.
double areaOf(const BitGrid &grid, int top, const std::vector<double> &rowAreas);

/// The cells with data that the sight reaches, as a grid of the window's size. All cells of the window are in
/// the terrain, and the window and the eye's position count from the terrain's first cell.
BitGrid reachedCells(const Terrain &terrain, const Sight &sight, const Window &window);

/// Takes the farthest cell of `seen` over into `area` if it is farther than the one held. `seen` has the
/// window's size; the window and the eye's position count from the raster's first cell.
void addFarthest(SeenArea &area, const BitGrid &seen, const Window &window, const Sight &sight);

} // namespace viewshed
