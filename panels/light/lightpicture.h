#pragma once

#include "panels/options/fragments.h"

#include <QImage>
#include <QSize>
#include <QString>

/// A small shaded relief of the middle of a DEM in a light, computed by the DEM tool's own code in GDAL's
/// library: one pixel a cell. Null where the DEM cannot be read or has fewer cells than the picture.
QImage lightPicture(const QString &dem, const ShadedOptions &light, const QSize &size);

/// Path of the sample DEM beside the program; the file may be missing.
QString sampleDem();
