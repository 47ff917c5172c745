#pragma once

#include "app/process/processes.h"

#include <QString>
#include <QStringList>

/// The result of checking an output name.
struct OutputName
{
    QString path;         ///< absolute path that the run writes, with an extension, links resolved
    QString problem;      ///< why the name cannot be used, in a sentence; empty for a good name
    bool isInput = false; ///< the problem is that the name leads to a file of the input
};

/// Appends the first extension to a name whose last part has no extension.
QString withExtension(const QString &name, const QStringList &extensions);

/// Checks an output name before a run. A relative name is one of the current directory.
///
/// These cannot be used: an empty name, a name with control characters or bytes that are no UTF-8, a file name
/// with a backslash (except on Windows), a folder, a device or a pipe, a name in a folder that is missing or
/// not writable, a file that is not writable, an extension that the format does not have, and a file of the
/// input, which the product would replace. A link stands for the file that it leads to. `inputFiles` are the
/// files of the input data set (RasterInfo::files), recognised through hard and symbolic links, too.
/// `extensions` are those of the format, without dots; where the list is empty, any extension is allowed.
OutputName checkOutputName(const QString &name, const QStringList &extensions, const QStringList &inputFiles);

/// Whether the path leads to something other than a regular file: a folder, a device, a pipe or a socket.
bool isSpecialFile(const QString &path);

/// A sentence: the path does not lead to a regular file.
QString specialFileProblem(const QString &path);

/// Whether the path leads to one of the files, through hard and symbolic links, too.
bool isOneOf(const QString &path, const QStringList &files);

/// A sentence: the file is part of the input DEM.
QString partOfInputProblem(const QString &path);

/// Paths of the files that GDAL keeps under a raster's whole name ("a.tif.ovr" beside "a.tif"), whether they
/// exist or not.
QStringList wholeNameFiles(const QString &raster);

/// Size in bytes of an uncompressed product of so many cells; 0 for a vector product.
qint64 expectedProductSize(const ProcessRow &process, int width, int height);

/// A sentence where the disk that holds the folder of `path` has less than `bytes` free; empty when it has
/// enough or its free space is unknown.
QStringList freeSpaceWarnings(const QString &path, qint64 bytes);
