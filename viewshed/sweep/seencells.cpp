#include "viewshed/sweep/seencells.h"

#include "viewshed/lineofsight.h"

#include <algorithm>
#include <atomic>

namespace viewshed
{

SeenCells::SeenCells(const Scene &scene, const Frame &frame, BitGrid &seen, const Window &window,
                     SeenBuffers &buffers)
    : m_scene(scene)
    , m_frame(frame)
    , m_seen(seen)
    , m_firstWord(window.left / BitGrid::bitsPerWord)
    , m_firstRow(window.top)
    , m_seenVertices(buffers.vertices)
    , m_columnBits(buffers.columns)
{ }

void SeenCells::beginBlock(Places places)
{
    m_firstPlace = places.first;
    m_columnBits.assign(static_cast<std::size_t>(places.last - places.first + 1), 0);
}

void SeenCells::ring(const SweptRing &swept)
{
    const Ring &ring = swept.ring;
    const double error = ring.ahead * m_scene.errorPerCell;
    if (m_seenVertices.size() <= static_cast<std::size_t>(ring.intervals))
        m_seenVertices.resize(static_cast<std::size_t>(ring.intervals) + 1);
    const int doubtful =
        m_scene.kernels.classify(ring, swept.limits, m_scene.sight.targetHeight, error, m_seenVertices.data());
    decideDoubtful(swept, doubtful);
    if (m_scene.sight.hasBounds() || m_scene.sight.field.hasSlopes())
        dropUnseen(swept);
    if (m_frame.linesAreColumns)
        collectColumn(swept);
    else
        storeRow(swept);
}

void SeenCells::endBlock(int nearestLine)
{
    if (!m_frame.linesAreColumns)
        return;
    for (std::size_t index = 0; index < m_columnBits.size(); ++index)
        store(nearestLine, m_firstPlace + static_cast<int>(index), m_columnBits[index]);
}

/// Decides the vertices that are too near to the horizon for its rounding; there are `doubtful` of them.
void SeenCells::decideDoubtful(const SweptRing &swept, int doubtful)
{
    const double error = swept.ring.ahead * m_scene.errorPerCell;
    for (int vertex = 0; doubtful > 0; ++vertex) {
        const double height = swept.ring.heights[vertex] + m_scene.sight.targetHeight;
        if (!(std::abs(height - swept.limits[vertex]) <= error))
            continue;
        --doubtful;
        // No ground can hide a target that is not below the eye if no ground is above the eye. Without this
        // shortcut, every cell of a water surface at the eye's level would need its line of sight.
        const bool isClear = swept.nothingAboveEye && height >= 0.0;
        const int place = swept.firstPlace + vertex;
        if (isClear
            || sees(m_scene.terrain, m_scene.sight, m_frame.column(swept.line, place),
                    m_frame.row(swept.line, place)))
            m_seenVertices[static_cast<std::size_t>(vertex)] = 1;
    }
}

/// Drops the vertices that are beyond the sight's reach or outside its field of view.
void SeenCells::dropUnseen(const SweptRing &swept)
{
    const Sight &sight = m_scene.sight;
    const auto isUnseen = [&](int vertex) {
        const int column = m_frame.column(swept.line, swept.firstPlace + vertex);
        const int row = m_frame.row(swept.line, swept.firstPlace + vertex);
        return !sight.reaches(column, row)
            || !sight.isWithinSlopes(swept.ring.heights[vertex] + sight.targetHeight, column, row);
    };
    std::uint64_t *const seen = m_seenVertices.data();
    const int last = swept.ring.intervals;
    if (sight.field.hasBounds() || sight.field.hasSlopes()) {
        for (int vertex = 0; vertex <= last; ++vertex) {
            if (seen[vertex] != 0 && isUnseen(vertex))
                seen[vertex] = 0;
        }
        return;
    }
    // The cells within reach form an ellipse, so those of a ring follow each other.
    int first = 0;
    for (; first <= last && isUnseen(first); ++first)
        seen[first] = 0;
    for (int vertex = last; vertex > first && isUnseen(vertex); --vertex)
        seen[vertex] = 0;
}

/// Collects the bits of one column in m_columnBits. Where lines are columns, a word of the grid holds cells of
/// several lines, so the bits are stored once a block and not once a line.
void SeenCells::collectColumn(const SweptRing &swept)
{
    std::uint64_t *bits = m_columnBits.data() + (swept.firstPlace - m_firstPlace);
    const int shift = swept.line % BitGrid::bitsPerWord;
    for (int vertex = 0; vertex <= swept.ring.intervals; ++vertex)
        bits[vertex] |= m_seenVertices[static_cast<std::size_t>(vertex)] << shift;
}

void SeenCells::storeRow(const SweptRing &swept)
{
    constexpr int bitsPerWord = BitGrid::bitsPerWord;
    const int vertices = swept.ring.intervals + 1;
    int vertex = std::max(-swept.firstPlace, 0); // vertices with a negative place are outside the terrain
    while (vertex < vertices) {
        const int place = swept.firstPlace + vertex;
        const int end = std::min(vertex + bitsPerWord - place % bitsPerWord, vertices);
        std::uint64_t bits = 0;
        for (int shift = place % bitsPerWord; vertex < end; ++vertex, ++shift)
            bits |= m_seenVertices[static_cast<std::size_t>(vertex)] << shift;
        store(place, swept.line, bits);
    }
}

/// Sets bits in the word of a cell; atomically, because other threads set bits in the same words. Cells outside
/// the scene's window are never seen, so their bits are 0 and their words are not touched.
void SeenCells::store(int column, int row, std::uint64_t bits)
{
    if (bits == 0)
        return;
    std::uint64_t &word = m_seen.row(row - m_firstRow)[column / BitGrid::bitsPerWord - m_firstWord];
    std::atomic_ref(word).fetch_or(bits, std::memory_order_relaxed);
}

} // namespace viewshed
