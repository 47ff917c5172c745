#include "viewshed/sweep/blockmaxima.h"

#include "viewshed/jobs.h"

#include <algorithm>

namespace viewshed
{

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The lowest and the highest cell of each column between the rows `top` and `bottom` - 1.
template <class Number> struct ColumnExtremes
{
    std::vector<Number> lowest;
    std::vector<Number> highest;
    bool voids = false;

    ColumnExtremes(const Number *cells, int width, int top, int bottom)
        : lowest(static_cast<std::size_t>(width), std::numeric_limits<Number>::infinity())
        , highest(static_cast<std::size_t>(width), -std::numeric_limits<Number>::infinity())
    {
        for (int row = top; row < bottom; ++row) {
            const Number *line = cells + static_cast<std::ptrdiff_t>(row) * width;
            Number *low = lowest.data();
            Number *high = highest.data();
            int anyVoid = 0;
            for (int column = 0; column < width; ++column) { // both comparisons are false for NaN
                low[column] = line[column] < low[column] ? line[column] : low[column];
                high[column] = line[column] > high[column] ? line[column] : high[column];
                anyVoid |= std::isnan(line[column]) ? 1 : 0;
            }
            voids = voids || anyVoid != 0;
        }
    }
};

} // namespace

BlockMaxima::BlockMaxima(int width, int height)
    : m_columns((width + side - 1) / side)
    , m_rows(static_cast<std::size_t>((height + side - 1) / side))
    , m_maxima(static_cast<std::size_t>(m_columns) * m_rows.size())
{ }

BlockMaxima::BlockMaxima(const Terrain &terrain, int threads)
    : BlockMaxima(terrain.width(), terrain.height())
{
    finish(terrain, threads);
}

void BlockMaxima::scanRows(const Terrain &terrain, int first, int end)
{
    // The maxima of a row of blocks include the cell rows above and below it.
    const int firstRow = first == 0 ? 0 : first / side + 1;
    const int endRow = end == terrain.height() ? static_cast<int>(m_rows.size()) : (end - 1) / side;
    for (int row = endRow - 1; row >= firstRow && !m_rows[static_cast<std::size_t>(row)].scanned; --row)
        scanRow(terrain, row);
}

void BlockMaxima::finish(const Terrain &terrain, int threads)
{
    const auto scanIfLeft = [&](int row) {
        if (!m_rows[static_cast<std::size_t>(row)].scanned)
            scanRow(terrain, row);
    };
    runJobs(static_cast<int>(m_rows.size()), threads, scanIfLeft, {});
    const double high = m_maxima.empty() ? -infinity : *std::max_element(m_maxima.begin(), m_maxima.end());
    if (high > -infinity) {
        m_highest = high;
        m_lowest = infinity;
        for (const Row &row : m_rows)
            m_lowest = std::min(m_lowest, row.lowest);
    }
}

void BlockMaxima::scanRow(const Terrain &terrain, int row)
{
    double *maxima = m_maxima.data() + static_cast<std::ptrdiff_t>(row) * m_columns;
    Row &summary = m_rows[static_cast<std::size_t>(row)];
    const int top = std::max(row * side - 1, 0);
    const int bottom = std::min(row * side + side + 1, terrain.height());
    terrain.withCells([&]<class Number>(const Number *cells) {
        const ColumnExtremes<Number> found(cells, terrain.width(), top, bottom);
        const auto high = found.highest.begin();
        for (int column = 0; column < m_columns; ++column)
            maxima[column] = *std::max_element(high + std::max(column * side - 1, 0),
                                               high + std::min(column * side + side + 1, terrain.width()));
        summary = {.scanned = true,
                   .voids = found.voids,
                   .lowest = *std::min_element(found.lowest.begin(), found.lowest.end())};
    });
}

double BlockMaxima::greatest(int firstColumn, int lastColumn, int firstRow, int lastRow) const
{
    double greatest = -infinity;
    for (int row = firstRow; row <= lastRow; ++row) {
        const double *maxima = m_maxima.data() + static_cast<std::ptrdiff_t>(row) * m_columns;
        for (int column = firstColumn; column <= lastColumn; ++column)
            greatest = std::max(greatest, maxima[column]);
    }
    return greatest;
}

} // namespace viewshed
