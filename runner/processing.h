#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// One step: the whole command line, and the title that the progress window shows while it runs.
using QuvoProcessing = QPair<QString, QString>;

/// Steps in the order in which they run.
using QuvoProcessingCollection = QVector<QuvoProcessing>;

/// How a file that a step creates is deleted.
enum class QuvoOutputFileKind
{
    PlainFile, ///< removed as it stands
    Raster,    ///< through its GDAL driver, which removes its side files, too
    Vector,    ///< likewise
};

/// A file that a step creates.
struct QuvoOutputFile
{
    QString path;
    QString driver; ///< GDAL's short name of the driver that writes it; not used for a plain file
    QuvoOutputFileKind kind = QuvoOutputFileKind::PlainFile;
    /// Whether the driver writes side files of its base name, too (a.hdr beside a.img), and not only of its
    /// whole name (a.tif.aux.xml beside a.tif).
    bool ownsBaseName = false;
    /// Its namesakes() that were there before the step. Where this is known, a deletion takes the file itself
    /// and the namesakes that came since, and asks no driver: a driver's list of a data set's files may name
    /// anything.
    std::optional<QStringList> before{};
};

using QuvoOutputFilesList = QVector<QuvoOutputFile>;

/// The files of each step, one entry a step.
using QuvoOutputFilesListCollection = QVector<QuvoOutputFilesList>;

/// How the progress of a list is shown.
enum QuvoProgressDialogType
{
    NoProgressWindow = 0,
    ProgressWindowWithoutStop = 1,
    ProgressWindowWithStop = 2,
};
