#pragma once

#include <QString>
#include <QStringList>

/// What opening a raster tells about it.
struct RasterInfo
{
    int width = 0;     ///< columns
    int height = 0;    ///< rows
    int bandCount = 0; ///< bands are numbered from 1
    QStringList files; ///< the local files that make up the data set, those that a virtual raster refers to and
                       ///< the archive around a virtual path included
    QString problem;   ///< GDAL's reason why it could not be opened; empty otherwise
};

/// Opens the raster read-only and closes it again; nothing is written beside it. A data set without bands (a
/// container of sub-data sets) counts as one that cannot be opened. The path is a local one or one of GDAL's
/// virtual file systems.
RasterInfo readRasterInfo(const QString &path);
