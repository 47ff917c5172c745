#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/combine.h"

#include <cstdint>
#include <vector>

namespace viewshed
{

/// Counts for each cell of a raster how many observers see it. The digits of 64 counts are added at a time:
/// grid number i holds the bit of value 2^i of each count.
class SightCounter
{
public:
    SightCounter(int width, int height);

    /// Adds 1 to the count of each cell whose bit is set in `seen`, a grid of the window's size, from the
    /// raster's row `firstRow` up to the row before `endRow`. Several threads may add different rows at a time
    /// after makeRoom().
    void add(const BitGrid &seen, const Window &window, int firstRow, int endRow);
    /// Makes sure that `observers` can be counted in all. To be called before the first add().
    void makeRoom(std::size_t observers);

    /// Writes the counts of the cells of a row.
    void readRow(int row, std::uint32_t *counts) const;

    /// The memory for that many observers, in bits for each cell of the raster.
    static int bitsPerCell(std::size_t observers);

private:
    int m_width;
    int m_height;
    std::vector<BitGrid> m_digits;
};

} // namespace viewshed
