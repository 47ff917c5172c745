#pragma once

#include "app/process/productway.h"

#include <QMargins>

/// A DEM on the way to the product: the file that the next step reads, and how much of it the product covers.
struct DemStage
{
    ViewSource dem;
    QMargins margins; ///< columns and rows at the sides that only serve as neighbours
    DemFacts grid;    ///< grid of the product: that of the DEM without the margins
    DemFacts whole;   ///< the DEM that the grid is a part of
    int firstRow = 0; ///< row of the whole DEM that is the first of the grid
};

/// Whether the request asks for another CRS than the DEM's.
bool isReprojected(const ProcessingRequest &request);

/// Brings the DEM into the grid that the process needs: takes the part, turns the rows to the north or changes
/// the CRS, fills the voids and smooths it. `mask`: path of the raster that marks the filled cells; empty:
/// none.
void prepareDem(ProductWay &way, DemStage &stage, const ProcessingRequest &request,
                const DemTreatment &treatment, const QString &mask);
