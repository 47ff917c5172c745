#include "vectordraw/painter.h"

#include "vectordraw/labelpainter.h"

#include <cairo.h>

#include <limits>
#include <numbers>
#include <numeric>

namespace vectordraw
{

namespace
{

constexpr double nearestVertices = 1.0; // in pixels; what is nearer cannot be told apart
constexpr double degrees = std::numbers::pi / 180.0;

/// Adds solid lines to the surface's path, and strokes it whenever it has become long: one stroke of many short
/// lines costs less than many strokes, and a line of any length takes no more room than one of some hundred
/// vertices.
class SolidSink
{
public:
    SolidSink(cairo_t *cairo, int &vertices)
        : m_cairo(cairo)
        , m_vertices(vertices)
    { }

    void moveTo(const Point &point) { cairo_move_to(m_cairo, point.x, point.y); }

    void lineTo(const Point &point)
    {
        constexpr int longestPath = 512;
        cairo_line_to(m_cairo, point.x, point.y);
        if (++m_vertices >= longestPath) {
            cairo_stroke(m_cairo);
            cairo_move_to(m_cairo, point.x, point.y);
            m_vertices = 0;
        }
    }

    void skipped(double) { }

private:
    cairo_t *m_cairo;
    int &m_vertices;
};

/// Strokes a line in dashes, in portions, too; the pattern goes on from portion to portion, and behind what is
/// left out.
class DashSink
{
public:
    DashSink(cairo_t *cairo, const std::vector<double> &dashes)
        : m_cairo(cairo)
        , m_dashes(dashes)
    { }

    void moveTo(const Point &point)
    {
        stroke();
        cairo_move_to(m_cairo, point.x, point.y);
        m_last = point;
    }

    void lineTo(const Point &point)
    {
        constexpr int longestPath = 4096;
        cairo_line_to(m_cairo, point.x, point.y);
        m_drawn += distance(m_last, point);
        m_last = point;
        if (++m_vertices >= longestPath) {
            stroke();
            cairo_move_to(m_cairo, point.x, point.y);
        }
    }

    void skipped(double length)
    {
        stroke();
        m_offset += length;
    }

