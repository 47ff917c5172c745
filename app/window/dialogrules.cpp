#include "app/window/dialogrules.h"

#include "messages/label.h"

bool canLaunch(bool hasInput, const QString &output, bool panelIsComplete)
{
    return hasInput && !output.isEmpty() && panelIsComplete;
}

QString commandCopiedText()
{
    return labelText({"MESS_REGL_COPIEE", "La commande est dans le presse-papiers."});
}
