#include "dataset/join/LineJoiner.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace
{

bool isVertical(CutSide side)
{
    return side == CutSide::West || side == CutSide::East;
}

CutSide opposite(CutSide side)
{
    switch (side) {
    case CutSide::West:
        return CutSide::East;
    case CutSide::East:
        return CutSide::West;
    case CutSide::South:
        return CutSide::North;
    case CutSide::North:
        return CutSide::South;
    case CutSide::None:
        break;
    }
    return CutSide::None;
}

bool isWithin(const QPointF &one, const QPointF &other, double distance)
{
    return std::abs(one.x() - other.x()) <= distance && std::abs(one.y() - other.y()) <= distance;
}

/// The angle in radians between the straight way off the seam and the way to `next`, positive to the north or
/// east.
double angleOffSeam(CutSide side, const QPointF &from, const QPointF &next)
{
    const QPointF way = next - from;
    return isVertical(side) ? std::atan2(way.y(), std::abs(way.x())) : std::atan2(way.x(), std::abs(way.y()));
}

} // namespace

std::size_t LineJoiner::PlaceHash::operator()(const Place &place) const
{
    constexpr std::size_t factor = 0x9E3779B97F4A7C15ULL; // 2^64 over the golden ratio, spreads neighbours
    std::size_t hash = std::hash<double>()(place.level);
    hash = (hash ^ static_cast<std::size_t>(place.column)) * factor;
    hash = (hash ^ (hash >> 32U) ^ static_cast<std::size_t>(place.row)) * factor;
    return hash ^ (hash >> 32U);
}

LineJoiner::LineJoiner(double tolerance, Sink sink)
    : m_tolerance(tolerance)
    , m_sink(std::move(sink))
{ }

void LineJoiner::beginTile(const CutSides &keep)
{
    m_tiles.push_back(keep);
    m_ofTile.clear();
}

void LineJoiner::add(const LinePiece &piece, double level)
{
    if (piece.first == CutSide::None && piece.last == CutSide::None) {
        m_sink(piece.points, level);
        return;
    }
    const Id id = m_nextId++;
    Line &line = m_lines[id];
    line.points.assign(piece.points.begin(), piece.points.end());
    line.level = level;
    const int tile = static_cast<int>(m_tiles.size()) - 1;
    if (piece.first != CutSide::None)
        line.front =
            addEnd({.level = level, .side = piece.first, .tile = tile, .line = id}, line.points, false);
    if (piece.last != CutSide::None)
        line.back = addEnd({.level = level, .side = piece.last, .tile = tile, .line = id}, line.points, true);
}

void LineJoiner::endTile()
{
    for (const Id id : m_ofTile) {
        if (m_ends.count(id) > 0)
            joinAround(id);
    }
    m_ofTile.clear();
}

int LineJoiner::finish()
{
    const auto unmatched = static_cast<int>(m_ends.size());
    while (!m_lines.empty())
        passOn(m_lines.begin()->first);
    m_ends.clear();
    m_places.clear();
    return unmatched;
}

LineJoiner::Place LineJoiner::placeOf(const End &end) const
{
    return {static_cast<long long>(std::floor(end.place.x() / m_tolerance)),
            static_cast<long long>(std::floor(end.place.y() / m_tolerance)), end.level};
}

LineJoiner::Id LineJoiner::addEnd(End end, const std::deque<QPointF> &points, bool isBack)
{
    end.place = isBack ? points.back() : points.front();
    const auto isAway = [&](const QPointF &point) { return !isWithin(point, end.place, m_tolerance); };
    const auto look = [&](auto first, auto last) {
        const auto found = std::find_if(first, last, isAway);
        end.isTiny = found == last;
        if (!end.isTiny)
            end.next = *found;
    };
    if (isBack)
        look(points.rbegin(), points.rend());
    else
        look(points.begin(), points.end());
    const Id id = m_nextId++;
    m_ends.emplace(id, end);
    m_places.emplace(placeOf(end), id);
    m_ofTile.push_back(id);
    return id;
}

