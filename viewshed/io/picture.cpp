#include "viewshed/io/picture.h"

#include "viewshed/io/stop.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace viewshed
{

namespace
{

/// The bytes of some rows of the picture: a plane for each colour.
class Rows
{
public:
    static constexpr int colors = 3;

    /// For pictures of `width` columns, and up to `capacity` rows at a time.
    Rows(const Options &options, int width, int capacity)
        : m_width(width)
        , m_stride(static_cast<std::size_t>((width + BitGrid::bitsPerWord - 1) / BitGrid::bitsPerWord)
                   * BitGrid::bitsPerWord)
        , m_plane(m_stride * static_cast<std::size_t>(capacity))
        , m_bytes(m_plane * colors)
    {
        for (std::size_t color = 0; color < colors; ++color) {
            constexpr std::uint64_t everyByte = 0x0101010101010101;
            m_hidden[color] = everyByte * options.hidden[color];
            m_seen[color] = everyByte * options.seen[color];
            m_noData[color] = everyByte * options.noData[color];
        }
    }

    /// Colours a row from the bits of its seen cells and of its voids. `voids` may be null: the row has none.
    void paint(int row, const std::uint64_t *seen, const std::uint64_t *voids)
    {
        static const std::array<std::uint64_t, 256> spread = bytesOfBits();
        constexpr int cells = 8; // coloured in one step, a byte each
        for (int column = 0; column < m_width; column += cells) {
            const int word = column / BitGrid::bitsPerWord;
            const int shift = column % BitGrid::bitsPerWord;
            const std::uint64_t seenBytes = spread[seen[word] >> shift & 0xFF];
            const std::uint64_t voidBytes = voids != nullptr ? spread[voids[word] >> shift & 0xFF] : 0;
            for (std::size_t color = 0; color < colors; ++color) {
                const std::uint64_t known = (seenBytes & m_seen[color]) | (~seenBytes & m_hidden[color]);
                const std::uint64_t bytes = (voidBytes & m_noData[color]) | (~voidBytes & known);
                std::memcpy(this->row(static_cast<int>(color), row) + column, &bytes, sizeof bytes);
            }
        }
    }
    /// The first byte of a row in the plane of a colour: 0 red, 1 green, 2 blue.
    GByte *row(int color, int row)
    {
        return m_bytes.data() + static_cast<std::size_t>(color) * m_plane
            + static_cast<std::size_t>(row) * m_stride;
    }

private:
    /// For each byte of eight bits the eight bytes that are 0xFF where the bit is 1, else 0; the byte of the
    /// lowest bit is the first in memory.
    static std::array<std::uint64_t, 256> bytesOfBits()
    {
        std::array<std::uint64_t, 256> spread{};
        for (std::size_t bits = 0; bits < spread.size(); ++bits) {
            std::array<GByte, sizeof(std::uint64_t)> bytes{};
            for (std::size_t bit = 0; bit < bytes.size(); ++bit)
                bytes[bit] = (bits >> bit & 1U) != 0 ? 0xFF : 0;
            std::memcpy(&spread[bits], bytes.data(), sizeof(std::uint64_t));
        }
        return spread;
    }

    int m_width;
    std::size_t m_stride; ///< bytes of a row, for whole words of BitGrid
    std::size_t m_plane;  ///< bytes of a colour's plane
    std::vector<GByte> m_bytes;
    std::array<std::uint64_t, colors> m_hidden{};
    std::array<std::uint64_t, colors> m_seen{};
    std::array<std::uint64_t, colors> m_noData{};
};

} // namespace

void writePicture(GDALDataset &picture, const Analysis &analysis, const Options &options)
{
    BlockWriter<GByte> writer(picture);
    constexpr int rowsAtATime = 32;
    const int step = writer.step(rowsAtATime);
    const int height = analysis.seen.height();
    const double bytes = (Rows::colors + 1.0) * analysis.seen.width() * std::min(step, height);
    if (bytes > availableMemory())
        throw Problem(
            "The picture's blocks are larger than the available memory; choose a smaller BLOCKYSIZE.");
    Rows rows(options, analysis.seen.width(), std::min(step, height));
    for (int top = 0; top < height; top += step) {
        checkStop();
        const int count = std::min(step, height - top);
        for (int row = 0; row < count; ++row)
            rows.paint(row, analysis.seen.row(top + row),
                       analysis.voids ? analysis.voids->row(top + row) : nullptr);
        writer.write(top, count, [&](int band, int row) { return rows.row(band, row); });
    }
}

} // namespace viewshed
