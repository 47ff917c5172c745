#include "app/preview/profile/ProfilePlot.h"

#include "messages/shownnumber.h"

#include <QEvent>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_item.h>
#include <qwt_plot_marker.h>
#include <qwt_plot_textlabel.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_map.h>
#include <qwt_text.h>

#include <algorithm>

namespace
{

/// An axis whose numbers carry their unit and are written as the locale does.
class UnitScale : public QwtScaleDraw
{
public:
    UnitScale(double perUnit, const QString &unit)
        : m_perUnit(perUnit)
        , m_unit(unit)
    { }

    QwtText label(double value) const override
    {
        constexpr int digits = 6;
        return {(shownNumber(value / m_perUnit, 'g', digits) + QLatin1Char(' ') + m_unit).trimmed()};
    }

private:
    double m_perUnit; ///< axis units in one unit of the numbers
    QString m_unit;
};

QColor withAlpha(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

} // namespace

/// Draws ground, hidden stretches and sight line.
class ProfilePlot::Drawing : public QwtPlotItem
{
public:
    explicit Drawing(const ProfilePlot &plot)
        : m_plot(plot)
    { }

    void setColors(const ProfileColors &colors) { m_colors = colors; }

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvas) const override
    {
        const QVector<ProfileSample> &samples = m_plot.m_profile.samples;
        for (int first = 0; first < samples.size();) {
            int end = first;
            while (end < samples.size() && samples.at(end).ground)
                ++end;
            drawGround(*painter, xMap, yMap, canvas, samples.mid(first, end - first));
            first = end + 1;
        }
        drawSightLine(*painter, xMap, yMap);
    }

private:
    /// Draws neighbouring samples that all have ground. A stretch between two samples is hidden if the farther
    /// one is.
    void drawGround(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &canvas,
                    const QVector<ProfileSample> &samples) const
    {
        QPolygonF line;
        for (const ProfileSample &sample : samples)
            line += QPointF(xMap.transform(sample.distance), yMap.transform(*sample.ground));
        if (line.size() < 2)
            return;
        QPolygonF area = line;
        area << QPointF(line.last().x(), canvas.bottom()) << QPointF(line.first().x(), canvas.bottom());
        const QPalette palette = m_plot.palette();
        painter.setPen(Qt::NoPen);
        painter.setBrush(withAlpha(palette.color(QPalette::Text), 60));
        painter.drawPolygon(area);
        for (int first = 1; first < line.size();) {
            int end = first;
            while (end < line.size() && samples.at(end).hidden == samples.at(first).hidden)
                ++end;
            const bool hidden = samples.at(first).hidden;
            if (hidden)
                painter.fillRect(QRectF(QPointF(line.at(first - 1).x(), canvas.top()),
                                        QPointF(line.at(end - 1).x(), canvas.bottom())),
                                 withAlpha(m_colors.hidden, 40));
            constexpr double outline = 2.0; // pixels
            painter.setPen(QPen(hidden ? m_colors.hidden : m_colors.visible, outline));
            painter.drawPolyline(line.mid(first - 1, end - first + 1));
            first = end;
        }
    }

    void drawSightLine(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap) const
    {
        QPolygonF line;
        for (const ProfileSample &sample : m_plot.m_profile.samples) {
            if (sample.sightLine)
                line += QPointF(xMap.transform(sample.distance), yMap.transform(*sample.sightLine));
        }
        painter.setPen(QPen(m_plot.palette().color(QPalette::Text), 1.0, Qt::DashLine));
        painter.drawPolyline(line);
    }

    const ProfilePlot &m_plot;
    ProfileColors m_colors;
};

ProfilePlot::ProfilePlot(QWidget *parent)
    : QwtPlot(parent)
    , m_pGrid(new QwtPlotGrid)
    , m_pDrawing(new Drawing(*this))
    , m_pMark(new QwtPlotMarker)
    , m_pText(new QwtPlotTextLabel)
{
    for (const int axis : {xBottom, yLeft})
        enableAxis(axis, false);
    if (auto *area = qobject_cast<QwtPlotCanvas *>(canvas()))
        area->setFrameStyle(QFrame::NoFrame);
    m_pDrawing->setRenderHint(QwtPlotItem::RenderAntialiased);
    m_pMark->setLineStyle(QwtPlotMarker::VLine);
    m_pMark->setVisible(false);
    for (QwtPlotItem *item : {static_cast<QwtPlotItem *>(m_pGrid), static_cast<QwtPlotItem *>(m_pDrawing),
                              static_cast<QwtPlotItem *>(m_pMark), static_cast<QwtPlotItem *>(m_pText)})
        item->attach(this);
    restyle();
}

