#include "panels/controls/tips.h"

#include "messages/label.h"

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

void nameReset(QWidget &button, QString option)
{
    option = option.trimmed();
    if (option.endsWith(QLatin1Char(':')))
        option = option.chopped(1).trimmed();
    option.replace(0, 1, option.left(1).toLower());
    const QString name = labelText({"MESS_TIP_DEFAUT", "Par défaut : %1"}).arg(option);
    button.setAccessibleName(name);
    button.setToolTip(name);
}
