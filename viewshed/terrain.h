#pragma once

#include "viewshed/hugearray.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <variant>
#include <vector>

namespace viewshed
{

/// Stands for the elevation of a cell without data.
inline constexpr double noHeight = std::numeric_limits<double>::quiet_NaN();

/// The elevations of a grid, row by row from the upper left cell, in the DEM's vertical unit. Columns and rows
/// count from 0; a position in cells has its origin (0, 0) at the centre of the upper left cell. A cell without
/// data holds NaN; no cell is infinite.
class Terrain
{
public:
    enum class Storage
    {
        Float,
        Double
    };

    /// Leaves the cells uninitialized: write them through withCells() before anything reads them. Throws
    /// std::bad_alloc.
    Terrain(int width, int height, Storage storage);
    /// Copies `heights`: width × height numbers, row by row.
    Terrain(int width, int height, const std::vector<double> &heights);

    int width() const { return m_width; }
    int height() const { return m_height; }
    static std::size_t bytesPerCell(Storage storage) { return storage == Storage::Float ? 4 : 8; }

    /// The cell's elevation; NaN for a cell without data and for one outside the grid.
    double at(int column, int row) const
    {
        if (column < 0 || row < 0 || column >= m_width || row >= m_height)
            return noHeight;
        const std::size_t cell = index(column, row);
        if (const auto *floats = std::get_if<Floats>(&m_cells))
            return static_cast<double>(floats->data()[cell]);
        return std::get<Doubles>(m_cells).data()[cell];
    }

    /// Sets the bit of each cell of the row that has no data, and clears no bit. `words` holds the row's bits
    /// in the layout of BitGrid.
    void findVoids(int row, std::uint64_t *words) const;

    /// Calls work(cells), where `cells` points to the grid's first cell, as float or as double, and returns its
    /// result.
    template <class Work> decltype(auto) withCells(Work work) const
    {
        if (const auto *floats = std::get_if<Floats>(&m_cells))
            return work(floats->data());
        return work(std::get<Doubles>(m_cells).data());
    }
    template <class Work> decltype(auto) withCells(Work work)
    {
        if (auto *floats = std::get_if<Floats>(&m_cells))
            return work(floats->data());
        return work(std::get<Doubles>(m_cells).data());
    }

private:
    using Floats = HugeArray<float>;
    using Doubles = HugeArray<double>;

    std::size_t index(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_width)
            + static_cast<std::size_t>(column);
    }

    int m_width;
    int m_height;
    std::variant<Floats, Doubles> m_cells;
};

} // namespace viewshed
