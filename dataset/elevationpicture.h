#pragma once

#include "dataset/elevationgrid.h"

#include <QImage>

/// A picture of elevations in grey, stretched from their 2nd to their 98th percentile. Cells without data and
/// cells that were not read are transparent. Null for an empty grid.
QImage elevationPicture(const ElevationGrid &grid);
