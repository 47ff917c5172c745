#pragma once

#include "viewshed/leafsweep.h"

#include <functional>
#include <vector>

namespace viewshed
{

/// Cells of a terrain that are next to each other in a line of a sector.
struct CellLine
{
    int column; ///< column of the first cell
    int row;
    int columnStep; ///< from one cell to the next
    int rowStep;
    int count;
};

/// Receives the least height above the ground at which a target on each of the cells is seen, as
/// plainTargetHeight() returns it, in the DEM's vertical unit; NaN for a cell about which nothing is said.
/// Called by several threads at a time, with different cells but for those on a diagonal of the eye, for which
/// two threads report the same height.
using HeightsFound = std::function<void(const CellLine &cells, const double *heights)>;

/// Reports how high a target on each cell of a leaf must be to be seen.
class TargetHeights : public RingSink
{
public:
    /// `frame` is that of the leaf. All must outlive the sink, and no other sink may use the buffer at the same
    /// time.
    TargetHeights(const Scene &scene, const Frame &frame, const HeightsFound &found,
                  std::vector<double> &buffer);

    bool wantsHiddenRings() const override { return true; }
    void ring(const SweptRing &swept) override;

private:
    double heightOf(const SweptRing &swept, int vertex, double limit) const;

    const Scene &m_scene;
    Frame m_frame;
    const HeightsFound &m_found;
    std::vector<double> &m_heights;
};

} // namespace viewshed
