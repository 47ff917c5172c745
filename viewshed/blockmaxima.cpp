#include "viewshed/blockmaxima.h"

#include "viewshed/jobs.h"

#include <algorithm>

namespace viewshed
{

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The lowest and the highest cell of each column, over some rows.
template <class Number> struct ColumnExtremes
{
    std::vector<Number> lowest;
    std::vector<Number> highest;

    ColumnExtremes(const Number *cells, int width, int top, int bottom)
        : lowest(static_cast<std::size_t>(width), std::numeric_limits<Number>::infinity())
        , highest(static_cast<std::size_t>(width), -std::numeric_limits<Number>::infinity())
    {
        for (int row = top; row < bottom; ++row) {
            const Number *line = cells + static_cast<std::ptrdiff_t>(row) * width;
            Number *low = lowest.data();
            Number *high = highest.data();
            for (int column = 0; column < width; ++column) { // a NaN is neither lower nor higher
                low[column] = line[column] < low[column] ? line[column] : low[column];
                high[column] = line[column] > high[column] ? line[column] : high[column];
            }
        }
    }
};

} // namespace

BlockMaxima::BlockMaxima(const Terrain &terrain, int threads)
    : m_columns((terrain.width() + side - 1) / side)
{
    const int rows = (terrain.height() + side - 1) / side;
    m_maxima.resize(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(rows));
    std::vector<double> lowest(static_cast<std::size_t>(rows), infinity);
    const auto doRow = [&](int row) {
        double *maxima = m_maxima.data() + static_cast<std::ptrdiff_t>(row) * m_columns;
        const int top = std::max(row * side - 1, 0);
        const int bottom = std::min(row * side + side + 1, terrain.height());
        terrain.withCells([&]<class Number>(const Number *cells) {
            const ColumnExtremes<Number> found(cells, terrain.width(), top, bottom);
            const auto high = found.highest.begin();
            for (int column = 0; column < m_columns; ++column)
                maxima[column] = *std::max_element(high + std::max(column * side - 1, 0),
                                                   high + std::min(column * side + side + 1, terrain.width()));
            lowest[static_cast<std::size_t>(row)] = *std::min_element(found.lowest.begin(), found.lowest.end());
        });
    };
    runJobs(rows, threads, doRow, {});
    const double high = m_maxima.empty() ? -infinity : *std::max_element(m_maxima.begin(), m_maxima.end());
    if (high > -infinity) {
        m_highest = high;
        m_lowest = *std::min_element(lowest.begin(), lowest.end());
    }
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
