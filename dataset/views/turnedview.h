#pragma once

#include "dataset/views/demfacts.h"

#include <QString>

/// Writes a virtual raster of the DEM's band with rows from the north and columns from the west. The cells of a
/// grid that is only mirrored keep their values; those of a rotated grid are chosen by the nearest neighbour in
/// a grid of the same cell size. The view has one band and the same coordinates as the DEM.
///
/// `folder` exists; files of fixed names are created in it. Returns the view's path.
struct TurnedView
{
    QString path;    ///< empty after a failure
    QString problem; ///< why there is no view, in GDAL's words; empty otherwise
};
TurnedView writeTurnedView(const QString &dem, const DemFacts &facts, const QString &folder);
