#pragma once

#include "viewshed/combine.h"
#include "viewshed/hugearray.h"
#include "viewshed/sweep/targetheights.h"

namespace viewshed
{

/// How the cells of a terrain lie in a raster, and which of them count.
struct HeightTarget
{
    int left; ///< column and row of the raster that are the terrain's first
    int top;
    int firstRow; ///< rows of the raster outside `firstRow` to `endRow` - 1 are ignored
    int endRow;
    bool contended; ///< whether other threads may lower the same cells to other heights
};

/// The least height of a visible target on each cell of a window, in the DEM's vertical unit; neverSeen where
/// no height makes it visible. Heights are rounded up to the next float, so that a target of a cell's height is
/// seen.
class HeightGrid
{
public:
    /// Starts with `height` everywhere.
    HeightGrid(const Window &window, float height);

    const Window &window() const { return m_window; }
    /// The first of the window's cells in a row of the raster.
    const float *row(int row) const { return m_heights.data() + offset(row); }

    /// Takes the lower one of each height and the one held so far; ignores NaN. Several threads may call it at
    /// a time as HeightsFound states.
    void lower(const RowOfCells &cells, const double *heights, const HeightTarget &target);

    /// Combines the heights of one observer with those of the observers before it, over the whole of this grid:
    /// the lower one counts, or the greater one. Where `other` has no cell, its height is neverSeen.
    enum class Choice
    {
        Lower,
        Greater
    };
    void combine(const HeightGrid &other, Choice choice);

private:
    std::size_t offset(int row) const
    {
        return static_cast<std::size_t>(row - m_window.top) * static_cast<std::size_t>(m_window.width);
    }

    Window m_window;
    HugeArray<float> m_heights;
};

} // namespace viewshed
