#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <variant>
#include <vector>

namespace viewshed
{

/// The height of a cell without data.
inline constexpr double noHeight = std::numeric_limits<double>::quiet_NaN();

/// The heights of a grid, row by row from the upper left cell, in the DEM's vertical unit. Columns and rows
/// count from 0; a position in cells has (0, 0) at the centre of the upper left cell. A cell without data is
/// NaN.
class Terrain
{
public:
    enum class Storage
    {
        Float,
        Double
    };

    /// The cells are to be written before they are read. Throws std::bad_alloc.
    Terrain(int width, int height, Storage storage);
    /// A grid as the rows of `heights`: width × height numbers.
    Terrain(int width, int height, const std::vector<double> &heights);

    int width() const { return m_width; }
    int height() const { return m_height; }
    static std::size_t bytesPerCell(Storage storage) { return storage == Storage::Float ? 4 : 8; }

    /// NaN for a cell without data and for one outside the grid.
    double at(int column, int row) const
    {
        if (column < 0 || row < 0 || column >= m_width || row >= m_height)
            return noHeight;
        const std::size_t cell = index(column, row);
        if (const auto *floats = std::get_if<Floats>(&m_cells))
            return static_cast<double>((*floats)[cell]);
        return std::get<Doubles>(m_cells)[cell];
    }

    /// Sets the bits of the row's cells without data; a word holds 64 cells, as in BitGrid.
    void findVoids(int row, std::uint64_t *words) const;

    /// Calls work(first cell of the grid) with a pointer to float or to double.
    template <class Work> decltype(auto) withCells(Work work) const
    {
        if (const auto *floats = std::get_if<Floats>(&m_cells))
            return work(static_cast<const float *>(floats->get()));
        return work(static_cast<const double *>(std::get<Doubles>(m_cells).get()));
    }
    template <class Work> decltype(auto) withCells(Work work)
    {
        if (auto *floats = std::get_if<Floats>(&m_cells))
            return work(floats->get());
        return work(std::get<Doubles>(m_cells).get());
    }

private:
    struct Release
    {
        void operator()(void *cells) const;
    };
    using Floats = std::unique_ptr<float[], Release>;
    using Doubles = std::unique_ptr<double[], Release>;

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
