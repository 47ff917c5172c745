#pragma once

#include "viewshed/lineofsight.h"
#include "viewshed/sweep/blockmaxima.h"
#include "viewshed/sweep/horizonline.h"
#include "viewshed/sweep/leafsweep.h"
#include "viewshed/sweep/skylinekernels.h"
#include "viewshed/sweep/targetheights.h"

#include <memory>

/// Glossary of the fast viewshed
///
/// eye          the point from which an observer looks; sight: all that decides what the observer sees
/// void         a cell without data (NaN)
/// sector       a quarter of the view around the eye: up, down, left or right, between the two diagonals
/// line         a row or column of the grid that lies across the view of a sector; place: a cell's number in it
/// ahead, side  distances of a cell from the eye in cells, along a sector's middle axis and across it
/// direction    m = side / ahead, from -1 to 1 in a sector
/// leaf         one of the ranges of directions into which a sector is cut, up to 64; the unit of work of a
/// thread ring         the part of a line that a leaf crosses; vertex: one of its cell centres; interval:
/// between two edge         the straight ground between two neighbouring cell centres, in one ring or from ring
/// to ring horizon      for each direction the greatest g = height above the eye / ahead of all edges so far;
/// skyline piece        the part of one edge that is the horizon, g = a + b · m, from one end to the next kink
/// a direction at which two pieces meet; gap: a range of directions without an edge so far limit        the
/// height above the eye that the horizon reaches at a vertex block        16 × 16 cells; panel: a copy of the
/// heights around a leaf's part of a row of blocks window       a rectangle of the raster; part: a window and
/// the rows for which its cells suffice
namespace viewshed
{

/// The sweeps over one terrain. Several threads may call the functions of one object at a time. Sweeps find the
/// same as the plain definitions of lineofsight.h, on every terrain and for every sight, but much faster: each
/// leaf is swept once from the eye outwards with the exact horizon (Skyline), and a cell that is too near to
/// the horizon for its rounding is decided by the plain definition; leafsweep.h derives the bound. No result
/// depends on `threads` or on the path.
class Sweeper
{
public:
    /// `maxima` must be those of `terrain`, and both must outlive the object; `path` must be supported.
    Sweeper(const Terrain &terrain, const BlockMaxima &maxima, VectorPath path = bestPath());
    ~Sweeper();
    Sweeper(const Sweeper &) = delete;
    Sweeper &operator=(const Sweeper &) = delete;

    /// Sets the bits of the cells that plainViewshed() returns, and clears none. `seen` holds the terrain's
    /// cells of `window`, which must hold windowOf() the sight; `window.left` is a multiple of
    /// BitGrid::bitsPerWord. Other threads may set bits in `seen` at the same time.
    void addSeen(BitGrid &seen, const Window &window, const Sight &sight, int threads,
                 const Progress &progress = {});

    /// Reports the least height of a visible target for each cell with data of windowOf() the sight. The
    /// sight's target height is not considered.
    void findHeights(const Sight &sight, const HeightsFound &found, int threads, const Progress &progress = {});

    /// The horizon that the ground within the sight's reach makes around the eye. The field of view is not
    /// considered. `metresOfHeight` is the length of the DEM's vertical unit.
    HorizonLine horizonLine(const Sight &sight, double metresOfHeight, int threads,
                            const Progress &progress = {});

private:
    struct Workspace;
    class Idle;

    Scene sceneOf(const Sight &sight) const;
    template <class Sweep>
    void sweepLeaves(const Scene &scene, int threads, const Progress &progress, Sweep sweep);

    const Terrain &m_terrain;
    const BlockMaxima &m_maxima;
    VectorPath m_path;
    std::unique_ptr<Idle> m_idle;
};

/// What Sweeper::addSeen() finds, as a grid of the terrain's size.
BitGrid horizonViewshed(const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight, int threads,
                        const Progress &progress = {}, VectorPath path = bestPath());

/// Sets the bits of the same cells in `seen`, a grid of the terrain's size, and clears none.
void addHorizonViewshed(BitGrid &seen, const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight,
                        int threads, const Progress &progress = {}, VectorPath path = bestPath());

} // namespace viewshed
