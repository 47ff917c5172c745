#pragma once

#include "viewshed/sweep/panel.h"
#include "viewshed/sweep/skylinekernels.h"

namespace viewshed
{

/// A ring that a sweep has reached, and the horizon of the ground in front of it.
struct SweptRing
{
    int line;             ///< number of its line in the terrain
    int firstPlace;       ///< number in its line of the ring's vertex 0
    const Ring &ring;     ///< its vertices
    const double *limits; ///< for each vertex the limit; infinity for a vertex outside the leaf
    bool nothingAboveEye; ///< no ground up to this ring is above the eye's level plane
};

/// Receives the rings of one leaf, from the eye outwards, and takes from them what a computation is about. Used
/// by one thread at a time.
class RingSink
{
public:
    RingSink() = default;
    virtual ~RingSink() = default;
    RingSink(const RingSink &) = delete;
    RingSink &operator=(const RingSink &) = delete;

    /// Whether ring() is to be called for rings all of whose ground is hidden, too.
    virtual bool wantsHiddenRings() const { return false; }
    /// The next rings are in one row (or column) of blocks; none of their vertices is outside `places`, but
    /// for the vertices outside the leaf.
    virtual void beginBlock(Places /*places*/) { }
    virtual void ring(const SweptRing &swept) = 0;
    /// All rings since beginBlock() have been received. `nearestLine` is one of their lines.
    virtual void endBlock(int /*nearestLine*/) { }
};

} // namespace viewshed
