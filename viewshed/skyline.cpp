#include "viewshed/skyline.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace viewshed
{

namespace
{

/// Far below every height, and finite: differences of two gaps are no NaN.
constexpr double gapHeight = -1e290;

constexpr double nowhere = 4.0; // a direction beyond all

} // namespace

void Skyline::Envelope::restart(double from, std::size_t room)
{
    if (a.size() < room) {
        ends.resize(room + 1);
        a.resize(room);
        b.resize(room);
    }
    ends[0] = from;
    count = 0;
}

void Skyline::Envelope::append(double end, const Piece &piece)
{
    if (end <= ends[count])
        return;
    if (count == 0 || this->piece(count - 1) != piece) {
        a[count] = piece.a;
        b[count] = piece.b;
        ++count;
    }
    ends[count] = end;
}

void Skyline::Envelope::appendPoint(const Piece &piece)
{
    a[count] = piece.a;
    b[count] = piece.b;
    ++count;
    ends[count] = ends[count - 1];
}

void Skyline::Envelope::appendCopy(const Envelope &other, std::size_t first, std::size_t end)
{
    std::copy(other.a.data() + first, other.a.data() + end, a.data() + count);
    std::copy(other.b.data() + first, other.b.data() + end, b.data() + count);
    std::copy(other.ends.data() + first + 1, other.ends.data() + end + 1, ends.data() + count + 1);
    count += end - first;
}

Skyline::Skyline(const SkylineKernels &kernels)
    : m_kernels(kernels)
{ }

void Skyline::restart(double from, double to)
{
    m_from = from;
    m_to = to;
    m_horizon.restart(from, 1);
    m_horizon.append(to, {gapHeight, 0.0});
    m_knowsLowest = false;
}

double Skyline::lowest()
{
    if (!m_knowsLowest)
        m_lowest = m_kernels.lowest(m_horizon.pieces());
    m_knowsLowest = true;
    return m_lowest;
}

RingLayout Skyline::layout()
{
    return {m_directions.data(), m_limits.data(), m_before.data(), m_meets.data(), m_bends.data()};
}

const double *Skyline::limits(const Ring &ring)
{
    const auto vertices = static_cast<std::size_t>(ring.intervals) + 1;
    if (m_directions.size() < vertices) {
        m_directions.resize(vertices);
        m_limits.resize(vertices + RingLayout::surplus);
        m_flags.resize(vertices);
    }
    if (m_before.size() < m_horizon.ends.size()) {
        m_before.resize(m_horizon.ends.size());
        m_meets.resize(m_horizon.ends.size());
        m_bends.resize(m_horizon.ends.size());
    }
    m_meetings = m_kernels.layOut(ring, m_horizon.pieces(), layout());
    return m_limits.data();
}

/// Between the interval's two cells.
Skyline::Edge Skyline::edgeAlong(const Ring &ring, int interval) const
{
    const double left = ring.heights[interval];
    const double right = ring.heights[interval + 1];
    const double b = right - left;
    const double a = (left * ring.side(interval + 1) - right * ring.side(interval)) / ring.ahead;
    return {
        std::max(direction(interval), m_from), std::min(direction(interval + 1), m_to), {a, b}, !std::isnan(b)};
}

/// From the ring before to the cell from which the edge leads over this interval: away from straight ahead.
Skyline::Edge Skyline::edgeAhead(const Ring &ring, int interval) const
{
    const bool rightwards = ring.side(interval) > 0.0;
    if (!rightwards && !(ring.side(interval + 1) < 0.0))
        return {0.0, 0.0, {0.0, 0.0}, false};
    const int vertex = rightwards ? interval : interval + 1;
    const double side = ring.side(vertex);
    const double height = ring.heights[vertex];
    const double a = height - ring.nearer[vertex];
    const double b = (height - a * ring.ahead) / side;
    const double before = ring.ahead - 1.0;
    const double outer = before > 0.0 ? side / before : std::copysign(nowhere, side);
    Edge edge{direction(interval), direction(interval + 1), {a, b}, !std::isnan(b)};
    (rightwards ? edge.to : edge.from) = rightwards ? std::min(outer, edge.to) : std::max(outer, edge.from);
    edge.from = std::max(edge.from, m_from);
    edge.to = std::min(edge.to, m_to);
    edge.exists = edge.exists && edge.from < edge.to;
    return edge;
}

/// Whether the interval's left cell has edges straight ahead at most, which are seen as a point.
bool Skyline::standsAlone(const Ring &ring, int interval) const
{
    const bool inside = direction(interval) > m_from;
    return inside && !std::isnan(ring.heights[interval]) && std::isnan(ring.heights[interval + 1])
        && (interval == 0 || std::isnan(ring.heights[interval - 1]))
        && !(std::isnan(ring.nearer[interval]) && std::isnan(ring.farther[interval]));
}

void Skyline::raise(const Ring &ring)
{
    if (!m_kernels.findRisen(ring, m_horizon.pieces(), layout(), m_meetings, m_flags.data()))
        return;
    // An interval has two edges at most: each cuts a piece at either end, and crosses each that it meets.
    m_merged.restart(m_from, 2 * m_horizon.count + 16 * m_flags.size());
    m_next = 0;
    for (int interval = 0; interval < ring.intervals; ++interval) {
        if ((m_flags[static_cast<std::size_t>(interval)] & risen) == 0)
            continue;
        int end = interval;
        while (end < ring.intervals && isWhole(end))
            ++end;
        if (end > interval) {
            mergeWhole(ring, interval, end);
            interval = end - 1;
        } else {
            mergeInterval(ring, interval);
        }
    }
    copyUpTo(m_to);
    std::swap(m_horizon, m_merged);
    m_knowsLowest = false;
}

/// Whether the edge between the interval's cells is nowhere below the horizon. The edges towards the ring
/// before are below it then: they lead from one of the cells to a point of the horizon within the interval.
/// That is not so where the leaf's end cuts the interval.
bool Skyline::isWhole(int interval) const
{
    return m_flags[static_cast<std::size_t>(interval)] == risen && direction(interval) >= m_from
        && direction(interval + 1) <= m_to;
}

/// Takes the edges between the cells of the intervals `first` to `end` - 1 for the whole of them.
void Skyline::mergeWhole(const Ring &ring, int first, int end)
{
    copyUpTo(direction(first));
    const auto more = static_cast<std::size_t>(end - first);
    m_kernels.edges(ring, first, end, m_merged.a.data() + m_merged.count, m_merged.b.data() + m_merged.count);
    std::copy(m_directions.data() + first + 1, m_directions.data() + end + 1,
              m_merged.ends.data() + m_merged.count + 1);
    m_merged.count += more;
    while (m_horizon.ends[m_next + 1] < direction(end))
        ++m_next;
}

void Skyline::mergeInterval(const Ring &ring, int interval)
{
    if (standsAlone(ring, interval)) {
        copyUpTo(direction(interval));
        m_merged.appendPoint({ring.heights[interval] / ring.ahead, 0.0});
    }
    Edge along = edgeAlong(ring, interval);
    const Edge ahead = edgeAhead(ring, interval);
    const bool rightwards = ring.side(interval) > 0.0;
    // Both start in the same cell: one is above the other as far as the shorter one reaches.
    const bool higher =
        !along.exists || (rightwards ? ahead.piece.b > along.piece.b : ahead.piece.b < along.piece.b);
    if (!ahead.exists || !higher) {
        mergeEdge(along);
    } else if (rightwards) {
        mergeEdge(ahead);
        along.from = ahead.to;
        mergeEdge(along);
    } else {
        along.to = ahead.from;
        mergeEdge(along);
        mergeEdge(ahead);
    }
}

void Skyline::copyUpTo(double to)
{
    const std::size_t first = m_next;
    while (m_next < m_horizon.count && m_horizon.ends[m_next + 1] <= to)
        ++m_next;
    if (m_next > first) {
        const double end = m_horizon.ends[first + 1]; // the first may be in m_merged in part
        if (end == m_horizon.ends[first])
            m_merged.appendPoint(m_horizon.piece(first));
        else
            m_merged.append(end, m_horizon.piece(first));
        m_merged.appendCopy(m_horizon, first + 1, m_next);
    }
    if (m_next < m_horizon.count && m_horizon.ends[m_next] < to)
        m_merged.append(to, m_horizon.piece(m_next));
}

void Skyline::mergeEdge(const Edge &edge)
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

void Skyline::appendHigher(double from, double to, const Piece &old, const Piece &edge)
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

} // namespace viewshed
