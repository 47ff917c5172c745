#include "viewshed/seenarea.h"

#include <bit>

namespace viewshed
{

double areaOf(const BitGrid &grid, int top, const std::vector<double> &rowAreas)
{
    double area = 0.0;
    for (int row = 0; row < grid.height(); ++row) {
        int cells = 0;
        for (int word = 0; word < grid.wordsPerRow(); ++word)
            cells += std::popcount(grid.row(row)[word]);
        area += cells * rowAreas[static_cast<std::size_t>(top + row)];
    }
    return area;
}

BitGrid reachedCells(const Terrain &terrain, const Sight &sight, const Window &window)
{
    BitGrid reached(window.width, window.height);
    for (int row = 0; row < window.height; ++row) {
        for (int column = 0; column < window.width; ++column) {
            const int x = window.left + column;
            const int y = window.top + row;
            if (!std::isnan(terrain.at(x, y)) && sight.reaches(x, y))
                reached.set(column, row, true);
        }
    }
    return reached;
}

void addFarthest(SeenArea &area, const BitGrid &seen, const Window &window, const Sight &sight)
{
    double farthest = area.farthest * area.farthest;
    const auto add = [&](int column, int row) {
        const double square = sight.squaredMetres(window.left + column, window.top + row);
        if (square <= farthest)
            return;
        farthest = square;
        area.farthestColumn = window.left + column;
        area.farthestRow = window.top + row;
    };
    // The distance is a convex function along a row, so the farthest cell is the first or the last one.
    for (int row = 0; row < seen.height(); ++row) {
        int first = 0;
        while (first < seen.wordsPerRow() && seen.row(row)[first] == 0)
            ++first;
        if (first == seen.wordsPerRow())
            continue;
        int last = seen.wordsPerRow() - 1;
        while (seen.row(row)[last] == 0)
            --last;
        add(first * BitGrid::bitsPerWord + std::countr_zero(seen.row(row)[first]), row);
        add(last * BitGrid::bitsPerWord + BitGrid::bitsPerWord - 1 - std::countl_zero(seen.row(row)[last]),
            row);
    }
    area.farthest = std::sqrt(farthest);
}

} // namespace viewshed
