#pragma once

#include <QString>
#include <QVector>

/// Writes a small float32 GeoTIFF, row by row from the north, in UTM zone 32 with cells of 10 m; no-data is
/// -9999. values: width × height numbers. True when it was written.
bool writeRaster(const QString &path, int width, int height, const QVector<float> &values, int bands = 1);

/// A slope with a bump, of any size, for runs that need more than a few cells.
bool writeHill(const QString &path, int side);
