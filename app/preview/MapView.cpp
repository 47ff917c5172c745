#include "app/preview/MapView.h"

#include "app/preview/map/scalebar.h"
#include "app/preview/previewgeometry.h"

#include <QApplication>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPinchGesture>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr double zoomStep = 1.25;
constexpr double doubleClickStep = 2.0;
constexpr double swipeReach = 7.0; // pixels around the swipe line in which the mouse takes hold of it

/// Whether the layers are the same pictures in the same places.
bool isSame(const QVector<MapLayer> &layers, const QVector<MapLayer> &others)
{
    return std::equal(layers.begin(), layers.end(), others.begin(), others.end(),
                      [](const MapLayer &layer, const MapLayer &other) {
                          return layer.part == other.part
                              && layer.picture.cacheKey() == other.picture.cacheKey();
                      });
}

/// The way of an arrow key as a direction, with rows down; null for another key.
QPointF arrowOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1.0, 0.0};
    case Qt::Key_Right:
        return {1.0, 0.0};
    case Qt::Key_Up:
        return {0.0, -1.0};
    case Qt::Key_Down:
        return {0.0, 1.0};
    default:
        return {};
    }
}

} // namespace

MapView::MapView(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMouseTracking(true);
    setFocusPolicy(Qt::WheelFocus); // keys belong to what the wheel has just moved
    grabGesture(Qt::PinchGesture);
}

void MapView::setMap(const MapPicture &map)
{
    MapPicture next = map;
    next.paper = palette().color(QPalette::Base);
    const bool sameGround = isSame(next.ground, m_map.ground) && next.paper == m_map.paper;
    if (!sameGround)
        m_ground = QImage();
    if (!sameGround || next.transparent != m_map.transparent || !isSame(next.product, m_map.product)) {
        m_hasProduct = false;
        m_outdated = false;
    }
    m_map = next;
    update();
}

void MapView::setText(const QString &text)
{
    m_text = text;
    update();
}

void MapView::setView(const QSize &dem, const QRectF &view)
{
    m_dem = dem;
    m_view = view;
    m_ground = QImage();
    update();
}

void MapView::setMarks(const QVector<MapMark> &marks)
{
    m_marks = marks;
    if (m_drag == Drag::Mark) { // the dragged mark may no longer exist
        m_drag = Drag::None;
        m_pressed.reset();
        setCursor(Qt::CrossCursor);
    }
    update();
}

void MapView::setLine(const QPolygonF &line)
{
    m_line = line;
    m_linePlace.reset();
    update();
}

void MapView::setLinePlace(const std::optional<QPointF> &cell)
{
    m_linePlace = cell;
    update();
}

void MapView::setLight(const std::optional<double> &direction)
{
    m_light = direction;
    update();
}

void MapView::setScale(double metresPerCell, bool known)
{
    m_metresPerCell = metresPerCell;
    m_scaleKnown = known;
    update();
}

void MapView::setOutdated(bool outdated)
{
    m_outdated = outdated;
    update();
}

/// The place of the visible cells in the widget.
QRectF MapView::shownArea() const
{
    return shownRect(m_view, size());
}

Places MapView::places() const
{
    return {m_view, shownArea()};
}

QPointF MapView::cellAt(int x, int y, const QSize &shown) const
{
    return m_view.topLeft() + QPointF(x * m_view.width() / shown.width(), y * m_view.height() / shown.height());
}

QPointF MapView::toCells(const QPointF &place) const
{
    return places().toCells(place);
}

QPointF MapView::toPlace(const QPointF &cell) const
{
    return places().toPlace(cell);
}

/// Draws the layers once for each change, so that moving the swipe line or a mark costs little.
void MapView::drawCanvases()
{
    const double scale = devicePixelRatioF();
    const QSize size = (shownArea().size() * scale).toSize().expandedTo({1, 1});
    if (m_ground.size() != size) {
        m_ground = m_map.groundCanvas(m_view, size, scale);
        m_hasProduct = false;
    }
    if (!m_hasProduct)
        m_product = m_map.productCanvas(m_view, size, scale, m_ground);
    m_hasProduct = true;
}

void MapView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_map.ground.isEmpty() || m_view.isEmpty()) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect().adjusted(20, 0, -20, 0), Qt::AlignCenter | Qt::TextWordWrap, m_text);
        return;
    }
    const QRectF area = shownArea();
    painter.setClipRect(area);
    paintMap(painter);
    paintOver(painter);
    if (m_map.swipe && m_map.hasProduct())
        paintSwipe(painter, area, *m_map.swipe);
    paintText(painter);
    painter.setClipping(false);
    painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawRect(area.toRect().adjusted(0, 0, -1, -1));
}

void MapView::paintMap(QPainter &painter)
{
    constexpr double pale = 0.45;
    drawCanvases();
    if (!m_outdated) {
        m_map.compose(painter, shownArea(), m_ground, m_product);
        return;
    }
    MapPicture faint = m_map;
    faint.opacity *= pale;
    faint.compose(painter, shownArea(), m_ground, m_product);
}

