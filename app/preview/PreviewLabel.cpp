#include "app/preview/PreviewLabel.h"

#include "app/preview/previewgeometry.h"

#include <QApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>
#include <QtMath>

#include <cmath>
#include <utility>

namespace
{

constexpr int markerSide = 24;
constexpr double zoomStep = 1.25;

/// The chequered background of cells without data, in two greys of the palette.
QBrush checker(const QPalette &palette)
{
    constexpr int side = 6;
    const QColor &base = palette.color(QPalette::Base);
    const bool dark = base.lightness() < 128;
    QPixmap tile(2 * side, 2 * side);
    tile.fill(base);
    QPainter painter(&tile);
    const QColor other = dark ? base.lighter(150) : base.darker(112);
    painter.fillRect(0, 0, side, side, other);
    painter.fillRect(side, side, side, side, other);
    return {tile};
}

} // namespace

PreviewLabel::PreviewLabel(QWidget *parent)
    : QWidget(parent)
    , m_marker(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/marker3.png")).pixmap(markerSide))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

void PreviewLabel::setPicture(const QImage &picture, const QRectF &part)
{
    m_picture = picture;
    m_part = part;
    m_outdated = false;
    update();
}

void PreviewLabel::setText(const QString &text)
{
    m_text = text;
    update();
}

void PreviewLabel::setView(const QSize &dem, const QRectF &view)
{
    m_dem = dem;
    m_view = view;
    update();
}

void PreviewLabel::setMarks(const QVector<PreviewMark> &marks)
{
    m_marks = marks;
    if (m_draggedMark >= 0) { // the dragged mark may no longer exist
        m_pressed.reset();
        setCursor(Qt::CrossCursor);
    }
    m_draggedMark = -1;
    update();
}

void PreviewLabel::setLight(const std::optional<double> &direction)
{
    m_light = direction;
    update();
}

void PreviewLabel::setOutdated(bool outdated)
{
    m_outdated = outdated;
    update();
}

/// The place of the visible cells in the widget.
QRectF PreviewLabel::shownArea() const
{
    return shownRect(m_view, size());
}

QPointF PreviewLabel::cellAt(int x, int y, const QSize &shown) const
{
    return m_view.topLeft() + QPointF(x * m_view.width() / shown.width(), y * m_view.height() / shown.height());
}

QPointF PreviewLabel::toCells(const QPointF &place) const
{
    const QRectF area = shownArea();
    return m_view.topLeft() + (place - area.topLeft()) * (m_view.width() / area.width());
}

QPointF PreviewLabel::toPlace(const QPointF &cell) const
{
    const QRectF area = shownArea();
    return area.topLeft() + (cell - m_view.topLeft()) * (area.width() / m_view.width());
}

void PreviewLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_picture.isNull() || m_view.isEmpty()) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect().adjusted(0, height() / 5, 0, 0), Qt::AlignHCenter | Qt::TextWordWrap, m_text);
        return;
    }
    const QRectF area = shownArea();
    painter.setClipRect(area);
    painter.fillRect(area, checker(palette()));
    painter.setOpacity(m_outdated ? 0.45 : 1.0);
    const QRectF place(toPlace(m_part.topLeft()), toPlace(m_part.bottomRight()));
    // A cell larger than a pixel is drawn in one colour: colours between those of two classes would mean
    // nothing.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, place.width() < m_picture.width());
    painter.drawImage(place, m_picture);
    painter.setOpacity(1.0);
    paintMarks(painter);
    if (m_light)
        paintLight(painter);
    painter.setClipping(false);
    const bool focused = hasFocus();
    painter.setPen(palette().color(focused ? QPalette::Highlight : QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawRect(area.toRect().adjusted(0, 0, -1, -1));
}

void PreviewLabel::paintMarks(QPainter &painter) const
{
    const auto drawMark = [&](const PreviewMark &mark) {
        const QPointF place = toPlace(mark.position);
        if (!mark.range.isEmpty() && mark.enabled) {
            QPolygonF range;
            for (const QPointF &cell : mark.range)
                range += toPlace(cell);
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(QColor(255, 255, 255, 160), 3.0));
            painter.drawPolygon(range);
            painter.setPen(QPen(mark.current ? QColor(200, 85, 61) : QColor(55, 67, 79), 1.2, Qt::DashLine));
            painter.drawPolygon(range);
        }
        if (mark.current) { // the middle of the marker's lower edge is its point
            painter.drawPixmap(place - QPointF(markerSide / 2.0, markerSide - 1.0), m_marker);
            return;
        }
        constexpr double radius = 4.0;
        painter.setPen(QPen(Qt::white, 1.5));
        painter.setBrush(mark.enabled ? QColor(200, 85, 61) : QColor(140, 154, 168));
        painter.drawEllipse(place, radius, radius);
    };
    for (const PreviewMark &mark : m_marks) {
        if (!mark.current)
            drawMark(mark);
    }
    for (const PreviewMark &mark : m_marks) {
        if (mark.current)
            drawMark(mark);
    }
}

