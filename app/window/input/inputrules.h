#pragma once

#include <QString>
#include <QStringList>

// Rules of the input field that need no window.

/// The list of recent paths with `path` at its head. The list holds absolute paths, newest first, each once,
/// and at most ten.
QStringList withRecent(const QStringList &recent, const QString &path);

/// The places where the file dialog for a DEM may start. An unknown place is empty.
struct StartDirectory
{
    QString lastChosenFolder; ///< folder of the DEM that was last selected in the file dialog
    bool keepCurrent = false; ///< the dialog should start in the current directory
    QString currentDirectory; ///< the process's current directory
    QString inputText;        ///< text of the input field
    QString secondRecent;     ///< second path of the recent list. Not the first: kept so on purpose
};

/// The folder or file that the dialog starts with: the last chosen folder; else the current directory where
/// `keepCurrent` is set; else the input's text; else the second recent path.
QString startDirectory(const StartDirectory &choices);
