#include "colortable/editor/GradientView.h"

#include "colortable/editor/tablepainting.h"
#include "colortable/oklab.h"
#include "colortable/roundticks.h"
#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int sideMargin = 14; // pixels beside the ramp, for the handles at its ends
constexpr int rampHeight = 34;
constexpr int handleHeight = 20;
constexpr int handleHalf = 6; // half of a handle's width
constexpr int lightnessHeight = 38;
constexpr int gap = 4;
constexpr int farAway = 60; // pixels from the ramp at which a dragged cursor is removed

QPolygonF handleShape(double x, const QRect &area)
{
    const double top = area.top();
    const double bottom = area.bottom();
    return {{{x, top},
             {x + handleHalf, top + 7},
             {x + handleHalf, bottom},
             {x - handleHalf, bottom},
             {x - handleHalf, top + 7}}};
}

} // namespace

GradientView::GradientView(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

void GradientView::setTable(const EditedTable &table, int selected)
{
    const bool newRamp = !(table == m_table);
    m_table = table;
    m_selected = selected;
    if (newRamp) {
        m_shares = segmentShares(m_table, m_sample);
        m_turns = lightnessTurns(m_table);
        if (!m_dragging)
            updateScale();
    }
    describeSelection();
    update();
}

void GradientView::setSample(const QVector<double> &sample)
{
    m_sample = sample;
    m_shares = segmentShares(m_table, m_sample);
    updateScale();
    update();
}

void GradientView::setVision(ColorVision vision)
{
    m_vision = vision;
    update();
}

void GradientView::setZoomed(bool zoomed)
{
    m_zoomed = zoomed;
    updateScale();
    update();
}

void GradientView::updateScale()
{
    QVector<double> values;
    for (const ColorCursor &cursor : qAsConst(m_table.cursors)) {
        if (!m_zoomed || m_sample.isEmpty())
            values += cursor.value;
    }
    m_scale = gradientScale(values, m_sample, m_table.percent);
    m_scale.left = sideMargin;
    m_scale.width = qMax(1, width() - 2 * sideMargin);
}

GradientView::Areas GradientView::areas() const
{
    const int line = fontMetrics().height();
    const int left = m_scale.left;
    const int wide = m_scale.width;
    Areas areas;
    int bottom = height() - gap;
    const auto takeFromBottom = [&](int high) {
        bottom -= high;
        return QRect(left, bottom, wide, high);
    };
    areas.lightness = takeFromBottom(lightnessHeight);
    bottom -= gap;
    areas.axis = takeFromBottom(line + gap);
    areas.shares = takeFromBottom(line);
    areas.handles = takeFromBottom(handleHeight);
    areas.ramp = takeFromBottom(rampHeight);
    areas.histogram = QRect(left, gap, wide, qMax(0, bottom - gap));
    return areas;
}

QPoint GradientView::handlePlace(int at) const
{
    return {static_cast<int>(std::lround(m_scale.placeOf(m_table.cursors.at(at).value))),
            areas().handles.center().y()};
}

int GradientView::cursorAt(const QPoint &place) const
{
    const Areas parts = areas();
    if (place.y() < parts.ramp.top() || place.y() > parts.handles.bottom())
        return -1;
    int nearest = -1;
    double least = handleHalf + 2.0;
    for (int at = 0; at < m_table.cursors.size(); ++at) {
        const double distance = std::abs(m_scale.placeOf(m_table.cursors.at(at).value) - place.x());
        // The selected cursor lies on top; of an edge the cursor on the mouse's side is taken.
        const bool isUpper = distance == least && place.x() > m_scale.placeOf(m_table.cursors.at(at).value);
        if (distance < least || isUpper || (distance == least && at == m_selected)) {
            nearest = at;
            least = distance;
        }
    }
    return nearest;
}

QString GradientView::valueText(double value) const
{
    const bool isWhole = value == std::round(value);
    return shownNumber(value, 'f', isWhole ? 0 : 1, locale())
        + (m_table.percent ? QStringLiteral(" %") : QString());
}

/// For screen readers.
void GradientView::describeSelection()
{
    if (m_selected < 0)
        return;
    const ColorCursor &cursor = m_table.cursors.at(m_selected);
    setAccessibleDescription(labelText({"MESS_TCE_CURSEUR", "Couleur %1 sur %2, à %3 : %4"})
                                 .arg(QString::number(m_selected + 1), QString::number(m_table.cursors.size()),
                                      valueText(cursor.value), cursor.color.name()));
}

void GradientView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Areas parts = areas();
    paintHistogram(painter, parts.histogram);
    paintRamp(painter, parts.ramp);
    paintHandles(painter, parts.handles);
    paintShares(painter, parts.shares);
    paintAxis(painter, parts.axis);
    paintLightness(painter, parts.lightness);
}

