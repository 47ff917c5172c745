#pragma once

#include "viewshed/sweep/skylinekernels.h"

#include <concepts>
#include <cstddef>
#include <vector>

namespace viewshed
{

/// Where the edge lies from which a piece of a horizon comes: at a distance ahead of the eye, in cells, or, if
/// it leads straight away from ring to ring, at a distance to the side.
struct EdgePlace
{
    double distance = 0.0;
    bool sideways = false;

    bool operator==(const EdgePlace &) const = default;
};

/// In the place of an EdgePlace where nothing needs it.
struct NoPlace
{
    constexpr NoPlace() = default;
    constexpr explicit NoPlace(const EdgePlace & /*place*/) { }

    bool operator==(const NoPlace &) const = default;
};

/// One piece of a horizon: g = a + b · m for the directions m from `from` to `to`.
template <class Place> struct HorizonPieceOf
{
    double from;
    double to;
    double a;
    double b;
    [[no_unique_address]] Place place;
};
using HorizonPiece = HorizonPieceOf<EdgePlace>;

/// The horizon of one leaf: how high the ground from the eye up to some ring reaches, for each direction of a
/// narrow range. The glossary in horizon.h explains the terms.
///
/// A direction is m = side / ahead, a height is g = height above the eye / ahead. In these coordinates every
/// edge between two neighbouring cells is a straight piece g = a + b · m, and the horizon is the upper envelope
/// of all such pieces. A piece keeps the coefficients of its own edge for as long as it is part of the horizon,
/// so that rounding errors do not add up from ring to ring; leafsweep.h derives their bound.
///
/// Where no edge was added yet, the horizon is a gap far below every height. At a direction where two pieces
/// meet, the higher one counts. A piece may consist of a single direction: a cell whose only edges lead
/// straight away from the eye.
///
/// With EdgePlace as `Place`, each piece also keeps the place of its edge, which costs time; with NoPlace it
/// does not.
template <class Place> class SkylineOf
{
public:
    /// Call restart() before any other function. `kernels` must outlive the skyline.
    explicit SkylineOf(const SkylineKernels &kernels);

    /// Makes the horizon a gap over the directions `from` to `to`. No vertex of a later ring may lie exactly at
    /// `from` or `to`.
    void restart(double from, double to);

    /// The least g of the horizon, rounded.
    double lowest();

    /// For each vertex of the ring the height above the eye that the horizon reaches there, in the DEM's
    /// vertical unit; infinity outside the range of directions. Valid until the next call of limits().
    const double *limits(const Ring &ring);

    /// Adds the edges along the ring and those between it and the nearer ring. Call limits() with the same ring
    /// first.
    void raise(const Ring &ring);

    /// The horizon's pieces in order, without the gaps.
    std::vector<HorizonPieceOf<Place>> horizon() const;

private:
    static constexpr bool traced = std::same_as<Place, EdgePlace>;

    struct Piece
    {
        double a;
        double b;
        [[no_unique_address]] Place place;

        double at(double m) const { return a + b * m; }
        bool operator==(const Piece &) const = default;
    };

    /// Pieces in order; piece i reaches from ends[i] to ends[i + 1]. restart() must make room for all pieces
    /// that are appended later.
    struct Envelope
    {
        std::vector<double> ends;
        std::vector<double> a;
        std::vector<double> b;
        std::vector<Place> places; ///< empty with NoPlace
        std::size_t count = 0;

        Piece piece(std::size_t index) const
        {
            if constexpr (traced)
                return {a[index], b[index], places[index]};
            else
                return {a[index], b[index], {}};
        }
        Pieces pieces() const { return {ends.data(), a.data(), b.data(), static_cast<int>(count)}; }
        /// Removes all pieces, and makes room for `room` of them.
        void restart(double from, std::size_t room);
        void append(double end, const Piece &piece);
        void appendPoint(const Piece &piece);
        void appendCopy(const Envelope &other, std::size_t first, std::size_t end);
    };

    /// An edge between two cells, over the directions `from` to `to` within one interval.
    struct Edge
    {
        double from;
        double to;
        Piece piece;
        bool exists; ///< whether both cells have data and the edge covers a direction of the interval
    };

    Edge edgeAlong(const Ring &ring, int interval) const;
    Edge edgeFromNearer(const Ring &ring, int interval) const;
    bool isLonePoint(const Ring &ring, int interval) const;
    bool coversHorizon(int interval) const;
    void replaceRun(const Ring &ring, int first, int end);
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
    /// During a merge the first piece of m_horizon that m_merged does not yet hold in full.
    std::size_t m_next = 0;
    // The layout of the ring that limits() was called with, and the flags of its intervals.
    std::vector<double> m_directions;
    std::vector<double> m_limits;
    std::vector<int> m_vertexBefore;
    std::vector<int> m_meetsVertex;
    std::vector<int> m_kinkFlags;
    int m_meetings = 0; ///< number of the horizon's ends that meet a vertex of the ring
    std::vector<int> m_flags;
};

using Skyline = SkylineOf<NoPlace>;
using TracedSkyline = SkylineOf<EdgePlace>;

} // namespace viewshed
