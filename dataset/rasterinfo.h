#pragma once

#include <QString>
#include <QStringList>

/// What is known of a raster once it has been opened.
struct RasterInfo
{
    int width = 0;     ///< columns
    int height = 0;    ///< rows
    int bandCount = 0; ///< bands are numbered from 1
    QStringList files; ///< local files of the data set, including those that a virtual raster refers to and the
                       ///< archive that holds a virtual path
    QString problem; ///< why it could not be opened, in a sentence, with GDAL's words after it; empty otherwise
};

/// Opens the raster read-only and closes it again; nothing is written beside it. A data set without bands (a
/// container of subdatasets) is reported as a problem. path: the absolute path of a local file, or a name in
/// one of GDAL's virtual file systems.
RasterInfo readRasterInfo(const QString &path);

/// The name by which GDAL opens the raster of a path: a name inside the archive for a local ".zip" that no
/// driver reads and that holds one raster, and the path itself for anything else.
QString rasterName(const QString &path);
