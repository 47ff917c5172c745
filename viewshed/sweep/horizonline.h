#pragma once

#include "viewshed/sweep/panel.h"
#include "viewshed/sweep/skyline.h"

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace viewshed
{

/// A point of the ground that is the horizon in its direction.
struct HorizonPoint
{
    double azimuth;  ///< degrees clockwise from north, from 0 up to but not including 360
    double angle;    ///< degrees above the horizontal plane of the eye, as seen over a curved Earth
    double distance; ///< on the ground, in metres
    double column;   ///< position in cells; (0, 0) is the centre of the terrain's first cell
    double row;
    double z; ///< elevation of the ground, in the DEM's vertical unit
};

/// The horizon around an eye: in each direction the point of the ground that appears highest. The ground is
/// that of sees(), linear between two neighbouring cell centres, at all columns and rows of cell centres.
class HorizonLine
{
public:
    /// An empty horizon; `metresOfHeight` is the length of the DEM's vertical unit.
    HorizonLine(const Sight &sight, double metresOfHeight);

    /// Adds the pieces of leaf number `leaf` of the sector that `frame` describes. Every leaf is added once, in
    /// any order, and then finish() is called.
    void add(const Frame &frame, int leaf, std::vector<HorizonPiece> pieces);
    void finish();

    /// The points at which the line bends or leaps, clockwise from the least azimuth on; two points have the
    /// same azimuth where it leaps. Between two neighbouring points it is one straight edge of the ground, or
    /// there is no ground at all: then the second point's `startsAnew` is set.
    struct Breakpoint : HorizonPoint
    {
        bool startsAnew; ///< whether there is no ground between the point before and this one
    };
    const std::vector<Breakpoint> &breakpoints() const { return m_breakpoints; }

    /// The horizon at an azimuth in degrees; where it leaps, the higher point. Nothing if there is no ground in
    /// this direction.
    std::optional<HorizonPoint> at(double azimuth) const;

private:
    struct Sector
    {
        Frame frame{};
        bool clockwise = false; ///< whether the azimuth grows with m
        std::map<int, std::vector<HorizonPiece>> leaves;
        std::vector<HorizonPiece> pieces; ///< of all leaves, in order of m
    };

    Sector &sectorOf(const Frame &frame);
    HorizonPoint pointOf(const Frame &frame, const HorizonPiece &piece, double m) const;
    void appendBreakpoints(const Sector &sector);
    void append(const HorizonPoint &point, bool startsAnew);

    Sight m_sight;
    double m_metresOfHeight;
    std::array<Sector, 4> m_sectors;
    std::vector<Breakpoint> m_breakpoints;
    bool m_gapFollows = false; ///< while breakpoints are added: there is no ground after the last one
};

} // namespace viewshed
