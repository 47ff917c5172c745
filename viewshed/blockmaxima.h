#pragma once

#include "viewshed/terrain.h"

#include <vector>

namespace viewshed
{

/// What bounds the heights of a terrain, by blocks of cells: found once, used by every observer.
class BlockMaxima
{
public:
    static constexpr int side = 16; ///< cells

    BlockMaxima(const Terrain &terrain, int threads);

    /// The greatest height in a rectangle of blocks and in the cells around it; minus infinity if no cell has
    /// data. Blocks count from 0 and must be the terrain's own.
    double greatest(int firstColumn, int lastColumn, int firstRow, int lastRow) const;

    /// Of the whole terrain; 0 if no cell has data.
    double lowestHeight() const { return m_lowest; }
    double highestHeight() const { return m_highest; }

private:
    int m_columns;
    std::vector<double> m_maxima;
    double m_lowest = 0.0;
    double m_highest = 0.0;
};

} // namespace viewshed
