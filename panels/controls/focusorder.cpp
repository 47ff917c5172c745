#include "panels/controls/focusorder.h"

#include <QWidget>

void orderFocus(const QWidget &window, const QList<QWidget *> &areas)
{
    QList<QWidget *> controls;
    for (QWidget *control = window.nextInFocusChain(); control != &window;
         control = control->nextInFocusChain()) {
        // Of the widgets that stand for others, such as the field of a combo box, only an area itself counts.
        if (control->focusPolicy() != Qt::NoFocus && (!control->focusProxy() || areas.contains(control)))
            controls += control;
    }
    QWidget *last = nullptr;
    for (const QWidget *area : areas) {
        Q_ASSERT(area);
        for (QWidget *control : qAsConst(controls)) {
            if (control != area && !area->isAncestorOf(control))
                continue;
            if (last)
                QWidget::setTabOrder(last, control);
            last = control;
        }
    }
}
