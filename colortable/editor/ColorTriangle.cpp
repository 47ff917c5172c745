#include "colortable/editor/ColorTriangle.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

void paintMark(QPainter &painter, const QPointF &place)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, 3.0));
    painter.drawEllipse(place, 5.0, 5.0);
    painter.setPen(QPen(Qt::white, 1.5));
    painter.drawEllipse(place, 5.0, 5.0);
}

} // namespace

ColorTriangle::ColorTriangle(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
}

ColorPlaces ColorTriangle::places() const
{
    const double side = qMin(width(), height()) - 6.0;
    return ColorPlaces({(width() - side) / 2.0, (height() - side) / 2.0, side, side});
}

void ColorTriangle::setColor(const QColor &color)
{
    if (color.rgb() != m_shown.rgb()) { // the colour that was picked here keeps its hue
        m_color = hueColor(color, m_color);
        m_byKeys = false;
    }
    m_shown = color;
    update();
}

QImage ColorTriangle::triangleImage(const ColorPlaces &places) const
{
    const qreal scale = devicePixelRatioF();
    QImage image((QSizeF(size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QPointF place((x + 0.5) / scale, (y + 0.5) / scale);
            if (places.isInTriangle(place))
                image.setPixelColor(x, y, places.colorAt(place, m_color.hue).color());
        }
    }
    return image;
}

void ColorTriangle::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ColorPlaces places = this->places();
    QConicalGradient hues(places.center(), 90.0); // at the top; grows counter-clockwise
    for (int step = 0; step <= 12; ++step)
        hues.setColorAt(step / 12.0, HueColor{std::fmod(1.0 - step / 12.0, 1.0), 1.0, 1.0}.color());
    QPainterPath ring;
    ring.addEllipse(places.center(), places.outerRadius(), places.outerRadius());
    ring.addEllipse(places.center(), places.innerRadius(), places.innerRadius());
    painter.fillPath(ring, hues);
    painter.drawImage(0, 0, triangleImage(places));
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(places.center(), places.outerRadius() + 1.5, places.outerRadius() + 1.5);
    }
    paintMark(painter, places.placeOfHue(m_color.hue));
    paintMark(painter, places.placeOf(m_color));
}

void ColorTriangle::change(const HueColor &color)
{
    m_color = color;
    const int alpha = m_shown.alpha();
    m_shown = color.color();
    m_shown.setAlpha(alpha);
    update();
    emit picked(m_shown, m_series);
}

void ColorTriangle::pick(const QPointF &place)
{
    const ColorPlaces places = this->places();
    if (m_grip == Grip::Ring)
        change({places.hueAt(place), m_color.saturation, m_color.value});
    else
        change(places.colorAt(place, m_color.hue));
}

void ColorTriangle::mousePressEvent(QMouseEvent *event)
{
    const ColorPlaces places = this->places();
    if (event->button() != Qt::LeftButton)
        return;
    if (places.isInRing(event->localPos()))
        m_grip = Grip::Ring;
    else if (places.isInTriangle(event->localPos()))
        m_grip = Grip::Triangle;
    else
        return;
    ++m_series;
    m_byKeys = false;
    pick(event->localPos());
}

void ColorTriangle::mouseMoveEvent(QMouseEvent *event)
{
    if (m_grip != Grip::None)
        pick(event->localPos());
}

void ColorTriangle::mouseReleaseEvent(QMouseEvent *)
{
    m_grip = Grip::None;
}

void ColorTriangle::keyPressEvent(QKeyEvent *event)
{
    constexpr double step = 0.02;
    HueColor color = m_color;
    switch (event->key()) {
    case Qt::Key_Left:
        color.saturation -= step;
        break;
    case Qt::Key_Right:
        color.saturation += step;
        break;
    case Qt::Key_Up:
        color.value += step;
        break;
    case Qt::Key_Down:
        color.value -= step;
        break;
    case Qt::Key_PageUp:
        color.hue = std::fmod(color.hue + step, 1.0);
        break;
    case Qt::Key_PageDown:
        color.hue = std::fmod(color.hue - step + 1.0, 1.0);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    color.saturation = std::clamp(color.saturation, 0.0, 1.0);
    color.value = std::clamp(color.value, 0.0, 1.0);
    if (!std::exchange(m_byKeys, true))
        ++m_series;
    change(color);
}
