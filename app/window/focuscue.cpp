#include "app/window/focuscue.h"

#include <QApplication>
#include <QFocusEvent>
#include <QWidget>

namespace
{

class FocusCue : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QEvent::Type type = event->type();
        if (type == QEvent::KeyPress || type == QEvent::ShortcutOverride) // which a letter with Alt sends alone
            m_byKey = true;
        else if (type == QEvent::MouseButtonPress)
            m_byKey = false;
        else if (type == QEvent::FocusIn && m_byKey)
            show(qobject_cast<QWidget *>(watched), static_cast<QFocusEvent *>(event)->reason());
        return QObject::eventFilter(watched, event);
    }

private:
    static void show(QWidget *widget, Qt::FocusReason reason)
    {
        if (!widget || reason != Qt::ActiveWindowFocusReason)
            return;
        widget->window()->setAttribute(Qt::WA_KeyboardFocusChange);
        widget->update();
    }

    bool m_byKey = false; ///< a key was pressed after the last press of the mouse
};

} // namespace

void showFocusAfterKeys()
{
    qApp->installEventFilter(new FocusCue(qApp));
}
