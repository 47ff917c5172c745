#pragma once

#include "viewshed/bitgrid.h"
#include "viewshed/sweep/leafsweep.h"

#include <cstdint>
#include <vector>

namespace viewshed
{

/// The buffers of SeenCells. A thread passes the same ones to one leaf after the other, so that memory is
/// allocated only a few times.
struct SeenBuffers
{
    std::vector<std::uint64_t> vertices; ///< for each vertex of the ring 1 if it is seen, else 0
    std::vector<std::uint64_t> columns;  ///< for each place of the panel the bits of one block's columns
};

/// Sets the bits of the cells of a leaf that are seen.
class SeenCells : public RingSink
{
public:
    /// `frame` is that of the leaf. The grid `seen` holds the cells of `window`, which must hold the scene's
    /// window; sinks of other leaves may set bits in it at the same time. All must outlive the sink, and no
    /// other sink may use the buffers at the same time.
    SeenCells(const Scene &scene, const Frame &frame, BitGrid &seen, const Window &window,
              SeenBuffers &buffers);

    void beginBlock(Places places) override;
    void ring(const SweptRing &swept) override;
    void endBlock(int nearestLine) override;

private:
    void decideDoubtful(const SweptRing &swept, int doubtful);
    void dropUnseen(const SweptRing &swept);
    void collectColumn(const SweptRing &swept);
    void storeRow(const SweptRing &swept);
    void store(int column, int row, std::uint64_t bits);

    const Scene &m_scene;
    Frame m_frame;
    BitGrid &m_seen;
    int m_firstWord;      ///< of a row of the terrain, the word with which a row of m_seen begins
    int m_firstRow;       ///< the terrain's row with which m_seen begins
    int m_firstPlace = 0; ///< the place of the first of m_columnBits
    std::vector<std::uint64_t> &m_seenVertices;
    std::vector<std::uint64_t> &m_columnBits;
};

} // namespace viewshed