/// The marks, the light, the line and the scale bar.
void MapView::paintOver(QPainter &painter)
{
    const Places here = places();
    if (!m_line.isEmpty()) {
        const QPointF place = m_linePlace ? here.toPlace(*m_linePlace) : QPointF();
        paintMapLine(painter, here.toPlaces(m_line), m_linePlace ? &place : nullptr);
    }
    paintMarks(painter, m_marks, here);
    if (m_light)
        paintLight(painter, here.area, *m_light);
    constexpr double room = 0.28; // of the map's width
    const double metresPerPixel = m_metresPerCell * m_view.width() / here.area.width();
    paintScaleBar(painter, here.area,
                  scaleBar(metresPerPixel, room * here.area.width(), m_scaleKnown, locale()));
}

/// The text, on a band across the upper part of the map.
void MapView::paintText(QPainter &painter)
{
    if (m_text.isEmpty())
        return;
    constexpr int side = 30;
    constexpr int inset = 8;
    const QRect area = shownArea().toRect();
    const QRect room = area.adjusted(side, area.height() / 8, -side, 0);
    const QRect text = painter.boundingRect(room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_text);
    painter.setPen(Qt::NoPen);
    QColor band = palette().color(QPalette::Base);
    band.setAlpha(225);
    painter.setBrush(band);
    painter.drawRoundedRect(text.adjusted(-inset, -inset, inset, inset), 4.0, 4.0);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_text);
}

QImage MapView::picture()
{
    drawCanvases();
    const double scale = devicePixelRatioF();
    QImage picture(m_ground.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.translate(-shownArea().topLeft());
    m_map.compose(painter, shownArea(), m_ground, m_product);
    const double length = std::exchange(m_metresPerCell, 0.0); // a saved picture has its bar below the map
    paintOver(painter);
    m_metresPerCell = length;
    return picture;
}

void MapView::zoom(const QPointF &place, double factor)
{
    if (!m_view.isEmpty())
        emit viewChanged(zoomed(m_view, toCells(place), factor, m_dem, size()));
}

void MapView::slot_zoomIn()
{
    zoom(shownArea().center(), zoomStep);
}

void MapView::slot_zoomOut()
{
    zoom(shownArea().center(), 1.0 / zoomStep);
}

void MapView::slot_showWhole()
{
    emit viewChanged(QRectF(QPointF(0.0, 0.0), QSizeF(m_dem)));
}

bool MapView::event(QEvent *event)
{
    if (event->type() == QEvent::NativeGesture) {
        const auto gesture = static_cast<QNativeGestureEvent *>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            zoom(mapFromGlobal(gesture->globalPos()), 1.0 + gesture->value());
            return true;
        }
    }
    if (event->type() == QEvent::Gesture) {
        const auto gestures = static_cast<QGestureEvent *>(event);
        if (const auto pinch = static_cast<QPinchGesture *>(gestures->gesture(Qt::PinchGesture))) {
            if (pinch->changeFlags().testFlag(QPinchGesture::ScaleFactorChanged) && pinch->scaleFactor() > 0.0)
                zoom(mapFromGlobal(pinch->hotSpot().toPoint()), pinch->scaleFactor());
            return true;
        }
    }
    return QWidget::event(event);
}

void MapView::wheelEvent(QWheelEvent *event)
{
    constexpr double notch = 120.0; // a step of a usual wheel, in eighths of a degree
    if (event->angleDelta().y() != 0)
        zoom(event->position(), std::pow(zoomStep, event->angleDelta().y() / notch));
    event->accept();
}

bool MapView::isOnSwipe(const QPointF &place) const
{
    const QRectF area = shownArea();
    return m_map.swipe && m_map.hasProduct() && area.contains(place)
        && std::abs(place.x() - area.left() - area.width() * *m_map.swipe) <= swipeReach;
}

Qt::CursorShape MapView::restingCursor(const QPointF &place) const
{
    if (markAt(m_marks, places(), place) >= 0)
        return Qt::PointingHandCursor;
    return isOnSwipe(place) ? Qt::SplitHCursor : Qt::CrossCursor;
}

void MapView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_map.ground.isEmpty() || m_view.isEmpty())
        return;
    m_pressed = event->localPos();
    m_viewAtPress = m_view;
    m_draggedMark = markAt(m_marks, places(), event->localPos());
    m_drag = m_draggedMark >= 0 ? Drag::Mark : isOnSwipe(event->localPos()) ? Drag::Swipe : Drag::View;
    m_marksAtPress = m_marks;
    m_moved = false;
    if (m_draggedMark >= 0) // a pin is held by its head, and its point moves
        m_grip = toPlace(m_marks.at(m_draggedMark).position) - event->localPos();
}

void MapView::hover(const QPointF &place)
{
    if (shownArea().contains(place))
        emit hovered(toCells(place));
    else
        emit left();
}

