#include "app/preview/map/maplegend.h"

#include "colortable/roundticks.h"
#include "messages/shownnumber.h"

#include <algorithm>
#include <cmath>

namespace
{

// Lengths in points.
constexpr double lineHeight = 16.0;
constexpr double margin = 2.0;
constexpr double stripWidth = 20.0;
constexpr double boxHeight = 13.0;
constexpr double textGap = 7.0;
constexpr double histogramHeight = 54.0;
constexpr double section = 14.0; ///< between the parts of a legend

/// Builds the drawing from the top.
class Layout
{
public:
    Layout(double width, double stripHeight, const TextWidth &widthOf)
        : m_width(width)
        , m_stripHeight(stripHeight)
        , m_widthOf(widthOf)
    { }

    void text(const QString &text, bool bold = false)
    {
        if (text.isEmpty())
            return;
        m_y += lineHeight;
        m_drawing.texts +=
            {{margin, m_y - 4.0}, elided(text, m_width - 2 * margin, m_widthOf), Qt::AlignLeft, bold};
    }

    void gap(double height) { m_y += height; }

    void strip(const MapLegend::Strip &strip)
    {
        if (strip.colors.isEmpty())
            return;
        m_y += lineHeight / 2.0;
        const double step = m_stripHeight / static_cast<double>(strip.colors.size());
        const double overlap = 0.5; // no seam of the background between two colours
        for (int at = 0; at < strip.colors.size(); ++at) {
            const double bottom = m_y + m_stripHeight - at * step;
            m_drawing.boxes += {{margin, bottom - step, stripWidth, step + (at > 0 ? overlap : 0.0)},
                                QColor::fromRgba(strip.colors.at(at)),
                                false,
                                false};
        }
        m_drawing.boxes += {{margin, m_y, stripWidth, m_stripHeight}, Qt::transparent};
        double free = m_y + m_stripHeight + lineHeight; // the next tick stands above this place
        for (const auto &tick : strip.ticks) {
            const double share = (tick.value - strip.low) / (strip.high - strip.low);
            const double y = m_y + m_stripHeight * (1.0 - share);
            if (y > free - drawingTextSize)
                continue;
            free = y;
            m_drawing.lines += {{{margin + stripWidth, y}, {margin + stripWidth + 3.0, y}}, QColor(), 0.8};
            const double left = margin + stripWidth + textGap;
            m_drawing.texts +=
                {{left, y + drawingTextSize / 3.0}, elided(tick.text, m_width - left, m_widthOf)};
        }
        m_y += m_stripHeight + lineHeight / 2.0;
    }

    void row(const MapLegend::Row &row)
    {
        const double middle = m_y + lineHeight / 2.0;
        const QRectF box(margin, middle - boxHeight / 2.0, stripWidth, boxHeight);
        if (row.line)
            m_drawing.lines += {{{box.left(), middle}, {box.right(), middle}}, row.color, row.lineWidth};
        else
            m_drawing.boxes += {box, row.color, row.hatched};
        const double left = box.right() + textGap;
        for (const QString &text : {row.text, row.detail}) {
            if (text.isEmpty())
                continue;
            m_y += lineHeight;
            m_drawing.texts += {{left, m_y - 4.0}, elided(text, m_width - left, m_widthOf)};
        }
        m_y += 3.0;
    }

    void histogram(const MapLegend &legend, const QLocale &locale)
    {
        const Histogram &bars = legend.elevations;
        const double width = m_width - 2 * margin;
        const double base = m_y + histogramHeight;
        const double step = width / static_cast<double>(bars.shares.size());
        for (int at = 0; at < bars.shares.size(); ++at) {
            const double height = histogramHeight * bars.shares.at(at);
            m_drawing.boxes +=
                {{margin + at * step, base - height, step, height}, QColor(140, 154, 168), false, false};
        }
        m_drawing.lines += {{{margin, base}, {margin + width, base}}, QColor(), 0.8};
        const double span = bars.maximum - bars.minimum;
        for (const auto &mark : legend.marks) {
            if (!(span > 0.0) || mark.elevation < bars.minimum || mark.elevation > bars.maximum)
                continue;
            const double x = margin + width * (mark.elevation - bars.minimum) / span;
            m_drawing.lines += {{{x, base - histogramHeight}, {x, base + 3.0}}, mark.color, 1.2};
        }
        m_y = base + lineHeight;
        const int decimals = span < 10.0 ? 1 : 0;
        m_drawing.texts += {{margin, m_y - 2.0}, shownNumber(bars.minimum, 'f', decimals, locale)};
        m_drawing.texts +=
            {{margin + width, m_y - 2.0}, shownNumber(bars.maximum, 'f', decimals, locale), Qt::AlignRight};
    }

    MapDrawing finished()
    {
        m_drawing.size = {m_width, m_y + margin};
        return m_drawing;
    }

private:
    double m_width;
    double m_stripHeight;
    const TextWidth &m_widthOf;
    MapDrawing m_drawing;
    double m_y = 0.0;
};

} // namespace

QVector<MapLegend::Strip::Tick> roundStripTicks(double low, double high, double height, const QLocale &locale)
{
    constexpr double perTick = 24.0;
    QVector<MapLegend::Strip::Tick> ticks;
    const QVector<double> values = roundTicks(low, high, static_cast<int>(height / perTick));
    const double step = values.size() > 1 ? values.at(1) - values.at(0) : 1.0;
    const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    for (const double value : values)
        ticks += {value, shownNumber(std::abs(value) < step * 1e-6 ? 0.0 : value, 'f', decimals, locale)};
    return ticks;
}

MapDrawing legendDrawing(const MapLegend &legend, double width, const TextWidth &widthOf, const QLocale &locale,
                         double stripHeight)
{
    Layout layout(width, stripHeight, widthOf);
    layout.text(legend.unit.isEmpty() ? legend.title : QStringLiteral("%1 (%2)").arg(legend.title, legend.unit),
                true);
    layout.strip(legend.strip);
    if (!legend.rows.isEmpty())
        layout.gap(6.0);
    for (const MapLegend::Row &row : legend.rows)
        layout.row(row);
    if (!legend.elevations.isEmpty()) {
        layout.gap(section);
        layout.text(legend.histogramTitle, true);
        layout.gap(6.0);
        layout.histogram(legend, locale);
    }
    return layout.finished();
}

QString shareText(double area, double share, const QLocale &locale)
{
    constexpr double squareKilometre = 1e6;
    constexpr double small = 0.1 * squareKilometre;
    const QString percent = shownNumber(100.0 * share, 'f', 1, locale) + QStringLiteral(" %");
    if (area < 0.0)
        return percent;
    const double kilometres = area / squareKilometre;
    const QString size = area < small
        ? shownNumber(area, 'f', 0, locale) + QStringLiteral(" m²")
        : shownNumber(kilometres, 'f', kilometres < 100.0 ? 1 : 0, locale) + QStringLiteral(" km²");
    return QStringLiteral("%1 (%2)").arg(size, percent);
}
