#include "colortable/editor/ColorGrid.h"

#include "colortable/editor/tablepainting.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace
{

constexpr int columns = 12;
constexpr int side = 18; // pixels of a square
constexpr int gap = 2;
constexpr int tableRows = 2;
constexpr int recentRows = 1;

/// The hues of maps, from dark to light; then greys.
constexpr QRgb fixedColors[] = {0x08306b, 0x08519c, 0x2171b5, 0x4292c6, 0x6baed6, 0x9ecae1, 0xc6dbef, 0x003c30,
                                0x01665e, 0x35978f, 0x80cdc1, 0xc7eae5, 0x00441b, 0x006d2c, 0x238b45, 0x41ab5d,
                                0x74c476, 0xa1d99b, 0xc7e9c0, 0xffffcc, 0xffeda0, 0xfed976, 0xfeb24c, 0xfd8d3c,
                                0x543005, 0x8c510a, 0xbf812d, 0xdfc27d, 0xf6e8c3, 0x67000d, 0xa50f15, 0xcb181d,
                                0xef3b2c, 0xfb6a4a, 0xfc9272, 0xfcbba1, 0x3f007d, 0x54278f, 0x6a51a3, 0x807dba,
                                0x9e9ac8, 0xbcbddc, 0x000000, 0x404040, 0x808080, 0xbfbfbf, 0xe0e0e0, 0xffffff};

QVector<QColor> inRows(const QVector<QColor> &colors, int rows)
{
    QVector<QColor> squares;
    for (const QColor &color : colors) {
        if (!squares.contains(color) && squares.size() < rows * columns)
            squares += color;
    }
    squares.resize(rows * columns);
    return squares;
}

} // namespace

ColorGrid::ColorGrid(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    rebuild();
}

void ColorGrid::setColors(const QVector<QColor> &ofTable, const QVector<QColor> &recent)
{
    m_ofTable = ofTable;
    m_recent = recent;
    rebuild();
    update();
}

void ColorGrid::rebuild()
{
    m_squares = inRows(m_ofTable, tableRows) + inRows(m_recent, recentRows);
    for (const QRgb color : fixedColors)
        m_squares += QColor(color);
}

QRect ColorGrid::squareOf(int index) const
{
    const int row = index / columns;
    const int groups = row < tableRows ? 0 : (row < tableRows + recentRows ? 1 : 2);
    return {1 + index % columns * (side + gap), 1 + row * (side + gap) + groups * 2 * gap, side, side};
}

int ColorGrid::squareAt(const QPoint &place) const
{
    for (int index = 0; index < m_squares.size(); ++index) {
        if (squareOf(index).contains(place))
            return index;
    }
    return -1;
}

QSize ColorGrid::sizeHint() const
{
    const QRect last = squareOf(static_cast<int>(m_squares.size()) - 1);
    return {last.right() + 2, last.bottom() + 2};
}

bool ColorGrid::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const QColor color = colorAt(squareAt(help->pos()));
    QToolTip::showText(help->globalPos(), color.isValid() ? color.name() : QString(), this);
    return true;
}

void ColorGrid::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    for (int index = 0; index < m_squares.size(); ++index) {
        const QRect square = squareOf(index);
        if (m_squares.at(index).isValid()) {
            paintSwatch(painter, square, m_squares.at(index), palette());
        } else {
            QColor faint = palette().color(QPalette::Mid);
            faint.setAlphaF(0.4F);
            painter.setPen(faint);
            painter.drawRect(square.adjusted(0, 0, -1, -1));
        }
        if (index == m_current && hasFocus()) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
            painter.drawRect(square.adjusted(0, 0, -1, -1));
        }
    }
}

void ColorGrid::mousePressEvent(QMouseEvent *event)
{
    const int index = squareAt(event->pos());
    if (index < 0)
        return;
    m_current = index;
    update();
    if (colorAt(index).isValid())
        emit picked(colorAt(index));
}

void ColorGrid::keyPressEvent(QKeyEvent *event)
{
    int next = m_current;
    switch (event->key()) {
    case Qt::Key_Left:
        --next;
        break;
    case Qt::Key_Right:
        ++next;
        break;
    case Qt::Key_Up:
        next -= columns;
        break;
    case Qt::Key_Down:
        next += columns;
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (colorAt(m_current).isValid())
            emit picked(colorAt(m_current));
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    if (next >= 0 && next < m_squares.size())
        m_current = next;
    setAccessibleDescription(colorAt(m_current).isValid() ? colorAt(m_current).name() : QString());
    update();
}
