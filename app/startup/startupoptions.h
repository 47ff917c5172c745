#pragma once

#include <QString>
#include <QStringList>

/// What the program's own command-line options ask for.
struct StartupOptions
{
    bool any = false; ///< whether one of the two below was given
    bool keepStartingDir =
        false;           ///< -keep_startingdir: the first choice of a DEM begins in the current directory
    QString startingDtm; ///< -startingdtm <path>: the input DEM at first; empty when it was not given
};

/// Whether "-stylesheet" is among the arguments. Qt itself takes the option and its value away, so this is
/// asked of the raw arguments before the application object is made. The first argument is the program's name.
bool asksForStyleSheet(const QStringList &arguments);

/// Reads the program's options; small letters only, everything else is skipped. The first argument is the
/// program's name.
StartupOptions readStartupOptions(const QStringList &arguments);
