#include "colortable/legend/legend.h"

#include "colortable/roundticks.h"
#include "colortable/toolcolors.h"
#include "messages/shownnumber.h"

#include <QLocale>
#include <QStringList>
#include <QVector>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

// Lengths in points.
constexpr double margin = 8.0;
constexpr double stripWidth = 26.0;
constexpr double stripHeight = 220.0;
constexpr double boxHeight = 18.0;
constexpr double textSize = 11.0;
constexpr double lineHeight = 16.0;
constexpr double textGap = 8.0;
constexpr double pixelsPerPoint = 2.0;

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

bool hasRange(const Legend &legend)
{
    return legend.maximum > legend.minimum;
}

bool isPercent(const Legend &legend)
{
    const QList<QuvoColorDef> entries = elevationEntries(legend.entries);
    return !entries.isEmpty() && entries.first().percent && !hasRange(legend);
}

/// A segment of the ramp.
struct Segment
{
    double from = 0.0;
    double to = 0.0;
};

/// The values that the legend shows: those of the table, as far as the DEM has them.
Segment shownRange(const Legend &legend)
{
    const QList<QuvoColorDef> entries = elevationEntries(legend.entries);
    if (entries.isEmpty())
        return {};
    const Segment all{legendValue(legend, entries.first()), legendValue(legend, entries.last())};
    if (!hasRange(legend))
        return all;
    const Segment shown{std::max(all.from, legend.minimum), std::min(all.to, legend.maximum)};
    return shown.from < shown.to ? shown : all;
}

QString valueText(const Legend &legend, double value)
{
    constexpr double wide = 100.0; // over such a range decimals say nothing
    const Segment range = shownRange(legend);
    const bool isWhole = range.to - range.from >= wide || std::abs(value - std::round(value)) < 1e-6;
    return shownNumber(value, 'f', isWhole ? 0 : 1) + (isPercent(legend) ? QStringLiteral(" %") : QString());
}

/// The segments in the range that is shown. One of no more than the step of values in files is an edge: it
/// belongs to the segment below.
QVector<Segment> segmentsOf(const Legend &legend)
{
    constexpr double edge = 0.1 + 1e-6;
    QVector<Segment> segments;
    const Segment range = shownRange(legend);
    const QList<QuvoColorDef> entries = elevationEntries(legend.entries);
    for (int at = 1; at < entries.size(); ++at) {
        const Segment segment{std::max(range.from, legendValue(legend, entries.at(at - 1))),
                              std::min(range.to, legendValue(legend, entries.at(at)))};
        if (segment.to - segment.from > edge)
            segments += segment;
        else if (segment.to > segment.from && !segments.isEmpty())
            segments.last().to = segment.to;
    }
    return segments;
}