void LineJoiner::removeEnd(Id id)
{
    auto [found, last] = m_places.equal_range(placeOf(m_ends.at(id)));
    while (found != last && found->second != id)
        ++found;
    m_places.erase(found);
    m_ends.erase(id);
}

/// The ends of the same level within the tolerance that are wanted, in their order along the seam.
template <typename Wanted>
std::vector<LineJoiner::Id> LineJoiner::endsAround(const End &end, Wanted wanted) const
{
    std::vector<std::tuple<double, double, Id>> found;
    const Place center = placeOf(end);
    for (int across = -1; across <= 1; ++across) {
        for (int down = -1; down <= 1; ++down) {
            const auto [first, last] =
                m_places.equal_range({center.column + across, center.row + down, center.level});
            for (auto entry = first; entry != last; ++entry) {
                const End &other = m_ends.at(entry->second);
                if (!isWithin(end.place, other.place, m_tolerance) || !wanted(other))
                    continue;
                const double angle = other.isTiny ? 0.0 : angleOffSeam(end.side, end.place, other.next);
                const double along = isVertical(end.side) ? other.place.y() : other.place.x();
                found.emplace_back(angle, along, entry->second);
            }
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<Id> ids;
    for (const auto &entry : found)
        ids.push_back(std::get<Id>(entry));
    return ids;
}

/// Whether the ends were cut off at the two sides of one seam. At a corner four tiles meet, so their sides must
/// also lie beside each other.
bool LineJoiner::areFacing(const End &one, const End &other) const
{
    if (other.side != opposite(one.side))
        return false;
    const CutSides &here = m_tiles[static_cast<std::size_t>(one.tile)];
    const CutSides &there = m_tiles[static_cast<std::size_t>(other.tile)];
    return isVertical(one.side)
        ? std::min(here.north, there.north) - std::max(here.south, there.south) > m_tolerance
        : std::min(here.east, there.east) - std::max(here.west, there.west) > m_tolerance;
}

void LineJoiner::joinAround(Id id)
{
    const End end = m_ends.at(id);
    const std::vector<Id> others = endsAround(end, [&](const End &other) { return areFacing(end, other); });
    if (others.empty())
        return;
    const std::vector<Id> own =
        endsAround(end, [&](const End &other) { return other.tile == end.tile && other.side == end.side; });
    for (std::size_t at = 0; at < std::min(own.size(), others.size()); ++at)
        join(own[at], others[at]);
}

void LineJoiner::join(Id one, Id other)
{
    Id kept = m_ends.at(one).line;
    Id moved = m_ends.at(other).line;
    if (kept != moved && m_lines.at(kept).points.size() < m_lines.at(moved).points.size()) {
        std::swap(kept, moved); // so no vertex is copied more often than its line's length doubles
        std::swap(one, other);
    }
    removeEnd(one);
    removeEnd(other);
    Line &line = m_lines.at(kept);
    if (kept == moved) {
        line.points.back() = line.points.front(); // they differ by rounding
        passOn(kept);
        return;
    }
    Line &added = m_lines.at(moved);
    const bool isFront = added.front == other; // the added line begins where it meets
    const Id outer = isFront ? added.back : added.front;
    const auto append = [&](auto first, auto last) { // both lines hold the vertex on the seam
        if (line.back == one)
            line.points.insert(line.points.end(), std::next(first), last);
        else
            for (auto point = std::next(first); point != last; ++point)
                line.points.push_front(*point);
    };
    if (isFront)
        append(added.points.begin(), added.points.end());
    else
        append(added.points.rbegin(), added.points.rend());
    (line.back == one ? line.back : line.front) = outer;
    if (outer != noEnd)
        m_ends.at(outer).line = kept;
    m_lines.erase(moved);
    if (line.front == noEnd && line.back == noEnd)
        passOn(kept);
}

void LineJoiner::passOn(Id id)
{
    const Line &line = m_lines.at(id);
    m_sink(QVector<QPointF>(line.points.begin(), line.points.end()), line.level);
    m_lines.erase(id);
}
