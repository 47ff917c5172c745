#include "app/window/WheelGuard.h"

#include <QAbstractScrollArea>
#include <QEvent>

namespace
{

/// Whether the widget is a control, which can take the focus, rather than an area that scrolls.
bool isControl(const QWidget *widget)
{
    return widget->focusPolicy() != Qt::NoFocus && !qobject_cast<const QAbstractScrollArea *>(widget);
}

} // namespace

WheelGuard::WheelGuard(QWidget *area)
    : QObject(area)
{
    const QList<QWidget *> widgets = area->findChildren<QWidget *>() + QList<QWidget *>{area};
    for (QWidget *widget : widgets) {
        if (!isControl(widget))
            continue;
        if (widget->focusPolicy() == Qt::WheelFocus) // the wheel would give the focus first
            widget->setFocusPolicy(Qt::StrongFocus);
        widget->installEventFilter(this);
    }
}

bool WheelGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus())
        return QObject::eventFilter(watched, event);
    event->ignore(); // it goes on to the widget's parent
    return true;
}