/// Draws a sun on the side that the light comes from, and an arrow in the direction of the light.
void PreviewLabel::paintLight(QPainter &painter) const
{
    constexpr double radius = 18.0;
    constexpr double sun = 4.5;
    const QPointF centre = shownArea().topLeft() + QPointF(radius + 10.0, radius + 10.0);
    const double angle = qDegreesToRadians(*m_light);
    const QPointF towardsLight(std::sin(angle), -std::cos(angle));
    const QPointF across(-towardsLight.y(), towardsLight.x());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 190));
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

/// Index of the mark at a place, the topmost of several; -1: there is none.
int PreviewLabel::markAt(const QPointF &place) const
{
    constexpr double reach = 8.0;
    for (int mark = static_cast<int>(m_marks.size()) - 1; mark >= 0; --mark) {
        const QPointF point = toPlace(m_marks.at(mark).position);
        const bool onMarker = m_marks.at(mark).current
            && QRectF(point - QPointF(markerSide / 2.0, markerSide), QSizeF(markerSide, markerSide))
                   .contains(place);
        if (onMarker || QLineF(point, place).length() <= reach)
            return mark;
    }
    return -1;
}

void PreviewLabel::zoom(const QPointF &place, double factor)
{
    if (!m_view.isEmpty())
        emit viewChanged(zoomed(m_view, toCells(place), factor, m_dem, size()));
}

void PreviewLabel::wheelEvent(QWheelEvent *event)
{
    constexpr double notch = 120.0; // a step of a usual wheel, in eighths of a degree
    if (event->angleDelta().y() != 0)
        zoom(event->position(), std::pow(zoomStep, event->angleDelta().y() / notch));
    event->accept();
}

void PreviewLabel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_picture.isNull())
        return;
    m_pressed = event->localPos();
    m_viewAtPress = m_view;
    m_draggedMark = markAt(event->localPos());
    m_marksAtPress = m_marks;
    m_dragging = false;
}

void PreviewLabel::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF place = event->localPos();
    if (m_view.isEmpty() || m_picture.isNull())
        return;
    if (!m_pressed) {
        if (shownArea().contains(place))
            emit hovered(toCells(place));
        else
            emit left();
        setCursor(markAt(place) >= 0 ? Qt::PointingHandCursor : Qt::CrossCursor);
        return;
    }
    const QPointF way = place - *m_pressed;
    m_dragging = m_dragging || way.manhattanLength() >= QApplication::startDragDistance();
    if (!m_dragging)
        return;
    setCursor(Qt::ClosedHandCursor);
    if (m_draggedMark >= 0)
        dragMark(place);
    else
        emit viewChanged(moved(m_viewAtPress, -way * (m_view.width() / shownArea().width()), m_dem));
}

void PreviewLabel::dragMark(const QPointF &place)
{
    const QRectF area = shownArea();
    PreviewMark &mark = m_marks[m_draggedMark];
    const QPointF cell = toCells({qBound(area.left(), place.x(), area.right() - 0.01),
                                  qBound(area.top(), place.y(), area.bottom() - 0.01)});
    mark.range.translate(cell - mark.position);
    mark.position = cell;
    update();
    emit hovered(cell);
}

void PreviewLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pressed)
        return;
    const QPointF place = *m_pressed;
    m_pressed.reset();
    setCursor(Qt::CrossCursor);
    const int mark = std::exchange(m_draggedMark, -1);
    if (m_dragging) {
        if (mark >= 0)
            emit markMoved(mark, m_marks.at(mark).position);
        return;
    }
    const QRectF area = shownArea();
    if (mark >= 0 && !m_marks.at(mark).current)
        emit markClicked(mark);
    else if (area.contains(place))
        emit clicked(static_cast<int>(place.x() - area.x()), static_cast<int>(place.y() - area.y()),
                     area.size().toSize());
}

/// Ends a drag as if it had never begun.
void PreviewLabel::cancelDrag()
{
    m_pressed.reset();
    m_marks = m_marksAtPress;
    setCursor(Qt::CrossCursor);
    update();
    if (std::exchange(m_draggedMark, -1) < 0)
        emit viewChanged(m_viewAtPress);
}

void PreviewLabel::keyPressEvent(QKeyEvent *event)
{
    const QPointF middle = shownArea().center();
    const QSizeF step = m_view.size() / 8.0;
    switch (event->key()) {
    case Qt::Key_Plus:
        zoom(middle, zoomStep);
        return;
    case Qt::Key_Minus:
        zoom(middle, 1.0 / zoomStep);
        return;
    case Qt::Key_0:
    case Qt::Key_Home:
        emit viewChanged(QRectF(QPointF(0.0, 0.0), QSizeF(m_dem)));
        return;
    case Qt::Key_Left:
        emit viewChanged(moved(m_view, {-step.width(), 0.0}, m_dem));
        return;
    case Qt::Key_Right:
        emit viewChanged(moved(m_view, {step.width(), 0.0}, m_dem));
        return;
    case Qt::Key_Up:
        emit viewChanged(moved(m_view, {0.0, -step.height()}, m_dem));
        return;
    case Qt::Key_Down:
        emit viewChanged(moved(m_view, {0.0, step.height()}, m_dem));
        return;
    case Qt::Key_Escape:
        if (m_pressed)
            cancelDrag();
        else
            QWidget::keyPressEvent(event);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PreviewLabel::leaveEvent(QEvent *)
{
    emit left();
}
