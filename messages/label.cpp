#include "messages/label.h"

#include <QCoreApplication>

QString labelText(const Label &label)
{
    return QCoreApplication::translate("Label", label.text, label.key);
}

QString withColon(const QString &text)
{
    return text.trimmed().endsWith(QLatin1Char(':')) ? text : text + QLatin1Char(':');
}
