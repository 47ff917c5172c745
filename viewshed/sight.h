#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

namespace viewshed
{

/// An eye stands on a lattice with this many points along a cell's side. Every crossing of a line of sight with
/// the grid is then a quotient of whole numbers, so rounding cannot decide whether it falls on a cell's centre.
inline constexpr int latticePoints = 1024;

/// Exclusive bound for a grid's width and height, in cells, and for an eye's distance from the grid's first
/// cell along either axis. Within it, the products of the lattice's whole numbers fit into 64 bits.
inline constexpr int largestSide = 1 << 19;

/// Where an observer looks from.
struct Eye
{
    std::int64_t x = 0; ///< columns · latticePoints from the centre of the grid's first column
    std::int64_t y = 0; ///< rows · latticePoints from the centre of the grid's first row
    double z = 0.0;     ///< altitude (not height above the ground), in the DEM's vertical unit

    /// The eye on the lattice point nearest to a position in cells, where (0, 0) is the centre of the grid's
    /// first cell. Both coordinates must lie between -largestSide and largestSide.
    static Eye at(double column, double row, double z)
    {
        return {.x = std::llround(column * latticePoints), .y = std::llround(row * latticePoints), .z = z};
    }
    double column() const { return static_cast<double>(x) / latticePoints; }
    double row() const { return static_cast<double>(y) / latticePoints; }
};

/// The quadratic form from a step in cells to its squared length on the ground, in square metres, valid near
/// one observer. It covers grids that are rotated or flipped and cells that are not square.
struct GroundForm
{
    double xx = 1.0;
    double xy = 0.0;
    double yy = 1.0;

    double squaredMetres(double columns, double rows) const
    {
        return xx * columns * columns + 2.0 * xy * columns * rows + yy * rows * rows;
    }
};

/// What an observer looks at: a sector, a range of angles and a least distance. The rest of the ground still
/// hides what is behind it. The default is everything.
struct FieldOfView
{
    /// Azimuths in degrees, clockwise from north, from 0 up to but not including 360. Seen are those from
    /// `fromAzimuth` on, clockwise up to but not including `toAzimuth`; all of them if the two are equal.
    double fromAzimuth = 0.0;
    double toAzimuth = 0.0;
    /// The least and the greatest rise of a line of sight for each metre on the ground, in the DEM's vertical
    /// unit. The earth's curvature is taken off the target's height before.
    double lowestSlope = -std::numeric_limits<double>::infinity();
    double highestSlope = std::numeric_limits<double>::infinity();
    double nearest = 0.0; ///< the least distance of a target on the ground, in metres

    /// Whether the field excludes some place on the ground, whatever its height.
    bool hasBounds() const { return fromAzimuth != toAzimuth || nearest > 0.0; }
    bool hasSlopes() const { return !std::isinf(lowestSlope) || !std::isinf(highestSlope); }
    bool holdsAzimuth(double azimuth) const
    {
        if (fromAzimuth <= toAzimuth)
            return fromAzimuth == toAzimuth || (azimuth >= fromAzimuth && azimuth < toAzimuth);
        return azimuth >= fromAzimuth || azimuth < toAzimuth;
    }
};

/// The way that a step in cells leads on the ground near one observer, in metres to the east and to the north.
struct GroundSteps
{
    double columnEast = 1.0;
    double columnNorth = 0.0;
    double rowEast = 0.0;
    double rowNorth = -1.0;

    double east(double columns, double rows) const { return columns * columnEast + rows * rowEast; }
    double north(double columns, double rows) const { return columns * columnNorth + rows * rowNorth; }
    GroundForm form() const
    {
        return {.xx = columnEast * columnEast + columnNorth * columnNorth,
                .xy = columnEast * rowEast + columnNorth * rowNorth,
                .yy = rowEast * rowEast + rowNorth * rowNorth};
    }
    /// Degrees clockwise from north, from 0 up to but not including 360; 0 for no step at all.
    double azimuth(double columns, double rows) const
    {
        constexpr double degrees = 180.0 / std::numbers::pi;
        constexpr double circle = 360.0;
        const double angle = std::atan2(east(columns, rows), north(columns, rows)) * degrees;
        const double positive = angle < 0.0 ? angle + circle : angle + 0.0; // no minus zero
        return positive < circle ? positive : 0.0;
    }
};

/// Everything about one observer that decides which cells are seen.
struct Sight
{
    Eye eye;
    double targetHeight = 0.0; ///< of the target above the ground of its cell, in the DEM's vertical unit
    GroundForm ground;
    /// At a distance of d metres the Earth's curvature lowers the ground by curvatureDrop · d², in the DEM's
    /// vertical unit. 0 for a plane; negative if refraction bends a ray more than the Earth is curved.
    double curvatureDrop = 0.0;
    double reach = std::numeric_limits<double>::infinity(); ///< the greatest distance of a target, in metres
    FieldOfView field;
    GroundSteps steps; ///< `ground` is their form; only azimuths are taken from them

    /// The elevation `height` of a cell relative to the eye, in the DEM's vertical unit, lowered by the Earth's
    /// curvature. NaN if `height` is.
    double aboveEye(double height, int column, int row) const
    {
        const double above = height - eye.z;
        return curvatureDrop == 0.0 ? above : above - curvatureDrop * squaredMetres(column, row);
    }
    /// Whether reaches() excludes some place.
    bool hasBounds() const { return !std::isinf(reach) || field.hasBounds(); }
    /// Whether the cell's centre is no farther from the eye than `reach`, and within the bounds of the field of
    /// view. An eye over the centre of a cell has this cell in each of its sectors.
    bool reaches(int column, int row) const
    {
        if (!hasBounds())
            return true;
        const double square = squaredMetres(column, row);
        if (square > reach * reach || square < field.nearest * field.nearest)
            return false;
        return field.fromAzimuth == field.toAzimuth || square == 0.0
            || field.holdsAzimuth(steps.azimuth(column - eye.column(), row - eye.row()));
    }
    /// Whether the slopes of the field of view hold a target at this height above the eye, lowered by the
    /// Earth's curvature, at the cell's centre. A target right above or below the eye is always held.
    bool isWithinSlopes(double above, int column, int row) const
    {
        if (!field.hasSlopes())
            return true;
        const double metres = std::sqrt(squaredMetres(column, row));
        return metres == 0.0 || (above >= field.lowestSlope * metres && above <= field.highestSlope * metres);
    }
    /// The squared distance on the ground between the eye and the cell's centre.
    double squaredMetres(int column, int row) const
    {
        return ground.squaredMetres(column - eye.column(), row - eye.row());
    }
};

} // namespace viewshed
