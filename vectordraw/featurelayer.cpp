#include "vectordraw/featurelayer.h"

#include "vectordraw/labelpainter.h"

#include <ogr_featurestyle.h>
#include <ogrsf_frmts.h>

#include <span>

namespace vectordraw
{

namespace
{

constexpr std::size_t mostStyles = 1024; // that are kept; a file may have one a feature

std::span<const Point> verticesOf(const PixelGeometry &geometry, const PixelGeometry::Part &part)
{
    return std::span(geometry.points).subspan(part.begin, part.end - part.begin);
}

std::vector<Point> lineOf(const PixelGeometry &geometry, const PixelGeometry::Part &part)
{
    const auto vertices = verticesOf(geometry, part);
    return {vertices.begin(), vertices.end()};
}

/// Hands each area of the geometry to the painter, and calls draw() for it.
template <class Draw> void forEachArea(const PixelGeometry &geometry, Painter &painter, Draw draw)
{
    bool open = false;
    for (const PixelGeometry::Part &part : geometry.parts) {
        if (part.kind != PixelGeometry::NextRing && open) {
            draw();
            open = false;
        }
        if (part.kind == PixelGeometry::FirstRing) {
            painter.beginArea();
            open = true;
        }
        if (open)
            painter.addRing(verticesOf(geometry, part));
    }
    if (open)
        draw();
}

Rect boundsOf(std::span<const Point> points)
{
    Rect bounds{points[0].x, points[0].y, points[0].x, points[0].y};
    for (const Point &point : points) {
        bounds.left = std::min(bounds.left, point.x);
        bounds.right = std::max(bounds.right, point.x);
        bounds.top = std::min(bounds.top, point.y);
        bounds.bottom = std::max(bounds.bottom, point.y);
    }
    return bounds;
}

/// Middle of a ring's bounds: where an area's symbol or label goes.
Point middleOf(std::span<const Point> ring)
{
    const Rect bounds = boundsOf(ring);
    return {(bounds.left + bounds.right) / 2.0, (bounds.top + bounds.bottom) / 2.0};
}

/// What was drawn is on the surface when the caller goes on.
struct LinesFinished
{
    Painter &painter;
    ~LinesFinished() { painter.finishLines(); }
};

/// Whether the vertices, or what symbols and labels put beside them, may lie in the picture.
bool mayBeSeen(std::span<const Point> points, const Surface &surface)
{
    const Rect picture{0.0, 0.0, static_cast<double>(surface.width()), static_cast<double>(surface.height())};
    if (picture.holds(points.front()))
        return true;
    const Rect bounds = boundsOf(points).grown(FeatureReader::reach);
    return bounds.right >= 0.0 && bounds.left <= surface.width() && bounds.bottom >= 0.0
        && bounds.top <= surface.height();
}

} // namespace

FeatureLayer::FeatureLayer(OGRLayer &layer, const View &view, Painter &painter, const DefaultStyles &defaults,
                           OGRStyleTable *styles)
    : m_reader(layer, view)
    , m_layer(layer)
    , m_painter(painter)
    , m_pointStyle(parseStyle(defaults.points).style)
    , m_lineStyle(parseStyle(defaults.lines).style)
    , m_areaStyle(parseStyle(defaults.areas).style)
    , m_styles(styles)
{ }

bool FeatureLayer::drawNext(int count)
{
    const LinesFinished finished{m_painter};
    for (int done = 0; done < count; ++done) {
        if (!m_reader.next())
            return false;
        if (!m_reader.geometry(m_geometry)) {
            ++m_skipped;
            continue;
        }
        if (!mayBeSeen(m_geometry.points, m_painter.surface()))
            continue;
        for (const Tool &tool : styleOf(*m_reader.feature()))
            draw(tool, *m_reader.feature());
        ++m_drawn;
    }
    return true;
}

const Style &FeatureLayer::styleOf(OGRFeature &feature)
{
    const char *own = feature.GetStyleString();
    if (own && *own) {
        const Style &style = readStyle(own, feature, 0);
        if (!style.empty())
            return style;
    }
    return defaultStyle();
}

const Style &FeatureLayer::readStyle(const std::string &text, OGRFeature &feature, int depth)
{
    constexpr int deepest = 8; // a style of the table may refer to another
    const auto known = m_read.find(text);
    if (known != m_read.end())
        return known->second;
    if (m_read.size() >= mostStyles)
        m_read.clear();
    StyleReading reading = parseStyle(text);
    if (!reading.reference.empty() && depth < deepest) {
        for (OGRStyleTable *table : {feature.GetStyleTable(), m_layer.GetStyleTable(), m_styles}) {
            const char *found = table ? table->Find(reading.reference.c_str()) : nullptr;
            if (found)
                return readStyle(std::string(found), feature, depth + 1);
        }
    }
    constexpr std::size_t longestKept = 1024; // bytes
    if (text.size() > longestKept) {
        m_longStyle = std::move(reading.style);
        return m_longStyle;
    }
    return m_read.emplace(text, std::move(reading.style)).first->second;
}

const Style &FeatureLayer::defaultStyle() const
{
    switch (m_geometry.parts.front().kind) {
    case PixelGeometry::Position:
        return m_pointStyle;
    case PixelGeometry::Line:
        return m_lineStyle;
    default:
        return m_areaStyle;
    }
}

void FeatureLayer::draw(const Tool &tool, OGRFeature &feature)
{
    if (const auto *pen = std::get_if<Pen>(&tool))
        drawPen(*pen);
    else if (const auto *brush = std::get_if<Brush>(&tool))
        drawBrush(*brush);
    else if (const auto *symbol = std::get_if<Symbol>(&tool))
        drawSymbol(*symbol);
    else
        drawText(std::get<LabelText>(tool), feature);
}

void FeatureLayer::drawPen(const Pen &pen)
{
    for (const PixelGeometry::Part &part : m_geometry.parts) {
        if (part.kind == PixelGeometry::Line)
            m_painter.drawLine(verticesOf(m_geometry, part), pen);
    }
    forEachArea(m_geometry, m_painter, [&] { m_painter.outlineArea(pen); });
}

void FeatureLayer::drawBrush(const Brush &brush)
{
    forEachArea(m_geometry, m_painter, [&] { m_painter.fillArea(brush); });
}

void FeatureLayer::drawSymbol(const Symbol &symbol)
{
    for (const PixelGeometry::Part &part : m_geometry.parts) {
        if (part.kind == PixelGeometry::Line)
            m_painter.drawSymbolsAlong(lineOf(m_geometry, part), symbol);
        else if (part.kind == PixelGeometry::Position)
            m_painter.drawSymbol(m_geometry.points[part.begin], symbol);
        else if (part.kind == PixelGeometry::FirstRing)
            m_painter.drawSymbol(middleOf(verticesOf(m_geometry, part)), symbol);
    }
}

void FeatureLayer::drawText(const LabelText &label, OGRFeature &feature)
{
    const std::string text = expandText(label.text, [&](std::string_view name, std::string &value) {
        const int field = feature.GetFieldIndex(std::string(name).c_str());
        if (field >= 0)
            value = feature.GetFieldAsString(field);
        return field >= 0;
    });
    m_painter.finishLines();
    for (const PixelGeometry::Part &part : m_geometry.parts) {
        if (!mayBeSeen(verticesOf(m_geometry, part), m_painter.surface()))
            continue;
        if (part.kind == PixelGeometry::FirstRing)
            drawLabel(m_painter.surface(), m_painter.resolution(), label, text,
                      {middleOf(verticesOf(m_geometry, part))});
        else if (part.kind != PixelGeometry::NextRing)
            drawLabel(m_painter.surface(), m_painter.resolution(), label, text, lineOf(m_geometry, part));
    }
}

FeatureMask::FeatureMask(OGRLayer &layer, const View &view)
    : m_surface(Surface::mask(view.width, view.height))
    , m_painter(m_surface, {})
    , m_reader(layer, view)
{
    m_painter.addCoverage();
}

bool FeatureMask::addNext(int count)
{
    if (!m_surface.error().empty())
        return false;
    Brush opaque;
    opaque.foreground = {0, 0, 0, 255};
    for (int done = 0; done < count; ++done) {
        if (!m_reader.next())
            return false;
        if (m_reader.geometry(m_geometry))
            forEachArea(m_geometry, m_painter, [&] { m_painter.fillArea(opaque); });
    }
    return true;
}

std::uint8_t FeatureMask::coverage(int column, int row) const
{
    if (!m_surface.pixels() || column < 0 || row < 0 || column >= m_surface.width()
        || row >= m_surface.height())
        return 0;
    return m_surface.pixels()[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_surface.bytesPerRow())
                              + static_cast<std::size_t>(column)];
}

const std::uint8_t *FeatureMask::pixels()
{
    m_surface.flush();
    return m_surface.pixels();
}

} // namespace vectordraw
