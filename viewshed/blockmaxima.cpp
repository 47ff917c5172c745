#include "viewshed/blockmaxima.h"

#include "viewshed/jobs.h"

#include <algorithm>

namespace viewshed
{

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Extremes
{
    double lowest = infinity;
    double highest = -infinity;
};

/// Of a rectangle of cells, up to but without `right` and `bottom`.
Extremes extremesOf(const Terrain &terrain, int left, int top, int right, int bottom)
{
    return terrain.withCells([&]<class Number>(const Number *cells) {
        Number lowest = std::numeric_limits<Number>::infinity();
        Number highest = -lowest;
        for (int row = top; row < bottom; ++row) {
            const Number *line = cells + static_cast<std::ptrdiff_t>(row) * terrain.width();
            for (int column = left; column < right; ++column) { // a NaN is neither lower nor higher
                lowest = line[column] < lowest ? line[column] : lowest;
                highest = line[column] > highest ? line[column] : highest;
            }
        }
        return Extremes{static_cast<double>(lowest), static_cast<double>(highest)};
    });
}

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
        for (int column = 0; column < m_columns; ++column) {
            const Extremes found = extremesOf(terrain, std::max(column * side - 1, 0), top,
                                              std::min(column * side + side + 1, terrain.width()), bottom);
            maxima[column] = found.highest;
            double &low = lowest[static_cast<std::size_t>(row)];
            low = std::min(low, found.lowest);
        }
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