void MapView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF place = event->localPos();
    if (m_view.isEmpty() || m_map.ground.isEmpty())
        return;
    if (!m_pressed) {
        hover(place);
        setCursor(restingCursor(place));
        return;
    }
    const QPointF way = place - *m_pressed;
    m_moved = m_moved || way.manhattanLength() >= QApplication::startDragDistance();
    if (m_drag == Drag::Swipe) {
        dragSwipe(place);
        return;
    }
    if (!m_moved)
        return;
    setCursor(Qt::ClosedHandCursor);
    if (m_drag == Drag::Mark)
        dragMark(place);
    else
        emit viewChanged(moved(m_viewAtPress, -way * (m_view.width() / shownArea().width()), m_dem));
}

void MapView::dragMark(const QPointF &place)
{
    const QRectF area = shownArea();
    MapMark &mark = m_marks[m_draggedMark];
    const QPointF point = place + m_grip;
    const QPointF cell = toCells({qBound(area.left(), point.x(), area.right() - 0.01),
                                  qBound(area.top(), point.y(), area.bottom() - 0.01)});
    mark.range.translate(cell - mark.position);
    mark.position = cell;
    update();
    emit markMoving(m_draggedMark, cell);
    emit hovered(cell);
}

void MapView::dragSwipe(const QPointF &place)
{
    const QRectF area = shownArea();
    m_map.swipe = qBound(0.0, (place.x() - area.left()) / area.width(), 1.0);
    update();
    emit swipeMoved(*m_map.swipe);
}

void MapView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pressed)
        return;
    const QPointF place = *m_pressed;
    m_pressed.reset();
    setCursor(restingCursor(event->localPos()));
    const Drag drag = std::exchange(m_drag, Drag::None);
    if (drag == Drag::Swipe)
        return;
    if (m_moved) {
        if (drag == Drag::Mark)
            emit markMoved(m_draggedMark, m_marks.at(m_draggedMark).position, false);
        return;
    }
    const QRectF area = shownArea();
    if (drag == Drag::Mark && !m_marks.at(m_draggedMark).current)
        emit markClicked(m_draggedMark);
    else if (area.contains(place))
        emit clicked(static_cast<int>(place.x() - area.x()), static_cast<int>(place.y() - area.y()),
                     area.size().toSize());
}

void MapView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_doubleClickZooms && !m_map.ground.isEmpty())
        zoom(event->localPos(), doubleClickStep);
}

/// Ends a drag as if it had never begun.
void MapView::cancelDrag()
{
    m_pressed.reset();
    m_marks = m_marksAtPress;
    setCursor(Qt::CrossCursor);
    update();
    const Drag drag = std::exchange(m_drag, Drag::None);
    if (drag == Drag::Mark)
        emit markMoving(m_draggedMark, m_marks.at(m_draggedMark).position);
    else if (drag == Drag::View)
        emit viewChanged(m_viewAtPress);
}

/// Moves the current mark as a drag does, but inside the DEM; the view follows a mark that leaves it.
void MapView::moveCurrentMark(const QPointF &by)
{
    const auto mark =
        std::find_if(m_marks.begin(), m_marks.end(), [](const MapMark &one) { return one.current; });
    if (mark == m_marks.end() || m_pressed)
        return;
    constexpr double inside = 0.01; // cells
    const QPointF wanted = mark->position + by;
    const QPointF cell(qBound(0.0, wanted.x(), m_dem.width() - inside),
                       qBound(0.0, wanted.y(), m_dem.height() - inside));
    const int index = static_cast<int>(mark - m_marks.begin());
    mark->range.translate(cell - mark->position);
    mark->position = cell;
    update();
    emit markMoving(index, cell);
    emit markMoved(index, cell, true);
    if (!m_view.contains(cell))
        emit viewChanged(moved(m_view, by, m_dem));
}

void MapView::keyPressEvent(QKeyEvent *event)
{
    const QPointF arrow = arrowOf(event->key());
    if (!arrow.isNull() && event->modifiers().testFlag(Qt::ShiftModifier)) {
        constexpr double share = 0.01; // of the view's width
        moveCurrentMark(arrow * (share * m_view.width()));
        return;
    }
    const QSizeF step = m_view.size() / 8.0;
    switch (event->key()) {
    case Qt::Key_Plus:
        slot_zoomIn();
        return;
    case Qt::Key_Minus:
        slot_zoomOut();
        return;
    case Qt::Key_0:
    case Qt::Key_Home:
        slot_showWhole();
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        emit viewChanged(moved(m_view, {arrow.x() * step.width(), arrow.y() * step.height()}, m_dem));
        return;
    case Qt::Key_Insert:
        if (const QRectF area = shownArea(); !m_map.ground.isEmpty() && !m_view.isEmpty())
            emit clicked(qRound(area.width() / 2.0), qRound(area.height() / 2.0), area.size().toSize());
        return;
    case Qt::Key_D:
        emit opacityChosen(0.0);
        return;
    case Qt::Key_P:
        emit opacityChosen(1.0);
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

void MapView::leaveEvent(QEvent *)
{
    emit left();
}

void MapView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        setMap(MapPicture(m_map));
    QWidget::changeEvent(event);
}
