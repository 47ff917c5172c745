#include "viewshed/sightcounter.h"

#include <bit>

namespace viewshed
{

SightCounter::SightCounter(int width, int height)
    : m_width(width)
    , m_height(height)
{ }

int SightCounter::bitsPerCell(std::size_t observers)
{
    return static_cast<int>(std::bit_width(observers));
}

void SightCounter::makeRoom(std::size_t observers)
{
    while (static_cast<int>(m_digits.size()) < bitsPerCell(observers))
        m_digits.emplace_back(m_width, m_height);
}

void SightCounter::add(const BitGrid &seen, const Window &window, int firstRow, int endRow)
{
    const int firstWord = window.left / BitGrid::bitsPerWord;
    for (int row = firstRow; row < endRow; ++row) {
        const std::uint64_t *bits = seen.row(row - window.top);
        for (int word = 0; word < seen.wordsPerRow(); ++word) {
            // Most counts need no more than the first digits: the carry soon runs out.
            std::uint64_t carry = bits[word];
            for (std::size_t digit = 0; carry != 0; ++digit) {
                std::uint64_t &sum = m_digits[digit].row(row)[firstWord + word];
                const std::uint64_t next = sum & carry;
                sum ^= carry;
                carry = next;
            }
        }
    }
}

void SightCounter::readRow(int row, std::uint32_t *counts) const
{
    for (int column = 0; column < m_width; ++column) {
        std::uint32_t count = 0;
        for (std::size_t digit = 0; digit < m_digits.size(); ++digit)
            count |= std::uint32_t(m_digits[digit].test(column, row)) << digit;
        counts[column] = count;
    }
}

} // namespace viewshed
