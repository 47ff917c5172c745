#pragma once

#include <cstddef>
#include <vector>

namespace viewshed
{

/// One line of cells across the view, at one distance ahead of the eye. Vertices are the centres of its cells;
/// interval i lies between the vertices i and i + 1.
struct Ring
{
    double ahead = 0.0;              ///< distance of the line from the eye in cells, positive
    double firstSide = 0.0;          ///< how far vertex 0 lies to the side, in cells; the next ones 1 more each
    int intervals = 0;               ///< one less than vertices
    const double *heights = nullptr; ///< above the eye, NaN without data, one a vertex
    const double *nearer = nullptr;  ///< the same of the line before, one cell nearer to the eye or behind it
    const double *farther = nullptr; ///< the same of the line after

    double side(int vertex) const { return firstSide + vertex; }
};

/// The horizon that the ground up to some ring makes, for one narrow range of directions.
///
/// A direction is m = side / ahead, a height is g = height above the eye / ahead. Seen so, every edge between
/// two neighbouring cells is a straight piece g = a + b · m, and the horizon is the upper envelope of such
/// pieces. Every piece keeps the numbers of its own edge, so errors do not grow. Where no edge was yet there is
/// a gap, far below everything. At a direction where pieces meet, the highest counts. A piece may be a single
/// direction: a cell whose edges are seen end-on.
class Skyline
{
public:
    /// A gap. No vertex of any ring may ever lie in the directions `from` and `to` themselves.
    Skyline(double from, double to);

    /// A bound that no point of the horizon is below.
    double lowest() const { return m_lowest; }

    /// For each vertex the height above the eye that the horizon reaches there; infinity outside the range.
    /// Valid until the next call.
    const std::vector<double> &limits(const Ring &ring);

    /// Adds the edges of the ring, and those between it and the one before. Call limits() with the ring first.
    void raise(const Ring &ring);

private:
    struct Piece
    {
        double a;
        double b;

        double at(double m) const { return a + b * m; }
        bool operator==(const Piece &) const = default;
    };

    /// Pieces in order; piece i reaches from ends[i] to ends[i + 1].
    struct Envelope
    {
        std::vector<double> ends;
        std::vector<Piece> pieces;

        void restart(double from);
        void append(double end, const Piece &piece);
        void appendPoint(const Piece &piece);
    };

    /// An edge over a part of an interval.
    struct Edge
    {
        double from;
        double to;
        Piece piece;
        bool exists;
    };

    bool markRisen(const Ring &ring);
    void markKink(const Ring &ring, std::size_t end, int interval);
    Edge edgeAlong(const Ring &ring, int interval) const;
    Edge edgeAhead(const Ring &ring, int interval) const;
    bool standsAlone(const Ring &ring, int interval) const;
    bool mergeWhole(const Ring &ring, int interval);
    void mergeInterval(const Ring &ring, int interval);
    void copyUpTo(double to);
    void mergeEdge(const Edge &edge);
    void appendHigher(double from, double to, const Piece &old, const Piece &edge);
    void findLowest();

    double m_from;
    double m_to;
    double m_lowest;
    Envelope m_horizon;
    Envelope m_merged;
    std::size_t m_next = 0;           ///< while merging: the first piece that is not in m_merged as a whole
    std::vector<double> m_low;        ///< at each end, the lower one of the pieces that meet there
    std::vector<double> m_directions; ///< of the ring's vertices
    std::vector<double> m_limits;
    std::vector<char> m_risen; ///< whether something of the interval may stand out
};

} // namespace viewshed
