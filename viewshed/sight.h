#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace viewshed
{

/// An eye stands on a lattice of so many points to a cell's side: every crossing of a line of sight with the
/// grid is then a quotient of whole numbers, and whether it falls on a cell is no matter of rounding.
inline constexpr int latticePoints = 1024;

/// Grid and eyes keep to so many cells: the products of the lattice's numbers fit into 64 bits.
inline constexpr int largestSide = 1 << 19;

struct Eye
{
    std::int64_t x = 0; ///< columns · latticePoints from the centre of the grid's first column
    std::int64_t y = 0; ///< rows · latticePoints from the centre of the grid's first row
    double z = 0.0;     ///< absolute, in the DEM's vertical unit

    /// The lattice point that is nearest to a position in cells, which is less than largestSide from the
    /// origin.
    static Eye at(double column, double row, double z)
    {
        return {std::llround(column * latticePoints), std::llround(row * latticePoints), z};
    }
    double column() const { return static_cast<double>(x) / latticePoints; }
    double row() const { return static_cast<double>(y) / latticePoints; }
};

/// Squared metres on the ground of a step in cells, near one observer: the grid may be rotated, flipped, or
/// have cells that are not square.
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

/// What one observer looks with.
struct Sight
{
    Eye eye;
    double targetHeight = 0.0; ///< added to the ground of the cell looked at, in the DEM's vertical unit
    GroundForm ground;
    double bend = 0.0; ///< how far the ground sinks at a metre's distance; with the distance's square
    double reach = std::numeric_limits<double>::infinity(); ///< the greatest distance in metres

    /// Height of a cell above the eye, after the Earth's curvature.
    double aboveEye(double height, int column, int row) const
    {
        const double above = height - eye.z;
        return bend == 0.0 ? above : above - bend * squaredMetres(column, row);
    }
    bool reaches(int column, int row) const
    {
        return std::isinf(reach) || squaredMetres(column, row) <= reach * reach;
    }
    double squaredMetres(int column, int row) const
    {
        return ground.squaredMetres(column - eye.column(), row - eye.row());
    }
};

} // namespace viewshed
