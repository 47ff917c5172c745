#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/sight.h"

namespace viewshed
{

/// How several observers make one picture.
enum class Combination
{
    Overwrite, ///< within its reach, a later observer replaces what the earlier ones gave
    Or,        ///< seen by one observer at least
    And,       ///< seen by every observer
};

/// A part of a raster, in its columns and rows. The left border is a multiple of BitGrid::bitsPerWord.
struct Window
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool holds(const Window &other) const
    {
        return other.left >= left && other.top >= top && other.left + other.width <= left + width
            && other.top + other.height <= top + height;
    }
    bool operator==(const Window &) const = default;
};

/// The smallest window that holds every cell of a raster within the sight's reach; the eye's position counts
/// from the raster's first cell. Without a cell where the reach ends outside.
Window windowOf(const Sight &sight, int rasterWidth, int rasterHeight);

/// A part of what one observer looks at that can be computed alone.
struct Part
{
    Window window;    ///< the cells that it depends on
    int firstRow = 0; ///< of the raster: the cells whose outcome holds are those of the rows `firstRow`
    int endRow = 0;   ///< to `endRow` - 1, over the window's width
};

/// The window cut along the eye's row, which no line of sight crosses: half of the heights have to be at hand
/// at once. One part if the eye's row is outside the window. The eye counts from the raster's first cell.
std::vector<Part> partsOf(const Sight &sight, const Window &window);

/// The same sight, its eye counted from the window's first cell.
Sight within(Sight sight, const Window &window);

/// Puts what one observer sees into the raster's picture. seen: the window's cells, none beyond the sight's
/// reach; the sight's eye counts from the window's first cell. Not for the first observer, who is added.
void combine(BitGrid &picture, const BitGrid &seen, const Window &window, const Sight &sight, Combination how);

/// Adds the part's rows of what is seen, the cells of its window, to the raster's picture.
void add(BitGrid &picture, const BitGrid &seen, const Part &part);

} // namespace viewshed
