#pragma once

#include "dataset/views/demfacts.h"

#include <QRect>
#include <QString>

// Views of a DEM as virtual rasters that GDAL writes. Each has one band. The path ends in ".vrt" and its folder
// exists; where a view needs a second file, its name begins with that of the view.

/// A view that was written.
struct DemView
{
    QString path;    ///< empty after a failure
    DemFacts facts;  ///< of the view's band
    QString problem; ///< why there is no view, in a sentence or in GDAL's words; empty otherwise
};

/// The part of a DEM within a rectangle of cells, which lies in the DEM. Columns and rows count from the upper
/// left corner of the file.
DemView writePartView(const QString &dem, int band, const QRect &part, const QString &path);

/// The DEM's band with rows from the north and columns from the west. The cells of a grid that is only mirrored
/// keep their values; those of a rotated grid are chosen by the nearest neighbour in a grid of the same cell
/// size. The coordinates are those of the DEM.
DemView writeTurnedView(const QString &dem, const DemFacts &facts, const QString &path);

/// The DEM's band in another CRS, by cubic interpolation in square cells. `crs`: "EPSG:32632", a PROJ text or
/// WKT. A DEM without CRS has no such view.
DemView writeReprojectedView(const QString &dem, const DemFacts &facts, const QString &crs,
                             const QString &path);

/// Copies a point shapefile from the CRS of the DEM, which the file itself does not name, to another one, with
/// its heights and attributes as they are. Returns why that failed, in GDAL's words; empty otherwise.
QString reprojectPoints(const QString &points, const DemFacts &facts, const QString &crs, const QString &path);
