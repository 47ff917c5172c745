#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace viewshed
{

/// One bit for each cell of a grid. Each row starts at a new word; the bit of a cell is bit column % 64 of the
/// row's word column / 64. The unused bits of a row's last word are 0.
class BitGrid
{
public:
    static constexpr int bitsPerWord = 64;

    /// Starts with all bits 0.
    BitGrid(int width, int height)
        : m_width(width)
        , m_height(height)
        , m_wordsPerRow((width + bitsPerWord - 1) / bitsPerWord)
        , m_words(static_cast<std::size_t>(m_wordsPerRow) * static_cast<std::size_t>(height))
    { }

    int width() const { return m_width; }
    int height() const { return m_height; }
    int wordsPerRow() const { return m_wordsPerRow; }

    /// The first of the row's wordsPerRow() words.
    std::uint64_t *row(int row)
    {
        return m_words.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(m_wordsPerRow);
    }
    const std::uint64_t *row(int row) const
    {
        return m_words.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(m_wordsPerRow);
    }

    bool test(int column, int line) const
    {
        return (row(line)[column / bitsPerWord] >> (column % bitsPerWord) & 1U) != 0;
    }
    void set(int column, int line, bool value)
    {
        const std::uint64_t bit = std::uint64_t(1) << (column % bitsPerWord);
        std::uint64_t &word = row(line)[column / bitsPerWord];
        word = value ? word | bit : word & ~bit;
    }

    bool operator==(const BitGrid &) const = default;

private:
    int m_width;
    int m_height;
    int m_wordsPerRow;
    std::vector<std::uint64_t> m_words;
};

} // namespace viewshed
