#pragma once

#include "viewshed/sweep/skylinekernels.h"
#include "viewshed/terrain.h"

#include <algorithm>
#include <vector>

namespace viewshed
{

/// The coordinates of a sector. A line is a column of the grid in the left and right sectors, and a row in the
/// other two. A place is a cell's number in its line.
struct Frame
{
    bool linesAreColumns; ///< whether lines are columns and places are rows, or the other way round
    int awayStep;         ///< 1 if line numbers grow away from the eye, -1 if they fall

    int column(int line, int place) const { return linesAreColumns ? line : place; }
    int row(int line, int place) const { return linesAreColumns ? place : line; }
};

/// A range of places, or of lines; `last` belongs to it.
struct Places
{
    int first;
    int last;
};

/// A copy of the heights above the eye of some neighbouring lines and places, so that the cells of a line
/// follow each other in memory in every sector.
class Panel
{
public:
    /// `kernels` must outlive the panel.
    explicit Panel(const SkylineKernels &kernels)
        : m_kernels(kernels)
    { }

    /// Copies the cells of the given lines and places, both in grid coordinates; those outside the terrain
    /// become NaN. Replaces what the panel held before.
    void load(const Terrain &terrain, const Sight &sight, const Frame &frame, Places lines, Places places)
    {
        m_lines = lines;
        m_places = places;
        m_width = places.last - places.first + 1;
        const std::size_t cells =
            static_cast<std::size_t>(m_width) * static_cast<std::size_t>(lines.last - lines.first + 1);
        if (m_heights.size() < cells)
            m_heights.resize(cells);
        const Places columns = frame.linesAreColumns ? lines : places;
        const Places rows = frame.linesAreColumns ? places : lines;
        if (columns.first < 0 || rows.first < 0 || columns.last >= terrain.width()
            || rows.last >= terrain.height())
            std::fill(m_heights.begin(), m_heights.end(), noHeight);
        terrain.withCells([&](const auto *heights) { copy(heights, terrain, sight, frame); });
    }
    /// Takes the data from the cells that are farther from the eye than the sight's reach.
    void dropBeyondReach(const Sight &sight, const Frame &frame)
    {
        double *height = m_heights.data();
        for (int line = m_lines.first; line <= m_lines.last; ++line) {
            for (int place = m_places.first; place <= m_places.last; ++place, ++height) {
                const double square = sight.squaredMetres(frame.column(line, place), frame.row(line, place));
                *height = square > sight.reach * sight.reach ? noHeight : *height;
            }
        }
    }
    int firstPlace() const { return m_places.first; }
    /// The height above the eye of the cell at `place`, followed by those of the next places of the line. NaN
    /// without data.
    const double *line(int line, int place) const
    {
        return m_heights.data() + static_cast<std::ptrdiff_t>(line - m_lines.first) * m_width
            + (place - m_places.first);
    }

private:
    template <class Number>
    void copy(const Number *cells, const Terrain &terrain, const Sight &sight, const Frame &frame)
    {
        const Places columns = frame.linesAreColumns ? m_lines : m_places;
        const Places rows = frame.linesAreColumns ? m_places : m_lines;
        const std::ptrdiff_t columnStep = frame.linesAreColumns ? m_width : 1;
        const std::ptrdiff_t rowStep = frame.linesAreColumns ? 1 : m_width;
        for (int row = std::max(rows.first, 0); row <= std::min(rows.last, terrain.height() - 1); ++row) {
            const Number *from = cells + static_cast<std::ptrdiff_t>(row) * terrain.width();
            const int first = std::max(columns.first, 0);
            const int last = std::min(columns.last, terrain.width() - 1);
            double *to = m_heights.data() + (row - rows.first) * rowStep + (first - columns.first) * columnStep;
            copyRun(from + first, {.column = first, .row = row, .count = last + 1 - first}, sight, to,
                    columnStep);
        }
    }

    void copyRun(const float *from, const CellRun &run, const Sight &sight, double *to,
                 std::ptrdiff_t step) const
    {
        m_kernels.floatsAboveEye(from, run, sight, to, step);
    }
    void copyRun(const double *from, const CellRun &run, const Sight &sight, double *to,
                 std::ptrdiff_t step) const
    {
        m_kernels.doublesAboveEye(from, run, sight, to, step);
    }

    const SkylineKernels &m_kernels;
    Places m_lines{};
    Places m_places{};
    int m_width = 0;
    std::vector<double> m_heights;
};

} // namespace viewshed
