#pragma once

#include <QPointF>
#include <QVector>

#include <limits>

/// The rectangle that a tile of contour lines keeps, in ground coordinates, x to the east and y to the north.
/// An infinite side lies at the edge of the DEM and cuts nothing. (A QRectF cannot have one infinite side.)
struct CutSides
{
    double west = -std::numeric_limits<double>::infinity();
    double south = -std::numeric_limits<double>::infinity();
    double east = std::numeric_limits<double>::infinity();
    double north = std::numeric_limits<double>::infinity();

    bool operator==(const CutSides &other) const = default;
};

/// The side at which a line was cut.
enum class CutSide
{
    None, ///< the line itself ends there
    West,
    South,
    East,
    North
};

/// What a rectangle keeps of a line: at least two vertices, and how it begins and ends.
struct LinePiece
{
    QVector<QPointF> points;
    CutSide first = CutSide::None;
    CutSide last = CutSide::None;
};

/// The pieces of a line inside a rectangle, in the order of the line. A closed line (its last vertex is its
/// first) that does not leave the rectangle is returned unchanged.
///
/// Vertices within `tolerance` (ground units) of a side count as inside and are not moved; an end that is cut
/// off there ends at such a vertex. So parts that run along a side are kept. They are not doubled by the
/// neighbouring tile: the contour tool raises an elevation that equals a level by a trifle, so the line along a
/// row of such cells belongs to the squares of the lower side and is drawn in that tile alone. A line that
/// only touches the rectangle in one vertex from outside leaves no piece.
QVector<LinePiece> cutLine(const QVector<QPointF> &line, const CutSides &sides, double tolerance);
