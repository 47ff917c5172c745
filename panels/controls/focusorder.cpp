#include "panels/controls/focusorder.h"

#include "panels/controls/LinkLabel.h"

#include <QVector>
#include <QWidget>

#include <utility>

namespace
{

/// Lets widgets take the focus as long as it lives. QWidget::setTabOrder() passes the others by.
class FocusTakers
{
public:
    FocusTakers() = default;
    Q_DISABLE_COPY_MOVE(FocusTakers)
    ~FocusTakers()
    {
        for (const auto &[widget, policy] : qAsConst(m_policies))
            widget->setFocusPolicy(policy);
    }

    void add(QWidget &widget)
    {
        m_policies.append({&widget, widget.focusPolicy()});
        widget.setFocusPolicy(Qt::TabFocus);
    }

private:
    QVector<std::pair<QWidget *, Qt::FocusPolicy>> m_policies; ///< those before
};

} // namespace

void orderFocus(QWidget &window, const QList<QWidget *> &areas)
{
    FocusTakers takers;
    QList<QWidget *> controls;
    for (QWidget *control = window.nextInFocusChain(); control != &window;
         control = control->nextInFocusChain()) {
        if (control->focusPolicy() == Qt::NoFocus && qobject_cast<LinkLabel *>(control))
            takers.add(*control); // it may get a link
        // Of the widgets that stand for others, such as the field of a combo box, only an area itself counts.
        if (control->focusPolicy() != Qt::NoFocus && (!control->focusProxy() || areas.contains(control)))
            controls += control;
    }
    // The chain is a ring: it begins at the window, which Qt moves only while it takes the focus.
    takers.add(window);
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
}
