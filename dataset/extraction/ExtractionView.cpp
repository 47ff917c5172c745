#include "dataset/extraction/ExtractionView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double handleSide = 9.0;  // pixels
constexpr double handleReach = 8.0; // pixels around the middle of a handle that belong to it

/// The handles, corners first: where they overlap, a corner is taken.
constexpr std::array<std::array<int, 2>, 8> handles{
    {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}, {0, -1}, {0, 1}, {-1, 0}, {1, 0}}};

QPointF middleOf(const Handle &handle, const QRectF &rectangle)
{
    return rectangle.center()
        + QPointF(handle.x() * rectangle.width() / 2.0, handle.y() * rectangle.height() / 2.0);
}

Qt::CursorShape pointerOf(const Handle &handle)
{
    if (handle.x() == 0)
        return Qt::SizeVerCursor;
    if (handle.y() == 0)
        return Qt::SizeHorCursor;
    return handle.x() == handle.y() ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

/// Direction of an arrow key; null for any other key.
QPoint directionOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

ExtractionView::ExtractionView(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ExtractionView::setGrid(const QSize &grid)
{
    m_grid = grid;
    update();
}

void ExtractionView::setPicture(const QImage &picture)
{
    m_picture = picture;
    update();
}

void ExtractionView::setCells(const QRect &cells)
{
    m_cells = cells;
    update();
}

QSize ExtractionView::sizeHint() const
{
    return {560, 480};
}

QSize ExtractionView::minimumSizeHint() const
{
    return {240, 200};
}

/// The picture's rectangle in the widget, with square cells and room for the handles.
QRectF ExtractionView::area() const
{
    const QRectF room = QRectF(rect()).adjusted(handleSide, handleSide, -handleSide, -handleSide);
    const QSizeF size = QSizeF(m_grid).scaled(room.size(), Qt::KeepAspectRatio).expandedTo({1.0, 1.0});
    return {room.center() - QPointF(size.width() / 2.0, size.height() / 2.0), size};
}

QRectF ExtractionView::shown(const QRect &cells) const
{
    const QRectF all = area();
    const double across = all.width() / m_grid.width();
    const double down = all.height() / m_grid.height();
    return {all.left() + cells.left() * across, all.top() + cells.top() * down, cells.width() * across,
            cells.height() * down};
}

QPointF ExtractionView::cellAt(const QPointF &position) const
{
    const QRectF all = area();
    return {(position.x() - all.left()) * m_grid.width() / all.width(),
            (position.y() - all.top()) * m_grid.height() / all.height()};
}

/// The handle at a position; null where there is none.
Handle ExtractionView::handleAt(const QPointF &position) const
{
    for (const auto &[x, y] : handles) {
        const QPointF away = position - middleOf({x, y}, shown(m_cells));
        if (std::max(std::abs(away.x()), std::abs(away.y())) <= handleReach)
            return {x, y};
    }
    return {};
}

void ExtractionView::paintEvent(QPaintEvent *)
{
    if (m_grid.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF all = area();
    painter.fillRect(all, palette().color(QPalette::Base));
    if (!m_picture.isNull())
        painter.drawImage(all, m_picture);

    const QRectF chosen = shown(m_cells);
    QPainterPath outside;
    outside.addRect(all);
    outside.addRect(chosen); // the rule of odd and even leaves it out
    painter.fillPath(outside, QColor(0, 0, 0, 130));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const QColor line = hasFocus() ? palette().color(QPalette::Highlight) : QColor(Qt::black);
    painter.setPen(QPen(Qt::white, 4.0)); // seen on a dark picture, and the line on a light one
    painter.drawRect(chosen);
    painter.setPen(QPen(line, 2.0));
    painter.drawRect(chosen);
    painter.setBrush(Qt::white);
    painter.setPen(QPen(line, 1.5));
    for (const auto &[x, y] : handles) {
        QRectF handle(0.0, 0.0, handleSide, handleSide);
        handle.moveCenter(middleOf({x, y}, chosen));
        painter.drawRect(handle);
    }
}

void ExtractionView::showPointer(const QPointF &position)
{
    const Handle handle = handleAt(position);
    if (!handle.isNull())
        setCursor(pointerOf(handle));
    else
        setCursor(shown(m_cells).contains(position) ? Qt::SizeAllCursor : Qt::CrossCursor);
}

void ExtractionView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_grid.isEmpty())
        return;
    m_handle = handleAt(event->localPos());
    m_from = cellAt(event->localPos());
    m_before = m_cells;
    const bool isWhole = m_cells == QRect(QPoint(0, 0), m_grid); // it has no room to move
    if (!m_handle.isNull())
        m_drag = Drag::Edges;
    else
        m_drag = shown(m_cells).contains(event->localPos()) && !isWhole ? Drag::Whole : Drag::New;
}

void ExtractionView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF to = cellAt(event->localPos());
    switch (m_drag) {
    case Drag::None:
        showPointer(event->localPos());
        break;
    case Drag::Edges:
        change(resizedCells(m_before, m_handle, to, m_grid));
        break;
    case Drag::Whole:
        change(movedCells(m_before, (to - m_from).toPoint(), m_grid));
        break;
    case Drag::New:
        change(draggedCells(m_from, to, m_grid));
        break;
    }
}

void ExtractionView::mouseReleaseEvent(QMouseEvent *)
{
    m_drag = Drag::None;
}

void ExtractionView::keyPressEvent(QKeyEvent *event)
{
    const QPoint direction = directionOf(event->key());
    if (direction.isNull() || m_grid.isEmpty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    constexpr double pixels = 6.0; // that a key moves by
    const int step = event->modifiers().testFlag(Qt::ControlModifier)
        ? 1
        : std::max(1, static_cast<int>(pixels * m_grid.width() / area().width()));
    const QPoint by = direction * step;
    if (event->modifiers().testFlag(Qt::ShiftModifier))
        change(resizedCells(m_cells, {1, 1}, m_cells.topLeft() + QPoint(m_cells.width(), m_cells.height()) + by,
                            m_grid));
    else
        change(movedCells(m_cells, by, m_grid));
}

void ExtractionView::change(const QRect &cells)
{
    if (cells == m_cells)
        return;
    setCells(cells);
    emit cellsChanged(cells);
}
