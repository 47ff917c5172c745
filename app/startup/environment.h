#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

// What the program takes from its surroundings at start, and what it hands on to GDAL and to the tools.

/// Makes sure that file names of any language reach the tools: in a locale without an encoding of its own ("C",
/// "POSIX") the process and its children use UTF-8. Called before the application object is made; does nothing
/// elsewhere.
void useUtf8Paths();

/// Makes Qt draw without a display, unless the environment names a platform. Called before the application
/// object is made.
void useOffscreenPlatform();

/// Settings of one installation.
struct Environment
{
    QString language;     ///< "FRENCH", "ENGLISH" or another name of messages/dicoindex.h
    QString installDir;   ///< root of data, driver and the messages
    QString messagesPath; ///< folder of the dictionaries
};

/// The environment file of a program: its path without ".exe" (in any letters) and with "_env.ini" behind it;
/// when there is no such file, "setup_env.ini" in its folder, whether that exists or not.
QString environmentFile(const QString &executable);

/// "FRENCH" where the system's language is French, "ENGLISH" everywhere else.
QString systemLanguage();

/// Reads the environment file (see its comments), the settings that it refers to, and the system's language.
/// Sets no variable.
Environment readEnvironment(const QString &executable);

/// Variables that GDAL, OGR and the tools read, as "NAME=value" in the file system's encoding, in the order in
/// which they are exported. Those of a folder that the installation lacks are left out, but on Windows: a
/// GDAL_DATA or a driver path that leads nowhere would switch off GDAL's own. searchPath: the value of PATH so
/// far.
QVector<QByteArray> gdalVariables(const QString &installDir, const QByteArray &searchPath);

/// The folders in which GDAL looks for drivers of an installation, in one text; empty where they are not
/// exported.
QString driverPath(const QString &installDir);

/// Exports QUVO_BIN_HOME.
void exportInstallDir(const QString &installDir);

/// Exports gdalVariables() and sets what Windows drops from the environment for this process's own GDAL.
void exportGdalVariables(const QString &installDir);

/// Gives the C-level messages (messages/dico.h) the language in use, where the environment says nothing else.
void exportMessageVariables(const Environment &environment);

/// Gives them another language, where the one before was given by exportMessageVariables().
void exportLanguage(const QString &before, const QString &now);
