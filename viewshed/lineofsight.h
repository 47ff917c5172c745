#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/sight.h"
#include "viewshed/terrain.h"

#include <functional>
#include <limits>

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
/// if that cell and at least one of its four neighbours have data. A cell without data is never seen, nor is a
/// target outside the slopes of the sight's field of view. Sight::reaches() is not considered.
bool sees(const Terrain &terrain, const Sight &sight, int column, int row);

/// The height above the eye that the ground between the eye and the cell's centre reaches there: a target at or
/// above it is not hidden. Found at the same crossings as in sees(), each divided once; minus infinity if there
/// is no ground in between. In the DEM's vertical unit.
double limitOf(const Terrain &terrain, const Sight &sight, int column, int row);

/// How far the ground of a cell with data is below the least height at which the eye sees a target there, in
/// the DEM's vertical unit: 0 if the ground itself is seen, else a positive number. The sight's target height
/// and its field of view are not considered.
double hiddenHeight(const Terrain &terrain, const Sight &sight, int column, int row);

/// The height of a target that no height makes visible: its cell is out of reach, or outside the field of view.
inline constexpr double neverSeen = std::numeric_limits<double>::infinity();

/// The least height above the ground of a cell, `height` or more, at which a target is within the slopes of the
/// sight's field of view; neverSeen if there is none. `ground` is the cell's height above the eye.
double heightWithinSlopes(double height, double ground, const Sight &sight, int column, int row);

/// The least height above the ground at which the eye sees a target on the cell: 0 if it sees the ground
/// itself, neverSeen if it sees no target there, NaN for a cell without data. In the DEM's vertical unit. The
/// sight's target height is not considered. This is the definition for each faster computation.
double plainTargetHeight(const Terrain &terrain, const Sight &sight, int column, int row);

/// Receives the share of the work that is done, from 0 to 1. Called by the thread that started the work.
using Progress = std::function<void(double)>;

/// Calls sees() for every cell within the sight's reach, row by row. Returns a grid of the terrain's size in
/// which the bits of the seen cells are 1. The result does not depend on the number of threads.
BitGrid plainViewshed(const Terrain &terrain, const Sight &sight, int threads, const Progress &progress = {});

} // namespace viewshed
