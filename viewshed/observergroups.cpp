#include "viewshed/observergroups.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace viewshed
{

namespace
{

/// What starting one more read costs, in cells that could be read in the same time.
constexpr double cellsOfRead = 1 << 20;

double cellsOf(const Window &window)
{
    return static_cast<double>(window.width) * window.height;
}

/// The least window that holds both; an empty window lies everywhere.
Window joined(const Window &one, const Window &other)
{
    if (one.width == 0 || other.width == 0)
        return one.width == 0 ? other : one;
    const int left = std::min(one.left, other.left);
    const int top = std::min(one.top, other.top);
    return {.left = left,
            .top = top,
            .width = std::max(one.left + one.width, other.left + other.width) - left,
            .height = std::max(one.top + one.height, other.top + other.height) - top};
}

/// The bits of the number, with a 0 before each.
std::uint64_t spread(std::uint32_t number)
{
    std::uint64_t bits = 0;
    for (unsigned bit = 0; bit < 32; ++bit)
        bits |= std::uint64_t(number >> bit & 1U) << (2 * bit);
    return bits;
}

/// Numbers near to each other belong to windows near to each other: a space-filling curve over their centres.
std::uint64_t placeOf(const Window &window)
{
    return spread(static_cast<std::uint32_t>(window.left + window.width / 2))
        | spread(static_cast<std::uint32_t>(window.top + window.height / 2)) << 1U;
}

} // namespace

std::vector<ObserverGroup> observerGroups(const std::vector<Window> &windows, GroupOrder order,
                                          double mostCells)
{
    std::vector<std::size_t> numbers(windows.size());
    std::iota(numbers.begin(), numbers.end(), std::size_t(0));
    if (order == GroupOrder::ByPlace) {
        std::vector<std::uint64_t> places;
        places.reserve(windows.size());
        for (const Window &window : windows)
            places.push_back(placeOf(window));
        std::stable_sort(numbers.begin(), numbers.end(),
                         [&](std::size_t one, std::size_t other) { return places[one] < places[other]; });
    }
    std::vector<ObserverGroup> groups;
    for (const std::size_t number : numbers) {
        const Window &window = windows[number];
        if (!groups.empty()) {
            ObserverGroup &group = groups.back();
            const Window both = joined(group.window, window);
            const double alone = cellsOf(group.window) + cellsOf(window) + cellsOfRead;
            if (cellsOf(both) <= mostCells && cellsOf(both) <= alone) {
                group.window = both;
                group.observers.push_back(number);
                continue;
            }
        }
        groups.push_back({window, {number}});
    }
    return groups;
}

} // namespace viewshed
