#pragma once

#include "panels/options/processoptions.h"

/// What a process does with the grid of the DEM, and with the unit of its elevations.
struct CellUse
{
    /// Each cell of the product is computed from the eight around it, with the rows taken from the north.
    bool neighbours = false;
    /// The product depends on lengths along the ground, and the user leaves their unit to the program.
    bool lengths = false;
    /// The product is lit from a direction, which depends on the side from which the rows run.
    bool light = false;
    /// The product holds differences of elevations.
    bool heights = false;
    /// The product holds directions.
    bool directions = false;
    /// Cells without data hold 0 in the product, like cells without a direction, and no value marks them.
    bool zeroWithoutData = false;
    bool trigonometric = false;               ///< the directions are counter-clockwise from the east
    SightResult sight = SightResult::Picture; ///< what the product of an intervisibility holds

    bool operator==(const CellUse &other) const = default;
};

/// Shaded relief and slope leave the unit of lengths to the program while the first row of the scale list is
/// chosen.
CellUse cellUse(const ProcessOptions &options);
