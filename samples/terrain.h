#pragma once

#include <vector>

/// A square grid of elevations, with rows from north to south and columns from west to east.
struct Terrain
{
    int side = 0;               ///< cells along each side
    std::vector<double> height; ///< in metres, side × side values
};

/// Makes a mountain range that rivers have cut: uplift and river erosion until valleys reach the ridges, and a
/// lake behind a dam in one valley. Slopes are realistic for cells of 30 m. side: a multiple of 3. The same
/// side always gives the same terrain.
Terrain makeTerrain(int side);
