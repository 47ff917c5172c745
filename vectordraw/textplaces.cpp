#include "vectordraw/textplaces.h"

#include <cmath>
#include <cstddef>

namespace vectordraw
{

namespace
{

/// A line with the length up to each of its vertices.
class MeasuredLine
{
public:
    explicit MeasuredLine(const std::vector<Point> &line)
        : m_line(line)
        , m_lengths(line.size())
    {
        for (std::size_t at = 1; at < line.size(); ++at)
            m_lengths[at] = m_lengths[at - 1] + distance(line[at - 1], line[at]);
    }

    double length() const { return m_lengths.back(); }

    Point at(double place) const
    {
        const auto next = std::upper_bound(m_lengths.begin() + 1, m_lengths.end() - 1, place);
        const auto end = static_cast<std::size_t>(next - m_lengths.begin());
        const double piece = m_lengths[end] - m_lengths[end - 1];
        const double share = piece > 0.0 ? (place - m_lengths[end - 1]) / piece : 0.0;
        const Point &from = m_line[end - 1];
        const Point &to = m_line[end];
        return {from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)};
    }

private:
    const std::vector<Point> &m_line;
    std::vector<double> m_lengths;
};

/// The text's place with its middle at a length of the line, and how straight the line is below it: 1 at most.
struct Candidate
{
    TextPlace place;
    double straightness = 0.0;
};

Candidate candidateAt(const MeasuredLine &line, double middle, double width)
{
    const double half = std::min({width / 2.0, middle, line.length() - middle});
    const Point from = line.at(middle - half);
    const Point to = line.at(middle + half);
    return {{line.at(middle), std::atan2(to.y - from.y, to.x - from.x)},
            half > 0.0 ? distance(from, to) / (2.0 * half) : 0.0};
}

/// The straightest place near the middle of a piece of the line.
TextPlace bestPlace(const MeasuredLine &line, double middle, double piece, double width)
{
    constexpr int steps = 6; // to each side
    const double room = std::max(0.0, piece / 2.0 - width) / steps;
    constexpr double noticeable = 0.01;
    Candidate best = candidateAt(line, middle, width);
    for (int step = 1; step <= steps; ++step) {
        for (const double shift : {-room * step, room * step}) {
            const Candidate other = candidateAt(line, middle + shift, width);
            if (other.straightness > best.straightness + noticeable)
                best = other;
        }
    }
    return best.place;
}

} // namespace

std::vector<TextPlace> placesOnLine(const std::vector<Point> &line, double width, const Rect &seen)
{
    constexpr double widthsApart = 16.0;
    std::vector<TextPlace> places;
    if (line.size() < 2 || !(width > 0.0))
        return places;
    const MeasuredLine measured(line);
    const double count = std::max(1.0, std::floor(measured.length() / (widthsApart * width)));
    const double piece = measured.length() / count;
    const Rect around = seen.grown(piece + width);
    for (double at = 0.5; at < count; at += 1.0) {
        if (around.holds(measured.at(at * piece)))
            places.push_back(bestPlace(measured, at * piece, piece, width));
    }
    const Rect legible = seen.grown(width);
    std::erase_if(places, [&](const TextPlace &place) { return !legible.holds(place.middle); });
    return places;
}

} // namespace vectordraw
