#include "viewshed/sweep/skylinekernels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

// Each loop is written once and without branches, so that the compiler can vectorize it. It is inlined into one
// function for each VectorPath. Only these functions are compiled with the instructions of their path, so that
// no other code can contain an instruction that the processor lacks.
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

/// Fills `vertexBefore` and `meetsVertex`, and returns how many ends meet a vertex. The position of an end
/// among the vertices is computed slightly too small on purpose, so that rounding never makes it too large. The
/// vertex sought is then the one found or the one after it, and a comparison with the quotient that defines the
/// vertex's direction decides which.
VIEWSHED_INLINE int placeEnds(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    constexpr double margin = 0x1p-20; // in cells; the rounding stays below 2^-34
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    const double last = ring.intervals - 1.0;
    const double *const ends = horizon.ends;
    int *VIEWSHED_RESTRICT const vertexBefore = layout.vertexBefore;
    int *VIEWSHED_RESTRICT const meetsVertex = layout.meetsVertex;
    const int count = horizon.count + 1;
    int meetings = 0;
    for (int end = 0; end < count; ++end) {
        const double m = ends[end];
        double position = m * ahead - firstSide - margin;
        position = position < -1.0 ? -1.0 : position;
        position = position > last ? last : position;
        const int next = static_cast<int>(position + 1.0);
        const double direction = (firstSide + next) / ahead;
        const int met = direction == m ? 1 : 0;
        vertexBefore[end] = next - (direction <= m ? 0 : 1);
        meetsVertex[end] = met;
        meetings += met;
    }
    return meetings;
}

