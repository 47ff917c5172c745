#include "app/preview/LegendView.h"

#include <QFontMetricsF>
#include <QPainter>

LegendView::LegendView(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize LegendView::minimumSizeHint() const
{
    constexpr int characters = 25; // "1 281 km² (98,8 %)" beside a box
    return {fontMetrics().averageCharWidth() * characters, 60};
}

void LegendView::setLegend(const MapLegend &legend)
{
    m_legend = legend;
    update();
}

void LegendView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // The drawing reckons in points of its letters; the widget's font may be larger.
    const double scale = std::max(1.0, fontMetrics().ascent() / drawingTextSize);
    QFont face = font();
    face.setPixelSize(qRound(fontMetrics().height() / 1.17 / scale));
    const auto widthOf = [&face](const QString &text, bool bold) {
        QFont measured = face;
        measured.setBold(bold);
        return QFontMetricsF(measured).horizontalAdvance(text);
    };
    painter.scale(scale, scale);
    constexpr double leastStrip = 48.0;
    MapDrawing drawing = legendDrawing(m_legend, width() / scale, widthOf, locale());
    const double missing = drawing.size.height() - height() / scale;
    if (missing > 0.0) // a lower strip leaves room for the histogram
        drawing = legendDrawing(m_legend, width() / scale, widthOf, locale(),
                                std::max(leastStrip, legendStripHeight - missing));
    paintDrawing(painter, drawing, face, palette().color(QPalette::WindowText),
                 palette().color(QPalette::Base));
}
