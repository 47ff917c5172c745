#include "panels/controls/LinkLabel.h"

#include <QFocusEvent>

void LinkLabel::showText(const QString &text)
{
    const bool hasLink = text.contains(QLatin1String("<a "));
    setText(text);
    setTextInteractionFlags(hasLink ? Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard
                                    : Qt::NoTextInteraction);
    setFocusPolicy(hasLink ? Qt::StrongFocus : Qt::NoFocus);
}

void LinkLabel::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        focusNextPrevChild(event->reason() == Qt::TabFocusReason);
}

/// QLabel would find a link at the beginning of its text again and again on the way back.
bool LinkLabel::focusNextPrevChild(bool next)
{
    const int link = hasSelectedText() ? selectionStart() : -1;
    if (!QLabel::focusNextPrevChild(next))
        return false;
    if (!hasFocus() || selectionStart() != link)
        return true;
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): QLabel's own is what failed
    return QWidget::focusNextPrevChild(next);
}
