#include "app/window/dialogrules.h"

#include "messages/label.h"

QString launchObstacle(bool hasInput, const QString &output, const QString &missing)
{
    if (!hasInput)
        return labelText({"MESS_MANQUE_MNT", "Choisissez un MNT."});
    if (!missing.isEmpty())
        return missing;
    return output.isEmpty() ? labelText({"MESS_MANQUE_SORTIE", "Donnez un nom au fichier à créer."})
                            : QString();
}

bool fitSideBySide(const PaneWidths &widths)
{
    return widths.panel + widths.handle + widths.map <= widths.available;
}

ShownPanes shownPanes(const PaneWidths &widths, bool mapWanted, bool mapInFront)
{
    if (!mapWanted)
        return ShownPanes::Panel;
    if (fitSideBySide(widths))
        return ShownPanes::Both;
    return mapInFront ? ShownPanes::Map : ShownPanes::Panel;
}

QSize firstWindowSize(const QSize &screen, const QSize &frame)
{
    constexpr double part = 0.9;
    constexpr QSize enough(1200, 700); // a smaller window is worth all of the screen
    constexpr QSize largest(1800, 1100);
    const QSize whole = screen - frame;
    return (QSizeF(screen) * part).toSize().expandedTo(enough).boundedTo(largest).boundedTo(whole);
}
