#pragma once

#include "vectordraw/geometry.h"
#include "vectordraw/stylestring.h"
#include "vectordraw/surface.h"

#include <cstdint>
#include <string>

namespace vectordraw
{

/// Draws a text with a label's font, colours and anchor, shaped by Pango. line: where it stands, in pixels; a
/// point is a line of one vertex. text is UTF-8; what is not is drawn as replacement characters.
void drawLabel(Surface &surface, const Resolution &resolution, const LabelText &label, const std::string &text,
               const std::vector<Point> &line);

/// Adds the outline of a font's character to the surface's path, centred on the origin, of that height in
/// pixels. fonts: families, separated by commas; the first that is installed is taken. False, and no path,
/// where none is installed or it has no such character.
bool glyphPath(Surface &surface, const std::string &fonts, std::uint32_t codePoint, double height);

} // namespace vectordraw
