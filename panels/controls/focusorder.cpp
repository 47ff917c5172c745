#include "panels/controls/focusorder.h"

#include <QWidget>

void orderFocus(QWidget &window, const QList<QWidget *> &areas)
{
    QList<QWidget *> controls;
    for (QWidget *control = window.nextInFocusChain(); control != &window;
         control = control->nextInFocusChain()) {
        // Of the widgets that stand for others, such as the field of a combo box, only an area itself counts.
        if (control->focusPolicy() != Qt::NoFocus && (!control->focusProxy() || areas.contains(control)))
            controls += control;
    }
    // The order is a circle that begins at the window, so the first control has to follow it;
    // QWidget::setTabOrder() would refuse a window that takes no focus.
    const Qt::FocusPolicy policy = window.focusPolicy();
    window.setFocusPolicy(Qt::TabFocus);
    QWidget *last = &window;
    for (const QWidget *area : areas) {
        Q_ASSERT(area);
        for (QWidget *control : qAsConst(controls)) {
            if (control != area && !area->isAncestorOf(control))
                continue;
            QWidget::setTabOrder(last, control);
            last = control;
        }
    }
    window.setFocusPolicy(policy);
}
