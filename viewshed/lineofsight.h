#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/sight.h"
#include "viewshed/terrain.h"

#include <functional>

namespace viewshed
{

/// What is seen, cell by cell and without cleverness: everything faster has to give the same.
///
/// The line goes from the eye to the centre of the cell, at its ground plus the target height. The ground
/// between is linear between two neighbouring cell centres, wherever the line crosses a column or a row of them
/// strictly between the eye and the cell. The cell is hidden if the ground is strictly above the line at some
/// crossing. An edge between two cells counts only if both have data. A crossing that falls on a cell counts if
/// the cell has data and one of its four neighbours has. A cell without data is never seen; the distance does
/// not matter here.
bool sees(const Terrain &terrain, const Sight &sight, int column, int row);

/// Called with the share that is done, from 0 to 1; from one thread at a time.
using Progress = std::function<void(double)>;

/// The cells within the sight's reach that are seen, of the terrain's size. The outcome does not depend on the
/// number of threads.
BitGrid plainViewshed(const Terrain &terrain, const Sight &sight, int threads, const Progress &progress = {});

} // namespace viewshed
