#include "viewshed/sweep/heightgrid.h"

#include "viewshed/lineofsight.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>

namespace viewshed
{

namespace
{

constexpr auto never = static_cast<float>(neverSeen);

/// The least float that is not below the number, which must not be negative; NaN for NaN.
float roundedUp(double number)
{
    const auto nearest = static_cast<float>(number);
    // The floats above zero are in the order of their bits.
    const std::uint32_t next =
        std::bit_cast<std::uint32_t>(nearest) + (static_cast<double>(nearest) < number ? 1 : 0);
    return std::bit_cast<float>(next);
}

} // namespace

HeightGrid::HeightGrid(const Window &window, float height)
    : m_window(window)
    , m_heights(static_cast<std::size_t>(window.width) * static_cast<std::size_t>(window.height))
{
    std::fill_n(m_heights.data(), m_heights.size(), height);
}

void HeightGrid::lower(const RowOfCells &cells, const double *heights, const HeightTarget &target)
{
    const int row = cells.row + target.top;
    if (row < target.firstRow || row >= target.endRow)
        return;
    float *const to = m_heights.data() + offset(row) + cells.column + target.left - m_window.left;
    if (!target.contended) {
        for (int cell = 0; cell < cells.count; ++cell) {
            const float height = roundedUp(heights[cell]);
            to[cell] = height < to[cell] ? height : to[cell];
        }
        return;
    }
    for (int cell = 0; cell < cells.count; ++cell) {
        const float height = roundedUp(heights[cell]);
        const std::atomic_ref held(to[cell]);
        float old = held.load(std::memory_order_relaxed);
        while (height < old && !held.compare_exchange_weak(old, height, std::memory_order_relaxed)) { }
    }
}

void HeightGrid::combine(const HeightGrid &other, Choice choice)
{
    const Window &inner = other.m_window;
    for (int row = m_window.top; row < m_window.top + m_window.height; ++row) {
        float *const heights = m_heights.data() + offset(row);
        const bool inside = row >= inner.top && row < inner.top + inner.height;
        const int left = inside ? inner.left - m_window.left : m_window.width;
        const int right = inside ? left + inner.width : m_window.width;
        if (choice == Choice::Greater) {
            std::fill(heights, heights + left, never);
            std::fill(heights + right, heights + m_window.width, never);
        }
        for (int column = left; column < right; ++column) {
            const float height = other.row(row)[column - left];
            heights[column] =
                choice == Choice::Lower ? std::min(heights[column], height) : std::max(heights[column], height);
        }
    }
}

} // namespace viewshed
