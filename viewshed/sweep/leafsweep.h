#pragma once

#include "viewshed/combine.h"
#include "viewshed/sweep/blockmaxima.h"
#include "viewshed/sweep/panel.h"
#include "viewshed/sweep/ringsink.h"
#include "viewshed/sweep/skyline.h"

namespace viewshed
{

inline constexpr int sectors = 4;
inline constexpr int mostLeaves = 64; ///< of a sector

/// Rounding
///
/// LeafSweep decides a cell by comparing the target's height above the eye with the horizon's. It must agree
/// with sees(), which rounds as well, so it leaves every cell to sees() whose two heights differ by no more
/// than E = ahead · H · horizonRounding, where H bounds every height above or below the eye (after the Earth's
/// curvature and with the target height) and ahead is the ring's distance in cells. E must exceed the sum of:
///
/// 1. The horizon's own rounding. Let u = 2^-53, and let a ring at the distance r give the piece a + b · m.
///    Positions on the lattice are exact, and r ≥ 2^-10, the distance of two lattice points.
///    Along the ring, a = (left · (side + 1) − right · side) / r with |side| ≤ r + 2 has an error of at most
///    6 u H (r + 2) / r < 2^14 u H, and b = right − left one of 2 u H.
///    From the nearer ring, b = (height − a · r) / side with |side| ≥ 2^-10 has an error of at most
///    (8 r + 2) u H / |side|. It is used for |m| ≤ |side| / (r − 1) if r ≥ 2, and for |m| ≤ 1 if not; the error
///    of b · m is at most 18 u H, or 18 · 2^10 u H.
///    Evaluating a · ahead + b · side adds less than the same again. The sum is below ahead · H · 2^-38. The
///    factor of about 2^10 comes only from rings nearer than 2 cells, with an eye that is very near to a line
///    or a place of the grid.
/// 2. The rounding of sees(). It makes four roundings of a crossing's heights. At the cell they count by the
///    quotient of both distances, which is 2^10 · ahead at most. Their sum is at most ahead · H · 2^-41.
/// 3. Wrong choices between two pieces that nearly tie. The difference of two pieces errs by less than
///    ahead · H · 2^-46 if both rings are at least 2 cells away, and by less than ahead · H · 2^-38.5
///    otherwise, which concerns two rings at most. A piece that is kept keeps its coefficients, so such errors
///    add up only over a chain of replacements, each by a slightly lower piece at the same direction. E leaves
///    room for a chain of more than a hundred replacements that all have the greatest error.
///
/// An eye at least 4 cells away from the terrain has no ring nearer than that. The sum of 1 is then below
/// ahead · H · 2^-47, that of 2 below ahead · H · 2^-50, and each of the choices of 3 errs by less than
/// ahead · H · 2^-46; outsideRounding leaves room for a chain of more than a hundred of them. At great
/// distances the smaller E matters: H is the height that such an eye looks down from.
///
/// Different directions must be different numbers. Directions are quotients of lattice numbers below 2^30, as
/// an eye and a cell are each less than largestSide cells from the terrain's first cell. Cells are 2^10 lattice
/// points apart, so the difference of two directions is a multiple of 2^10 over the product of both distances:
/// 2^-50 at least. Rounding moves a number up to 1 by 2^-54 at most.
inline constexpr double horizonRounding = 0x1p-36;
inline constexpr double outsideRounding = 0x1p-39;

/// What the leaves of one sight share. The references must outlive the sweeps.
struct Scene
{
    const Terrain &terrain;
    const BlockMaxima &maxima; ///< of `terrain`
    const Sight &sight;
    Window window;              ///< the part of the terrain that holds every cell within the sight's reach
    int leavesPerSector;        ///< a power of 2 up to mostLeaves
    double errorPerCell;        ///< E / ahead, see "Rounding"; in the DEM's vertical unit
    double shortestStepSquared; ///< lower bound of the squared length of a step of one cell, in square metres
    const SkylineKernels &kernels;
    bool endsAtReach = false; ///< whether the ground beyond the sight's reach is taken to have no data
};

/// Walks the rings of one leaf outwards, from the eye to the edge of the scene's window. The glossary in
/// horizon.h explains the terms. `Line` is Skyline or TracedSkyline.
template <class Line> class LeafSweep
{
public:
    /// Leaf number `leaf` (0 to scene.leavesPerSector - 1, by growing m) of the sector that `frame` describes.
    /// No other sweep may use the skyline or the panel at the same time; the skyline is started anew.
    LeafSweep(const Scene &scene, const Frame &frame, int leaf, Line &skyline, Panel &panel);

    /// Passes each ring to the sink before it raises the skyline by it, which at the end holds the horizon of
    /// the whole leaf.
    void run(RingSink &sink);

private:
    double ahead(int line) const { return (line - m_eyeLine) * m_frame.awayStep; }
    Places placesAround(double ahead) const;
    Places reachedPlaces(double ahead) const;
    void sweepBlock(int nearestLine, int farthestLine, RingSink &sink);
    double greatestElevation(int line, Places places) const;
    bool isHidden(int nearestLine, int farthestLine, double greatest);
    void sweepLine(int line, bool raises, RingSink &sink);

    const Scene &m_scene;
    Frame m_frame;
    double m_from; ///< least direction m of the leaf
    double m_to;   ///< greatest direction m of the leaf
    double m_eyeLine;
    double m_eyePlace;
    Places m_lines;                ///< the window's lines
    Places m_places;               ///< the window's places
    bool m_nothingAboveEye = true; ///< no cell of the blocks so far is above the eye's level plane
    Line &m_skyline;
    Panel &m_panel;
};

} // namespace viewshed
