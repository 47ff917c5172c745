#include "panels/controls/CompassDial.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace
{

constexpr int fullTurn = 360; // degrees

} // namespace

QSize CompassDial::sizeHint() const
{
    return {190, 190};
}

QSize CompassDial::minimumSizeHint() const
{
    return {150, 150};
}

void CompassDial::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (isScrollPosition(event->pos())) // on the dial
        setValue(scrolledTo(event->pos()));
    QwtCompass::mousePressEvent(event); // a drag begins at the needle's new place
}

double CompassDial::scrolledTo(const QPoint &place) const
{
    constexpr double smallestRadius = 4.0; // pixels; the centre has no direction
    const QLineF direction(QRectF(rect()).center(), place);
    if (direction.length() <= smallestRadius)
        return value();
    return (qRound(90.0 - direction.angle()) + fullTurn)
        % fullTurn; // Qt's angles are counter-clockwise from 3 h
}

void CompassDial::turn(int degrees)
{
    setValue(std::fmod(value() + degrees + fullTurn, fullTurn));
}

void CompassDial::keyPressEvent(QKeyEvent *event)
{
    const int step = static_cast<int>(singleSteps());
    const int page = static_cast<int>(pageSteps());
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Up:
        turn(step);
        break;
    case Qt::Key_Left:
    case Qt::Key_Down:
        turn(-step);
        break;
    case Qt::Key_PageUp:
        turn(page);
        break;
    case Qt::Key_PageDown:
        turn(-page);
        break;
    case Qt::Key_Home:
        setValue(0);
        break;
    case Qt::Key_End:
        setValue(fullTurn - 1);
        break;
    default:
        QwtCompass::keyPressEvent(event);
    }
}

void CompassDial::wheelEvent(QWheelEvent *event)
{
    m_wheelTurn += event->angleDelta().y();
    const int notches = m_wheelTurn / QWheelEvent::DefaultDeltasPerStep;
    m_wheelTurn %= QWheelEvent::DefaultDeltasPerStep;
    const bool pages = event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
    turn(notches * static_cast<int>(pages ? pageSteps() : singleSteps()));
}

void CompassDial::drawFocusIndicator(QPainter *painter) const
{
    constexpr double ring = 2.0; // pixels
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(palette().color(QPalette::Highlight), ring));
    const double inset = ring / 2.0;
    painter->drawEllipse(QRectF(boundingRect()).adjusted(inset, inset, -inset, -inset));
    painter->restore();
}
