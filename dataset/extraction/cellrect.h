#pragma once

#include "dataset/demground.h"

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>

#include <array>

// Rectangles of cells. Cells count columns to the right and rows down from the upper left corner of the file,
// from 0, whatever the direction in which the coordinates grow. An edge is a whole number: the cell (3, 4) lies
// between the edges 3 and 4 across, and 4 and 5 down. Coordinates are those of the DEM's CRS.

/// The grid of a DEM.
struct CellGrid
{
    QSize size{0, 0};                 ///< columns and rows
    std::array<double, 6> toGround{}; ///< x = t0 + column t1 + row t2, y = t3 + column t4 + row t5
    bool isEmpty() const { return size.isEmpty(); }
};

/// The grid of a DEM; empty for one that is not open.
CellGrid cellGrid(const DemGround &ground);

/// Coordinates of an edge crossing, given in columns and rows.
QPointF groundOf(const CellGrid &grid, const QPointF &cell);

/// The smallest rectangle of cells, in fractions, that holds a rectangle of coordinates. `ground`: left is the
/// smallest x, top the smallest y. On a rotated grid it is larger than the ground.
QRectF cellsAround(const CellGrid &grid, const QRectF &ground);

/// The cells between two opposite corners in coordinates, whichever they are. Edges that miss whole cells are
/// moved to the nearest ones, and at least one cell remains. Not limited to the grid.
QRect cellsBetween(const CellGrid &grid, const QPointF &corner, const QPointF &opposite);

/// All cells that the rectangle touches. An edge within a thousandth of a cell of a whole one lies on that.
QRect touchedCells(const QRectF &cells);

/// The part of the rectangle on the grid; empty where there is none.
QRect onGrid(const QRect &cells, const QSize &grid);

/// The rectangle with `margin` more cells on each side, as far as the grid reaches.
QRect withMargin(const QRect &cells, int margin, const QSize &grid);

/// The rectangle moved by columns and rows, as a whole, as far as the grid reaches.
QRect movedCells(const QRect &cells, const QPoint &by, const QSize &grid);

/// A handle of a rectangle: x is -1 for its left edge, 1 for the right one and 0 for neither, y is -1 for its
/// upper edge, 1 for the lower one and 0 for neither.
using Handle = QPoint;

/// The rectangle with the edges of the handle moved to the nearest edges of cells to a position in columns and
/// rows. The other edges stay; at least one cell remains, and the rectangle stays on the grid.
QRect resizedCells(const QRect &cells, const Handle &handle, const QPointF &to, const QSize &grid);

/// The cells on the grid that the rectangle between two positions, in columns and rows, touches: at least one.
QRect draggedCells(const QPointF &from, const QPointF &to, const QSize &grid);

/// Width and height of so many columns and rows along the grid, in units of the coordinates.
QSizeF groundSize(const CellGrid &grid, const QSize &cells);
