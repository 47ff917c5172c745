#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QVector>

// Where things lie in a preview. Positions in a DEM are cells: columns to the right and rows down from its
// upper left corner, a cell's centre at the halves.

/// The longest side of a reduced copy, in cells.
constexpr int longestReducedSide = 800;

/// The size of a reduced copy of so many cells: the longest side fits, nothing is enlarged.
QSize reducedSize(const QSize &cells);

/// The part of a DEM that a preview is computed on: the part that is seen (or all, where it is empty), a little
/// more around it so that no cell that is seen is one of an edge, and the observers, whose lines of sight must
/// not leave it.
QRect previewPart(const QRectF &seen, const QSize &dem, const QVector<QPointF> &observers);

/// A reduced copy that is to be made.
struct Reduction
{
    QString dem;
    QSize demSize;             ///< cells
    bool georeferenced = true; ///< whether the DEM has coordinates of its own
    QRect part;                ///< cells of the DEM
    QString copy;              ///< the file to create
};

/// The arguments of the translation tool. A DEM without coordinates gives its copy some that count the DEM's
/// cells, rows downwards as in the DEM itself: else slopes would be wrong by the reduction, and the light would
/// come from the other side.
QString reductionArguments(const Reduction &reduction);

/// A view of a DEM after a turn of the wheel over a place: that place stays where it is. factor: above 1 shows
/// less. A view is never larger than the DEM, nor smaller than some cells.
QRectF zoomed(const QRectF &view, const QPointF &at, double factor, const QSize &dem);

/// A view moved by so many cells, within the DEM.
QRectF moved(const QRectF &view, const QPointF &by, const QSize &dem);

/// The part of an area, in the middle of its upper edge, that shows the view with square cells.
QRectF shownRect(const QRectF &view, const QSizeF &area);

/// The azimuth, clockwise from the picture's upper edge in degrees (0 to 360), from which a shaded relief is
/// lit: what the tool gets for a compass reading, mirrored where the DEM's rows run northwards.
double lightDirection(double compass, bool rowsRunNorth);
