#pragma once

#include <QString>
#include <QVector>

#include <functional>

/// Reduction factors of a raster's overviews: 2, 4, 8 … until the smaller side is below 256 cells. A raster
/// whose smaller side is below 256 cells has none. `width` and `height` are cells.
QVector<int> overviewFactors(int width, int height);

/// Whether overviews can stand in a file beside a product of that GDAL driver ("a.tif.ovr").
bool takesOverviews(const QString &format);

/// Path of the file that holds a raster's overviews.
QString overviewFile(const QString &raster);

/// Builds the overviews of a raster in a file beside it, by nearest neighbour; the raster itself is not
/// changed. `progress` is called with percentages from 0 to 100. Returns why they could not be built, in GDAL's
/// words; empty when they are built or the raster needs none. A file of overviews that a failure left
/// incomplete is removed, unless the file existed before.
QString buildOverviews(const QString &raster, const std::function<void(int)> &progress);
