#pragma once

#include <QPointF>
#include <QSizeF>

class OGRLineString;

/// A place on a line, in the line's coordinates.
struct LinePlace
{
    QPointF point;
    double angle = 0.0; ///< direction of the line there, in degrees counter-clockwise from the x axis
};

/// The middle of a line's length; a line without length has its first vertex as the middle.
LinePlace middleOf(const OGRLineString &line);

/// Length of a line; `scale`: what one unit of x and one unit of y are long.
double lengthOf(const OGRLineString &line, const QSizeF &scale);
