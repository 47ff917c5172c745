#pragma once

#include "dataset/workfolder.h"

#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

// Several tiles as one DEM.

/// A virtual raster that shows tiles as one DEM.
struct Mosaic
{
    QString path;         ///< the virtual raster; empty where there is a problem
    QVector<QRect> cells; ///< of the mosaic that each tile holds, in the order of the tiles
    QStringList warnings; ///< sentences about what the DEM lacks
    QString problem;      ///< why the tiles are not one DEM, in a sentence that names them; empty otherwise
};

/// Writes the virtual raster of the tiles into a new folder inside the work folder, for as long as that lives.
/// Each tile is opened, but no cell is read, and nothing is written beside the tiles. Where tiles overlap, the
/// later one is shown. `tiles`: at least two absolute paths, or names in GDAL's virtual file systems.
Mosaic makeMosaic(const QStringList &tiles, WorkFolder &workFolder);

/// Writes the virtual raster to a file, completely or not at all. Otherwise as above.
Mosaic writeMosaic(const QStringList &tiles, const QString &file);

/// The path that a mosaic would have beside its first tile, "<folder>/<base>_mosaic.vrt". Products take folder
/// and name from it. No such file is written. Empty without tiles.
QString mosaicName(const QStringList &tiles);

/// Names the mosaic for people: "<path of the first tile> (mosaic of 4 tiles)".
QString mosaicTitle(const QStringList &tiles);

/// The paths of the tiles for a tool tip, one a line; the first of many stand for all.
QString tileLines(const QStringList &tiles);

/// The rasters in a folder, sorted by name, without those that belong to another one (overviews, masks). Files
/// in folders inside it do not count. Absolute paths.
QStringList rastersInFolder(const QString &folder);
