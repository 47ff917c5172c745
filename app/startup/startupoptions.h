#pragma once

#include <QString>
#include <QStringList>

// What the options of the program's command line do at start-up. In each list of arguments the first one is the
// program's name.

/// The options that the main dialog starts with. Option names are lower case.
struct StartupOptions
{
    bool any = false; ///< at least one of the members below was given

    /// -keep_startingdir: the first file dialog for a DEM opens in the current directory.
    bool keepStartingDir = false;

    /// -startingdtm <path>, or the first argument that is no option, as a file manager passes it: the first
    /// input DEM. The option takes precedence. Empty when there is neither.
    QString startingDtm;
};

/// Reads the options and the first file. All other arguments are skipped.
StartupOptions readStartupOptions(const QStringList &arguments);

/// Whether "-stylesheet" is among the arguments. Qt removes that option and its value from the arguments of the
/// application object, so that the caller passes the raw arguments before the object is made.
bool asksForStyleSheet(const QStringList &arguments);

/// Joins the three built-in style sheets to the application's.
///
/// applicationSheet: what the application object holds at start: empty, or "file:///" and the path that was
/// given by "-stylesheet". The user's sheet replaces the main dialog's. A sheet that cannot be read counts as
/// empty.
QString composeStyleSheet(const QString &applicationSheet);
