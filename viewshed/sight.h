#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

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

    /// The elevation `height` of a cell relative to the eye, in the DEM's vertical unit, lowered by the Earth's
    /// curvature. NaN if `height` is.
    double aboveEye(double height, int column, int row) const
    {
        const double above = height - eye.z;
        return curvatureDrop == 0.0 ? above : above - curvatureDrop * squaredMetres(column, row);
    }
    /// Whether the cell's centre is no farther from the eye than `reach`.
    bool reaches(int column, int row) const
    {
        return std::isinf(reach) || squaredMetres(column, row) <= reach * reach;
    }
    /// The squared distance on the ground between the eye and the cell's centre.
    double squaredMetres(int column, int row) const
    {
        return ground.squaredMetres(column - eye.column(), row - eye.row());
    }
};

} // namespace viewshed
