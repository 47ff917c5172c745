#pragma once

#include "app/process/processes.h"

#include <QString>
#include <QStringList>

/// An output name as a run takes it, or why no run can take it.
struct OutputName
{
    QString path;    ///< absolute, with an extension of the format
    QString problem; ///< why it cannot be used, in a sentence; empty for a good name
};

/// Appends the first extension to a name whose last part has none.
QString withExtension(const QString &name, const QStringList &extensions);

/// Judges an output name before a run.
///
/// Not usable: an empty name, one with control characters, a folder, a name in a folder that is missing or
/// cannot be written to, a file that cannot be written to, an extension that is none of the format's, and the
/// input itself: the tool would overwrite it, and a stop would delete it. inputFiles are the files of the input
/// data set (RasterInfo); they are recognised under any of their names, through links, too. extensions are the
/// format's, without their dot; none: any extension will do. A relative name is one of the current directory.
OutputName checkOutputName(const QString &name, const QStringList &extensions, const QStringList &inputFiles);

/// Whether the path leads to one of the files, under any of their names.
bool isOneOf(const QString &path, const QStringList &files);

/// A sentence that says that a file is part of the input.
QString partOfInput(const QString &path);

/// The files that GDAL keeps under a raster's whole name ("a.tif.ovr" beside "a.tif"), whether they are there
/// or not.
QStringList wholeNameFiles(const QString &raster);

/// Bytes that a raster product of that size needs without compression; 0 for a vector product.
qint64 expectedProductSize(const ProcessRow &process, int width, int height);

/// Warns, in one sentence, that the disk of that file has less space left than `bytes`; empty when it has
/// enough, or when its space is not known.
QStringList freeSpaceWarnings(const QString &path, qint64 bytes);
