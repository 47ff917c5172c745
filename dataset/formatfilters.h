#pragma once

#include <QString>
#include <QStringList>

// What GDAL's drivers say of themselves. Driver names are GDAL's short names ("GTiff", "ESRI Shapefile") and
// compare without regard to case, as in GDAL.

/// Whether a driver of that name exists and can write a raster as one file, with others of its name at most.
bool isRasterOutputFormat(const QString &driver);

/// Whether a driver of that name exists and can make a vector file of lines. Formats that are no file, keep no
/// geometries, or refer to others instead of holding the product, do not count.
bool isVectorOutputFormat(const QString &driver);

/// Whether the raster driver stores cells of that type, by GDAL's name of it ("Byte", "Float32"), as far as it
/// says.
bool storesCells(const QString &driver, const QString &type);

/// Whether the driver knows the creation option of that name (such as "TILED").
bool hasCreationOption(const QString &driver, const QString &option);

/// File name extensions of the driver without their dot, the usual one first ("tif", "tiff"); empty for a
/// driver that names none or does not exist.
QStringList formatExtensions(const QString &driver);

/// Short names of GDAL's drivers, sorted.
QStringList driverNames();

/// A driver's name as people know it ("GeoTIFF"); its short name where it has none.
QString formatTitle(const QString &driver);

/// Patterns of the files that GDAL's vector drivers read ("*.shp", "*.gpkg", …), each once.
QStringList vectorFilePatterns();
