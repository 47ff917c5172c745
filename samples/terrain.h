#pragma once

#include <vector>

/// A square elevation grid, rows from the north, columns from the west.
struct Terrain
{
    int side = 0;               ///< cells along each side
    std::vector<double> height; ///< metres, side × side
};

/// Makes a mountain range that rivers have cut: uplift and river erosion until valleys reach the ridges, one
/// valley dammed by a lake. The slopes are meant for cells of 30 m. side: a multiple of 3; the same side gives
/// the same terrain.
Terrain makeTerrain(int side);
