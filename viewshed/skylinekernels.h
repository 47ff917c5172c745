#pragma once

#include "viewshed/sight.h"

#include <cstddef>
#include <cstdint>

namespace viewshed
{

/// One line of cells across the view, at one distance ahead of the eye. Vertices are the centres of its cells;
/// interval i lies between the vertices i and i + 1.
struct Ring
{
    double ahead = 0.0;              ///< distance of the line from the eye in cells, positive
    double firstSide = 0.0;          ///< how far vertex 0 lies to the side, in cells; the next ones 1 more each
    int intervals = 0;               ///< one less than vertices
    const double *heights = nullptr; ///< above the eye, NaN without data, one a vertex
    const double *nearer = nullptr;  ///< the same of the line before, one cell nearer to the eye or behind it
    const double *farther = nullptr; ///< the same of the line after

    double side(int vertex) const { return firstSide + vertex; }
};

/// The pieces of a horizon in order: piece i is a[i] + b[i] · m for the directions m from ends[i] to
/// ends[i + 1].
struct Pieces
{
    const double *ends;
    const double *a;
    const double *b;
    int count;
};

/// How a horizon lies over the vertices of a ring.
struct RingLayout
{
    /// So many numbers more than vertices are written to `limits`.
    static constexpr int surplus = 4;

    double *directions; ///< one a vertex
    double *limits;     ///< one a vertex: the height above the eye that the horizon reaches there
    int *before;        ///< for each end the last vertex whose direction is not beyond it, or -1
    int *meets;         ///< for each end 1 if the direction is that vertex's own, else 0
    int *bends;         ///< one an end, for findRisen
};

/// What ground an interval adds to a horizon.
enum IntervalFlags
{
    risen = 1,   ///< something of it may stand out
    notWhole = 2 ///< not all of the edge between its cells is above the horizon
};

/// Cells that follow each other in a row of the grid.
struct CellRun
{
    int column; ///< of the first
    int row;
    int count;
};

/// The loops of a pass over the terrain that take its time, compiled for what a processor can do. All give the
/// same numbers, bit by bit.
struct SkylineKernels
{
    /// Fills the layout, and tells how many ends meet a vertex. Where the horizon does not reach, the limit is
    /// infinity.
    int (*layOut)(const Ring &ring, const Pieces &horizon, const RingLayout &layout);
    /// Sets IntervalFlags for each interval of a ring that was laid out; whether any is risen.
    bool (*findRisen)(const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings,
                      int *flags);
    /// The edges between the cells of the intervals `first` to `end` - 1, as a + b · m.
    void (*edges)(const Ring &ring, int first, int end, double *a, double *b);
    /// The lowest point.
    double (*lowest)(const Pieces &horizon);
    /// For each vertex 1 if the target is above the limit by more than `error`, else 0; how many are nearer to
    /// it than that.
    int (*judge)(const Ring &ring, const double *limits, double target, double error, std::uint64_t *above);
    /// Sight::aboveEye() of the cells' heights, `step` numbers apart in the outcome.
    void (*lowerFloats)(const float *heights, const CellRun &cells, const Sight &sight, double *above,
                        std::ptrdiff_t step);
    void (*lowerDoubles)(const double *heights, const CellRun &cells, const Sight &sight, double *above,
                         std::ptrdiff_t step);
};

enum class VectorPath
{
    Plain, ///< what every processor of the platform can do
    Avx2
};

bool isSupported(VectorPath path);
/// The fastest that this processor supports.
VectorPath bestPath();
/// Of a supported path.
const SkylineKernels &kernelsOf(VectorPath path);

} // namespace viewshed
