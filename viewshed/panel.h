#pragma once

#include "viewshed/skylinekernels.h"
#include "viewshed/terrain.h"

#include <algorithm>
#include <vector>

namespace viewshed
{

/// A sector's own coordinates: lines lie across the view and count away from the eye or towards it, places
/// count along a line.
struct Frame
{
    bool overColumns; ///< a line is a column of the grid, a place a row
    int direction;    ///< 1 where the lines' numbers grow away from the eye

    int column(int line, int place) const { return overColumns ? line : place; }
    int row(int line, int place) const { return overColumns ? place : line; }
};

/// Places of a line, `first` to `last`.
struct Places
{
    int first;
    int last;
};

/// The heights above the eye of some lines that follow each other, at some places.
class Panel
{
public:
    explicit Panel(const SkylineKernels &kernels)
        : m_kernels(kernels)
    { }

    void load(const Terrain &terrain, const Sight &sight, const Frame &frame, Places lines, Places places)
    {
        m_lines = lines;
        m_places = places;
        m_width = places.last - places.first + 1;
        const std::size_t cells =
            static_cast<std::size_t>(m_width) * static_cast<std::size_t>(lines.last - lines.first + 1);
        if (m_heights.size() < cells)
            m_heights.resize(cells);
        const Places columns = frame.overColumns ? lines : places;
        const Places rows = frame.overColumns ? places : lines;
        if (columns.first < 0 || rows.first < 0 || columns.last >= terrain.width()
            || rows.last >= terrain.height())
            std::fill(m_heights.begin(), m_heights.end(), noHeight);
        terrain.withCells([&](const auto *heights) { copy(heights, terrain, sight, frame); });
    }
    int firstPlace() const { return m_places.first; }
    /// Of the cell there and those after it.
    const double *line(int line, int place) const
    {
        return m_heights.data() + static_cast<std::ptrdiff_t>(line - m_lines.first) * m_width
            + (place - m_places.first);
    }

private:
    template <class Number>
    void copy(const Number *cells, const Terrain &terrain, const Sight &sight, const Frame &frame)
    {
        const Places columns = frame.overColumns ? m_lines : m_places;
        const Places rows = frame.overColumns ? m_places : m_lines;
        const std::ptrdiff_t columnStep = frame.overColumns ? m_width : 1;
        const std::ptrdiff_t rowStep = frame.overColumns ? 1 : m_width;
        for (int row = std::max(rows.first, 0); row <= std::min(rows.last, terrain.height() - 1); ++row) {
            const Number *from = cells + static_cast<std::ptrdiff_t>(row) * terrain.width();
            const int first = std::max(columns.first, 0);
            const int last = std::min(columns.last, terrain.width() - 1);
            double *to = m_heights.data() + (row - rows.first) * rowStep + (first - columns.first) * columnStep;
            lower(from + first, {first, row, last + 1 - first}, sight, to, columnStep);
        }
    }

    void lower(const float *from, const CellRun &run, const Sight &sight, double *to, std::ptrdiff_t step) const
    {
        m_kernels.lowerFloats(from, run, sight, to, step);
    }
    void lower(const double *from, const CellRun &run, const Sight &sight, double *to,
               std::ptrdiff_t step) const
    {
        m_kernels.lowerDoubles(from, run, sight, to, step);
    }

    const SkylineKernels &m_kernels;
    Places m_lines{};
    Places m_places{};
    int m_width = 0;
    std::vector<double> m_heights;
};

} // namespace viewshed
