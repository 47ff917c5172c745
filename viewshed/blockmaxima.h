#pragma once

#include "viewshed/terrain.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace viewshed
{

/// What bounds the heights of a terrain, by blocks of cells: found once, used by every observer. Also which
/// rows of blocks have cells without data.
class BlockMaxima
{
public:
    static constexpr int side = 16; ///< cells

    /// Of no terrain yet.
    BlockMaxima(int width, int height);
    BlockMaxima(const Terrain &terrain, int threads);

    /// Takes in the rows of blocks that lie in the rows `first` to `end` - 1 of the terrain with all they
    /// depend on, and were not taken in before: what was just read is near at hand. Several threads may do so,
    /// with rows that do not overlap.
    void take(const Terrain &terrain, int first, int end);
    /// Takes in the rest; to be called once, and before anything is asked.
    void finish(const Terrain &terrain, int threads);

    /// The greatest height in a rectangle of blocks and in the cells around it; minus infinity if no cell has
    /// data. Blocks count from 0 and must be the terrain's own.
    double greatest(int firstColumn, int lastColumn, int firstRow, int lastRow) const;

    /// Of the whole terrain; 0 if no cell has data.
    double lowestHeight() const { return m_lowest; }
    double highestHeight() const { return m_highest; }
    bool hasVoids() const
    {
        return std::any_of(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.voids; });
    }
    bool hasVoids(int row) const { return m_rows[static_cast<std::size_t>(row)].voids; }

private:
    struct Row
    {
        bool taken = false;
        bool voids = false;
        double lowest = std::numeric_limits<double>::infinity();
    };

    void takeRow(const Terrain &terrain, int row);

    int m_columns;
    std::vector<Row> m_rows;
    std::vector<double> m_maxima;
    double m_lowest = 0.0;
    double m_highest = 0.0;
};

} // namespace viewshed
