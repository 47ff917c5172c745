#include "viewshed/skylinekernels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

// The loops are written once, without branches, for the compiler to make vectors of. Each is inlined into a
// function of its own for each kind of processor, so that nothing else is compiled for that.
#if defined(__GNUC__) && defined(__x86_64__)
#define VIEWSHED_HAS_AVX2 1
#define VIEWSHED_INLINE inline __attribute__((always_inline))
#else
#define VIEWSHED_HAS_AVX2 0
#define VIEWSHED_INLINE inline
#endif
#if defined(__GNUC__) || defined(_MSC_VER)
#define VIEWSHED_RESTRICT __restrict
#else
#define VIEWSHED_RESTRICT
#endif

namespace viewshed
{

namespace
{

/// For each end its place among the vertices; how many meet one. The product is a trifle too small, never too
/// large: so the vertex sought is that one or the next, and the quotient, which is the vertex's very direction,
/// tells which.
VIEWSHED_INLINE int placeEnds(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    constexpr double trifle = 0x1p-20;
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    const double last = ring.intervals - 1.0;
    const double *const ends = horizon.ends;
    int *VIEWSHED_RESTRICT const before = layout.before;
    int *VIEWSHED_RESTRICT const meets = layout.meets;
    const int count = horizon.count + 1;
    int meetings = 0;
    for (int end = 0; end < count; ++end) {
        const double m = ends[end];
        double position = m * ahead - firstSide - trifle;
        position = position < -1.0 ? -1.0 : position;
        position = position > last ? last : position;
        const int next = static_cast<int>(position + 1.0);
        const double direction = (firstSide + next) / ahead;
        const int met = direction == m ? 1 : 0;
        before[end] = next - (direction <= m ? 0 : 1);
        meets[end] = met;
        meetings += met;
    }
    return meetings;
}

/// Each piece writes a few limits too many, which the next one mends.
VIEWSHED_INLINE void writeLimits(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    const double *const a = horizon.a;
    const double *const b = horizon.b;
    const int *const before = layout.before;
    const int count = horizon.count;
    int vertex = before[0] + 1;
    for (int piece = 0; piece < count; ++piece) {
        const double start = a[piece] * ahead;
        const double slope = b[piece];
        const int end = before[piece + 1] + 1;
        double *to = layout.limits + vertex;
        double side = firstSide + vertex;
        for (int left = end - vertex;; left -= RingLayout::surplus) {
            to[0] = start + slope * side;
            to[1] = start + slope * (side + 1.0);
            to[2] = start + slope * (side + 2.0);
            to[3] = start + slope * (side + 3.0);
            if (left <= RingLayout::surplus)
                break;
            to += RingLayout::surplus;
            side += RingLayout::surplus;
        }
        vertex = end;
    }
}

VIEWSHED_INLINE int layOut(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    const int vertices = ring.intervals + 1;
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    double *VIEWSHED_RESTRICT const directions = layout.directions;
    // A quotient, not a product with 1 / ahead: equal directions of cells must be equal numbers.
    for (int vertex = 0; vertex < vertices; ++vertex)
        directions[vertex] = (firstSide + vertex) / ahead;

    const int meetings = placeEnds(ring, horizon, layout);
    writeLimits(ring, horizon, layout);
    double *const limits = layout.limits;
    for (int end = 0, left = meetings; left > 0; ++end) {
        if (layout.meets[end] == 0)
            continue;
        --left;
        const int vertex = layout.before[end];
        for (int piece = std::max(end - 1, 0); piece <= std::min(end, horizon.count - 1); ++piece)
            limits[vertex] =
                std::max(limits[vertex], horizon.a[piece] * ahead + horizon.b[piece] * (firstSide + vertex));
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (int vertex = 0; vertex <= layout.before[0]; ++vertex)
        limits[vertex] = infinity;
    for (int vertex = layout.before[horizon.count] + 1; vertex < vertices; ++vertex)
        limits[vertex] = infinity;
    return meetings;
}

/// The flags that a bend of the horizon in direction m, between `low` and `high`, gives an interval.
VIEWSHED_INLINE int flagsAt(double ahead, double leftSide, double left, double right, double nearLeft,
                            double nearRight, double m, double low, double high)
{
    const double along = left + (right - left) * (m * ahead - leftSide);
    const int alongRises = along > low * ahead ? 1 : 0;
    const int below = along >= high * ahead ? 0 : notWhole;
    // The edge towards the ring before, times |m|; a little too far does no harm.
    constexpr double more = 1.0 + 1e-12;
    const bool rightwards = leftSide > 0.0;
    const double height = rightwards ? left : right;
    const double nearer = rightwards ? nearLeft : nearRight;
    const double side = std::abs(rightwards ? leftSide : leftSide + 1.0);
    const double steep = std::abs(m);
    const double over = height * steep - (height - nearer) * (ahead * steep - side);
    const int reaches = steep * (ahead - 1.0) <= side * more ? 1 : 0;
    const int aheadRises = over > low * side ? 1 : 0;
    static_assert(risen == 1);
    return alongRises | (reaches & aheadRises) | below;
}

VIEWSHED_INLINE int flagsAt(const Ring &ring, const Pieces &horizon, int end, int interval)
{
    const double m = horizon.ends[end];
    const int left = end > 0 ? end - 1 : 0;
    const int right = end < horizon.count ? end : horizon.count - 1;
    const double one = horizon.a[left] + horizon.b[left] * m;
    const double other = horizon.a[right] + horizon.b[right] * m;
    return flagsAt(ring.ahead, ring.firstSide + interval, ring.heights[interval], ring.heights[interval + 1],
                   ring.nearer[interval], ring.nearer[interval + 1], m, one < other ? one : other,
                   one < other ? other : one);
}

/// What the bends of the horizon, all but its two ends, add to the intervals that they are in.
VIEWSHED_INLINE void findBends(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    const int lastInterval = ring.intervals - 1;
    const double *const heights = ring.heights;
    const double *const nearer = ring.nearer;
    const double *const ends = horizon.ends;
    const double *const a = horizon.a;
    const double *const b = horizon.b;
    const int *const before = layout.before;
    const int *const meets = layout.meets;
    int *VIEWSHED_RESTRICT const bends = layout.bends;
    const int count = horizon.count;
    for (int end = 1; end < count; ++end) {
        const double m = ends[end];
        const double one = a[end - 1] + b[end - 1] * m;
        const double other = a[end] + b[end] * m;
        const int at = before[end];
        int interval = at < 0 ? 0 : at;
        interval = interval > lastInterval ? lastInterval : interval;
        const int flags =
            flagsAt(ahead, firstSide + interval, heights[interval], heights[interval + 1], nearer[interval],
                    nearer[interval + 1], m, one < other ? one : other, one < other ? other : one);
        const int kept = meets[end] != 0 ? risen : risen | notWhole;
        bends[end] = interval == at ? flags & kept : 0;
    }
}

/// Marks the intervals where an end of an edge, or an edge over a bend of the horizon, is not below it: nothing
/// else can stand out, as all is straight between.
VIEWSHED_INLINE bool findRisen(const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings,
                               int *VIEWSHED_RESTRICT flags)
{
    const double *const heights = ring.heights;
    const double *const limits = layout.limits;
    const int intervals = ring.intervals;
    int any = 0;
    for (int interval = 0; interval < intervals; ++interval) {
        const int left = heights[interval] >= limits[interval] ? 1 : 0;
        const int right = heights[interval + 1] >= limits[interval + 1] ? 1 : 0;
        flags[interval] = left | right | ((left & right) != 0 ? 0 : notWhole);
        any |= left | right;
    }
    findBends(ring, horizon, layout);
    const int *const before = layout.before;
    const int *const bends = layout.bends;
    const int count = horizon.count;
    for (int end = 1; end < count; ++end) {
        const int at = before[end] < 0 ? 0 : before[end];
        flags[at] |= bends[end];
        any |= bends[end];
    }
    const auto mark = [&](int end, int interval) {
        if (interval >= 0 && interval < intervals) {
            const int found = flagsAt(ring, horizon, end, interval) & risen;
            flags[interval] |= found;
            any |= found;
        }
    };
    mark(0, before[0]);
    mark(count, before[count]);
    for (int end = 0, left = meetings; left > 0; ++end) {
        if (layout.meets[end] != 0) {
            mark(end, before[end] - 1);
            --left;
        }
    }
    return (any & risen) != 0;
}

VIEWSHED_INLINE void edges(const Ring &ring, int first, int end, double *VIEWSHED_RESTRICT a,
                           double *VIEWSHED_RESTRICT b)
{
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide + first;
    const double *const heights = ring.heights + first;
    const int count = end - first;
    for (int interval = 0; interval < count; ++interval) {
        const double left = heights[interval];
        const double right = heights[interval + 1];
        const double side = firstSide + interval;
        b[interval] = right - left;
        a[interval] = (left * (side + 1.0) - right * side) / ahead;
    }
}

VIEWSHED_INLINE double lowest(const Pieces &horizon)
{
    double least = horizon.a[0] + horizon.b[0] * horizon.ends[0];
    for (int piece = 0; piece < horizon.count; ++piece) {
        const double left = horizon.a[piece] + horizon.b[piece] * horizon.ends[piece];
        const double right = horizon.a[piece] + horizon.b[piece] * horizon.ends[piece + 1];
        const double lower = left < right ? left : right;
        least = lower < least ? lower : least;
    }
    return least;
}

VIEWSHED_INLINE int judge(const Ring &ring, const double *limits, double target, double error,
                          std::uint64_t *VIEWSHED_RESTRICT above)
{
    const double *const heights = ring.heights;
    const int vertices = ring.intervals + 1;
    int doubtful = 0;
    for (int vertex = 0; vertex < vertices; ++vertex) {
        const double over = heights[vertex] + target - limits[vertex];
        above[vertex] = over > error ? 1 : 0;
        doubtful += std::abs(over) <= error ? 1 : 0;
    }
    return doubtful;
}

template <class Number>
VIEWSHED_INLINE void lower(const Number *heights, const CellRun &cells, const Sight &given,
                           double *VIEWSHED_RESTRICT above, std::ptrdiff_t step)
{
    const Sight sight = given; // what nothing else points to stays in registers
    const auto [column, row, count] = cells;
    if (sight.bend == 0.0 && step == 1) {
        for (int cell = 0; cell < count; ++cell)
            above[cell] = static_cast<double>(heights[cell]) - sight.eye.z;
    } else if (sight.bend == 0.0) {
        for (int cell = 0; cell < count; ++cell)
            above[cell * step] = static_cast<double>(heights[cell]) - sight.eye.z;
    } else {
        for (int cell = 0; cell < count; ++cell)
            above[cell * step] = sight.aboveEye(static_cast<double>(heights[cell]), column + cell, row);
    }
}

constexpr SkylineKernels plainKernels{
    [](const Ring &ring, const Pieces &horizon, const RingLayout &layout) {
        return layOut(ring, horizon, layout);
    },
    [](const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings, int *flags) {
        return findRisen(ring, horizon, layout, meetings, flags);
    },
    [](const Ring &ring, int first, int end, double *a, double *b) { edges(ring, first, end, a, b); },
    [](const Pieces &horizon) { return lowest(horizon); },
    [](const Ring &ring, const double *limits, double target, double error, std::uint64_t *above) {
        return judge(ring, limits, target, error, above);
    },
    [](const float *heights, const CellRun &cells, const Sight &sight, double *above, std::ptrdiff_t step) {
        lower(heights, cells, sight, above, step);
    },
    [](const double *heights, const CellRun &cells, const Sight &sight, double *above, std::ptrdiff_t step) {
        lower(heights, cells, sight, above, step);
    },
};

#if VIEWSHED_HAS_AVX2
#define VIEWSHED_AVX2 __attribute__((target("avx2")))
constexpr SkylineKernels avx2Kernels{
    [](const Ring &ring, const Pieces &horizon, const RingLayout &layout)
        VIEWSHED_AVX2 { return layOut(ring, horizon, layout); },
    [](const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings, int *flags)
        VIEWSHED_AVX2 { return findRisen(ring, horizon, layout, meetings, flags); },
    [](const Ring &ring, int first, int end, double *a, double *b)
        VIEWSHED_AVX2 { edges(ring, first, end, a, b); },
    [](const Pieces &horizon) VIEWSHED_AVX2 { return lowest(horizon); },
    [](const Ring &ring, const double *limits, double target, double error, std::uint64_t *above)
        VIEWSHED_AVX2 { return judge(ring, limits, target, error, above); },
    [](const float *heights, const CellRun &cells, const Sight &sight, double *above, std::ptrdiff_t step)
        VIEWSHED_AVX2 { lower(heights, cells, sight, above, step); },
    [](const double *heights, const CellRun &cells, const Sight &sight, double *above, std::ptrdiff_t step)
        VIEWSHED_AVX2 { lower(heights, cells, sight, above, step); },
};
#endif

} // namespace

bool isSupported(VectorPath path)
{
#if VIEWSHED_HAS_AVX2
    return path == VectorPath::Plain || __builtin_cpu_supports("avx2");
#else
    return path == VectorPath::Plain;
#endif
}

VectorPath bestPath()
{
    return isSupported(VectorPath::Avx2) ? VectorPath::Avx2 : VectorPath::Plain;
}

const SkylineKernels &kernelsOf(VectorPath path)
{
#if VIEWSHED_HAS_AVX2
    if (path == VectorPath::Avx2)
        return avx2Kernels;
#endif
    static_cast<void>(path);
    return plainKernels;
}

} // namespace viewshed
