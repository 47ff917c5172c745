#include "dataset/join/contourcut.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

/// One side as a limit: how far a point lies beyond it, in ground units; negative inside.
struct Limit
{
    CutSide side;
    bool isVertical; ///< it limits x
    double at;
    double sign; ///< 1: beyond are greater coordinates

    double beyond(const QPointF &point) const { return sign * ((isVertical ? point.x() : point.y()) - at); }
};

using Limits = std::array<Limit, 4>;

Limits limitsOf(const CutSides &sides)
{
    return {{{CutSide::West, true, sides.west, -1.0},
             {CutSide::South, false, sides.south, -1.0},
             {CutSide::East, true, sides.east, 1.0},
             {CutSide::North, false, sides.north, 1.0}}};
}

bool isInside(const QPointF &point, const Limits &limits, double tolerance)
{
    return std::all_of(limits.begin(), limits.end(),
                       [&](const Limit &limit) { return limit.beyond(point) <= tolerance; });
}

/// The visible part of a segment, from 0 at its first to 1 at its last vertex.
struct Visible
{
    double begin = 0.0;
    double end = 1.0;
    const Limit *enters = nullptr; ///< null: the first vertex is inside
    const Limit *leaves = nullptr; ///< null: the last vertex is inside
    bool isEmpty = false;
};

Visible visiblePart(const QPointF &from, const QPointF &to, const Limits &limits, double tolerance)
{
    Visible part;
    for (const Limit &limit : limits) {
        const double before = limit.beyond(from);
        const double after = limit.beyond(to);
        const bool begins = before > tolerance;
        const bool ends = after > tolerance;
        if (begins && ends)
            part.isEmpty = true;
        if (begins == ends)
            continue;
        const double crossing = std::clamp(before / (before - after), 0.0, 1.0);
        if (begins && (!part.enters || crossing > part.begin)) {
            part.begin = crossing;
            part.enters = &limit;
        } else if (ends && (!part.leaves || crossing < part.end)) {
            part.end = crossing;
            part.leaves = &limit;
        }
    }
    part.isEmpty = part.isEmpty || part.begin > part.end;
    return part;
}

/// The point of a segment on the side that cuts it.
QPointF pointAt(const QPointF &from, const QPointF &to, double position, const Limit &limit)
{
    QPointF point = from + (to - from) * position;
    (limit.isVertical ? point.rx() : point.ry()) = limit.at;
    return point;
}

bool isNear(const QPointF &one, const QPointF &other, double tolerance)
{
    return std::abs(one.x() - other.x()) <= tolerance && std::abs(one.y() - other.y()) <= tolerance;
}

/// A closed line that begins at its first vertex outside; any other line unchanged. So the line is not cut in
/// two at the vertex that happens to be its first.
QVector<QPointF> beginningOutside(QVector<QPointF> line, const Limits &limits, double tolerance)
{
    // Compared exactly: QPointF's own comparison takes places of large coordinates for one that are not.
    if (line.size() < 3 || !isNear(line.first(), line.last(), 0.0))
        return line;
    const auto outside = std::find_if(
        line.begin(), line.end(), [&](const QPointF &point) { return !isInside(point, limits, tolerance); });
    if (outside == line.end())
        return line;
    const auto offset = outside - line.begin();
    line.removeLast();
    std::rotate(line.begin(), line.begin() + offset, line.end());
    line += line.first();
    return line;
}

} // namespace

QVector<LinePiece> cutLine(const QVector<QPointF> &line, const CutSides &sides, double tolerance)
{
    const Limits limits = limitsOf(sides);
    const QVector<QPointF> points = beginningOutside(line, limits, tolerance);
    QVector<LinePiece> pieces;
    LinePiece piece;
    const auto keep = [&](CutSide last) {
        piece.last = last;
        if (piece.points.size() > 1)
            pieces += piece;
        piece = {};
    };
    if (!points.isEmpty() && isInside(points.first(), limits, tolerance))
        piece.points += points.first();
    for (int at = 1; at < points.size(); ++at) {
        const QPointF &from = points[at - 1];
        const QPointF &to = points[at];
        const Visible part = visiblePart(from, to, limits, tolerance);
        if (part.isEmpty)
            continue;
        if (part.enters) {
            const QPointF start = pointAt(from, to, part.begin, *part.enters);
            piece.first = part.enters->side;
            if (part.leaves || !isNear(start, to, tolerance))
                piece.points += start;
        }
        if (!part.leaves) {
            piece.points += to;
            continue;
        }
        const QPointF end = pointAt(from, to, part.end, *part.leaves);
        if (!isNear(piece.points.last(), end, tolerance))
            piece.points += end;
        keep(part.leaves->side);
    }
    keep(CutSide::None);
    return pieces;
}
