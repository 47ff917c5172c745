#include "app/window/input/inputrules.h"

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
