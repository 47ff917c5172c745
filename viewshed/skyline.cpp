#include "viewshed/skyline.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace viewshed
{

namespace
{

/// Far below every height, and finite: differences of two gaps are no NaN.
constexpr double gapHeight = -1e290;

constexpr double nowhere = 4.0; // a direction beyond all

} // namespace

void Skyline::Envelope::restart(double from)
{
    ends.assign(1, from);
    pieces.clear();
}

void Skyline::Envelope::append(double end, const Piece &piece)
{
    if (end <= ends.back())
        return;
    if (!pieces.empty() && pieces.back() == piece) {
        ends.back() = end;
    } else {
        pieces.push_back(piece);
        ends.push_back(end);
    }
}

void Skyline::Envelope::appendPoint(const Piece &piece)
{
    pieces.push_back(piece);
    ends.push_back(ends.back());
}

Skyline::Skyline(double from, double to)
    : m_from(from)
    , m_to(to)
    , m_lowest(gapHeight)
{
    m_horizon.restart(from);
    m_horizon.append(to, {gapHeight, 0.0});
    findLowest();
}

const std::vector<double> &Skyline::limits(const Ring &ring)
{
    const int vertices = ring.intervals + 1;
    m_directions.resize(static_cast<std::size_t>(vertices));
    m_limits.resize(static_cast<std::size_t>(vertices));
    // A quotient, not a product with 1 / ahead: equal directions of cells must be equal numbers.
    for (int vertex = 0; vertex < vertices; ++vertex)
        m_directions[static_cast<std::size_t>(vertex)] = ring.side(vertex) / ring.ahead;

    const double *ends = m_horizon.ends.data();
    const Piece *pieces = m_horizon.pieces.data();
    const std::size_t count = m_horizon.pieces.size();
    std::size_t piece = 0;
    for (int vertex = 0; vertex < vertices; ++vertex) {
        const double direction = m_directions[static_cast<std::size_t>(vertex)];
        double &limit = m_limits[static_cast<std::size_t>(vertex)];
        if (direction < m_from || direction > m_to) {
            limit = std::numeric_limits<double>::infinity();
            continue;
        }
        while (ends[piece + 1] < direction)
            ++piece;
        const double side = ring.side(vertex);
        limit = pieces[piece].a * ring.ahead + pieces[piece].b * side;
        for (std::size_t other = piece + 1; other < count && ends[other] == direction; ++other)
            limit = std::max(limit, pieces[other].a * ring.ahead + pieces[other].b * side);
    }
    return m_limits;
}

/// Marks the intervals where an end of an edge, or an edge over a bend of the horizon, is not below it: nothing
/// else can stand out, as all is straight between.
bool Skyline::markRisen(const Ring &ring)
{
    m_risen.assign(static_cast<std::size_t>(ring.intervals), 0);
    for (int vertex = 0; vertex <= ring.intervals; ++vertex) {
        const auto at = static_cast<std::size_t>(vertex);
        if (!(ring.heights[vertex] >= m_limits[at]))
            continue;
        if (vertex > 0)
            m_risen[at - 1] = 1;
        if (vertex < ring.intervals)
            m_risen[at] = 1;
    }
    int interval = 0;
    for (std::size_t end = 0; end < m_horizon.ends.size(); ++end) {
        const double direction = m_horizon.ends[end];
        if (direction < m_directions[0])
            continue;
        while (interval < ring.intervals && m_directions[static_cast<std::size_t>(interval) + 1] < direction)
            ++interval;
        if (interval == ring.intervals)
            break;
        if (m_risen[static_cast<std::size_t>(interval)] == 0)
            markKink(ring, end, interval);
        if (interval + 1 < ring.intervals && m_directions[static_cast<std::size_t>(interval) + 1] == direction)
            markKink(ring, end, interval + 1);
    }
    return std::find(m_risen.begin(), m_risen.end(), 1) != m_risen.end();
}

void Skyline::markKink(const Ring &ring, std::size_t end, int interval)
{
    char &risen = m_risen[static_cast<std::size_t>(interval)];
    if (risen != 0)
        return;
    const double m = m_horizon.ends[end];
    const double low = m_low[end];
    const double left = ring.heights[interval];
    const double right = ring.heights[interval + 1];
    if (left + (right - left) * (m * ring.ahead - ring.side(interval)) > low * ring.ahead) {
        risen = 1;
        return;
    }
    // The edge towards the ring before, times |m|; a little too far does no harm.
    constexpr double more = 1.0 + 1e-12;
    const bool rightwards = ring.side(interval) > 0.0;
    const int vertex = rightwards ? interval : interval + 1;
    const double side = std::abs(ring.side(vertex));
    const double steep = std::abs(m);
    if (steep * (ring.ahead - 1.0) > side * more)
        return;
    const double height = ring.heights[vertex];
    if (height * steep - (height - ring.nearer[vertex]) * (ring.ahead * steep - side) > low * side)
        risen = 1;
}

/// Between the interval's two cells.
Skyline::Edge Skyline::edgeAlong(const Ring &ring, int interval) const
{
    const double left = ring.heights[interval];
    const double right = ring.heights[interval + 1];
    const double b = right - left;
    const double a = (left * ring.side(interval + 1) - right * ring.side(interval)) / ring.ahead;
    const auto at = static_cast<std::size_t>(interval);
    return {std::max(m_directions[at], m_from), std::min(m_directions[at + 1], m_to), {a, b}, !std::isnan(b)};
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
    const auto at = static_cast<std::size_t>(interval);
    const double before = ring.ahead - 1.0;
    const double outer = before > 0.0 ? side / before : std::copysign(nowhere, side);
    Edge edge{m_directions[at], m_directions[at + 1], {a, b}, !std::isnan(b)};
    (rightwards ? edge.to : edge.from) = rightwards ? std::min(outer, edge.to) : std::max(outer, edge.from);
    edge.from = std::max(edge.from, m_from);
    edge.to = std::min(edge.to, m_to);
    edge.exists = edge.exists && edge.from < edge.to;
    return edge;
}

/// Whether the interval's left cell has edges straight ahead at most, which are seen as a point.
bool Skyline::standsAlone(const Ring &ring, int interval) const
{
    const bool inside = m_directions[static_cast<std::size_t>(interval)] > m_from;
    return inside && !std::isnan(ring.heights[interval]) && std::isnan(ring.heights[interval + 1])
        && (interval == 0 || std::isnan(ring.heights[interval - 1]))
        && !(std::isnan(ring.nearer[interval]) && std::isnan(ring.farther[interval]));
}

void Skyline::raise(const Ring &ring)
{
    if (!markRisen(ring))
        return;
    m_merged.restart(m_from);
    m_next = 0;
    for (int interval = 0; interval < ring.intervals; ++interval) {
        if (m_risen[static_cast<std::size_t>(interval)] != 0)
            mergeInterval(ring, interval);
    }
    copyUpTo(m_to);
    std::swap(m_horizon, m_merged);
    findLowest();
}

/// Takes the edge between the interval's cells for the whole of it, if that is nowhere below the horizon. The
/// edges towards the ring before are below it then: they lead from one of the cells to a point of the horizon
/// within the interval. That is not so where the leaf's end cuts the interval.
bool Skyline::mergeWhole(const Ring &ring, int interval)
{
    const auto at = static_cast<std::size_t>(interval);
    const double left = m_directions[at];
    const double right = m_directions[at + 1];
    if (!(ring.heights[interval] >= m_limits[at] && ring.heights[interval + 1] >= m_limits[at + 1])
        || left < m_from || right > m_to)
        return false;
    const Piece piece = edgeAlong(ring, interval).piece;
    copyUpTo(left);
    std::size_t next = m_next;
    for (; m_horizon.ends[next + 1] < right; ++next) {
        const double end = m_horizon.ends[next + 1];
        if (piece.at(end) < std::max(m_horizon.pieces[next].at(end), m_horizon.pieces[next + 1].at(end)))
            return false;
    }
    m_next = next;
    m_merged.append(right, piece);
    return true;
}

void Skyline::mergeInterval(const Ring &ring, int interval)
{
    if (mergeWhole(ring, interval))
        return;
    if (standsAlone(ring, interval)) {
        copyUpTo(m_directions[static_cast<std::size_t>(interval)]);
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
    for (; m_next < m_horizon.pieces.size() && m_horizon.ends[m_next + 1] <= to; ++m_next) {
        const double end = m_horizon.ends[m_next + 1];
        if (end == m_horizon.ends[m_next])
            m_merged.appendPoint(m_horizon.pieces[m_next]);
        else
            m_merged.append(end, m_horizon.pieces[m_next]);
    }
    if (m_next < m_horizon.pieces.size() && m_horizon.ends[m_next] < to)
        m_merged.append(to, m_horizon.pieces[m_next]);
}

void Skyline::mergeEdge(const Edge &edge)
{
    if (!edge.exists || edge.from >= edge.to)
        return;
    copyUpTo(edge.from);
    while (m_next < m_horizon.pieces.size()) {
        const double begin = m_horizon.ends[m_next];
        const double end = m_horizon.ends[m_next + 1];
        const Piece &old = m_horizon.pieces[m_next];
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

void Skyline::findLowest()
{
    const std::size_t count = m_horizon.pieces.size();
    m_low.resize(count + 1);
    m_lowest = m_horizon.pieces[0].at(m_horizon.ends[0]);
    m_low[0] = m_lowest;
    for (std::size_t piece = 0; piece < count; ++piece) {
        const double end = m_horizon.ends[piece + 1];
        double low = m_horizon.pieces[piece].at(end);
        if (piece + 1 < count)
            low = std::min(low, m_horizon.pieces[piece + 1].at(end));
        m_low[piece + 1] = low;
        m_lowest = std::min(m_lowest, low);
    }
}

} // namespace viewshed
