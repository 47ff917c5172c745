#pragma once

#include "viewshed/sight.h"

#include <cstddef>
#include <cstdint>

namespace viewshed
{

/// The part of one line across the view that a leaf crosses; the glossary in horizon.h explains the terms. Its
/// vertices are the centres of the line's cells, numbered from 0; interval i lies between the vertices i and
/// i + 1. Distances are in cells, heights in the DEM's vertical unit above the eye. The arrays have one number
/// for each vertex, NaN without data, and belong to the caller.
struct Ring
{
    double ahead = 0.0;     ///< distance of the line from the eye, positive
    double firstSide = 0.0; ///< the lateral distance `side` of vertex 0; it grows by 1 from vertex to vertex
    int intervals = 0;      ///< number of vertices - 1
    const double *heights = nullptr; ///< heights of the vertices
    const double *nearer = nullptr; ///< heights of the cells one line nearer to the eye, or just behind the eye
    const double *farther = nullptr; ///< heights of the cells one line farther from the eye

    double side(int vertex) const { return firstSide + vertex; }
};

/// A view of a horizon's pieces, in order: piece i is g = a[i] + b[i] · m for the directions m from ends[i] to
/// ends[i + 1]. There is at least one piece, and `ends` has one number more than `a` and `b`. The arrays belong
/// to the horizon.
struct Pieces
{
    const double *ends;
    const double *a;
    const double *b;
    int count;
};

/// How the ends of a horizon's pieces lie among the vertices of a ring. The arrays belong to the caller and
/// have one number for each vertex or for each end, as stated.
struct RingLayout
{
    /// `limits` must have room for this many numbers more than there are vertices.
    static constexpr int surplus = 4;

    double *directions; ///< for each vertex its direction m
    double *limits;     ///< for each vertex the height above the eye that the horizon reaches there
    int *vertexBefore;  ///< for each end the last vertex whose direction is not greater than the end, or -1
    int *meetsVertex;   ///< for each end 1 if it is the direction of that vertex, else 0
    int *kinkFlags;     ///< for each end the IntervalFlags that its kink adds; scratch of flagIntervals()
};

/// How the edges over an interval lie against the horizon.
enum IntervalFlags
{
    mayRise = 1,    ///< some edge may stand out above the horizon
    partlyBelow = 2 ///< the edge between the interval's two cells is below the horizon somewhere
};

/// Cells that follow each other in a row of the grid.
struct CellRun
{
    int column; ///< column of the first cell
    int row;
    int count;
};

/// The loops that need almost all of the time, compiled for each set of vector instructions. Every set returns
/// the same numbers, bit by bit.
struct SkylineKernels
{
    /// Fills all of `layout` except kinkFlags, and returns how many ends meet a vertex. The limit of a vertex
    /// outside the horizon's range of directions is infinity.
    int (*layOut)(const Ring &ring, const Pieces &horizon, const RingLayout &layout);
    /// Writes the IntervalFlags of each interval to `flags`, and returns whether any has mayRise. `layout` and
    /// `meetings` are the results of layOut() for the same ring and horizon.
    bool (*flagIntervals)(const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings,
                          int *flags);
    /// Writes the edges between the cells of the intervals `first` to `end` - 1, as g = a + b · m.
    void (*edges)(const Ring &ring, int first, int end, double *a, double *b);
    /// Returns the least g of the horizon.
    double (*lowest)(const Pieces &horizon);
    /// Writes for each vertex 1 if the target (`target` above the ground) is above the limit by more than
    /// `error`, else 0. Returns for how many vertices target and limit differ by `error` at most.
    int (*classify)(const Ring &ring, const double *limits, double target, double error, std::uint64_t *above);
    /// Writes Sight::aboveEye() of each cell. `heights` are elevations; in `above`, the results are `step`
    /// numbers apart.
    void (*floatsAboveEye)(const float *heights, const CellRun &cells, const Sight &sight, double *above,
                           std::ptrdiff_t step);
    void (*doublesAboveEye)(const double *heights, const CellRun &cells, const Sight &sight, double *above,
                            std::ptrdiff_t step);
};

/// A set of vector instructions.
enum class VectorPath
{
    Plain, ///< the instructions that every processor of the platform has
    Avx2
};

/// Whether this build has the path and this processor can run it.
bool isSupported(VectorPath path);
/// The fastest path that is supported.
VectorPath bestPath();
/// `path` must be supported.
const SkylineKernels &kernelsOf(VectorPath path);

} // namespace viewshed