void GradientView::paintHistogram(QPainter &painter, const QRect &area) const
{
    if (m_sample.isEmpty() || area.height() < 4)
        return;
    QVector<double> counts;
    auto begin = std::lower_bound(m_sample.begin(), m_sample.end(), m_scale.valueAt(area.left()));
    for (int x = area.left(); x <= area.right(); ++x) {
        const auto end = std::lower_bound(begin, m_sample.end(), m_scale.valueAt(x + 1));
        counts += std::sqrt(static_cast<double>(end - begin)); // so that rare elevations can be seen, too
        begin = end;
    }
    const double highest = *std::max_element(counts.begin(), counts.end());
    if (highest <= 0.0)
        return;
    QPainterPath shape(QPointF(area.left(), area.bottom()));
    for (int column = 0; column < counts.size(); ++column)
        shape.lineTo(area.left() + column + 0.5,
                     area.bottom() - counts.at(column) / highest * (area.height() - 2));
    shape.lineTo(area.right(), area.bottom());
    QColor fill = palette().color(QPalette::WindowText);
    fill.setAlphaF(0.35F);
    painter.fillPath(shape, fill);
}

void GradientView::paintRamp(QPainter &painter, const QRect &area) const
{
    const qreal scale = devicePixelRatioF();
    QImage ramp(qMax(1, qRound(area.width() * scale)), 1, QImage::Format_ARGB32);
    for (int x = 0; x < ramp.width(); ++x)
        ramp.setPixelColor(
            x, 0, seenWith(colorOf(m_table, m_scale.valueAt(area.left() + (x + 0.5) / scale)), m_vision));
    paintChecker(painter, area);
    painter.drawImage(area, ramp);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area.adjusted(0, 0, -1, -1));
    painter.setRenderHint(QPainter::Antialiasing);
}

void GradientView::paintHandles(QPainter &painter, const QRect &area) const
{
    const auto paint = [&](int at) {
        const ColorCursor &cursor = m_table.cursors.at(at);
        if (cursor.value < m_scale.first || cursor.value > m_scale.last)
            return;
        const bool isSelected = at == m_selected;
        if (isSelected && m_draggedAway)
            return;
        QColor fill = seenWith(cursor.color, m_vision);
        fill.setAlpha(255);
        const QColor frame = palette().color(isSelected ? QPalette::Highlight : QPalette::WindowText);
        painter.setPen(QPen(frame, isSelected ? 2.5 : 1.0));
        painter.setBrush(fill);
        painter.drawPolygon(handleShape(m_scale.placeOf(cursor.value), area.adjusted(0, 1, 0, -2)));
        if (isSelected && hasFocus()) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
            painter.setBrush(Qt::NoBrush);
            const int x = static_cast<int>(m_scale.placeOf(cursor.value));
            painter.drawRect(QRect(x - handleHalf - 3, area.top(), 2 * handleHalf + 6, area.height()));
        }
    };
    for (int at = 0; at < m_table.cursors.size(); ++at) {
        if (at != m_selected)
            paint(at);
    }
    if (m_selected >= 0)
        paint(m_selected); // on top
}

void GradientView::paintShares(QPainter &painter, const QRect &area) const
{
    painter.setPen(palette().color(QPalette::WindowText));
    for (int segment = 0; segment < m_shares.size(); ++segment) {
        const auto placeOf = [&](int at) { return m_scale.placeOf(m_table.cursors.at(at).value); };
        const double left = area.left() - sideMargin;
        const double right = area.right() + sideMargin;
        const double from = segment == 0 ? left : qBound(left, placeOf(segment - 1), right);
        const double to = segment == m_table.cursors.size() ? right : qBound(left, placeOf(segment), right);
        const double share = m_shares.at(segment);
        const int decimals = share > 0.0 && share < 9.95 ? 1 : 0;
        const QString text = shownNumber(share, 'f', decimals, locale()) + QStringLiteral(" %");
        const bool isEnd = segment == 0 || segment == m_table.cursors.size();
        if (fontMetrics().horizontalAdvance(text) + 4 <= to - from && !(isEnd && share == 0.0))
            painter.drawText(QRectF(from, area.top(), to - from, area.height()), Qt::AlignCenter, text);
    }
}

void GradientView::paintAxis(QPainter &painter, const QRect &area) const
{
    const int widest = qMax(fontMetrics().horizontalAdvance(valueText(m_scale.first)),
                            fontMetrics().horizontalAdvance(valueText(m_scale.last)));
    QColor quiet = palette().color(QPalette::WindowText);
    quiet.setAlphaF(0.7F);
    painter.setPen(quiet);
    for (const double tick : roundTicks(m_scale.first, m_scale.last, area.width() / (widest + 24))) {
        const double x = m_scale.placeOf(tick);
        const QString text = valueText(tick);
        const double half = fontMetrics().horizontalAdvance(text) / 2.0;
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.top() + 3));
        const double left = qBound(0.0, x - half, width() - 2 * half);
        painter.drawText(QPointF(left, area.top() + 3 + fontMetrics().ascent()), text);
    }
}

