#pragma once

#include "dataset/join/contourcut.h"

#include <QRect>
#include <QSize>

#include <array>

/// What a tile of a DEM needs for contour lines that continue in its neighbours.
struct ContourWindow
{
    /// The cells of which the tool draws lines: those of the tile, and one more column in the east and row in
    /// the south, as far as the DEM has them. So neighbours share a line of cells.
    QRect cells;

    /// What the tile keeps of those lines: from the centres of its first column and row to those of the shared
    /// ones. Beyond them the tool has continued the lines by half a cell, as at the edge of a DEM.
    CutSides keep;
};

/// `dem`: columns and rows of the whole DEM. `tile`: a rectangle of its cells, counted from the upper left one;
/// the tiles are a grid of such rectangles that fills the DEM. `toGround`: the DEM's affine transform from
/// columns and rows to coordinates, in GDAL's order; rows run from north to south, columns from west to east.
ContourWindow contourWindow(const QSize &dem, const QRect &tile, const std::array<double, 6> &toGround);
