#pragma once

#include <QString>
#include <QStringList>

// Rules of the main dialog that need no window.

/// Whether the launch button is enabled.
bool canLaunch(bool hasInput, const QString &output, bool panelIsComplete);

/// The recent list with the path at its head. The list holds absolute paths, newest first, each once, and ten
/// at most.
QStringList withRecent(const QStringList &recent, const QString &path);

/// What the file dialog for choosing a DEM can begin with. Empty texts stand for what is not known.
struct StartDirectory
{
    QString lastChosenFolder; ///< folder of the DEM that was last chosen in the file dialog
    bool keepCurrent = false; ///< whether the current directory is to be kept
    QString currentDirectory; ///< the process's current directory
    QString inputText;        ///< text of the input field
    QString secondRecent;     ///< second path of the recent list; not the first, kept so on purpose
};

/// The folder or file that the dialog begins with: the last chosen folder; else the current directory where it
/// is to be kept; else the input's text; else the second recent path.
QString startDirectory(const StartDirectory &choices);
