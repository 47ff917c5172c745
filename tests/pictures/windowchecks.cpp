#include "tests/pictures/windowchecks.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QHash>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyleOptionComboBox>
#include <QToolButton>
#include <QWidget>

#include <algorithm>

namespace
{

QString nameOf(const QWidget &widget)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(widget.metaObject()->className()), widget.objectName());
}

bool takesTab(const QWidget &widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isVisible() && widget.isEnabled()
        && !widget.focusProxy();
}

/// Whether the text of a label, a button or a list needs more room than it has.
bool isCut(const QWidget &widget)
{
    constexpr int rounding = 1; // pixel
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        if (label->text().isEmpty())
            return false;
        return label->wordWrap() ? label->heightForWidth(label->width()) > label->height() + rounding
                                 : label->sizeHint().width() > label->width() + rounding;
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        const auto *tool = qobject_cast<const QToolButton *>(button);
        const bool showsText = !tool || tool->toolButtonStyle() != Qt::ToolButtonIconOnly;
        return showsText && !button->text().isEmpty()
            && button->sizeHint().width() > button->width() + rounding;
    }
    if (const auto *combo = qobject_cast<const QComboBox *>(&widget); combo && !combo->isEditable()) {
        QStyleOptionComboBox option;
        option.initFrom(combo);
        option.editable = false;
        const QRect room =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
        return combo->fontMetrics().horizontalAdvance(combo->currentText()) > room.width() + rounding;
    }
    return false;
}

bool hasName(QWidget &widget)
{
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&widget);
    return face && !face->text(QAccessible::Name).trimmed().isEmpty();
}

/// The controls in the order of the Tab key, without the parts of which a control consists.
QList<QWidget *> tabOrder(const QWidget &window)
{
    QList<QWidget *> controls;
    for (QWidget *widget = window.nextInFocusChain(); widget != &window; widget = widget->nextInFocusChain()) {
        if (takesTab(*widget) && window.isAncestorOf(widget) && !widget->objectName().startsWith("qt_"))
            controls += widget;
    }
    return controls;
}

/// The area that scrolls with the control in it, or the window.
const QWidget &areaOf(const QWidget &window, const QWidget &control)
{
    const QWidget *parent = control.parentWidget();
    while (parent != &window && !qobject_cast<const QScrollArea *>(parent))
        parent = parent->parentWidget();
    const auto *area = qobject_cast<const QScrollArea *>(parent);
    return area ? *area->widget() : window;
}

} // namespace

QStringList windowProblems(const QWidget &window, const QSize &screen)
{
    QStringList problems;
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!widget->isVisible())
            continue;
        if (isCut(*widget))
            problems += nameOf(*widget) + QStringLiteral(" is cut");
        const auto *label = qobject_cast<const QLabel *>(widget);
        if (label && label->text().contains(QLatin1String("<a href")) && !takesTab(*label))
            problems += nameOf(*widget) + QStringLiteral(" has a link that the keyboard does not reach");
    }
    const QList<QWidget *> controls = tabOrder(window);
    QHash<const QWidget *, QList<QRect>> before; // the places in each area
    for (QWidget *control : controls) {
        if (!hasName(*control))
            problems += nameOf(*control) + QStringLiteral(" has no name");
        const QWidget &area = areaOf(window, *control);
        const QRect place(control->mapTo(const_cast<QWidget *>(&area), QPoint(0, 0)), control->size());
        QList<QRect> &others = before[&area];
        const bool isLate = std::any_of(others.begin(), others.end(), [&](const QRect &other) {
            return place.bottom() < other.top() && place.left() < other.right() && other.left() < place.right();
        });
        if (isLate)
            problems += nameOf(*control) + QStringLiteral(" comes too late in the order of the Tab key");
        others += place;
    }
    if (!window.inherits("QDialog"))
        return problems; // part of a window
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    if (least.width() > screen.width() || least.height() > screen.height())
        problems += QStringLiteral("the window needs %1 x %2").arg(least.width()).arg(least.height());
    return problems;
}
