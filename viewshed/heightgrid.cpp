#include "viewshed/heightgrid.h"

#include "viewshed/lineofsight.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace viewshed
{

namespace
{

constexpr auto never = static_cast<float>(neverSeen);

/// The least float that is not below the number.
float roundedUp(double number)
{
    const auto nearest = static_cast<float>(number);
    return static_cast<double>(nearest) < number ? std::nextafter(nearest, never) : nearest;
}

} // namespace

HeightGrid::HeightGrid(const Window &window, float height)
    : m_window(window)
    , m_heights(static_cast<std::size_t>(window.width) * static_cast<std::size_t>(window.height), height)
{ }

void HeightGrid::lower(const CellLine &cells, const double *heights, const HeightTarget &target)
{
    const int firstRow = cells.row + target.top;
    int first = 0;
    int end = cells.count;
    if (cells.rowStep != 0) {
        first = std::max(first, target.firstRow - firstRow);
        end = std::min(end, target.endRow - firstRow);
    } else if (firstRow < target.firstRow || firstRow >= target.endRow) {
        return;
    }
    if (end <= first)
        return;
    const std::ptrdiff_t step = cells.rowStep * std::ptrdiff_t(m_window.width) + cells.columnStep;
    float *to = m_heights.data() + offset(firstRow + first * cells.rowStep) + cells.column + target.left
        - m_window.left + std::ptrdiff_t(first) * cells.columnStep;
    for (int cell = first; cell < end; ++cell, to += step) {
        const float height = roundedUp(heights[cell]);
        const std::atomic_ref held(*to); // two threads write the same height to the cells on a diagonal
        float old = held.load(std::memory_order_relaxed);
        if (!target.contended && height < old)
            held.store(height, std::memory_order_relaxed);
        while (target.contended && height < old
               && !held.compare_exchange_weak(old, height, std::memory_order_relaxed)) { }
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
