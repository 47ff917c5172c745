#pragma once

#include "vectordraw/geometry.h"

#include <vector>

namespace vectordraw
{

/// Where a text stands on its line.
struct TextPlace
{
    Point middle;       ///< of the text
    double angle = 0.0; ///< direction of the line there, in radians, clockwise on the picture
};

/// The places of a text of that width that stands on its line, like the height of a contour line: one for each
/// piece of some widths of the text, where the line is straightest near the middle of the piece. A short line
/// has one place, in its middle. Only places of which something may be seen in the rectangle are returned.
std::vector<TextPlace> placesOnLine(const std::vector<Point> &line, double width, const Rect &seen);

} // namespace vectordraw
