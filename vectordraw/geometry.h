#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <utility>
#include <vector>

// Lines and rings in pixels, made fit for drawing. Pixels count from the picture's upper left corner, to the
// right and down.

namespace vectordraw
{

struct Point
{
    double x = 0.0;
    double y = 0.0;

    bool operator==(const Point &) const = default;
};

inline double distance(const Point &one, const Point &other)
{
    return std::hypot(other.x - one.x, other.y - one.y);
}

struct Rect
{
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;

    bool holds(const Point &point) const
    {
        return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
    }
    Rect grown(double by) const { return {left - by, top - by, right + by, bottom + by}; }
};

/// The part of a segment inside the rectangle (Liang and Barsky, ACM Transactions on Graphics 3(1), 1984); none
/// where they do not meet.
std::optional<std::pair<Point, Point>> clippedSegment(const Point &from, const Point &to, const Rect &rect);

/// Takes the vertices of a line one by one and hands on what can be seen of it: vertices nearer than `step`, in
/// both directions, to the one before are dropped, segments are clipped to the rectangle. The sink gets
/// moveTo(point) and lineTo(point), and skipped(length) for what was left out between. Nothing is kept, however
/// long the line is.
template <class Sink> class LineReducer
{
public:
    LineReducer(const Rect &rect, double step, Sink &sink)
        : m_rect(rect)
        , m_step(step)
        , m_sink(sink)
    { }

    void add(const Point &point)
    {
        if (!m_begun) {
            m_begun = true;
            m_kept = point;
            m_keptInside = m_rect.holds(point);
            return;
        }
        if (std::abs(point.x - m_kept.x) < m_step && std::abs(point.y - m_kept.y) < m_step) {
            m_dropped = point;
            m_hasDropped = true;
            return;
        }
        segment(point);
    }

    /// The line's last vertex is drawn, however near it is.
    void finish()
    {
        if (m_hasDropped)
            segment(m_dropped);
        m_begun = m_drawing = m_hasDropped = false;
    }

private:
    void segment(const Point &to)
    {
        const bool inside = m_rect.holds(to);
        m_hasDropped = false;
        if (m_keptInside && inside) {
            if (!m_drawing)
                m_sink.moveTo(m_kept);
            m_sink.lineTo(to);
            m_drawing = true;
        } else if (const auto part = clippedSegment(m_kept, to, m_rect)) {
            if (!m_drawing) {
                m_sink.skipped(distance(m_kept, part->first));
                m_sink.moveTo(part->first);
            }
            m_sink.lineTo(part->second);
            if (!inside)
                m_sink.skipped(distance(part->second, to));
            m_drawing = inside;
        } else {
            m_sink.skipped(distance(m_kept, to));
            m_drawing = false;
        }
        m_kept = to;
        m_keptInside = inside;
    }

    Rect m_rect;
    double m_step;
    Sink &m_sink;
    Point m_kept;
    Point m_dropped;
    bool m_begun = false;
    bool m_keptInside = false;
    bool m_drawing = false;
    bool m_hasDropped = false;
};

/// Cuts a ring to the rectangle (Sutherland and Hodgman, Communications of the ACM 17(1), 1974); parts of its
/// border may run along the rectangle's. `scratch` is room that is used again.
void clipRing(std::vector<Point> &ring, const Rect &rect, std::vector<Point> &scratch);

/// The line at a distance to its right (to its left for a negative one), with mitred corners.
std::vector<Point> shiftedLine(const std::vector<Point> &line, double by);

/// A place on a line, and the line's direction there.
struct Place
{
    Point point;
    double angle = 0.0; ///< of the direction, in radians, clockwise from the right
};

double lengthOf(const std::vector<Point> &line);

/// Finds places along a line, each as far as the one before or farther, so that the whole line is gone along
/// once however many places are asked for. The line outlives the walk.
class LineWalk
{
public:
    explicit LineWalk(const std::vector<Point> &line)
        : m_line(line)
    { }

    /// The place at that length along the line; at its ends for a length beyond them.
    Place placeAt(double along);

private:
    const std::vector<Point> &m_line;
    std::size_t m_segment = 0; ///< index of its first vertex
    double m_passed = 0.0;     ///< length of the segments before it
    double m_angle = 0.0;      ///< of the last segment that had a direction
};

/// The place at that length along the line; at its ends for a length beyond them.
Place placeAt(const std::vector<Point> &line, double along);

/// A point inside an area of one or more rings, closed or not, their interiors counted even and odd: the middle
/// of the widest part of the area at half its height, where an area's label stands. For an area without a width
/// or a height, its first vertex.
Point pointInside(std::span<const std::span<const Point>> rings);

} // namespace vectordraw
