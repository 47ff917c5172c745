#include "vectordraw/featurelayer.h"

#include "vectordraw/labelpainter.h"

#include <ogr_featurestyle.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <span>

namespace vectordraw
{

namespace
{

// The drawing time of each of these, as the number of vertices that take as long.
constexpr long long workOfFeature = 20;
constexpr long long workOfSymbol = 100;
constexpr long long workOfLabel = 2000;
constexpr long long workOfLetter = 1000; // that stands alone

constexpr std::size_t mostStyles = 1024; // that are kept; a file may have one a feature

std::vector<Point> lineOf(const PixelGeometry &geometry, const PixelGeometry::Part &part)
{
    const auto vertices = geometry.verticesOf(part);
    return {vertices.begin(), vertices.end()};
}

/// Where the symbol or the label goes of the area whose first ring is the part of that index.
Point insideOf(const PixelGeometry &geometry, std::size_t firstRing)
{
    return pointInside(geometry.areaAt(firstRing));
}

/// Hands each area of the geometry to the painter, and calls draw() for it.
template <class Draw> void forEachArea(const PixelGeometry &geometry, Painter &painter, Draw draw)
{
    for (std::size_t at = 0; at < geometry.parts.size(); ++at) {
        if (geometry.parts[at].kind != PixelGeometry::FirstRing)
            continue;
        painter.beginArea();
        for (const auto &ring : geometry.areaAt(at))
            painter.addRing(ring);
        draw();
    }
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

FieldLookup fieldsOf(OGRFeature &feature)
{
    return [&feature](std::string_view name, std::string &value) {
        const int field = feature.GetFieldIndex(std::string(name).c_str());
        if (field >= 0)
            value = feature.GetFieldAsString(field);
        return field >= 0;
    };
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
                           OGRStyleTable *styles, FeatureReader::Order order)
    : m_reader(layer, view, order)
    , m_layer(layer)
    , m_painter(painter)
    , m_pointStyle(parseStyle(defaults.points).style)
    , m_lineStyle(parseStyle(defaults.lines).style)
    , m_areaStyle(parseStyle(defaults.areas).style)
    , m_styles(styles)
{ }

bool FeatureLayer::drawNext(long long vertices)
{
    const LinesFinished finished{m_painter};
    m_work = 0;
    do {
        if (!m_reader.next())
            return false;
        m_work += workOfFeature;
        if (!m_reader.geometry(m_geometry)) {
            ++m_skipped;
            continue;
        }
        m_work += static_cast<long long>(m_geometry.points.size());
        if (!mayBeSeen(m_geometry.points, m_painter.surface()))
            continue;
        drawFeature();
        ++m_drawn;
    } while (m_work < vertices);
    return true;
}

void FeatureLayer::drawFeature()
{
    OGRFeature &feature = *m_reader.feature();
    const Style &style = styleOf(feature);
    const bool hasSymbol = std::any_of(style.begin(), style.end(),
                                       [](const Tool &tool) { return std::holds_alternative<Symbol>(tool); });
    for (const Tool &tool : style) {
        if (const auto *pen = std::get_if<Pen>(&tool))
            drawPen(*pen, !hasSymbol);
        else if (const auto *brush = std::get_if<Brush>(&tool))
            drawBrush(*brush);
        else if (const auto *symbol = std::get_if<Symbol>(&tool))
            drawSymbol(*symbol);
        else
            drawText(std::get<LabelText>(tool), feature);
    }
}

const Style &FeatureLayer::styleOf(OGRFeature &feature)
{
    const char *own = feature.GetStyleString();
    if (own && *own) {
        const Style &style = readStyle(own, feature, 0);
        if (!drawsNothing(style))
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
    if (reading.usesFields)
        reading = parseStyle(text, fieldsOf(feature));
    if (text.size() > longestKept || reading.usesFields) {
        m_ownStyle = std::move(reading.style);
        return m_ownStyle;
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

/// A style of nothing but brushes shows no point and no line.
bool FeatureLayer::drawsNothing(const Style &style) const
{
    const bool brushesOnly = std::all_of(style.begin(), style.end(),
                                         [](const Tool &tool) { return std::holds_alternative<Brush>(tool); });
    const bool area =
        std::any_of(m_geometry.parts.begin(), m_geometry.parts.end(),
                    [](const PixelGeometry::Part &part) { return part.kind == PixelGeometry::FirstRing; });
    return style.empty() || (brushesOnly && !area);
}

/// dots: the pen marks points, too, as there is no symbol for them.
void FeatureLayer::drawPen(const Pen &pen, bool dots)
{
    for (const PixelGeometry::Part &part : m_geometry.parts) {
        if (part.kind == PixelGeometry::Line)
            m_painter.drawLine(m_geometry.verticesOf(part), pen);
        else if (part.kind == PixelGeometry::Position && dots)
            m_painter.drawDot(m_geometry.points[part.begin], pen);
    }
    forEachArea(m_geometry, m_painter, [&] { m_painter.outlineArea(pen); });
}

void FeatureLayer::drawBrush(const Brush &brush)
{
    forEachArea(m_geometry, m_painter, [&] { m_painter.fillArea(brush); });
}

void FeatureLayer::drawSymbol(const Symbol &symbol)
{
    for (std::size_t at = 0; at < m_geometry.parts.size(); ++at) {
        const PixelGeometry::Part &part = m_geometry.parts[at];
        if (part.kind == PixelGeometry::NextRing)
            continue;
        m_work += workOfSymbol;
        if (part.kind == PixelGeometry::Line)
            m_work += workOfSymbol * m_painter.drawSymbolsAlong(lineOf(m_geometry, part), symbol);
        else if (part.kind == PixelGeometry::Position)
            m_painter.drawSymbol(m_geometry.points[part.begin], symbol);
        else
            m_painter.drawSymbol(insideOf(m_geometry, at), symbol);
    }
}

void FeatureLayer::drawText(const LabelText &label, OGRFeature &feature)
{
    const std::string text = expandText(label.text, fieldsOf(feature));
    m_painter.finishLines();
    for (std::size_t at = 0; at < m_geometry.parts.size(); ++at) {
        const PixelGeometry::Part &part = m_geometry.parts[at];
        if (part.kind == PixelGeometry::NextRing
            || !mayBeSeen(m_geometry.verticesOf(part), m_painter.surface()))
            continue;
        const std::vector<Point> line = part.kind == PixelGeometry::FirstRing
            ? std::vector{insideOf(m_geometry, at)}
            : lineOf(m_geometry, part);
        m_work += label.placement == Placement::Stretched && line.size() > 1
            ? workOfLetter * static_cast<long long>(text.size())
            : workOfLabel;
        drawLabel(m_painter.surface(), m_painter.resolution(), label, text, line);
    }
}

} // namespace vectordraw
