#pragma once

#include "viewshed/sweep/leafsweep.h"

#include <functional>
#include <vector>

namespace viewshed
{

/// Cells of a terrain that are next to each other in a row.
struct RowOfCells
{
    int column; ///< column of the first cell
    int row;
    int count;
};

/// Receives the least height above the ground at which a target on each of the cells is seen, as
/// plainTargetHeight() returns it, in the DEM's vertical unit; NaN for a cell without data. Called by several
/// threads at a time, and at most once for each cell.
using HeightsFound = std::function<void(const RowOfCells &cells, const double *heights)>;

/// The buffers of TargetHeights. A thread passes the same ones to one leaf after the other.
struct HeightBuffers
{
    std::vector<double> ring; ///< for each vertex of the ring its height
    /// Where lines are columns, for each place of the panel the heights of one block's columns, and which of
    /// them the leaf holds.
    std::vector<double> columns;
    std::vector<Places> columnsOfPlaces;
};

/// Reports how high a target on each cell of a leaf must be to be seen.
class TargetHeights : public RingSink
{
public:
    /// `frame` is that of the leaf. All must outlive the sink, and no other sink may use the buffers at the
    /// same time.
    TargetHeights(const Scene &scene, const Frame &frame, const HeightsFound &found, HeightBuffers &buffers);

    bool wantsHiddenRings() const override { return true; }
    void beginBlock(Places places) override;
    void ring(const SweptRing &swept) override;
    void endBlock(int nearestLine) override;

private:
    Places ownVertices(const SweptRing &swept) const;
    double heightOf(const SweptRing &swept, int vertex, double limit) const;
    void collectColumn(int line, int firstPlace, int count);

    const Scene &m_scene;
    Frame m_frame;
    const HeightsFound &m_found;
    int m_firstPlace = 0; ///< the place of the first of the buffers for columns
    HeightBuffers &m_buffers;
};

} // namespace viewshed
