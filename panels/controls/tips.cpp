#include "panels/controls/tips.h"

#include <QVariant>
#include <QWidget>

namespace
{

constexpr const char *meaningProperty = "optionMeaning";
constexpr const char *remarkProperty = "optionRemark";

void showTip(QWidget &control)
{
    const QString remark = control.property(remarkProperty).toString();
    const QString meaning = control.property(meaningProperty).toString();
    control.setToolTip(remark.isEmpty() || meaning.isEmpty() ? remark + meaning
                                                             : remark + QStringLiteral("\n\n") + meaning);
}

} // namespace

void setTip(QWidget &control, const QString &meaning)
{
    control.setProperty(meaningProperty, meaning);
    showTip(control);
}

void setTipRemark(QWidget &control, const QString &remark)
{
    control.setProperty(remarkProperty, remark);
    showTip(control);
}
