#include "panels/controls/ClickSlider.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>

QRect ClickSlider::handle() const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}

int ClickSlider::valueAt(const QPoint &place) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect groove = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
    const bool isVertical = orientation() == Qt::Vertical;
    const int length = isVertical ? handle().height() : handle().width();
    const int room = (isVertical ? groove.height() : groove.width()) - length;
    const int at = (isVertical ? place.y() - groove.y() : place.x() - groove.x()) - length / 2;
    return QStyle::sliderValueFromPosition(minimum(), maximum(), at, room, option.upsideDown);
}

void ClickSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || handle().contains(event->pos())) {
        QSlider::mousePressEvent(event);
        return;
    }
    setValue(valueAt(event->pos()));
    // A press beside the handle would move it by a page: the base class receives one on the handle, which
    // begins a drag.
    QMouseEvent press(event->type(), handle().center(), event->button(), event->buttons(), event->modifiers());
    QSlider::mousePressEvent(&press);
}