/// The curve of the lightness, from black at the bottom to white at the top, and a line where it turns back.
void GradientView::paintLightness(QPainter &painter, const QRect &area) const
{
    painter.fillRect(area, palette().color(QPalette::Base));
    QPolygonF curve;
    for (int x = area.left(); x <= area.right(); x += 2) {
        const QColor color = seenWith(colorOf(m_table, m_scale.valueAt(x + 0.5)), m_vision);
        curve += QPointF(x, area.bottom() - 2 - toOkLab(color).lightness * (area.height() - 4));
    }
    painter.setPen(QPen(QColor(0xd0, 0x50, 0x20), 1.5, Qt::DashLine));
    for (const double turn : m_turns) {
        const double x = m_scale.placeOf(turn);
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
    painter.setPen(QPen(palette().color(QPalette::Text), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(curve);
}

bool GradientView::event(QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const int at = cursorAt(help->pos());
    QString text;
    if (at >= 0)
        text = QStringLiteral("%1  %2").arg(valueText(m_table.cursors.at(at).value),
                                            m_table.cursors.at(at).color.name());
    else if (areas().lightness.contains(help->pos()))
        text = labelText({"MESS_TCE_CLARTE",
                          "Clarté des couleurs, du noir en bas au blanc en haut. Un trait marque où elle "
                          "s'inverse : des altitudes également espacées n'y paraissent plus l'être."});
    else
        text = labelText({"MESS_TCE_DEGRADE",
                          "Double-clic : ajouter une couleur. Glisser : la déplacer ; loin du dégradé : la "
                          "supprimer."});
    QToolTip::showText(help->globalPos(), text, this);
    return true;
}

void GradientView::mousePressEvent(QMouseEvent *event)
{
    const int at = event->button() == Qt::LeftButton ? cursorAt(event->pos()) : -1;
    if (at < 0)
        return;
    m_grip = event->pos().x() - m_scale.placeOf(m_table.cursors.at(at).value);
    m_dragging = true;
    m_draggedAway = false;
    ++m_series;
    emit selected(at);
}

void GradientView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging) {
        setCursor(cursorAt(event->pos()) >= 0 ? Qt::SizeHorCursor : Qt::ArrowCursor);
        return;
    }
    const Areas parts = areas();
    const int above = parts.ramp.top() - event->pos().y();
    const int below = event->pos().y() - parts.handles.bottom();
    const bool isAway = qMax(above, below) > farAway && m_table.cursors.size() > 1;
    if (isAway != m_draggedAway) {
        m_draggedAway = isAway;
        setCursor(isAway ? Qt::ForbiddenCursor : Qt::SizeHorCursor);
        update();
    }
    if (!isAway)
        emit moved(m_selected, m_scale.valueAt(event->pos().x() - m_grip), m_series);
}

void GradientView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_dragging || event->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    const bool isRemoval = std::exchange(m_draggedAway, false);
    setCursor(Qt::ArrowCursor);
    updateScale();
    update();
    if (isRemoval)
        emit removed(m_selected);
}

void GradientView::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_dragging = false;
    if (event->button() == Qt::LeftButton && cursorAt(event->pos()) < 0)
        emit added(m_scale.valueAt(event->pos().x()));
}

void GradientView::keyPressEvent(QKeyEvent *event)
{
    const int last = static_cast<int>(m_table.cursors.size()) - 1;
    if (m_selected < 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    const double value = m_table.cursors.at(m_selected).value;
    const double step = keyStep(m_scale) * (event->modifiers() & Qt::ShiftModifier ? 10.0 : 1.0);
    switch (event->key()) {
    case Qt::Key_Left:
        emit moved(m_selected, value - step, ++m_series);
        break;
    case Qt::Key_Right:
        emit moved(m_selected, value + step, ++m_series);
        break;
    case Qt::Key_Up:
        emit selected(qMin(last, m_selected + 1));
        break;
    case Qt::Key_Down:
        emit selected(qMax(0, m_selected - 1));
        break;
    case Qt::Key_Home:
        emit selected(0);
        break;
    case Qt::Key_End:
        emit selected(last);
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        emit removed(m_selected);
        break;
    case Qt::Key_Insert:
        emit added(m_selected < last ? (value + m_table.cursors.at(m_selected + 1).value) / 2.0 : value + step);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void GradientView::resizeEvent(QResizeEvent *)
{
    updateScale();
}

QSize GradientView::sizeHint() const
{
    return {520, minimumSizeHint().height() + 60};
}

QSize GradientView::minimumSizeHint() const
{
    return {280, rampHeight + handleHeight + lightnessHeight + 2 * fontMetrics().height() + 60};
}
