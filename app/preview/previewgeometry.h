#pragma once

#include "dataset/elevationgrid.h"

#include <QLocale>
#include <QPointF>
#include <QPolygonF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QVector>

// Geometry of the previews. Positions in a DEM are cells: columns to the right and rows down from its upper
// left corner. The centre of the first cell is (0.5, 0.5). A view is the visible rectangle of cells.

/// The longest side of a reduced copy, in cells.
constexpr int longestReducedSide = 800;

/// Size of the reduced copy of a DEM, both in columns and rows: the copy keeps the DEM's shape, its sides have
/// at most longestReducedSide cells, and a smaller DEM keeps its size.
QSize reducedSize(const QSize &cells);

/// The part of a DEM that a preview is computed on: the view `seen`, or the whole DEM where it is empty; a
/// margin, so that no visible cell is at an edge of the part; and the observers inside the DEM, whose lines of
/// sight must lie in the part.
QRect previewPart(const QRectF &seen, const QSize &dem, const QVector<QPointF> &observers);

/// The reduced copy to make of a DEM.
struct Reduction
{
    QString dem;                   ///< path of the DEM
    QSize demSize;                 ///< columns and rows of the DEM
    bool georeferenced = true;     ///< the DEM has coordinates of its own
    QRect part;                    ///< cells of the DEM to copy
    bool ignoresOverviews = false; ///< the copy is made from the DEM's own cells, whatever overviews it has
    QString copy;                  ///< path of the file to create
};

/// The arguments of the translation tool that make the copy: each of its cells is the average of the DEM's
/// cells with data that it stands for. Single cells would make a pattern that the product of the DEM has not.
/// The copy of a DEM without coordinates counts the
/// DEM's cells as coordinates, rows downwards as in the DEM itself. Otherwise the reduction would change the
/// slopes, and the light would come from the opposite side.
QString reductionArguments(const Reduction &reduction);

/// The view zoomed by `factor` around the position `at`, which stays in place as far as the DEM allows. A
/// factor above 1 shows fewer cells. `dem` is the DEM's size in cells, `area` that of the widget in pixels. A
/// view is never larger than the DEM nor smaller than a few cells. One that is smaller than the DEM has the
/// shape of the area, as far as the DEM reaches.
QRectF zoomed(const QRectF &view, const QPointF &at, double factor, const QSize &dem, const QSizeF &area);

/// The view moved by `by`, in columns and rows, and kept within the DEM.
QRectF moved(const QRectF &view, const QPointF &by, const QSize &dem);

/// The rectangle of a widget's area, in pixels, in which the view is shown with square cells: in its middle.
/// Empty for an empty view or area.
QRectF shownRect(const QRectF &view, const QSizeF &area);

/// The sides of a DEM that are exchanged in its picture, so that north is above and west at the left.
struct Mirroring
{
    bool columns = false; ///< the DEM's columns run from east to west
    bool rows = false;    ///< the DEM's rows run from south to north
};

// The place in the picture of a place in the DEM, and the other way round. Both are counted in cells.

QPointF mirrored(const QPointF &cell, const QSize &dem, const Mirroring &mirroring);
QRect mirrored(const QRect &part, const QSize &dem, const Mirroring &mirroring);

/// A grid with those sides exchanged.
ElevationGrid mirrored(ElevationGrid grid, const Mirroring &mirroring);

/// Number of decimals by which coordinates of neighbouring cells of that size differ.
int coordinateDecimals(double cellSize);

/// Formats a length with the fewest decimals that are exact to a thousandth of it, and without an exponent.
QString lengthText(double length, const QLocale &locale);
