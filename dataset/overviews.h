#pragma once

#include <QString>
#include <QVector>

#include <functional>

/// Reductions of a raster's overviews: 2, 4, 8 … until the smaller side is below 256 cells; none for a smaller
/// raster.
QVector<int> overviewFactors(int width, int height);

/// Whether overviews can stand beside a product of that GDAL driver ("a.tif.ovr"). COG has its own already; the
/// others would take them into the product itself, which a stop would then leave half changed.
bool takesOverviews(const QString &format);

/// The file of a raster's overviews.
QString overviewFile(const QString &raster);

/// Builds the overviews of a raster beside it, by nearest neighbour; the raster itself is not touched.
/// progress: gets 0 to 100. Returns why they could not be built, in GDAL's words; empty when they were, or when
/// there are none to build.
QString buildOverviews(const QString &raster, const std::function<void(int)> &progress);
