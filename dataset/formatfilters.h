#pragma once

#include <QString>
#include <QStringList>

// What GDAL's drivers say of themselves, as far as the program does not know better (dataset/formats). Driver
// names are GDAL's short names ("GTiff", "ESRI Shapefile") and
// compare without regard to case, as in GDAL.

/// Whether a driver of that name exists and can write a raster product: one file, and side files of its name at
/// most.
bool isRasterOutputFormat(const QString &driver);

/// Whether a driver of that name exists and can write a vector product: a file that holds lines.
bool isVectorOutputFormat(const QString &driver);

/// Whether the raster driver stores cells of that type, by GDAL's name of it ("Byte", "Float32"), as far as it
/// says.
bool storesCells(const QString &driver, const QString &type);

/// Whether the driver knows the creation option of that name (such as "TILED").
bool hasCreationOption(const QString &driver, const QString &option);

/// The values that the driver lists for a creation option ("DEFLATE" for "COMPRESS"), in its order: those that
/// GDAL was built with on this machine. Empty where the option has no list or does not exist.
QStringList creationOptionValues(const QString &driver, const QString &option);

/// File name extensions of the format without their dot, the usual one first ("tif", "tiff"); empty where the
/// driver names none or does not exist.
QStringList formatExtensions(const QString &driver);

/// Short names of GDAL's drivers, sorted.
QStringList driverNames();

/// A driver's name as people know it ("GeoTIFF"); its short name where it has none.
QString formatTitle(const QString &driver);
