#pragma once

#include "panels/options/processoptions.h"

#include <QString>
#include <QStringList>

// What the main dialog decides, without the dialog.

/// Whether the launch button is enabled.
bool canLaunch(bool hasInput, const QString &output, bool panelIsComplete);

/// The recent list with the path at its head: absolute paths, each once, the newest first, ten at most.
QStringList withRecent(const QStringList &recent, const QString &path);

/// Where the dialog for choosing a DEM begins: the folder of the last one chosen in it; the current directory
/// where it is to be kept; the input's text; or, where that is empty, the second of the recent list (not the
/// first: kept so on purpose).
struct StartDirectory
{
    QString lastChosenFolder;
    bool keepCurrent = false;
    QString currentDirectory;
    QString inputText;
    QString secondRecent;
};
QString startDirectory(const StartDirectory &choices);

/// The name of an input's product: "<folder>/<base>_<suffix>.<extension>". A data set that is no local file
/// gets one in the current directory.
QString productName(const QString &input, const QString &suffix, const QString &extension);

/// That name, or where such a file is there already "<folder>/<base>_<suffix>_<n>.<extension>" with the first
/// free n from 2 on.
QString proposeOutputName(const QString &input, const QString &suffix, const QString &extension);

/// Whether the name is one of those proposals, whatever its extension and number.
bool isProposedName(const QString &name, const QString &input, const QString &suffix);

/// A name that the user gave, for a process whose products have the extensions: another process's extension
/// (knownExtensions) makes place for the first of them, anything else stays.
QString adaptExtension(const QString &name, const QStringList &extensions, const QStringList &knownExtensions);

/// An output name without a folder, or with a relative one, is one of the input's folder; any other stays.
QString besideInput(const QString &name, const QString &input);

/// Whether a product hangs on the DEM's extreme elevations: how many contour lines there will be, or the
/// elevations that a colour table is spread over.
bool needsExtremes(const ProcessOptions &options);

/// The compass reading of a shaded relief; none for any other process.
std::optional<double> compassOf(const ProcessOptions &options);
