#include "viewshed/leafsweep.h"

#include "viewshed/lineofsight.h"

#include <algorithm>
#include <atomic>

namespace viewshed
{

namespace
{

/// The direction at which leaf number `leaf` begins and the leaf before it ends. The leaves of a sector cover
/// m = -1 to 1. Their ends are shifted by 2^-40, so that no cell lies exactly at an end: the direction of a
/// cell is a quotient of lattice numbers, which equals a multiple of 1/32 or differs from it by 2^-35 at least.
/// Every cell is thus inside one leaf of a sector, and a cell on a diagonal is inside both adjoining sectors.
double leafEnd(int leaf)
{
    constexpr double shift = 0x1p-40;
    return leaf == 0 ? -1.0 - shift : -1.0 + 2.0 * leaf / leavesPerSector + shift;
}

Places columnsOf(const Window &window)
{
    return {.first = window.left, .last = window.left + window.width - 1};
}

Places rowsOf(const Window &window)
{
    return {.first = window.top, .last = window.top + window.height - 1};
}

} // namespace

LeafSweep::LeafSweep(const Scene &scene, const Frame &frame, int leaf, Workspace &workspace)
    : m_scene(scene)
    , m_frame(frame)
    , m_from(leafEnd(leaf))
    , m_to(leafEnd(leaf + 1))
    , m_eyeLine(frame.linesAreColumns ? scene.sight.eye.column() : scene.sight.eye.row())
    , m_eyePlace(frame.linesAreColumns ? scene.sight.eye.row() : scene.sight.eye.column())
    , m_lines(frame.linesAreColumns ? columnsOf(scene.window) : rowsOf(scene.window))
    , m_places(frame.linesAreColumns ? rowsOf(scene.window) : columnsOf(scene.window))
    , m_skyline(workspace.skyline)
    , m_panel(workspace.panel)
    , m_seenVertices(workspace.seenVertices)
    , m_columnBits(workspace.columnBits)
{
    m_skyline.restart(m_from, m_to);
}

void LeafSweep::run()
{
    const bool grows = m_frame.awayStep > 0;
    const double next = grows ? std::floor(m_eyeLine) + 1.0 : std::ceil(m_eyeLine) - 1.0;
    int line =
        static_cast<int>(grows ? std::max(next, double(m_lines.first)) : std::min(next, double(m_lines.last)));
    constexpr int block = BlockMaxima::side;
    while (line >= m_lines.first && line <= m_lines.last) {
        const int first = line / block * block;
        const int last = grows ? std::min(first + block - 1, m_lines.last) : std::max(first, m_lines.first);
        sweepBlock(line, last);
        line = last + m_frame.awayStep;
    }
}

/// The places of the cells between the leaf's ends at the distance `ahead`, and one more at either end. They
/// may lie outside the terrain.
Places LeafSweep::placesAround(double ahead) const
{
    Places places{.first = static_cast<int>(std::floor(m_from * ahead + m_eyePlace)),
                  .last = static_cast<int>(std::ceil(m_to * ahead + m_eyePlace))};
    // The sums are rounded, so a cell just inside the leaf's end may have been found to be outside.
    if ((places.first - m_eyePlace) / ahead > m_from)
        --places.first;
    if ((places.last - m_eyePlace) / ahead < m_to)
        ++places.last;
    return places;
}

/// Sweeps the lines of one row (or column) of blocks, or skips them if their cells are all hidden.
void LeafSweep::sweepBlock(int nearestLine, int farthestLine)
{
    const Places near = placesAround(ahead(nearestLine));
    const Places far = placesAround(ahead(farthestLine));
    const Places places{.first = std::max(std::min(near.first, far.first), m_places.first - 1),
                        .last = std::min(std::max(near.last, far.last), m_places.last + 1)};
    if (places.first > m_places.last || places.last < m_places.first)
        return;
    const double greatest = greatestElevation(nearestLine, places);
    m_nothingAboveEye =
        m_nothingAboveEye && greatest <= m_scene.sight.eye.z && m_scene.sight.curvatureDrop >= 0.0;
    if (isHidden(nearestLine, farthestLine, greatest))
        return;
    m_panel.load(
        m_scene.terrain, m_scene.sight, m_frame,
        {.first = std::min(nearestLine, farthestLine) - 1, .last = std::max(nearestLine, farthestLine) + 1},
        places);
    m_columnBits.assign(static_cast<std::size_t>(places.last - places.first + 1), 0);
    for (int line = nearestLine; line != farthestLine + m_frame.awayStep; line += m_frame.awayStep)
        sweepLine(line);
    if (m_frame.linesAreColumns)
        storeColumns(nearestLine);
}

/// The greatest elevation in and around the blocks that hold the places of the line.
double LeafSweep::greatestElevation(int line, Places places) const
{
    constexpr int block = BlockMaxima::side;
    const int first = std::max(places.first, m_places.first) / block;
    const int last = std::min(places.last, m_places.last) / block;
    const int lines = line / block;
    return m_frame.linesAreColumns ? m_scene.maxima.greatest(lines, lines, first, last)
                                   : m_scene.maxima.greatest(first, last, lines, lines);
}

/// Whether a cell with the greatest elevation would be hidden anywhere between the two lines. It is compared
/// where it appears highest: at the nearer end if it is above the eye, at the farther end if it is below.
bool LeafSweep::isHidden(int nearestLine, int farthestLine, double greatest)
{
    const Sight &sight = m_scene.sight;
    const double nearestEdge = ahead(nearestLine) - 1.0; // edges lead back to the line before the nearest one
    if (sight.curvatureDrop < 0.0 || nearestEdge <= 0.0)
        return false;
    const double top = greatest - sight.eye.z + std::max(sight.targetHeight, 0.0)
        - sight.curvatureDrop * m_scene.shortestStepSquared * nearestEdge * nearestEdge;
    return top / (top > 0.0 ? nearestEdge : ahead(farthestLine)) < m_skyline.lowest() - m_scene.errorPerCell;
}

void LeafSweep::sweepLine(int line)
{
    Ring ring;
    ring.ahead = ahead(line);
    Places vertices = placesAround(ring.ahead);
    vertices = {.first = std::max(vertices.first, m_places.first - 1),
                .last = std::min(vertices.last, m_places.last + 1)};
    ring.intervals = vertices.last - vertices.first;
    if (ring.intervals < 1)
        return;
    ring.firstSide = vertices.first - m_eyePlace;
    ring.heights = m_panel.line(line, vertices.first);
    ring.nearer = m_panel.line(line - m_frame.awayStep, vertices.first);
    ring.farther = m_panel.line(line + m_frame.awayStep, vertices.first);
    const double *limits = m_skyline.limits(ring);
    decide(line, ring, vertices.first, limits);
    m_skyline.raise(ring);
}

/// Decides which vertices of the ring are seen, and stores their bits. Vertex 0 is the place `firstPlace`.
void LeafSweep::decide(int line, const Ring &ring, int firstPlace, const double *limits)
{
    const double error = ring.ahead * m_scene.errorPerCell;
    if (m_seenVertices.size() <= static_cast<std::size_t>(ring.intervals))
        m_seenVertices.resize(static_cast<std::size_t>(ring.intervals) + 1);
    const int doubtful =
        m_scene.kernels.classify(ring, limits, m_scene.sight.targetHeight, error, m_seenVertices.data());
    decideDoubtful(line, ring, firstPlace, limits, doubtful);
    if (!std::isinf(m_scene.sight.reach))
        dropBeyondReach(line, ring, firstPlace);
    if (m_frame.linesAreColumns)
        collectColumn(line, ring, firstPlace);
    else
        storeRow(line, ring, firstPlace);
}

/// Decides the vertices that are too near to the horizon for its rounding; there are `doubtful` of them.
void LeafSweep::decideDoubtful(int line, const Ring &ring, int firstPlace, const double *limits, int doubtful)
{
    const double error = ring.ahead * m_scene.errorPerCell;
    for (int vertex = 0; doubtful > 0; ++vertex) {
        const double height = ring.heights[vertex] + m_scene.sight.targetHeight;
        if (!(std::abs(height - limits[vertex]) <= error))
            continue;
        --doubtful;
        // No ground can hide a target that is not below the eye if no ground is above the eye. Without this
        // shortcut, every cell of a water surface at the eye's level would need its line of sight.
        const bool isClear = m_nothingAboveEye && height >= 0.0;
        const int place = firstPlace + vertex;
        if (isClear
            || sees(m_scene.terrain, m_scene.sight, m_frame.column(line, place), m_frame.row(line, place)))
            m_seenVertices[static_cast<std::size_t>(vertex)] = 1;
    }
}

void LeafSweep::dropBeyondReach(int line, const Ring &ring, int firstPlace)
{
    for (int vertex = 0; vertex <= ring.intervals; ++vertex) {
        const int place = firstPlace + vertex;
        std::uint64_t &seen = m_seenVertices[static_cast<std::size_t>(vertex)];
        if (seen != 0 && !m_scene.sight.reaches(m_frame.column(line, place), m_frame.row(line, place)))
            seen = 0;
    }
}

/// Collects the bits of one column in m_columnBits. Where lines are columns, a word of the grid holds cells of
/// several lines, so the bits are stored once a block and not once a line.
void LeafSweep::collectColumn(int line, const Ring &ring, int firstPlace)
{
    std::uint64_t *bits = m_columnBits.data() + (firstPlace - m_panel.firstPlace());
    const int shift = line % BitGrid::bitsPerWord;
    for (int vertex = 0; vertex <= ring.intervals; ++vertex)
        bits[vertex] |= m_seenVertices[static_cast<std::size_t>(vertex)] << shift;
}

void LeafSweep::storeRow(int line, const Ring &ring, int firstPlace)
{
    constexpr int bitsPerWord = BitGrid::bitsPerWord;
    int vertex = std::max(-firstPlace, 0); // vertices with a negative place are outside the terrain
    while (vertex <= ring.intervals) {
        const int place = firstPlace + vertex;
        const int end = std::min(vertex + bitsPerWord - place % bitsPerWord, ring.intervals + 1);
        std::uint64_t bits = 0;
        for (int shift = place % bitsPerWord; vertex < end; ++vertex, ++shift)
            bits |= m_seenVertices[static_cast<std::size_t>(vertex)] << shift;
        store(place, line, bits);
    }
}

void LeafSweep::storeColumns(int line)
{
    for (std::size_t index = 0; index < m_columnBits.size(); ++index)
        store(line, m_panel.firstPlace() + static_cast<int>(index), m_columnBits[index]);
}

/// Sets bits in the word of a cell; atomically, because other threads set bits in the same words. Cells outside
/// the terrain are never seen, so their bits are 0 and their words are not touched.
void LeafSweep::store(int column, int row, std::uint64_t bits)
{
    if (bits == 0)
        return;
    std::uint64_t &word = m_scene.seen.row(row)[column / BitGrid::bitsPerWord];
    std::atomic_ref(word).fetch_or(bits, std::memory_order_relaxed);
}

} // namespace viewshed
