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

/// The way in which a file that a step created is deleted.
enum class QuvoOutputFileKind
{
    PlainFile, ///< the file alone is removed
    Raster,    ///< by its GDAL driver, which also removes the side files
    Vector,    ///< by its GDAL driver, as a raster
};

/// A file that a step creates.
struct QuvoOutputFile
{
    QString path;
    QString driver; ///< GDAL's short name of the driver that writes the file; not used for a plain file
    QuvoOutputFileKind kind = QuvoOutputFileKind::PlainFile;
    /// Whether the driver also writes side files of the base name ("a.hdr" beside "a.img"), and not only of the
    /// whole name ("a.tif.aux.xml" beside "a.tif").
    bool ownsBaseName = false;
    QStringList sideExtensions{}; ///< extensions of these side files, without their dot
    /// The namesakes() that were there before the step. Where they are known, a deletion removes the file
    /// itself and the namesakes that came since; the driver is not asked, because its list of a data set's
    /// files may name any file.
    std::optional<QStringList> before{};
};

using QuvoOutputFilesList = QVector<QuvoOutputFile>;

/// The files of each step, one entry a step.
using QuvoOutputFilesListCollection = QVector<QuvoOutputFilesList>;

/// The progress window that is shown while a list of steps runs.
enum QuvoProgressDialogType
{
    NoProgressWindow = 0,
    ProgressWindowWithoutStop = 1,
    ProgressWindowWithStop = 2,
};
