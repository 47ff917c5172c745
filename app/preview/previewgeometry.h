#pragma once

#include <QLocale>
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

/// A view of a DEM after a turn of the wheel over a place: that place stays where it is, or near it. factor:
/// above 1 shows less. A view is never larger than the DEM, nor smaller than some cells; closer than the whole
/// it has the shape of the area that shows it, as far as the DEM reaches.
QRectF zoomed(const QRectF &view, const QPointF &at, double factor, const QSize &dem, const QSizeF &area);

/// A view moved by so many cells, within the DEM.
QRectF moved(const QRectF &view, const QPointF &by, const QSize &dem);

/// The part of an area, in the middle of its upper edge, that shows the view with square cells.
QRectF shownRect(const QRectF &view, const QSizeF &area);

/// The azimuth, clockwise from the picture's upper edge in degrees (0 to 360), from which a shaded relief is
/// lit: what the tool gets for a compass reading, mirrored where the DEM's rows run northwards or its columns
/// westwards.
double lightDirection(double compass, bool rowsRunNorth, bool columnsRunWest);

/// So many decimals tell two cells of that size apart in a coordinate.
int coordinateDecimals(double cellSize);

/// A length for people: true to a thousandth, with no more decimals than that takes and never an exponent.
QString lengthText(double length, const QLocale &locale);
