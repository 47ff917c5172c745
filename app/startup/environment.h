#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

// The program's environment: what it reads at start-up, and what it sets for GDAL and the tools.

/// Switches the process and its children to UTF-8 where the locale has no encoding of its own ("C", "POSIX"),
/// so that file names of any language reach the tools. Does nothing in other locales. Called before the
/// application object is made.
void useUtf8Paths();

/// Makes Qt draw without a display, also where the environment names a platform, which may need one. Called
/// before the application object is made.
void useOffscreenPlatform();

/// Settings of one installation.
struct Environment
{
    QString language;     ///< "FRENCH", "ENGLISH" or another name of messages/dicoindex.h
    QString installDir;   ///< folder that holds "data", "driver" and the messages
    QString messagesPath; ///< folder of the dictionaries
};

/// Path of a program's environment file: the program's path without ".exe" (in any case), followed by
/// "_env.ini". Where no such file exists, "setup_env.ini" in the program's folder, whether that exists or not.
QString environmentFile(const QString &executable);

/// The name of the system's language where availableLanguages(messagesPath) has it, "ENGLISH" everywhere else.
QString systemLanguage(const QString &messagesPath);

/// Reads the environment file (resources/QuvoDemToolBox_env.ini describes its keys) and the settings that it
/// refers to. Where they name no language, the system's is used. Sets no variable.
Environment readEnvironment(const QString &executable);

/// Variables that GDAL, OGR and the tools read, as "NAME=value" in the file system's encoding, in the order in
/// which they are exported. Except on Windows, variables of a folder that the installation lacks are left out:
/// a GDAL_DATA or a driver path that leads nowhere would switch off GDAL's own. `searchPath` is the value of
/// PATH, which the installation's folder is put before.
QVector<QByteArray> gdalVariables(const QString &installDir, const QByteArray &searchPath);

/// The folders in which GDAL looks for the installation's drivers, joined by the list separator of the
/// platform; empty where they are not exported.
QString driverPath(const QString &installDir);

/// Exports QUVO_BIN_HOME, the installation's folder.
void exportInstallDir(const QString &installDir);

/// Exports gdalVariables() and, unless the user has set them, time limits for servers that do not answer
/// (docs/environment.md). Windows drops empty variables, so they are also set in this process's GDAL.
void exportGdalVariables(const QString &installDir);

/// Exports what lets tools that read windows of a large raster need less time and memory, unless the user has
/// set it. `hasPlainRows`: the raster is a file of whole rows, of which only the window is then read.
void exportWindowVariables(bool hasPlainRows);

/// Exports the folder and the language of the C-level messages (messages/dico.h). A variable that is set
/// already keeps its value.
void exportMessageVariables(const Environment &environment);

/// Exports another language for the C-level messages, unless the variable holds something other than `before`:
/// then the user set it.
void exportLanguage(const QString &before, const QString &now);
