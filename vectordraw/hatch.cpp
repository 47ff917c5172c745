#include "vectordraw/hatch.h"

#include "vectordraw/geometry.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vectordraw
{

namespace
{

constexpr double degrees = std::numbers::pi / 180.0;

/// Parallel lines at equal distances: all points where x * across + y * down is `phase` more than a whole
/// number.
struct Lines
{
    double across; ///< lines a pixel to the right
    double down;   ///< lines a pixel downwards
    double phase;
};

/// The lines of a hatch whose periods have that width and height, turned by the brush's angle.
std::vector<Lines> linesOf(const Brush &brush, double width, double height)
{
    std::vector<Lines> lines;
    if (brush.hatch == Hatch::Horizontal || brush.hatch == Hatch::Cross)
        lines.push_back({0.0, 1.0 / height, 0.5});
    if (brush.hatch == Hatch::Vertical || brush.hatch == Hatch::Cross)
        lines.push_back({1.0 / width, 0.0, 0.5});
    if (brush.hatch == Hatch::ForwardDiagonal || brush.hatch == Hatch::DiagonalCross)
        lines.push_back({1.0 / width, -1.0 / height, 0.0});
    if (brush.hatch == Hatch::BackwardDiagonal || brush.hatch == Hatch::DiagonalCross)
        lines.push_back({1.0 / width, 1.0 / height, 0.0});
    const double sine = std::sin(brush.angle * degrees);
    const double cosine = std::cos(brush.angle * degrees);
    for (Lines &family : lines)
        family = {family.across * cosine + family.down * sine, family.down * cosine - family.across * sine,
                  family.phase};
    return lines;
}

/// The whole number of pixels on which all of the lines come nearest to whole periods.
int tileSide(const std::vector<Lines> &lines, double Lines::*direction)
{
    constexpr int shortest = 64;
    constexpr int longest = 256;
    constexpr double goodEnough = 0.01; // of a period
    int best = shortest;
    double least = 1.0;
    for (int side = shortest; side <= longest && least > goodEnough; ++side) {
        double worst = 0.0;
        for (const Lines &family : lines) {
            const double periods = side * (family.*direction);
            worst = std::max(worst, std::abs(periods - std::round(periods)));
        }
        if (worst < least) {
            least = worst;
            best = side;
        }
    }
    return best;
}

/// Adds the lines to the path, as far as they meet the rectangle from the origin to that corner.
void linesPath(cairo_t *cairo, const Lines &lines, double right, double bottom)
{
    const double squared = lines.across * lines.across + lines.down * lines.down;
    const double half = (std::abs(lines.across * right) + std::abs(lines.down * bottom)) / 2.0;
    const double middle = (lines.across * right + lines.down * bottom) / 2.0;
    const double reach = (right + bottom) / std::sqrt(squared); // along a line, in its direction's units
    const double first = std::floor(middle - half) - 1.0;
    const int count = static_cast<int>(std::ceil(2.0 * half)) + 4;
    for (int line = 0; line < count; ++line) {
        // From the rectangle's middle to the line, and along it both ways.
        const double away = (first + line + lines.phase - middle) / squared;
        const Point at{right / 2.0 + away * lines.across, bottom / 2.0 + away * lines.down};
        cairo_move_to(cairo, at.x - reach * lines.down, at.y + reach * lines.across);
        cairo_line_to(cairo, at.x + reach * lines.down, at.y - reach * lines.across);
    }
}

} // namespace

void HatchPatterns::Release::operator()(_cairo_pattern *pattern) const
{
    cairo_pattern_destroy(pattern);
}

_cairo_pattern *HatchPatterns::pattern(const Brush &brush)
{
    const auto known = std::find_if(m_patterns.begin(), m_patterns.end(),
                                    [&](const auto &pattern) { return pattern.first == brush; });
    return known != m_patterns.end() ? known->second.get() : make(brush);
}

_cairo_pattern *HatchPatterns::make(const Brush &brush)
{
    constexpr double closest = 2.0; // lines nearer than that are a grey area
    constexpr double farthest = 4096.0;
    const double size = pixels(brush.size, m_resolution);
    const double width = std::clamp(size + pixels(brush.spacingX, m_resolution), closest, farthest);
    const double height = std::clamp(size + pixels(brush.spacingY, m_resolution), closest, farthest);
    std::vector<Lines> lines = linesOf(brush, width, height);
    // Cairo repeats a tile of whole pixels as fast as it fills with a colour, but a turned or scaled tile many
    // times slower. So the tile is not turned: the lines in it are, by an angle and at distances that are so
    // little off that they meet the lines of the next tile. Lines far apart are few, and drawn one by one.
    constexpr double farthestInTile = 64.0;
    const bool repeated = std::max(width, height) <= farthestInTile;
    double right = m_surface.width();
    double bottom = m_surface.height();
    if (repeated) {
        right = tileSide(lines, &Lines::across);
        bottom = tileSide(lines, &Lines::down);
        for (Lines &family : lines)
            family = {std::round(right * family.across) / right, std::round(bottom * family.down) / bottom,
                      family.phase};
    }
    const cairo_rectangle_t extent{0.0, 0.0, right, bottom};
    cairo_surface_t *tile = repeated && m_surface.pixels()
        ? cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(right), static_cast<int>(bottom))
        : cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extent);
    cairo_t *cairo = cairo_create(tile);
    useColor(cairo, brush.foreground);
    cairo_set_line_width(cairo, std::max(1.0, size / 10.0));
    for (const Lines &family : lines)
        linesPath(cairo, family, right, bottom);
    cairo_stroke(cairo);
    cairo_destroy(cairo);

    constexpr std::size_t mostPatterns = 32;
    if (m_patterns.size() >= mostPatterns)
        m_patterns.clear();
    m_patterns.emplace_back(brush, cairo_pattern_create_for_surface(tile));
    cairo_surface_destroy(tile);
    cairo_pattern_t *pattern = m_patterns.back().second.get();
    cairo_pattern_set_extend(pattern, repeated ? CAIRO_EXTEND_REPEAT : CAIRO_EXTEND_NONE);
    return pattern;
}

} // namespace vectordraw
