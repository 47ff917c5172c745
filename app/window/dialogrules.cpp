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

QStringList withRecent(const QStringList &recent, const QString &path)
{
    constexpr int mostRecent = 10;
    QStringList list = recent;
    list.removeAll(path);
    list.prepend(path);
    return list.mid(0, mostRecent);
}

QString startDirectory(const StartDirectory &choices)
{
    if (!choices.lastChosenFolder.isEmpty())
        return choices.lastChosenFolder;
    if (choices.keepCurrent)
        return choices.currentDirectory;
    return choices.inputText.isEmpty() ? choices.secondRecent : choices.inputText;
}
