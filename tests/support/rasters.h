#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

/// Writes a GeoTIFF of type Float32 in UTM zone 32 north, with cells of 10 m, the upper left corner at (500000,
/// 5100000) and the no-data value -9999. values: width × height numbers, by rows from the north, the same for
/// each band. Returns whether it was written.
bool writeRaster(const QString &path, int width, int height, const QVector<float> &values, int bands = 1);

/// Writes such a raster of `side` × `side` cells for runs that need more than a few cells: a slope with waves.
bool writeHill(const QString &path, int side);

/// Copies a raster with options of gdal_translate. Returns whether the copy was written.
bool copyRaster(const QString &from, const QString &to, const QList<QByteArray> &options);