void ProfilePlot::setProfile(const Profile &profile, const QString &unit, const ProfileColors &colors)
{
    m_profile = profile;
    m_unit = unit;
    m_pDrawing->setColors(colors);
    for (const int axis : {xBottom, yLeft})
        enableAxis(axis, !profile.samples.isEmpty());
    scaleAxes();
    replot();
    updateLayout(); // the numbers may be wider than before
}

void ProfilePlot::setMark(const std::optional<double> &distance)
{
    m_pMark->setVisible(distance.has_value());
    m_pMark->setXValue(distance.value_or(0.0));
    replot();
}

void ProfilePlot::setText(const QString &text)
{
    m_text = text;
    showText();
    replot();
}

double ProfilePlot::distanceAt(int x) const
{
    return std::clamp(invTransform(xBottom, x), 0.0, m_profile.length);
}

void ProfilePlot::restyle()
{
    for (const int axis : {xBottom, yLeft})
        setAxisFont(axis, smallFont());
    setCanvasBackground(palette().color(QPalette::Base));
    m_pGrid->setPen(QPen(withAlpha(palette().color(QPalette::Text), 50), 0.0, Qt::DotLine));
    m_pMark->setLinePen(QPen(palette().color(QPalette::Highlight), 1.5));
    showText();
    scaleAxes();
    replot();
}

void ProfilePlot::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        restyle();
    QwtPlot::changeEvent(event);
}

void ProfilePlot::resizeEvent(QResizeEvent *event)
{
    scaleAxes();
    QwtPlot::resizeEvent(event);
    showText();
}

QFont ProfilePlot::smallFont() const
{
    constexpr double smaller = 0.85;
    QFont small = font();
    if (small.pointSizeF() > 0.0) // not if the size is in pixels
        small.setPointSizeF(small.pointSizeF() * smaller);
    return small;
}

void ProfilePlot::showText()
{
    constexpr int edges = 10; // pixels on both sides of the text
    QwtText shown(
        QFontMetrics(smallFont()).elidedText(m_text, Qt::ElideRight, std::max(canvas()->width() - edges, 0)));
    shown.setRenderFlags(Qt::AlignRight | Qt::AlignTop);
    shown.setFont(smallFont());
    shown.setColor(palette().color(QPalette::Text));
    shown.setBackgroundBrush(m_text.isEmpty() ? QBrush() : withAlpha(palette().color(QPalette::Base), 160));
    m_pText->setText(shown);
}

void ProfilePlot::scaleAxes()
{
    double low = m_profile.eyeAltitude;
    double high = m_profile.eyeAltitude;
    for (const ProfileSample &sample : m_profile.samples) {
        for (const std::optional<double> &altitude : {sample.ground, sample.sightLine}) {
            low = std::min(low, altitude.value_or(low));
            high = std::max(high, altitude.value_or(high));
        }
    }
    constexpr double margin = 0.08; // of the heights
    const double room = std::max((high - low) * margin, 0.5);
    const double line = 1.5 * QFontMetricsF(smallFont()).height(); // pixels for the text, and below the canvas
    const double pixels = std::max(height() - 2.0 * line, line);   // for the drawing
    const double headroom = (high - low + 2.0 * room) * line / pixels;
    constexpr double kilometre = 1000.0;
    const bool kilometres = m_profile.length >= 2.0 * kilometre;
    setAxisScaleDraw(
        xBottom,
        new UnitScale(kilometres ? kilometre : 1.0, kilometres ? QStringLiteral("km") : QStringLiteral("m")));
    setAxisScaleDraw(yLeft, new UnitScale(1.0, m_unit));
    constexpr int mostSteps = 6;
    setAxisMaxMajor(yLeft, std::clamp(static_cast<int>(pixels / line), 1, mostSteps));
    setAxisScale(xBottom, 0.0, std::max(m_profile.length, 1.0));
    setAxisScale(yLeft, low - room, high + room + headroom);
}
