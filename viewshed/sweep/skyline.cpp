#include "viewshed/sweep/skyline.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace viewshed
{

namespace
{

/// The g of a gap: far below every height, but finite, so that the difference of two gaps is not NaN.
constexpr double gapHeight = -1e290;

/// A direction to the side of every sector, which ends at m = ±1.
constexpr double beyondSector = 4.0;

} // namespace

template <class Place> void SkylineOf<Place>::Envelope::restart(double from, std::size_t room)
{
    if (a.size() < room) {
        ends.resize(room + 1);
        a.resize(room);
        b.resize(room);
    }
    if constexpr (traced) {
        if (places.size() < room)
            places.resize(room);
    }
    ends[0] = from;
    count = 0;
}

/// Continues the envelope with `piece` up to the direction `end`. Does nothing if the envelope already reaches
/// it; lengthens the last piece if that is the same one.
template <class Place> void SkylineOf<Place>::Envelope::append(double end, const Piece &piece)
{
    if (end <= ends[count])
        return;
    if (count == 0 || this->piece(count - 1) != piece) {
        a[count] = piece.a;
        b[count] = piece.b;
        if constexpr (traced)
            places[count] = piece.place;
        ++count;
    }
    ends[count] = end;
}

/// Adds `piece` at the envelope's end as a single direction.
template <class Place> void SkylineOf<Place>::Envelope::appendPoint(const Piece &piece)
{
    a[count] = piece.a;
    b[count] = piece.b;
    if constexpr (traced)
        places[count] = piece.place;
    ++count;
    ends[count] = ends[count - 1];
}

/// Adds the pieces `first` to `end` - 1 of another envelope, which must begin where this one ends.
template <class Place>
void SkylineOf<Place>::Envelope::appendCopy(const Envelope &other, std::size_t first, std::size_t end)
{
    std::copy(other.a.data() + first, other.a.data() + end, a.data() + count);
    std::copy(other.b.data() + first, other.b.data() + end, b.data() + count);
    if constexpr (traced)
        std::copy(other.places.data() + first, other.places.data() + end, places.data() + count);
    std::copy(other.ends.data() + first + 1, other.ends.data() + end + 1, ends.data() + count + 1);
    count += end - first;
}

template <class Place>
SkylineOf<Place>::SkylineOf(const SkylineKernels &kernels)
    : m_kernels(kernels)
{ }

template <class Place> void SkylineOf<Place>::restart(double from, double to)
{
    m_from = from;
    m_to = to;
    m_horizon.restart(from, 1);
    m_horizon.append(to, {gapHeight, 0.0, {}});
    m_knowsLowest = false;
}

template <class Place> double SkylineOf<Place>::lowest()
{
    if (!m_knowsLowest)
        m_lowest = m_kernels.lowest(m_horizon.pieces());
    m_knowsLowest = true;
    return m_lowest;
}

template <class Place> RingLayout SkylineOf<Place>::layout()
{
    return {.directions = m_directions.data(),
            .limits = m_limits.data(),
            .vertexBefore = m_vertexBefore.data(),
            .meetsVertex = m_meetsVertex.data(),
            .kinkFlags = m_kinkFlags.data()};
}

template <class Place> const double *SkylineOf<Place>::limits(const Ring &ring)
{
    const auto vertices = static_cast<std::size_t>(ring.intervals) + 1;
    if (m_directions.size() < vertices) {
        m_directions.resize(vertices);
        m_limits.resize(vertices + RingLayout::surplus);
        m_flags.resize(vertices);
    }
    if (m_vertexBefore.size() < m_horizon.ends.size()) {
        m_vertexBefore.resize(m_horizon.ends.size());
        m_meetsVertex.resize(m_horizon.ends.size());
        m_kinkFlags.resize(m_horizon.ends.size());
    }
    m_meetings = m_kernels.layOut(ring, m_horizon.pieces(), layout());
    return m_limits.data();
}

/// The edge along the ring, between the interval's two cells.
template <class Place>
typename SkylineOf<Place>::Edge SkylineOf<Place>::edgeAlong(const Ring &ring, int interval) const
{
    const double left = ring.heights[interval];
    const double right = ring.heights[interval + 1];
    const double b = right - left;
    const double a = (left * ring.side(interval + 1) - right * ring.side(interval)) / ring.ahead;
    return {.from = std::max(direction(interval), m_from),
            .to = std::min(direction(interval + 1), m_to),
            .piece = {.a = a, .b = b, .place = Place(EdgePlace{.distance = ring.ahead, .sideways = false})},
            .exists = !std::isnan(b)};
}

/// The edge that leads from the nearer ring to one of the interval's two cells, seen over this interval. Such
/// an edge is seen on the side of its cell that lies away from straight ahead, so it belongs to the interval's
/// left cell on the right of the eye, and to the right cell on the left of the eye.
template <class Place>
typename SkylineOf<Place>::Edge SkylineOf<Place>::edgeFromNearer(const Ring &ring, int interval) const
{
    const bool rightwards = ring.side(interval) > 0.0;
    if (!rightwards && !(ring.side(interval + 1) < 0.0))
        return {.from = 0.0, .to = 0.0, .piece = {.a = 0.0, .b = 0.0, .place = {}}, .exists = false};
    const int vertex = rightwards ? interval : interval + 1;
    const double side = ring.side(vertex);
    const double height = ring.heights[vertex];
    const double a = height - ring.nearer[vertex];
    const double b = (height - a * ring.ahead) / side;
    const double nearerAhead = ring.ahead - 1.0; // not positive if the nearer cell is not ahead of the eye
    const double outer = nearerAhead > 0.0 ? side / nearerAhead : std::copysign(beyondSector, side);
    Edge edge{.from = direction(interval),
              .to = direction(interval + 1),
              .piece = {.a = a, .b = b, .place = Place(EdgePlace{.distance = side, .sideways = true})},
              .exists = !std::isnan(b)};
    (rightwards ? edge.to : edge.from) = rightwards ? std::min(outer, edge.to) : std::max(outer, edge.from);
    edge.from = std::max(edge.from, m_from);
    edge.to = std::min(edge.to, m_to);
    edge.exists = edge.exists && edge.from < edge.to;
    return edge;
}

/// Whether the interval's left cell has no neighbour with data along the ring, but one nearer to the eye or
/// farther from it. It then counts as ground even where that edge covers no range of directions.
template <class Place> bool SkylineOf<Place>::isLonePoint(const Ring &ring, int interval) const
{
    const bool inside = direction(interval) > m_from;
    return inside && !std::isnan(ring.heights[interval]) && std::isnan(ring.heights[interval + 1])
        && (interval == 0 || std::isnan(ring.heights[interval - 1]))
        && !(std::isnan(ring.nearer[interval]) && std::isnan(ring.farther[interval]));
}

template <class Place> void SkylineOf<Place>::raise(const Ring &ring)
{
    if (!m_kernels.flagIntervals(ring, m_horizon.pieces(), layout(), m_meetings, m_flags.data()))
        return;
    // Room for the old pieces and for each interval's new ones. An interval has two edges at most. An edge cuts
    // the pieces at its two ends, and crosses each piece in between once at most.
    m_merged.restart(m_from, 2 * m_horizon.count + 16 * m_flags.size());
    m_next = 0;
    for (int interval = 0; interval < ring.intervals; ++interval) {
        if ((m_flags[static_cast<std::size_t>(interval)] & mayRise) == 0)
            continue;
        int end = interval;
        while (end < ring.intervals && coversHorizon(end))
            ++end;
        if (end > interval) {
            replaceRun(ring, interval, end);
            interval = end - 1;
        } else {
            mergeInterval(ring, interval);
        }
    }
    copyUpTo(m_to);
    std::swap(m_horizon, m_merged);
    m_knowsLowest = false;
}

/// Whether the edge between the interval's two cells is nowhere below the horizon and replaces all of it. The
/// edge from the nearer ring is then below, too, because it leads from one of the cells to a point of the
/// horizon within the interval. The leaf's end must not cut the interval, for that point may lie beyond the
/// end.
template <class Place> bool SkylineOf<Place>::coversHorizon(int interval) const
{
    return m_flags[static_cast<std::size_t>(interval)] == mayRise && direction(interval) >= m_from
        && direction(interval + 1) <= m_to;
}

/// Replaces the horizon over the intervals `first` to `end` - 1 by the edges between their cells.
template <class Place> void SkylineOf<Place>::replaceRun(const Ring &ring, int first, int end)
{
    copyUpTo(direction(first));
    m_kernels.edges(ring, first, end, m_merged.a.data() + m_merged.count, m_merged.b.data() + m_merged.count);
    std::copy(m_directions.data() + first + 1, m_directions.data() + end + 1,
              m_merged.ends.data() + m_merged.count + 1);
    if constexpr (traced)
        std::fill_n(m_merged.places.data() + m_merged.count, end - first,
                    EdgePlace{.distance = ring.ahead, .sideways = false});
    m_merged.count += static_cast<std::size_t>(end - first);
    while (m_horizon.ends[m_next + 1] < direction(end))
        ++m_next;
}

template <class Place> void SkylineOf<Place>::mergeInterval(const Ring &ring, int interval)
{
    if (isLonePoint(ring, interval)) {
        copyUpTo(direction(interval));
        m_merged.appendPoint({ring.heights[interval] / ring.ahead, 0.0,
                              Place(EdgePlace{.distance = ring.ahead, .sideways = false})});
    }
    Edge along = edgeAlong(ring, interval);
    const Edge fromNearer = edgeFromNearer(ring, interval);
    const bool rightwards = ring.side(interval) > 0.0;
    // Both edges start in the same cell, so one is above the other as far as the shorter one reaches. The
    // shorter one is the edge from the nearer ring.
    const bool higher =
        !along.exists || (rightwards ? fromNearer.piece.b > along.piece.b : fromNearer.piece.b < along.piece.b);
    if (!fromNearer.exists || !higher) {
        mergeEdge(along);
    } else if (rightwards) {
        mergeEdge(fromNearer);
        along.from = fromNearer.to;
        mergeEdge(along);
    } else {
        along.to = fromNearer.from;
        mergeEdge(along);
        mergeEdge(fromNearer);
    }
}

/// Appends to m_merged what m_horizon holds up to the direction `to`.
template <class Place> void SkylineOf<Place>::copyUpTo(double to)
{
    const std::size_t first = m_next;
    while (m_next < m_horizon.count && m_horizon.ends[m_next + 1] <= to)
        ++m_next;
    if (m_next > first) {
        const double end = m_horizon.ends[first + 1]; // m_merged may already hold the beginning of this piece
        if (end == m_horizon.ends[first])
            m_merged.appendPoint(m_horizon.piece(first));
        else
            m_merged.append(end, m_horizon.piece(first));
        m_merged.appendCopy(m_horizon, first + 1, m_next);
    }
    if (m_next < m_horizon.count && m_horizon.ends[m_next] < to)
        m_merged.append(to, m_horizon.piece(m_next));
}

/// Appends to m_merged the horizon up to the edge's end, raised by the edge.
template <class Place> void SkylineOf<Place>::mergeEdge(const Edge &edge)
{
    if (!edge.exists || edge.from >= edge.to)
        return;
    copyUpTo(edge.from);
    while (m_next < m_horizon.count) {
        const double begin = m_horizon.ends[m_next];
        const double end = m_horizon.ends[m_next + 1];
        const Piece old = m_horizon.piece(m_next);
        if (begin >= edge.to && end > edge.to)
            break;
        if (begin == end) {
            if (edge.piece.at(begin) < old.at(begin))
                m_merged.appendPoint(old);
        } else {
            appendHigher(std::max(begin, edge.from), std::min(end, edge.to), old, edge.piece);
        }
        if (end > edge.to)
            break;
        ++m_next;
    }
}

/// Appends the higher of two pieces over the directions `from` to `to`, in two parts if they cross.
template <class Place>
void SkylineOf<Place>::appendHigher(double from, double to, const Piece &old, const Piece &edge)
{
    const double difference = edge.a - old.a;
    const double rise = edge.b - old.b;
    const double atFrom = difference + rise * from;
    const double atTo = difference + rise * to;
    if (atFrom >= 0.0 && atTo >= 0.0) {
        m_merged.append(to, edge);
    } else if (atFrom <= 0.0 && atTo <= 0.0) {
        m_merged.append(to, old);
    } else {
        const double crossing = std::clamp(from + (to - from) * (atFrom / (atFrom - atTo)), from, to);
        m_merged.append(crossing, atFrom > 0.0 ? edge : old);
        m_merged.append(to, atFrom > 0.0 ? old : edge);
    }
}

template <class Place> std::vector<HorizonPieceOf<Place>> SkylineOf<Place>::horizon() const
{
    std::vector<HorizonPieceOf<Place>> pieces;
    for (std::size_t index = 0; index < m_horizon.count; ++index) {
        const Piece piece = m_horizon.piece(index);
        if (piece.a > gapHeight / 2.0)
            pieces.push_back({m_horizon.ends[index], m_horizon.ends[index + 1], piece.a, piece.b, piece.place});
    }
    return pieces;
}

template class SkylineOf<NoPlace>;
template class SkylineOf<EdgePlace>;

} // namespace viewshed