/// Writes the limit of every vertex within the horizon's range. Limits are written four at a time; where this
/// goes beyond a piece's last vertex, the next piece overwrites the surplus.
VIEWSHED_INLINE void writeLimits(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    const double *const a = horizon.a;
    const double *const b = horizon.b;
    const int *const vertexBefore = layout.vertexBefore;
    const int count = horizon.count;
    int vertex = vertexBefore[0] + 1;
    for (int piece = 0; piece < count; ++piece) {
        const double start = a[piece] * ahead;
        const double slope = b[piece];
        const int end = vertexBefore[piece + 1] + 1;
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
    // A quotient and not a product with 1 / ahead, because cells in the same direction from the eye must have
    // equal numbers as their direction.
    for (int vertex = 0; vertex < vertices; ++vertex)
        directions[vertex] = (firstSide + vertex) / ahead;

    const int meetings = placeEnds(ring, horizon, layout);
    writeLimits(ring, horizon, layout);
    double *const limits = layout.limits;
    // Where an end meets a vertex, the higher of the two pieces counts.
    for (int end = 0, left = meetings; left > 0; ++end) {
        if (layout.meetsVertex[end] == 0)
            continue;
        --left;
        const int vertex = layout.vertexBefore[end];
        for (int piece = std::max(end - 1, 0); piece <= std::min(end, horizon.count - 1); ++piece)
            limits[vertex] =
                std::max(limits[vertex], horizon.a[piece] * ahead + horizon.b[piece] * (firstSide + vertex));
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (int vertex = 0; vertex <= layout.vertexBefore[0]; ++vertex)
        limits[vertex] = infinity;
    for (int vertex = layout.vertexBefore[horizon.count] + 1; vertex < vertices; ++vertex)
        limits[vertex] = infinity;
    return meetings;
}

/// The flags that a kink of the horizon gives to the interval in which it lies. The kink is at direction m; the
/// two pieces that meet there have the heights g = `low` and `high`. The other arguments describe the interval:
/// the side and the heights of its two cells, and the heights of the cells one line nearer.
VIEWSHED_INLINE int flagsAt(double ahead, double leftSide, double left, double right, double nearLeft,
                            double nearRight, double m, double low, double high)
{
    const double along = left + (right - left) * (m * ahead - leftSide);
    const int alongRises = along > low * ahead ? 1 : 0;
    const int below = along >= high * ahead ? 0 : partlyBelow;
    // The height of the edge from the nearer ring, multiplied by `side` instead of dividing by it. Assuming
    // that the edge reaches slightly too far only flags an interval needlessly.
    constexpr double tolerance = 1.0 + 1e-12;
    const bool rightwards = leftSide > 0.0;
    const double height = rightwards ? left : right;
    const double nearer = rightwards ? nearLeft : nearRight;
    const double side = std::abs(rightwards ? leftSide : leftSide + 1.0);
    const double absM = std::abs(m);
    const double over = height * absM - (height - nearer) * (ahead * absM - side);
    const int reaches = absM * (ahead - 1.0) <= side * tolerance ? 1 : 0;
    const int aheadRises = over > low * side ? 1 : 0;
    static_assert(mayRise == 1);
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

/// Fills `kinkFlags` for each kink of the horizon: for each end of a piece except the first and the last.
VIEWSHED_INLINE void flagKinks(const Ring &ring, const Pieces &horizon, const RingLayout &layout)
{
    const double ahead = ring.ahead;
    const double firstSide = ring.firstSide;
    const int lastInterval = ring.intervals - 1;
    const double *const heights = ring.heights;
    const double *const nearer = ring.nearer;
    const double *const ends = horizon.ends;
    const double *const a = horizon.a;
    const double *const b = horizon.b;
    const int *const vertexBefore = layout.vertexBefore;
    const int *const meetsVertex = layout.meetsVertex;
    int *VIEWSHED_RESTRICT const kinkFlags = layout.kinkFlags;
    const int count = horizon.count;
    for (int end = 1; end < count; ++end) {
        const double m = ends[end];
        const double one = a[end - 1] + b[end - 1] * m;
        const double other = a[end] + b[end] * m;
        const int at = vertexBefore[end];
        int interval = at < 0 ? 0 : at;
        interval = interval > lastInterval ? lastInterval : interval;
        const int flags =
            flagsAt(ahead, firstSide + interval, heights[interval], heights[interval + 1], nearer[interval],
                    nearer[interval + 1], m, one < other ? one : other, one < other ? other : one);
        const int kept = meetsVertex[end] != 0 ? mayRise : mayRise | partlyBelow;
        kinkFlags[end] = interval == at ? flags & kept : 0;
    }
}

/// Between two neighbouring kinks or vertices, edges and horizon are straight. So an edge that stands out does
/// so at one of its ends or at a kink of the horizon, and only these points are compared.
VIEWSHED_INLINE bool flagIntervals(const Ring &ring, const Pieces &horizon, const RingLayout &layout,
                                   int meetings, int *VIEWSHED_RESTRICT flags)
{
    const double *const heights = ring.heights;
    const double *const limits = layout.limits;
    const int intervals = ring.intervals;
    int any = 0;
    for (int interval = 0; interval < intervals; ++interval) {
        const int left = heights[interval] >= limits[interval] ? 1 : 0;
        const int right = heights[interval + 1] >= limits[interval + 1] ? 1 : 0;
        flags[interval] = left | right | ((left & right) != 0 ? 0 : partlyBelow);
        any |= left | right;
    }
    flagKinks(ring, horizon, layout);
    const int *const vertexBefore = layout.vertexBefore;
    const int *const kinkFlags = layout.kinkFlags;
    const int count = horizon.count;
    for (int end = 1; end < count; ++end) {
        const int at = vertexBefore[end] < 0 ? 0 : vertexBefore[end];
        flags[at] |= kinkFlags[end];
        any |= kinkFlags[end];
    }
    const auto mark = [&](int end, int interval) {
        if (interval >= 0 && interval < intervals) {
            const int found = flagsAt(ring, horizon, end, interval) & mayRise;
            flags[interval] |= found;
            any |= found;
        }
    };
    // What remains: the first and the last end, and the interval on the other side of a vertex that an end
    // meets.
    mark(0, vertexBefore[0]);
    mark(count, vertexBefore[count]);
    for (int end = 0, left = meetings; left > 0; ++end) {
        if (layout.meetsVertex[end] != 0) {
            mark(end, vertexBefore[end] - 1);
            --left;
        }
    }
    return (any & mayRise) != 0;
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
        const double heightsAboveEye = left < right ? left : right;
        least = heightsAboveEye < least ? heightsAboveEye : least;
    }
    return least;
}

VIEWSHED_INLINE int classify(const Ring &ring, const double *limits, double target, double error,
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
VIEWSHED_INLINE void heightsAboveEye(const Number *heights, const CellRun &cells, const Sight &given,
                                     double *VIEWSHED_RESTRICT above, std::ptrdiff_t step)
{
    const Sight sight = given; // a local copy stays in registers: no pointer can alias it
    const auto [column, row, count] = cells;
    if (sight.curvatureDrop == 0.0 && step == 1) {
        for (int cell = 0; cell < count; ++cell)
            above[cell] = static_cast<double>(heights[cell]) - sight.eye.z;
    } else if (sight.curvatureDrop == 0.0) {
        for (int cell = 0; cell < count; ++cell)
            above[cell * step] = static_cast<double>(heights[cell]) - sight.eye.z;
    } else {
        for (int cell = 0; cell < count; ++cell)
            above[cell * step] = sight.aboveEye(static_cast<double>(heights[cell]), column + cell, row);
    }
}

constexpr SkylineKernels plainKernels{
    .layOut = [](const Ring &ring, const Pieces &horizon,
                 const RingLayout &layout) { return layOut(ring, horizon, layout); },
    .flagIntervals = [](const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings,
                        int *flags) { return flagIntervals(ring, horizon, layout, meetings, flags); },
    .edges = [](const Ring &ring, int first, int end, double *a, double *b) { edges(ring, first, end, a, b); },
    .lowest = [](const Pieces &horizon) { return lowest(horizon); },
    .classify = [](const Ring &ring, const double *limits, double target, double error,
                   std::uint64_t *above) { return classify(ring, limits, target, error, above); },
    .floatsAboveEye = [](const float *heights, const CellRun &cells, const Sight &sight, double *above,
                         std::ptrdiff_t step) { heightsAboveEye(heights, cells, sight, above, step); },
    .doublesAboveEye = [](const double *heights, const CellRun &cells, const Sight &sight, double *above,
                          std::ptrdiff_t step) { heightsAboveEye(heights, cells, sight, above, step); },
};

#if VIEWSHED_HAS_AVX2
#define VIEWSHED_AVX2 __attribute__((target("avx2")))
constexpr SkylineKernels avx2Kernels{
    .layOut = [](const Ring &ring, const Pieces &horizon, const RingLayout &layout)
                  VIEWSHED_AVX2 { return layOut(ring, horizon, layout); },
    .flagIntervals =
        [](const Ring &ring, const Pieces &horizon, const RingLayout &layout, int meetings, int *flags)
            VIEWSHED_AVX2 { return flagIntervals(ring, horizon, layout, meetings, flags); },
    .edges = [](const Ring &ring, int first, int end, double *a, double *b)
                 VIEWSHED_AVX2 { edges(ring, first, end, a, b); },
    .lowest = [](const Pieces &horizon) VIEWSHED_AVX2 { return lowest(horizon); },
    .classify = [](const Ring &ring, const double *limits, double target, double error, std::uint64_t *above)
                    VIEWSHED_AVX2 { return classify(ring, limits, target, error, above); },
    .floatsAboveEye =
        [](const float *heights, const CellRun &cells, const Sight &sight, double *above, std::ptrdiff_t step)
            VIEWSHED_AVX2 { heightsAboveEye(heights, cells, sight, above, step); },
    .doublesAboveEye =
        [](const double *heights, const CellRun &cells, const Sight &sight, double *above, std::ptrdiff_t step)
            VIEWSHED_AVX2 { heightsAboveEye(heights, cells, sight, above, step); },
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
