#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/sight.h"
#include "viewshed/terrain.h"

#include <functional>

namespace viewshed
{

/// Whether the eye sees the target on a cell. This is the definition of visibility: each faster computation
/// must return the same for every cell.
///
/// The line of sight leads from the eye to the centre of the cell, at the cell's elevation plus the target
/// height. It is compared with the ground wherever it crosses a column or a row of cell centres strictly
/// between the eye and the cell. There the ground is interpolated linearly between the two neighbouring cell
/// centres. The cell is hidden if the ground is strictly above the line at one crossing at least; a tie is
/// visible.
///
/// A crossing between two cells counts only if both have data. A crossing at the very centre of a cell counts
/// if that cell and at least one of its four neighbours have data. A cell without data is never seen. The
/// sight's reach is not considered.
bool sees(const Terrain &terrain, const Sight &sight, int column, int row);

/// Receives the share of the work that is done, from 0 to 1. Called by the thread that started the work.
using Progress = std::function<void(double)>;

/// Calls sees() for every cell within the sight's reach, row by row. Returns a grid of the terrain's size in
/// which the bits of the seen cells are 1. The result does not depend on the number of threads.
BitGrid plainViewshed(const Terrain &terrain, const Sight &sight, int threads, const Progress &progress = {});

} // namespace viewshed
