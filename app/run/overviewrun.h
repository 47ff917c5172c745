#pragma once

#include "dataset/overviews.h"

#include <QString>

/// Builds the overviews of a raster as a run of their own: they are built in a part folder beside the raster
/// and appear whole or not at all; overviews that stand there are replaced. The raster may itself be in a part
/// folder: then it is not yet anyone's product, and the overviews are built in place.
/// The problem is a sentence or in GDAL's words.
OverviewResult runOverviews(const QString &raster, const OverviewProgress &progress);
