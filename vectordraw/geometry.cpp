#include "vectordraw/geometry.h"

#include <limits>

namespace vectordraw
{

namespace
{

/// Narrows the part [from, to] of a segment to where it is inside one border; false when nothing is left.
bool narrow(double direction, double gap, double &from, double &to)
{
    if (direction == 0.0)
        return gap >= 0.0;
    const double at = gap / direction;
    if (direction < 0.0)
        from = std::max(from, at);
    else
        to = std::min(to, at);
    return from <= to;
}

/// Keeps the side of the border where inside(point); crossing() makes the point on it.
template <class Inside, class Crossing>
void cutAt(std::vector<Point> &ring, std::vector<Point> &scratch, Inside inside, Crossing crossing)
{
    scratch.clear();
    for (std::size_t at = 0; at < ring.size(); ++at) {
        const Point &from = ring[at == 0 ? ring.size() - 1 : at - 1];
        const Point &to = ring[at];
        if (inside(from) != inside(to))
            scratch.push_back(crossing(from, to));
        if (inside(to))
            scratch.push_back(to);
    }
    ring.swap(scratch);
}

Point atX(const Point &from, const Point &to, double x)
{
    return {x, from.y + (x - from.x) / (to.x - from.x) * (to.y - from.y)};
}

Point atY(const Point &from, const Point &to, double y)
{
    return {from.x + (y - from.y) / (to.y - from.y) * (to.x - from.x), y};
}

/// To the right of the direction from one point to the other, of length 1; pixels count downwards.
Point rightOf(const Point &from, const Point &to)
{
    const double length = distance(from, to);
    return length > 0.0 ? Point{-(to.y - from.y) / length, (to.x - from.x) / length} : Point{};
}

} // namespace

std::optional<std::pair<Point, Point>> clippedSegment(const Point &from, const Point &to, const Rect &rect)
{
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    double begin = 0.0;
    double end = 1.0;
    if (!narrow(-dx, from.x - rect.left, begin, end) || !narrow(dx, rect.right - from.x, begin, end)
        || !narrow(-dy, from.y - rect.top, begin, end) || !narrow(dy, rect.bottom - from.y, begin, end))
        return std::nullopt;
    return std::pair{Point{from.x + begin * dx, from.y + begin * dy},
                     Point{from.x + end * dx, from.y + end * dy}};
}

void clipRing(std::vector<Point> &ring, const Rect &rect, std::vector<Point> &scratch)
{
    if (std::all_of(ring.begin(), ring.end(), [&](const Point &point) { return rect.holds(point); }))
        return;
    cutAt(
        ring, scratch, [&](const Point &point) { return point.x >= rect.left; },
        [&](const Point &from, const Point &to) { return atX(from, to, rect.left); });
    cutAt(
        ring, scratch, [&](const Point &point) { return point.x <= rect.right; },
        [&](const Point &from, const Point &to) { return atX(from, to, rect.right); });
    cutAt(
        ring, scratch, [&](const Point &point) { return point.y >= rect.top; },
        [&](const Point &from, const Point &to) { return atY(from, to, rect.top); });
    cutAt(
        ring, scratch, [&](const Point &point) { return point.y <= rect.bottom; },
        [&](const Point &from, const Point &to) { return atY(from, to, rect.bottom); });
}

std::vector<Point> shiftedLine(const std::vector<Point> &line, double by)
{
    constexpr double sharpest = 0.25; // of a mitre's half angle's cosine: longer corners would run away
    std::vector<Point> shifted;
    shifted.reserve(line.size());
    for (std::size_t at = 0; at < line.size(); ++at) {
        const Point before = at > 0 ? rightOf(line[at - 1], line[at])
                                    : rightOf(line[at], line[std::min(at + 1, line.size() - 1)]);
        const Point after = at + 1 < line.size() ? rightOf(line[at], line[at + 1]) : before;
        const Point sum{before.x + after.x, before.y + after.y};
        const double length = std::hypot(sum.x, sum.y);
        const Point middle = length > 0.0 ? Point{sum.x / length, sum.y / length} : before;
        const double cosine = std::max(sharpest, middle.x * before.x + middle.y * before.y);
        shifted.push_back({line[at].x + middle.x * by / cosine, line[at].y + middle.y * by / cosine});
    }
    return shifted;
}

double lengthOf(const std::vector<Point> &line)
{
    double length = 0.0;
    for (std::size_t at = 1; at < line.size(); ++at)
        length += distance(line[at - 1], line[at]);
    return length;
}

Place LineWalk::placeAt(double along)
{
    Place place;
    if (!m_line.empty())
        place.point = m_line[m_segment];
    place.angle = m_angle;
    while (m_segment + 1 < m_line.size()) {
        const Point &from = m_line[m_segment];
        const Point &to = m_line[m_segment + 1];
        const double length = distance(from, to);
        if (length > 0.0) {
            place.angle = m_angle = std::atan2(to.y - from.y, to.x - from.x);
            const double part = std::clamp((along - m_passed) / length, 0.0, 1.0);
            place.point = {from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)};
            if (along <= m_passed + length)
                break;
        }
        m_passed += length;
        ++m_segment;
    }
    return place;
}

Place placeAt(const std::vector<Point> &line, double along)
{
    return LineWalk(line).placeAt(along);
}

Point pointInside(std::span<const std::span<const Point>> rings)
{
    Point inside;
    double top = std::numeric_limits<double>::infinity();
    double bottom = -top;
    for (const auto &ring : rings) {
        if (bottom < top && !ring.empty())
            inside = ring.front();
        for (const Point &point : ring) {
            top = std::min(top, point.y);
            bottom = std::max(bottom, point.y);
        }
    }
    const double row = (top + bottom) / 2.0;
    std::vector<double> crossings;
    for (const auto &ring : rings) {
        for (std::size_t at = 0; at < ring.size(); ++at) {
            const Point &from = ring[at == 0 ? ring.size() - 1 : at - 1];
            const Point &to = ring[at];
            if ((from.y <= row) != (to.y <= row))
                crossings.push_back(atY(from, to, row).x);
        }
    }
    std::sort(crossings.begin(), crossings.end());
    double widest = 0.0;
    for (std::size_t at = 0; at + 1 < crossings.size(); at += 2) {
        const double width = crossings[at + 1] - crossings[at];
        if (width > widest) {
            widest = width;
            inside = {(crossings[at] + crossings[at + 1]) / 2.0, row};
        }
    }
    return inside;
}

} // namespace vectordraw
