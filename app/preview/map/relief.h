#pragma once

#include "dataset/elevationgrid.h"

#include <QImage>
#include <QSizeF>

/// A soft shaded relief as the ground of a map, one pixel a cell: light from the upper left, level ground in a
/// light grey, no black. Slopes are exaggerated until they can be seen, or flattened where they are steep: the
/// picture shows forms and is no product. Cells without data are transparent.
///
/// grid: its first row is the picture's upper edge. cell: width and height of a cell, in the unit of the
/// elevations. Null for an empty grid.
QImage softRelief(const ElevationGrid &grid, const QSizeF &cell);

/// The colours of a product multiplied with the relief under it, so that the forms of the ground can be seen
/// through them. Where the relief is transparent the product keeps its colours, and where the product is
/// transparent so is the result. relief: of any size; it covers the same ground.
QImage overRelief(const QImage &product, const QImage &relief);

/// A product without the cells for which the DEM has no data, where the relief is transparent.
QImage withoutVoids(const QImage &product, const QImage &relief);
