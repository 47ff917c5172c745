#pragma once

#include "panels/options/observerpoints.h"

/// Writes the shapefile "point.shp" into the folder: a layer "point" of 2.5D points without a CRS, with the
/// distances in the field "Max_Dist". Names and limits add a field for each kind that an observer has: "NAME",
/// as UTF-8 of at most 254 bytes, and those of limitFields(); they are null for the other observers. Returns
/// the file's path; empty after any failure.
QString writePointFile(const QString &folder, const QList<ToolObserver> &observers);
