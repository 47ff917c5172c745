#pragma once

#include "viewshed/terrain.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace viewshed
{

/// The greatest elevation around each block of 16 × 16 cells of a terrain, the range of all its elevations, and
/// the rows of blocks that have cells without data. It is computed once and serves every observer. Elevations
/// are in the DEM's vertical unit.
class BlockMaxima
{
public:
    static constexpr int side = 16; ///< width and height of a block, in cells

    /// For a terrain of width × height cells that is yet to be read: call scanRows() and finish() before any
    /// query.
    BlockMaxima(int width, int height);
    /// Scans the whole terrain.
    BlockMaxima(const Terrain &terrain, int threads);

    /// Scans the rows of blocks that depend on no other cells than the terrain's rows `first` to `end` - 1 and
    /// were not scanned before. Called right after these rows were read, it finds them in the processor's
    /// cache. Several threads may call it at a time if their ranges of rows do not overlap.
    void scanRows(const Terrain &terrain, int first, int end);
    /// Scans the rows of blocks that are left. Call it once, after the last scanRows() and before any query.
    void finish(const Terrain &terrain, int threads);

    /// The greatest elevation in a rectangle of blocks and in the ring of cells around it; minus infinity if
    /// none of these has data. The block numbers are inclusive, start at 0 and must exist in the terrain.
    double greatest(int firstColumn, int lastColumn, int firstRow, int lastRow) const;

    /// The lowest and the highest elevation of the whole terrain; both 0 if no cell has data.
    double lowestHeight() const { return m_lowest; }
    double highestHeight() const { return m_highest; }
    /// Whether some cell of the terrain has no data.
    bool hasVoids() const
    {
        return std::any_of(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.voids; });
    }
    /// Whether some cell of a row of blocks, or of the cell row above or below it, has no data.
    bool hasVoids(int row) const { return m_rows[static_cast<std::size_t>(row)].voids; }

private:
    struct Row
    {
        bool scanned = false;
        bool voids = false;
        double lowest = std::numeric_limits<double>::infinity();
    };

    void scanRow(const Terrain &terrain, int row);

    int m_columns;
    std::vector<Row> m_rows;
    std::vector<double> m_maxima;
    double m_lowest = 0.0;
    double m_highest = 0.0;
};

} // namespace viewshed
