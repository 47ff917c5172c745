#pragma once

#include <QString>

#include <gdal_priv.h>

#include <memory>

// What the treated copies of a DEM have in common. GDAL's messages say why one cannot be written.

/// Creates a GTiff with one band of the type, with the size, the geotransform and the CRS of another raster.
/// Null where it cannot be created.
std::unique_ptr<GDALDataset> createLike(const QString &path, GDALDataset &like, GDALDataType type);

/// Copies what a band says of its values: the no-data value, the unit, the scale and the offset.
void describeLike(GDALRasterBand &from, GDALRasterBand &to);
