#pragma once

#include "viewshed/skylinekernels.h"

#include <cstddef>
#include <vector>

namespace viewshed
{

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
    /// To be restarted before it is used.
    explicit Skyline(const SkylineKernels &kernels);

    /// A gap. No vertex of any ring may ever lie in the directions `from` and `to` themselves.
    void restart(double from, double to);

    /// A bound that no point of the horizon is below.
    double lowest();

    /// For each vertex the height above the eye that the horizon reaches there; infinity outside the range.
    /// Valid until the next call.
    const double *limits(const Ring &ring);

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

    /// Pieces in order; piece i reaches from ends[i] to ends[i + 1]. What is appended has to be made room for.
    struct Envelope
    {
        std::vector<double> ends;
        std::vector<double> a;
        std::vector<double> b;
        std::size_t count = 0;

        Piece piece(std::size_t index) const { return {a[index], b[index]}; }
        Pieces pieces() const { return {ends.data(), a.data(), b.data(), static_cast<int>(count)}; }
        void restart(double from, std::size_t room);
        void append(double end, const Piece &piece);
        void appendPoint(const Piece &piece);
        void appendCopy(const Envelope &other, std::size_t first, std::size_t end);
    };

    /// An edge over a part of an interval.
    struct Edge
    {
        double from;
        double to;
        Piece piece;
        bool exists;
    };

    Edge edgeAlong(const Ring &ring, int interval) const;
    Edge edgeAhead(const Ring &ring, int interval) const;
    bool standsAlone(const Ring &ring, int interval) const;
    bool isWhole(int interval) const;
    void mergeWhole(const Ring &ring, int first, int end);
    void mergeInterval(const Ring &ring, int interval);
    void copyUpTo(double to);
    void mergeEdge(const Edge &edge);
    void appendHigher(double from, double to, const Piece &old, const Piece &edge);

    double direction(int vertex) const { return m_directions[static_cast<std::size_t>(vertex)]; }
    RingLayout layout();

    double m_from = 0.0;
    double m_to = 0.0;
    const SkylineKernels &m_kernels;
    double m_lowest = 0.0;
    bool m_knowsLowest = false;
    Envelope m_horizon;
    Envelope m_merged;
    std::size_t m_next = 0; ///< while merging: the first piece that is not in m_merged as a whole
    std::vector<double> m_directions;
    std::vector<double> m_limits;
    std::vector<int> m_before;
    std::vector<int> m_meets;
    std::vector<int> m_bends;
    int m_meetings = 0; ///< of the horizon's ends with the ring's vertices
    std::vector<int> m_flags;
};

} // namespace viewshed
