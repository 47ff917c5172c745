#include "messages/label.h"

#include <QCoreApplication>

QString labelText(const Label &label)
{
    return QCoreApplication::translate("Label", label.text, label.key);
}
