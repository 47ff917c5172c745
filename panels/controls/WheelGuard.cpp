#include "panels/controls/WheelGuard.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>

namespace
{

bool changesWithTheWheel(const QWidget *widget)
{
    // The compass, the sun's slider and the thumb wheel share no public class with Qt's own.
    return qobject_cast<const QComboBox *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget)
        || (qobject_cast<const QAbstractSlider *>(widget) && !qobject_cast<const QScrollBar *>(widget))
        || widget->inherits("QwtAbstractSlider") || widget->inherits("QwtWheel");
}

} // namespace

WheelGuard::WheelGuard(QWidget *area)
    : QObject(area)
{
    for (QWidget *widget : area->findChildren<QWidget *>()) {
        if (!changesWithTheWheel(widget))
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