    void stroke()
    {
        cairo_set_dash(m_cairo, m_dashes.data(), static_cast<int>(m_dashes.size()), m_offset);
        cairo_stroke(m_cairo);
        m_offset += m_drawn;
        m_drawn = 0.0;
        m_vertices = 0;
    }

private:
    cairo_t *m_cairo;
    const std::vector<double> &m_dashes;
    Point m_last;
    double m_offset = 0.0;
    double m_drawn = 0.0;
    int m_vertices = 0;
};

template <class Sink> void reduce(std::span<const Point> line, const Rect &rect, Sink &sink)
{
    LineReducer reducer(rect, nearestVertices, sink);
    for (const Point &point : line)
        reducer.add(point);
    reducer.finish();
}

/// Collects what is left of a line or a ring.
struct CollectingSink
{
    std::vector<Point> &points;
    void moveTo(const Point &point) { points.push_back(point); }
    void lineTo(const Point &point) { points.push_back(point); }
    void skipped(double) { }
};

} // namespace

Painter::Painter(Surface &surface, const Resolution &resolution)
    : m_surface(surface)
    , m_resolution(resolution)
    , m_hatches(surface, resolution)
    , m_visible{0.0, 0.0, static_cast<double>(surface.width()), static_cast<double>(surface.height())}
{
    // Half the time of the default, and no eye sees the difference on thin lines.
    cairo_set_antialias(m_surface.context(), CAIRO_ANTIALIAS_FAST);
    cairo_set_fill_rule(m_surface.context(), CAIRO_FILL_RULE_EVEN_ODD);
    cairo_set_tolerance(m_surface.context(), 0.25);
}

Painter::~Painter()
{
    finishLines();
}

void Painter::fillBackground(const Color &color)
{
    finishLines();
    useColor(m_surface.context(), color);
    cairo_paint(m_surface.context());
}

void Painter::usePen(const Pen &pen, double width)
{
    static constexpr cairo_line_cap_t caps[] = {CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_ROUND,
                                                CAIRO_LINE_CAP_SQUARE};
    static constexpr cairo_line_join_t joins[] = {CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND,
                                                  CAIRO_LINE_JOIN_BEVEL};
    cairo_t *cairo = m_surface.context();
    useColor(cairo, pen.color);
    cairo_set_line_width(cairo, width);
    cairo_set_line_join(cairo, joins[static_cast<int>(pen.join)]);

    m_dashes.clear();
    for (const Length &dash : pen.pattern)
        m_dashes.push_back(pen.patternOfWidths ? dash.value * std::max(1.0, width)
                                               : pixels(dash, m_resolution));
    // Dashes too small to be seen would take for ever: such a line is solid.
    if (std::accumulate(m_dashes.begin(), m_dashes.end(), 0.0) < 1.0)
        m_dashes.clear();
    // Round and square caps lengthen every dash by the pen's width. Where that would close a gap, dashes end as
    // the pattern has them.
    const std::size_t stride = m_dashes.size() % 2 == 0 ? 2 : 1; // of an odd pattern each number is a gap once
    double narrowestGap = std::numeric_limits<double>::infinity();
    for (std::size_t at = stride - 1; at < m_dashes.size(); at += stride)
        narrowestGap = std::min(narrowestGap, m_dashes[at]);
    cairo_set_line_cap(cairo, caps[static_cast<int>(narrowestGap > 2.0 * width ? pen.cap : Cap::Butt)]);
    cairo_set_dash(cairo, m_dashes.data(), static_cast<int>(m_dashes.size()), 0.0);
}

void Painter::drawLine(std::span<const Point> line, const Pen &pen)
{
    if (line.empty() || !pen.visible || pen.color.alpha == 0)
        return;
    constexpr double thinnest = 1.0; // hairlines: a thinner line would fade away
    const double width = std::max(pixels(pen.width, m_resolution), thinnest);
    const double shift = pixels(pen.offset, m_resolution);
    if (m_pendingVertices == 0 || pen != m_pendingPen) {
        finishLines();
        usePen(pen, width);
        m_pendingPen = pen;
    }
    const Rect rect = m_visible.grown(2.0 * width + std::abs(shift) + 2.0);
    if (shift == 0.0) {
        stroke(line, rect);
        return;
    }
    constexpr double everywhere = 1e7; // a corner outside of the picture may have its shifted one inside
    std::vector<Point> kept;
    CollectingSink sink{kept};
    reduce(line, m_visible.grown(everywhere), sink);
    stroke(shiftedLine(kept, shift), rect);
}

void Painter::stroke(std::span<const Point> line, const Rect &rect)
{
    if (!m_dashes.empty()) {
        DashSink sink(m_surface.context(), m_dashes);
        reduce(line, rect, sink);
        sink.stroke();
        return;
    }
    SolidSink sink(m_surface.context(), m_pendingVertices);
    reduce(line, rect, sink);
    // Where translucent lines of one stroke cross they would not darken.
    if (m_pendingPen.color.alpha < 255)
        finishLines();
}

void Painter::finishLines()
{
    cairo_stroke(m_surface.context());
    m_pendingVertices = 0;
}

void Painter::drawDot(const Point &point, const Pen &pen)
{
    constexpr double smallest = 3.0; // pixels
    constexpr double largest = 1e5;
    const double radius = std::clamp(pixels(pen.width, m_resolution), smallest, largest) / 2.0;
    if (!pen.visible || pen.color.alpha == 0 || !m_visible.grown(radius).holds(point))
        return;
    finishLines();
    cairo_t *cairo = m_surface.context();
    cairo_arc(cairo, point.x, point.y, radius, 0.0, 2.0 * std::numbers::pi);
    useColor(cairo, pen.color);
    cairo_fill(cairo);
}

void Painter::beginArea()
{
    m_ringCount = 0;
}

void Painter::addRing(std::span<const Point> ring)
{
    if (m_ringCount == m_rings.size())
        m_rings.emplace_back();
    std::vector<Point> &kept = m_rings[m_ringCount++];
    kept.clear();
    constexpr double nearestCorners = 0.25; // in pixels: nearer ones change no cover that could be seen
    for (const Point &point : ring) {
        if (kept.empty() || distance(kept.back(), point) >= nearestCorners)
            kept.push_back(point);
    }
    constexpr std::size_t fewest = 4; // of an area and its closing vertex; a tiny one keeps what it has
    if (kept.size() < fewest)
        kept.assign(ring.begin(), ring.end());
}

void Painter::fillArea(const Brush &brush)
{
    if (brush.hatch == Hatch::None)
        return;
    finishLines();
    cairo_t *cairo = m_surface.context();
    for (std::size_t at = 0; at < m_ringCount; ++at) {
        m_clipped = m_rings[at];
        clipRing(m_clipped, m_visible.grown(2.0), m_scratch);
        cairo_new_sub_path(cairo); // else a line would come from the ring before
        for (const Point &point : m_clipped)
            cairo_line_to(cairo, point.x, point.y);
        cairo_close_path(cairo);
    }
    if (brush.background.alpha > 0 && brush.hatch != Hatch::Solid) {
        useColor(cairo, brush.background);
        cairo_fill_preserve(cairo);
    }
    useBrush(brush);
    cairo_fill(cairo);
}

void Painter::useBrush(const Brush &brush)
{
    cairo_t *cairo = m_surface.context();
    if (brush.hatch == Hatch::Solid) {
        useColor(cairo, brush.foreground);
        return;
    }
    cairo_set_source(cairo, m_hatches.pattern(brush));
}

void Painter::outlineArea(const Pen &pen)
{
    for (std::size_t at = 0; at < m_ringCount; ++at) {
        std::vector<Point> ring = m_rings[at];
        if (!ring.empty() && ring.front() != ring.back())
            ring.push_back(ring.front());
        // Its first segment again, so that the corner where it closes has a join; dashes would show it.
        if (ring.size() > 2 && pen.pattern.empty())
            ring.push_back(ring[1]);
        drawLine(ring, pen);
    }
}

void Painter::shapePath(const Symbol &symbol, double radius)
{
    cairo_t *cairo = m_surface.context();
    const auto polygon = [&](int corners, double inner) {
        for (int at = 0; at < corners; ++at) {
            const double angle = 2.0 * std::numbers::pi * at / corners;
            const double reach = at % 2 == 1 ? inner : radius;
            cairo_line_to(cairo, reach * std::sin(angle), -reach * std::cos(angle));
        }
        cairo_close_path(cairo);
    };
    const auto stroke = [&](double x, double y) {
        cairo_move_to(cairo, -x, -y);
        cairo_line_to(cairo, x, y);
    };
    constexpr double diagonal = std::numbers::sqrt2 / 2.0;
    constexpr double starInner = 0.382; // of a five-pointed star's radius
    switch (symbol.shape) {
    case Shape::Cross:
        stroke(radius, 0.0);
        stroke(0.0, radius);
        break;
    case Shape::DiagonalCross:
        stroke(radius * diagonal, radius * diagonal);
        stroke(radius * diagonal, -radius * diagonal);
        break;
    case Shape::Circle:
        cairo_new_sub_path(cairo);
        cairo_arc(cairo, 0.0, 0.0, radius, 0.0, 2.0 * std::numbers::pi);
        cairo_close_path(cairo);
        break;
    case Shape::Square:
        cairo_rectangle(cairo, -radius, -radius, 2.0 * radius, 2.0 * radius);
        break;
    case Shape::Triangle:
        polygon(3, radius);
        break;
    case Shape::Star:
        polygon(10, radius * starInner);
        break;
    case Shape::Bar:
        stroke(0.0, radius);
        break;
    }
}

void Painter::drawSymbol(const Point &point, const Symbol &symbol, double turned)
{
    constexpr double smallest = 0.5;
    constexpr double largest = 1e5;
    const double radius = std::clamp(pixels(symbol.size, m_resolution) / 2.0, smallest, largest);
    const Point at{point.x + pixels(symbol.offsetX, m_resolution),
                   point.y - pixels(symbol.offsetY, m_resolution)};
    if (!m_visible.grown(2.0 * radius).holds(at))
        return;
    finishLines();
    cairo_t *cairo = m_surface.context();
    cairo_save(cairo);
    cairo_translate(cairo, at.x, at.y);
    cairo_rotate(cairo, turned - symbol.angle * degrees);
    cairo_set_dash(cairo, nullptr, 0, 0.0);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_MITER);
    cairo_new_path(cairo);
    const bool glyph = symbol.glyph != 0 && glyphPath(m_surface, symbol.font, symbol.glyph, 2.0 * radius);
    if (!glyph)
        shapePath(symbol, radius);
    const bool filled = glyph || symbol.filled;
    const double line = std::max(1.0, radius / 5.0);
    if (symbol.outline.alpha > 0) { // under the symbol's own colour, around it
        useColor(cairo, symbol.outline);
        cairo_set_line_width(cairo, filled ? line : 2.0 * line + 1.0);
        cairo_stroke_preserve(cairo);
    }
    useColor(cairo, symbol.color);
    cairo_set_line_width(cairo, line);
    if (filled)
        cairo_fill(cairo);
    else
        cairo_stroke(cairo);
    cairo_restore(cairo);
}

