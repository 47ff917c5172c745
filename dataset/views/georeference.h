#pragma once

#include <QString>

/// Gives a raster the CRS and the affine transform of `dem`, which has the same columns and rows. The raster is
/// changed in place; its format is GTiff. A world file beside it ("a.tfw" beside "a.tif") is written anew where
/// one stands there. Returns why that failed, in a sentence or in GDAL's words; empty otherwise.
QString copyGeoreference(const QString &dem, const QString &raster);
