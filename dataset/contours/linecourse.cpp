#include "dataset/contours/linecourse.h"

#include <ogrsf_frmts.h>

#include <cmath>
#include <numbers>

LinePlace middleOf(const OGRLineString &line)
{
    double left = lengthOf(line, {1.0, 1.0}) / 2.0;
    for (int at = 0; at + 1 < line.getNumPoints(); ++at) {
        const QPointF begin(line.getX(at), line.getY(at));
        const QPointF step = QPointF(line.getX(at + 1), line.getY(at + 1)) - begin;
        const double length = std::hypot(step.x(), step.y());
        if (length > 0.0 && left <= length)
            return {begin + step * (left / length), std::atan2(step.y(), step.x()) * 180.0 / std::numbers::pi};
        left -= length;
    }
    return {line.IsEmpty() ? QPointF() : QPointF(line.getX(0), line.getY(0)), 0.0};
}

double lengthOf(const OGRLineString &line, const QSizeF &scale)
{
    double length = 0.0;
    for (int at = 0; at + 1 < line.getNumPoints(); ++at)
        length += std::hypot((line.getX(at + 1) - line.getX(at)) * scale.width(),
                             (line.getY(at + 1) - line.getY(at)) * scale.height());
    return length;
}
