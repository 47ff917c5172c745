#include "app/preview/mapmarks.h"

#include <QBitArray>
#include <QColor>
#include <QFontMetricsF>
#include <QIcon>
#include <QLineF>
#include <QPainter>
#include <QPixmap>
#include <QString>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

const QColor markColor(200, 85, 61);
const QColor offColor(120, 132, 144);
constexpr double discRadius = 9.0;
constexpr double dotRadius = 4.0;
constexpr double pinSide = 38.0;
constexpr double pinPoint = 22.5 / 24.0; // place of the point and of the head's middle in the picture's height
constexpr double pinMiddle = 9.0 / 24.0;
constexpr int mostDiscs = 150; // more numbers would hide the map and each other
constexpr int mostDots = 2500; // more dots are drawn as points

bool isVisible(const MapMark &mark, const Places &places)
{
    return places.view.adjusted(-1.0, -1.0, 1.0, 1.0).contains(mark.position);
}

/// The middle of a pin's head.
QPointF pinHead(const QPointF &place)
{
    return place - QPointF(0.0, pinSide * (pinPoint - pinMiddle));
}

void paintRange(QPainter &painter, const MapMark &mark, const Places &places)
{
    if (mark.range.isEmpty() || !mark.enabled)
        return;
    const QPolygonF range = places.toPlaces(mark.range);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 170), 3.0));
    painter.drawPolygon(range);
    painter.setPen(QPen(mark.current ? markColor : QColor(55, 67, 79), 1.3, Qt::DashLine));
    painter.drawPolygon(range);
}

void paintNumber(QPainter &painter, const MapMark &mark, const QPointF &place)
{
    if (mark.number == 0)
        return;
    const QString text = QString::number(mark.number);
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(text.size() > 4 ? 6 : text.size() > 2 ? 8 : 11);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(place - QPointF(20.0, 20.0), QSizeF(40.0, 40.0)), Qt::AlignCenter, text);
}

void paintDisc(QPainter &painter, const MapMark &mark, const QPointF &place)
{
    painter.setPen(QPen(Qt::white, 1.6));
    painter.setBrush(mark.enabled ? markColor : offColor);
    painter.drawEllipse(place, discRadius, discRadius);
    paintNumber(painter, mark, place);
}

/// The current observer: a pin whose point stands on its place, with the number in its head.
void paintPin(QPainter &painter, const MapMark &mark, const QPointF &place)
{
    const QPixmap pin = QIcon(QStringLiteral(":/QuvoGdalUtilities/images/marker3.png")).pixmap(qRound(pinSide));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRectF(place - QPointF(pinSide / 2.0, pinSide * pinPoint), QSizeF(pinSide, pinSide)),
                       pin, QRectF(pin.rect()));
    const QPointF head = pinHead(place);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mark.enabled ? markColor : offColor);
    painter.drawEllipse(head, discRadius, discRadius);
    paintNumber(painter, mark, head);
}

/// The pixels in which there are marks, each once: many marks may share a pixel.
QVector<QPoint> pixelsOf(const QVector<const MapMark *> &marks, bool enabled, const Places &places)
{
    const QRect area = places.area.toAlignedRect().adjusted(-1, -1, 1, 1);
    QBitArray isTaken(area.width() * area.height());
    QVector<QPoint> pixels;
    for (const MapMark *mark : marks) {
        const QPoint pixel = places.toPlace(mark->position).toPoint();
        const int at = (pixel.y() - area.y()) * area.width() + pixel.x() - area.x();
        if (mark->enabled != enabled || !area.contains(pixel) || isTaken.testBit(at))
            continue;
        isTaken.setBit(at);
        pixels += pixel;
    }
    return pixels;
}

/// Draws a small square at each of the pixels. If the squares would hide too much of the map, draws single
/// pixels instead, and only for every second or third mark where even these would hide it.
void paintPixels(QPainter &painter, const QVector<QPoint> &pixels, const QColor &color, const Places &places)
{
    constexpr double mostCovered = 0.1; // share of the map
    const double area = places.area.width() * places.area.height();
    constexpr double square = 25.0; // pixels of one, with its rim
    const int count = static_cast<int>(pixels.size());
    if (square * count <= mostCovered * area) {
        for (const auto &[reach, filling] : {std::pair(2, QColor(Qt::white)), {1, color}}) {
            for (const QPoint &pixel : pixels)
                painter.fillRect(pixel.x() - reach, pixel.y() - reach, 2 * reach + 1, 2 * reach + 1, filling);
        }
        return;
    }
    const int step = std::max(qCeil(count / (mostCovered * area)), 1);
    for (int at = 0; at < count; at += step)
        painter.fillRect(QRect(pixels[at], QSize(1, 1)), color);
}

void paintDots(QPainter &painter, const QVector<const MapMark *> &marks, const Places &places)
{
    if (marks.size() > mostDots) {
        for (const bool enabled : {false, true})
            paintPixels(painter, pixelsOf(marks, enabled, places), enabled ? markColor : offColor, places);
        return;
    }
    painter.setPen(QPen(Qt::white, 1.4));
    for (const MapMark *mark : marks) {
        painter.setBrush(mark->enabled ? markColor : offColor);
        painter.drawEllipse(places.toPlace(mark->position), dotRadius, dotRadius);
    }
}

} // namespace

