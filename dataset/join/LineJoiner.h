#pragma once

#include "dataset/join/contourcut.h"

#include <QPointF>
#include <QVector>

#include <cstddef>
#include <deque>
#include <functional>
#include <unordered_map>
#include <vector>

/// Joins the pieces of contour lines over the seams of tiles, one tile after another, in any order. It holds
/// the lines that are still open at a seam; every other line is passed on at once.
///
/// Two ends are joined if they have the same level, were cut off at opposite sides of one seam and lie within
/// the tolerance of each other. More than two such ends meet where a cell of a seam has the elevation of the
/// level: there the line on the one side of that cell and the line on its other side cross the seam at places
/// that differ by less than rounding. The ends of either tile are then put in order along the seam, by the
/// direction in which their lines leave the place and then by their places, and the first joins the first of
/// the other tile, the second the second. Lines joined so do not cross. The ends of one tile are never joined
/// to each other, and what finds no partner stays an end.
class LineJoiner
{
public:
    /// Receives a finished line; the last vertex of a closed line is its first.
    using Sink = std::function<void(const QVector<QPointF> &points, double level)>;

    /// `tolerance`: in ground units; see joinContours().
    LineJoiner(double tolerance, Sink sink);

    /// The pieces that follow are those of a tile with these sides.
    void beginTile(const CutSides &keep);
    void add(const LinePiece &piece, double level);
    /// Joins the lines of the tile to those of the tiles before it.
    void endTile();

    /// Passes on the lines that are still open, as they are, and returns how many of their ends at seams found
    /// no partner: 0 if the tiles are a whole DEM.
    int finish();

private:
    using Id = std::size_t;
    static constexpr Id noEnd = static_cast<Id>(-1);

    /// An end of a line on a seam.
    struct End
    {
        double level = 0.0;
        QPointF place;
        QPointF next;        ///< the first vertex of its line that is further away than the tolerance
        bool isTiny = false; ///< there is no such vertex: the line goes around one cell
        CutSide side = CutSide::None;
        int tile = 0;
        Id line = 0;
    };

    struct Line
    {
        std::deque<QPointF> points;
        double level = 0.0;
        Id front = noEnd;
        Id back = noEnd;
    };

    /// A square of the ground as large as the tolerance, for one level.
    struct Place
    {
        long long column = 0;
        long long row = 0;
        double level = 0.0;
        bool operator==(const Place &other) const = default;
    };
    struct PlaceHash
    {
        std::size_t operator()(const Place &place) const;
    };

    Place placeOf(const End &end) const;
    Id addEnd(End end, const std::deque<QPointF> &points, bool isBack);
    void removeEnd(Id id);
    template <typename Wanted> std::vector<Id> endsAround(const End &end, Wanted wanted) const;
    bool areFacing(const End &one, const End &other) const;
    void joinAround(Id id);
    void join(Id one, Id other);
    void passOn(Id line);

    double m_tolerance;
    Sink m_sink;
    Id m_nextId = 0;
    std::vector<CutSides> m_tiles;
    std::vector<Id> m_ofTile; ///< the ends of the current tile
    std::unordered_map<Id, Line> m_lines;
    std::unordered_map<Id, End> m_ends;
    std::unordered_multimap<Place, Id, PlaceHash> m_places; ///< the ends by their places
};
