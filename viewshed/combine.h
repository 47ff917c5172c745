#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/sight.h"

namespace viewshed
{

/// How the results of several observers become one picture.
enum class Combination
{
    Overwrite, ///< within its reach, an observer replaces the result of the observers before it
    Or,        ///< a cell is seen if at least one observer sees it
    And,       ///< a cell is seen if every observer sees it
};

/// A rectangle of a raster's cells, in columns and rows from 0. `left` is a multiple of BitGrid::bitsPerWord,
/// so that the window's bits can be copied word by word.
struct Window
{
    int left = 0;
    int top = 0;
    int width = 0; ///< 0 if the window is empty
    int height = 0;

    /// Whether all of the other window lies within this one.
    bool holds(const Window &other) const
    {
        return other.left >= left && other.top >= top && other.left + other.width <= left + width
            && other.top + other.height <= top + height;
    }
    bool operator==(const Window &) const = default;
};

/// The part of the raster inside the rectangle around the sight's reach, so it holds every cell within reach
/// and some beyond it. It is empty if that rectangle misses the raster. The eye's position counts from the
/// raster's first cell.
Window windowOf(const Sight &sight, int rasterWidth, int rasterHeight);

/// A part of an observer's window that can be computed without the cells of the other parts.
struct Part
{
    Window window;    ///< the cells whose elevations are needed
    int firstRow = 0; ///< the result is valid from this row of the raster on, over the window's width,
    int endRow = 0;   ///< up to the row before this one
};

/// Cuts the window along the eye's row, which no line of sight crosses, so that only half of its elevations
/// must be in memory at a time. Returns one part if the eye's row is outside the window. The eye's position
/// counts from the raster's first cell.
std::vector<Part> partsOf(const Sight &sight, const Window &window);

/// The same sight with the eye's position counted from the window's first cell. In `sight` it counts from the
/// raster's first cell.
Sight within(Sight sight, const Window &window);

/// Combines an observer's result with that of the observers before it, which `picture` holds for the whole
/// raster. `seen` has the window's size and no bit beyond the sight's reach; the eye's position counts from the
/// window's first cell. The first observer has nothing to be combined with: use add().
void combine(BitGrid &picture, const BitGrid &seen, const Window &window, const Sight &sight, Combination how);

/// Sets the bits of `seen`, a grid of the size of the part's window, in the picture of the whole raster, for
/// the rows in which the part is valid.
void add(BitGrid &picture, const BitGrid &seen, const Part &part);

} // namespace viewshed
