#include "dataset/extraction/cellrect.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Edges are kept far within the range of int, so that sums of them are, too.
int edge(double position)
{
    constexpr double farthest = 1e9; // cells
    return static_cast<int>(std::clamp(position, -farthest, farthest));
}

QRect fromEdges(int left, int top, int right, int bottom)
{
    return {left, top, right - left, bottom - top};
}

int rightEdge(const QRect &cells)
{
    return cells.left() + cells.width();
}

int lowerEdge(const QRect &cells)
{
    return cells.top() + cells.height();
}

QPointF cellOf(const CellGrid &grid, const QPointF &ground)
{
    const std::array<double, 6> &t = grid.toGround;
    const double area = t[1] * t[5] - t[2] * t[4];
    const QPointF from(ground.x() - t[0], ground.y() - t[3]);
    return {(from.x() * t[5] - from.y() * t[2]) / area, (from.y() * t[1] - from.x() * t[4]) / area};
}

} // namespace

CellGrid cellGrid(const DemGround &ground)
{
    if (!ground.isOpen())
        return {};
    const QPointF origin = ground.toGround({0.0, 0.0});
    const QPointF column = ground.toGround({1.0, 0.0}) - origin;
    const QPointF row = ground.toGround({0.0, 1.0}) - origin;
    return {{ground.width(), ground.height()},
            {origin.x(), column.x(), row.x(), origin.y(), column.y(), row.y()}};
}

QPointF groundOf(const CellGrid &grid, const QPointF &cell)
{
    const std::array<double, 6> &t = grid.toGround;
    return {t[0] + cell.x() * t[1] + cell.y() * t[2], t[3] + cell.x() * t[4] + cell.y() * t[5]};
}

QRectF cellsAround(const CellGrid &grid, const QRectF &ground)
{
    const std::array<QPointF, 4> corners{cellOf(grid, ground.topLeft()), cellOf(grid, ground.topRight()),
                                         cellOf(grid, ground.bottomLeft()), cellOf(grid, ground.bottomRight())};
    const auto across = std::minmax({corners[0].x(), corners[1].x(), corners[2].x(), corners[3].x()});
    const auto down = std::minmax({corners[0].y(), corners[1].y(), corners[2].y(), corners[3].y()});
    return {QPointF(across.first, down.first), QPointF(across.second, down.second)};
}

QRect cellsBetween(const CellGrid &grid, const QPointF &corner, const QPointF &opposite)
{
    const QPointF one = cellOf(grid, corner);
    const QPointF other = cellOf(grid, opposite);
    const int left = edge(std::round(std::min(one.x(), other.x())));
    const int top = edge(std::round(std::min(one.y(), other.y())));
    return fromEdges(left, top, std::max(left + 1, edge(std::round(std::max(one.x(), other.x())))),
                     std::max(top + 1, edge(std::round(std::max(one.y(), other.y())))));
}

QRect touchedCells(const QRectF &cells)
{
    constexpr double rounding = 1e-3; // cells
    const int left = edge(std::floor(cells.left() + rounding));
    const int top = edge(std::floor(cells.top() + rounding));
    return fromEdges(left, top, std::max(left + 1, edge(std::ceil(cells.right() - rounding))),
                     std::max(top + 1, edge(std::ceil(cells.bottom() - rounding))));
}

QRect onGrid(const QRect &cells, const QSize &grid)
{
    return cells.intersected(QRect(QPoint(0, 0), grid));
}

QRect withMargin(const QRect &cells, int margin, const QSize &grid)
{
    return onGrid(cells.adjusted(-margin, -margin, margin, margin), grid);
}

QRect movedCells(const QRect &cells, const QPoint &by, const QSize &grid)
{
    const auto start = [](int from, int step, int length, int most) {
        return std::clamp(from + step, 0, std::max(0, most - length));
    };
    return {QPoint(start(cells.left(), by.x(), cells.width(), grid.width()),
                   start(cells.top(), by.y(), cells.height(), grid.height())),
            cells.size()};
}

QRect resizedCells(const QRect &cells, const Handle &handle, const QPointF &to, const QSize &grid)
{
    int left = cells.left();
    int top = cells.top();
    int right = rightEdge(cells);
    int bottom = lowerEdge(cells);
    const int column = edge(std::round(to.x()));
    const int row = edge(std::round(to.y()));
    if (handle.x() < 0)
        left = std::clamp(column, 0, right - 1);
    else if (handle.x() > 0)
        right = std::clamp(column, left + 1, std::max(left + 1, grid.width()));
    if (handle.y() < 0)
        top = std::clamp(row, 0, bottom - 1);
    else if (handle.y() > 0)
        bottom = std::clamp(row, top + 1, std::max(top + 1, grid.height()));
    return fromEdges(left, top, right, bottom);
}

QRect draggedCells(const QPointF &from, const QPointF &to, const QSize &grid)
{
    const auto inside = [&](const QPointF &position) {
        constexpr double withinLast = 1e-2; // cells
        return QPointF(std::clamp(position.x(), 0.0, grid.width() - withinLast),
                       std::clamp(position.y(), 0.0, grid.height() - withinLast));
    };
    return onGrid(touchedCells(QRectF(inside(from), inside(to)).normalized()), grid);
}

QSizeF groundSize(const CellGrid &grid, const QSize &cells)
{
    const std::array<double, 6> &t = grid.toGround;
    return {cells.width() * std::hypot(t[1], t[4]), cells.height() * std::hypot(t[2], t[5])};
}
