#include "runner/ProgressWidget.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace
{

constexpr int spokes = 12;
constexpr int period = 80; // ms: about one turn a second

} // namespace

ProgressWidget::ProgressWidget(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&m_timer, &QTimer::timeout, this, &ProgressWidget::animate);
}

QSize ProgressWidget::sizeHint() const
{
    const int side = 2 * fontMetrics().height();
    return {side, side};
}

void ProgressWidget::animate()
{
    m_frame = (m_frame + 1) % spokes;
    update();
}

void ProgressWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const double radius = 0.5 * std::min(width(), height()) - 1.0;
    QColor colour = palette().color(QPalette::WindowText);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (m_frame - spoke + spokes) % spokes;
        colour.setAlpha(255 - 217 * age / (spokes - 1));
        painter.setPen(QPen(colour, 0.16 * radius, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 * spoke / spokes);
        painter.drawLine(QPointF(0.0, -0.52 * radius), QPointF(0.0, -0.9 * radius));
        painter.restore();
    }
}

void ProgressWidget::showEvent(QShowEvent *event)
{
    if (style()->styleHint(QStyle::SH_Widget_Animate, nullptr, this))
        m_timer.start(period);
    QWidget::showEvent(event);
}

void ProgressWidget::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}
