#pragma once

#include "viewshed/combine.h"

#include <vector>

namespace viewshed
{

/// Observers whose windows lie in one window of the raster, which is read once for all of them.
struct ObserverGroup
{
    Window window;
    std::vector<std::size_t> observers; ///< their numbers, in the order in which they are to be computed
};

/// Whether the observers may be computed in another order than that of their numbers.
enum class GroupOrder
{
    Fixed,
    ByPlace ///< neighbours one after the other, so that groups are compact
};

/// Groups the observers with these windows. No group's window has more than `mostCells` cells, unless it is
/// that of a single observer. Two windows far apart are not joined: reading the cells between them must not
/// cost more than a second read. A group's window is empty if all those of its observers are.
std::vector<ObserverGroup> observerGroups(const std::vector<Window> &windows, GroupOrder order,
                                          double mostCells);

} // namespace viewshed
