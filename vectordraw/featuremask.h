#pragma once

#include "vectordraw/featurereader.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace vectordraw
{

/// Paints the areas of a layer's features into an 8-bit mask in a raster's grid: 255 inside, 0 outside, the
/// covered part of a cell on their borders. What several areas cover is covered once. Lines and points cover
/// nothing.
class FeatureMask
{
public:
    /// The layer outlives the mask. view: the raster's grid, of any size that the memory holds.
    FeatureMask(OGRLayer &layer, const View &view);

    /// Why nothing can be painted, in GDAL's words for the layer's faults; empty when it can.
    const std::string &error() const { return m_error.empty() ? m_reader.error() : m_error; }

    /// Adds the areas of at least one feature, and of further features until their vertices add up to
    /// `vertices`. Returns false when no feature is left.
    bool addNext(long long vertices);

    /// Of the cell in that column and row, from the upper left corner; 0 outside of the raster.
    std::uint8_t coverage(int column, int row) const;

    /// Rows from the top, bytesPerRow() apart; null when there is an error.
    const std::uint8_t *pixels() const { return m_cells.empty() ? nullptr : m_cells.data(); }
    int bytesPerRow() const { return m_width; }

private:
    struct Block
    {
        int left;
        int top;
        int width;
        int height;
    };

    void addArea(const std::vector<std::span<const Point>> &rings);
    void addBlock(const std::vector<std::span<const Point>> &rings, const Block &block);

    FeatureReader m_reader;
    int m_width;
    int m_height;
    std::string m_error;
    std::vector<std::uint8_t> m_cells;
    /// Samples inside, of the cells that are covered in part: a bit each of 8 rows of 8. Without them nobody
    /// could know whether two areas that cover a half of a cell cover the same half.
    std::unordered_map<std::size_t, std::uint64_t> m_samples;
    PixelGeometry m_geometry;
    std::vector<Point> m_ring;    ///< room that is used again
    std::vector<Point> m_scratch; ///< likewise
};

} // namespace vectordraw