QPolygonF Places::toPlaces(const QPolygonF &cells) const
{
    QPolygonF line;
    for (const QPointF &cell : cells)
        line += toPlace(cell);
    return line;
}

void paintMarks(QPainter &painter, const QVector<MapMark> &marks, const Places &places)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, marks.size() <= mostDots);
    QVector<const MapMark *> visible;
    const MapMark *current = nullptr;
    for (const MapMark &mark : marks) {
        paintRange(painter, mark, places);
        if (mark.current)
            current = &mark;
        else if (isVisible(mark, places))
            visible += &mark;
    }
    if (visible.size() > mostDiscs) {
        paintDots(painter, visible, places);
    } else {
        for (const MapMark *mark : visible)
            paintDisc(painter, *mark, places.toPlace(mark->position));
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    if (current && isVisible(*current, places))
        paintPin(painter, *current, places.toPlace(current->position));
    painter.restore();
}

int markAt(const QVector<MapMark> &marks, const Places &places, const QPointF &place)
{
    constexpr double reach = discRadius + 1.0;
    int found = -1;
    for (int mark = 0; mark < marks.size(); ++mark) {
        const QPointF point = places.toPlace(marks.at(mark).position);
        const QPointF way = place - point;
        const QPointF headWay = place - pinHead(point);
        const bool isCurrent = marks.at(mark).current; // it is drawn above the others
        if (isCurrent && std::min(std::hypot(way.x(), way.y()), std::hypot(headWay.x(), headWay.y())) <= reach)
            return mark;
        if (std::hypot(way.x(), way.y()) <= reach)
            found = mark;
    }
    return found;
}

void paintLight(QPainter &painter, const QRectF &area, double direction)
{
    constexpr double radius = 18.0;
    constexpr double sun = 4.5;
    const QPointF centre = area.topLeft() + QPointF(radius + 14.0, radius + 14.0);
    const double angle = qDegreesToRadians(direction);
    const QPointF towardsLight(std::sin(angle), -std::cos(angle));
    const QPointF across(-towardsLight.y(), towardsLight.x());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 200));
    painter.drawEllipse(centre, radius + 4.0, radius + 4.0);

    const QPointF from = centre + towardsLight * (radius - sun - 1.0);
    const QPointF tip = centre - towardsLight * (radius - 2.0);
    painter.setPen(QPen(QColor(90, 70, 20), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(from, tip);
    painter.drawLine(tip, tip + towardsLight * 6.0 + across * 4.0);
    painter.drawLine(tip, tip + towardsLight * 6.0 - across * 4.0);
    painter.setPen(QPen(QColor(176, 122, 30), 1.2));
    painter.setBrush(QColor(240, 185, 60));
    painter.drawEllipse(centre + towardsLight * (radius - sun), sun, sun);
}

void paintMapLine(QPainter &painter, const QPolygonF &line, const QPointF *place)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 190), 4.0, Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(line);
    painter.setPen(QPen(QColor(40, 52, 64), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(line);
    if (!place)
        return;
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(QColor(40, 52, 64));
    painter.drawEllipse(*place, dotRadius, dotRadius);
}

void paintScaleBar(QPainter &painter, const QRectF &area, const ScaleBar &bar)
{
    if (bar.metres <= 0.0)
        return;
    constexpr double margin = 18.0;
    constexpr double inset = 8.0;
    const QFontMetricsF metrics(painter.font());
    const double width = std::max(bar.length, metrics.horizontalAdvance(bar.text));
    const QPointF end = area.bottomLeft() + QPointF(margin, -margin);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 205));
    painter.drawRoundedRect(QRectF(end + QPointF(-inset, -metrics.height() - inset),
                                   QSizeF(width + 2.0 * inset, metrics.height() + 2.0 * inset)),
                            3.0, 3.0);
    painter.setPen(QPen(QColor(30, 36, 44), 1.6, Qt::SolidLine, Qt::FlatCap));
    painter.drawPolyline(QPolygonF(
        {end + QPointF(0.0, -5.0), end, end + QPointF(bar.length, 0.0), end + QPointF(bar.length, -5.0)}));
    painter.drawText(end + QPointF(0.0, -7.0), bar.text);
}

void paintSwipe(QPainter &painter, const QRectF &area, double share)
{
    constexpr double knob = 9.0;
    const double x = area.left() + area.width() * share;
    painter.setPen(QPen(QColor(0, 0, 0, 110), 3.6));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    painter.setPen(QPen(Qt::white, 2.0));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    const QPointF middle(x, area.center().y());
    painter.setPen(QPen(QColor(0, 0, 0, 130), 1.0));
    painter.setBrush(Qt::white);
    painter.drawEllipse(middle, knob, knob);
    painter.setPen(QPen(QColor(40, 52, 64), 1.6));
    for (const double side : {-1.0, 1.0}) {
        const QPointF tip = middle + QPointF(side * 5.5, 0.0);
        painter.drawPolyline(
            QPolygonF({tip + QPointF(-side * 3.0, -3.0), tip, tip + QPointF(-side * 3.0, 3.0)}));
    }
}