long long Painter::drawSymbolsAlong(const std::vector<Point> &line, const Symbol &symbol)
{
    const double shift = pixels(symbol.perpendicular, m_resolution);
    const double step = pixels(symbol.step, m_resolution);
    const double initial = std::max(0.0, pixels(symbol.initialOffset, m_resolution));
    const auto beside = [shift](const Point &point, double angle) {
        return Point{point.x - shift * std::sin(angle), point.y + shift * std::cos(angle)};
    };
    if (line.size() < 2 || step < 1.0) {
        const Place place = placeAt(line, initial);
        drawSymbol(beside(place.point, place.angle), symbol);
        return 1;
    }
    long long drawn = 0;
    const double reach = pixels(symbol.size, m_resolution) + std::abs(shift)
        + std::abs(pixels(symbol.offsetX, m_resolution)) + std::abs(pixels(symbol.offsetY, m_resolution));
    const Rect rect = m_visible.grown(reach);
    double next = initial; // from the segment's start
    for (std::size_t at = 1; at < line.size(); ++at) {
        const Point &from = line[at - 1];
        const Point &to = line[at];
        const double length = distance(from, to);
        if (const auto part = clippedSegment(from, to, rect); part && length > 0.0) {
            // Only the symbols on the part that may be seen, however long the segment is.
            const double begin = distance(from, part->first);
            const double end = std::min(length, distance(from, part->second) + step);
            const double angle = std::atan2(to.y - from.y, to.x - from.x);
            const double first = std::max(0.0, std::floor((begin - next) / step));
            const auto count = static_cast<int>(std::max(0.0, std::floor((end - next) / step) - first + 1.0));
            for (int index = 0; index < count; ++index) {
                const double share = (next + (first + index) * step) / length;
                drawSymbol(beside({from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)}, angle),
                           symbol, angle);
            }
            drawn += count;
        }
        const double passed = next > length ? 0.0 : std::floor((length - next) / step) + 1.0;
        next += passed * step - length;
    }
    return drawn;
}

} // namespace vectordraw
