#include "dataset/join/contourwindow.h"

ContourWindow contourWindow(const QSize &dem, const QRect &tile, const std::array<double, 6> &toGround)
{
    const auto xOf = [&](int column) { return toGround[0] + (column + 0.5) * toGround[1]; };
    const auto yOf = [&](int row) { return toGround[3] + (row + 0.5) * toGround[5]; };
    ContourWindow window;
    window.cells = tile.adjusted(0, 0, 1, 1).intersected(QRect({0, 0}, dem));
    const int nextColumn = tile.x() + tile.width();
    const int nextRow = tile.y() + tile.height();
    if (tile.x() > 0)
        window.keep.west = xOf(tile.x());
    if (tile.y() > 0)
        window.keep.north = yOf(tile.y());
    if (nextColumn < dem.width())
        window.keep.east = xOf(nextColumn);
    if (nextRow < dem.height())
        window.keep.south = yOf(nextRow);
    return window;
}