/// Draws the legend; before that it measures itself on a surface of any size.
class Drawing
{
public:
    Drawing(cairo_t *context, const Legend &legend)
        : m_context(context)
        , m_legend(legend)
        , m_colors(legend.entries, hasRange(legend) ? legend.minimum : 0.0, // a percentage stands for itself
                   hasRange(legend) ? legend.maximum : 100.0)
        , m_texts(legendTexts(legend))
    {
        m_first = shownRange(legend).from;
        m_last = shownRange(legend).to;
        cairo_select_font_face(m_context, "sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(m_context, textSize);
    }

    double width() const
    {
        double widest = widthOf(m_legend.noDataText);
        for (const QString &text : m_texts)
            widest = std::max(widest, widthOf(text));
        return std::ceil(2 * margin + std::max(widthOf(m_legend.title), stripWidth + textGap + widest));
    }

    double height() const
    {
        return std::ceil(top() + colorsHeight() + noDataHeight() + margin + textSize / 2.0);
    }

    void draw()
    {
        cairo_set_source_rgb(m_context, 0.0, 0.0, 0.0);
        if (!m_legend.title.isEmpty())
            drawText(margin, margin + textSize, m_legend.title);
        if (m_legend.classes)
            drawBoxes();
        else
            drawStrip();
        if (const QuvoColorDef *noData = noDataEntry(m_legend.entries)) {
            const double y = top() + colorsHeight() + lineHeight / 2.0;
            drawBox(y, boxHeight, noData->color.rgba());
            drawText(textLeft(), y + boxHeight / 2.0 + textSize / 3.0, m_legend.noDataText);
        }
    }

private:
    double widthOf(const QString &text) const
    {
        cairo_text_extents_t extents;
        cairo_text_extents(m_context, text.toUtf8().constData(), &extents);
        return extents.x_advance;
    }

    double top() const { return margin + textSize / 2.0 + (m_legend.title.isEmpty() ? 0.0 : lineHeight + 4.0); }
    double textLeft() const { return margin + stripWidth + textGap; }
    double colorsHeight() const
    {
        return m_legend.classes ? boxHeight * std::max(1, static_cast<int>(segmentsOf(m_legend).size()))
                                : stripHeight;
    }
    double noDataHeight() const { return noDataEntry(m_legend.entries) ? boxHeight + lineHeight / 2.0 : 0.0; }

    void drawText(double x, double y, const QString &text)
    {
        cairo_set_source_rgb(m_context, 0.0, 0.0, 0.0);
        cairo_move_to(m_context, x, y);
        cairo_show_text(m_context, text.toUtf8().constData());
    }

    void setColor(QRgb color)
    {
        cairo_set_source_rgba(m_context, qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0,
                              qAlpha(color) / 255.0);
    }

    void frame(double y, double height)
    {
        cairo_set_source_rgb(m_context, 0.3, 0.3, 0.3);
        cairo_set_line_width(m_context, 0.6);
        cairo_rectangle(m_context, margin, y, stripWidth, height);
        cairo_stroke(m_context);
    }

    void drawBox(double y, double height, QRgb color)
    {
        setColor(color);
        cairo_rectangle(m_context, margin, y, stripWidth, height);
        cairo_fill(m_context);
        frame(y, height);
    }

    /// The strip in lines of half a point, each in the tool's colour of its middle.
    void drawStrip()
    {
        constexpr double line = 0.5;
        const auto valueAt = [&](double place) { return m_last - place / stripHeight * (m_last - m_first); };
        cairo_set_antialias(m_context, CAIRO_ANTIALIAS_NONE);
        for (int number = 0; number * line < stripHeight; ++number) {
            const double place = number * line;
            setColor(m_colors.color(valueAt(place + line / 2.0)));
            cairo_rectangle(m_context, margin, top() + place, stripWidth, line);
            cairo_fill(m_context);
        }
        cairo_set_antialias(m_context, CAIRO_ANTIALIAS_DEFAULT);
        frame(top(), stripHeight);
        const QVector<double> ticks = ticksFromTop();
        for (int at = 0; at < ticks.size(); ++at) {
            const double share = m_last > m_first ? (m_last - ticks.at(at)) / (m_last - m_first) : 0.0;
            const double y = top() + share * stripHeight;
            cairo_move_to(m_context, margin + stripWidth, y);
            cairo_line_to(m_context, margin + stripWidth + 4.0, y);
            cairo_set_source_rgb(m_context, 0.3, 0.3, 0.3);
            cairo_stroke(m_context);
            drawText(textLeft(), y + textSize / 3.0, m_texts.at(at));
        }
    }

    /// Boxes in the colours of the middles of the segments, the highest at the top.
    void drawBoxes()
    {
        QVector<Segment> segments = segmentsOf(m_legend);
        std::reverse(segments.begin(), segments.end());
        if (segments.isEmpty())
            segments += Segment{m_first, m_first};
        for (int at = 0; at < segments.size(); ++at) {
            const double y = top() + at * boxHeight;
            drawBox(y, boxHeight, m_colors.color((segments.at(at).from + segments.at(at).to) / 2.0));
            drawText(textLeft(), y + boxHeight / 2.0 + textSize / 3.0, m_texts.value(at));
        }
    }

    QVector<double> ticksFromTop() const
    {
        constexpr int most = 10;
        QVector<double> ticks = roundTicks(m_first, m_last, most);
        if (ticks.isEmpty())
            ticks += m_first;
        std::reverse(ticks.begin(), ticks.end());
        return ticks;
    }

    cairo_t *m_context;
    const Legend &m_legend;
    ToolColors m_colors;
    QStringList m_texts;
    double m_first = 0.0;
    double m_last = 0.0;
};

cairo_status_t append(void *bytes, const unsigned char *data, unsigned int length)
{
    static_cast<QByteArray *>(bytes)->append(reinterpret_cast<const char *>(data), static_cast<int>(length));
    return CAIRO_STATUS_SUCCESS;
}

Surface surfaceOf(LegendFormat format, double width, double height, QByteArray &bytes)
{
    if (format == LegendFormat::Svg)
        return {cairo_svg_surface_create_for_stream(append, &bytes, width, height), cairo_surface_destroy};
    if (format == LegendFormat::Pdf)
        return {cairo_pdf_surface_create_for_stream(append, &bytes, width, height), cairo_surface_destroy};
    const auto pixels = [](double points) { return static_cast<int>(std::ceil(points * pixelsPerPoint)); };
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels(width), pixels(height)),
                    cairo_surface_destroy);
    cairo_surface_set_device_scale(surface.get(), pixelsPerPoint, pixelsPerPoint);
    return surface;
}

} // namespace

double legendValue(const Legend &legend, const QuvoColorDef &entry)
{
    return entry.percent && hasRange(legend)
        ? legend.minimum + entry.value / 100.0 * (legend.maximum - legend.minimum)
        : entry.value;
}

QStringList legendTexts(const Legend &legend)
{
    QStringList texts;
    const QList<QuvoColorDef> entries = elevationEntries(legend.entries);
    if (entries.isEmpty())
        return texts;
    if (legend.classes) {
        for (const Segment &segment : segmentsOf(legend))
            texts.prepend(valueText(legend, segment.from) + QStringLiteral(" – ")
                          + valueText(legend, segment.to));
    } else {
        constexpr int most = 10;
        for (const double tick : roundTicks(shownRange(legend).from, shownRange(legend).to, most))
            texts.prepend(valueText(legend, tick));
    }
    return texts.isEmpty() ? QStringList{valueText(legend, legendValue(legend, entries.first()))} : texts;
}

QByteArray legendPicture(const Legend &legend, LegendFormat format)
{
    QByteArray bytes;
    if (elevationEntries(legend.entries).isEmpty())
        return bytes;
    const Surface measure(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1), cairo_surface_destroy);
    const Context measuring(cairo_create(measure.get()), cairo_destroy);
    const Drawing size(measuring.get(), legend);
    const Surface surface = surfaceOf(format, size.width(), size.height(), bytes);
    const Context context(cairo_create(surface.get()), cairo_destroy);
    cairo_set_source_rgb(context.get(), 1.0, 1.0, 1.0);
    cairo_paint(context.get());
    Drawing(context.get(), legend).draw();
    if (format == LegendFormat::Png)
        cairo_surface_write_to_png_stream(surface.get(), append, &bytes);
    cairo_surface_finish(surface.get());
    return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? bytes : QByteArray();
}
