#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace viewshed
{

/// One bit a cell. A row begins at a new word; bit column % 64 of word column / 64 of the row is the cell's.
class BitGrid
{
public:
    static constexpr int bitsPerWord = 64;

    /// All bits are 0 at first.
    BitGrid(int width, int height)
        : m_width(width)
        , m_height(height)
        , m_wordsPerRow((width + bitsPerWord - 1) / bitsPerWord)
        , m_words(static_cast<std::size_t>(m_wordsPerRow) * static_cast<std::size_t>(height))
    { }

    int width() const { return m_width; }
    int height() const { return m_height; }
    int wordsPerRow() const { return m_wordsPerRow; }

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
