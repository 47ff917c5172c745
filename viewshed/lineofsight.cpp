#include "viewshed/lineofsight.h"

#include "viewshed/jobs.h"

#include <algorithm>
#include <cstdlib>

namespace viewshed
{

namespace
{

/// The quotient rounded towards minus infinity, and the remainder, which is never negative.
struct Quotient
{
    std::int64_t whole;
    std::int64_t rest;
};

Quotient divided(std::int64_t number, std::int64_t by)
{
    const std::int64_t rest = number % by;
    return rest < 0 ? Quotient{number / by - 1, rest + by} : Quotient{number / by, rest};
}

template <class AboveEye> bool hasNeighbour(const AboveEye &aboveEye, int line, int place)
{
    const auto hasData = [&](int onLine, int atPlace) { return !std::isnan(aboveEye(onLine, atPlace)); };
    return hasData(line, place - 1) || hasData(line, place + 1) || hasData(line - 1, place)
        || hasData(line + 1, place);
}

/// Visits the crossings of a line of sight with one family of grid lines, the columns or the rows, from the eye
/// on. The terrain has the lines 0 to `lines` - 1. aboveEye(line, place) is the height above the eye of the
/// cell number `place` of the line, NaN without data. The eye's coordinates are lattice points along the view
/// (counted in lines) and across it (in places). The position of a crossing is kept in whole numbers, and
/// heights are multiplied out, so that no quotient is rounded.
///
/// Calls visit(height, scale, counts) for each crossing: the line of sight to a target at the height t above
/// the eye is at t · scale where the ground is at `height`, and the crossing is to be ignored unless counts().
/// The height is NaN without data. Ends early, and returns true, when visit() does.
template <class AboveEye, class Visit>
bool visitCrossings(const AboveEye &aboveEye, int lines, std::int64_t eyeAlong, std::int64_t eyeAcross,
                    int targetLine, int targetPlace, const Visit &visit)
{
    constexpr std::int64_t unit = latticePoints;
    const std::int64_t along = targetLine * unit - eyeAlong;
    const std::int64_t across = targetPlace * unit - eyeAcross;
    const std::int64_t length = std::abs(along);
    const std::int64_t whole = length * unit; // one place; `rest` counts the fractions of it
    if (length == 0)
        return false;

    const int direction = along > 0 ? 1 : -1;
    const std::int64_t eyeLine = divided(eyeAlong, unit).whole;
    const bool eyeOnLine = eyeLine * unit == eyeAlong;
    // An eye may be thousands of lines away from the terrain; there is no ground on those.
    int line =
        static_cast<int>(direction > 0 ? std::max<std::int64_t>(eyeLine + 1, 0)
                                       : std::min<std::int64_t>(eyeLine - (eyeOnLine ? 1 : 0), lines - 1));
    std::int64_t distance = std::abs(line * unit - eyeAlong);
    auto [place, rest] = divided(eyeAcross * length + across * distance, whole);
    const Quotient step = divided(across * unit, whole);

    for (; line != targetLine; line += direction, distance += unit) {
        const int cell = static_cast<int>(place);
        const auto scale = static_cast<double>(distance * unit);
        const double left = aboveEye(line, cell) * static_cast<double>(whole - rest);
        const bool ends = rest == 0
            ? visit(left, scale, [&] { return hasNeighbour(aboveEye, line, cell); })
            : visit(left + aboveEye(line, cell + 1) * static_cast<double>(rest), scale, [] { return true; });
        if (ends)
            return true;
        place += step.whole;
        rest += step.rest;
        if (rest >= whole) {
            rest -= whole;
            ++place;
        }
    }
    return false;
}

/// Visits the crossings with the columns, then those with the rows.
template <class Visit>
bool visitCrossings(const Terrain &terrain, const Sight &sight, int column, int row, const Visit &visit)
{
    const auto aboveEye = [&](int x, int y) { return sight.aboveEye(terrain.at(x, y), x, y); };
    const auto transposed = [&](int y, int x) { return aboveEye(x, y); };
    const Eye &eye = sight.eye;
    return visitCrossings(aboveEye, terrain.width(), eye.x, eye.y, column, row, visit)
        || visitCrossings(transposed, terrain.height(), eye.y, eye.x, row, column, visit);
}

} // namespace

bool sees(const Terrain &terrain, const Sight &sight, int column, int row)
{
    const double target = sight.aboveEye(terrain.at(column, row), column, row) + sight.targetHeight;
    const auto hides = [target](double height, double scale, const auto &counts) {
        return height > target * scale && counts();
    };
    return !std::isnan(target) && sight.isWithinSlopes(target, column, row)
        && !visitCrossings(terrain, sight, column, row, hides);
}

double limitOf(const Terrain &terrain, const Sight &sight, int column, int row)
{
    double limit = -std::numeric_limits<double>::infinity();
    visitCrossings(terrain, sight, column, row, [&](double height, double scale, const auto &counts) {
        if (height / scale > limit && counts())
            limit = height / scale;
        return false;
    });
    return limit;
}

double hiddenHeight(const Terrain &terrain, const Sight &sight, int column, int row)
{
    Sight toGround = sight;
    toGround.targetHeight = 0.0;
    toGround.field = {};
    if (sees(terrain, toGround, column, row))
        return 0.0;
    constexpr double least = std::numeric_limits<float>::min(); // rounding must not make the ground visible
    return std::max(limitOf(terrain, sight, column, row) - sight.aboveEye(terrain.at(column, row), column, row),
                    least);
}

double heightWithinSlopes(double height, double ground, const Sight &sight, int column, int row)
{
    if (!sight.field.hasSlopes())
        return height;
    const double metres = std::sqrt(sight.squaredMetres(column, row));
    if (metres == 0.0)
        return height;
    const double raised = std::max(height, sight.field.lowestSlope * metres - ground);
    if (ground + raised > sight.field.highestSlope * metres)
        return neverSeen;
    return raised;
}

double plainTargetHeight(const Terrain &terrain, const Sight &sight, int column, int row)
{
    const double ground = sight.aboveEye(terrain.at(column, row), column, row);
    if (std::isnan(ground))
        return noHeight;
    if (!sight.reaches(column, row))
        return neverSeen;
    return heightWithinSlopes(hiddenHeight(terrain, sight, column, row), ground, sight, column, row);
}

BitGrid plainViewshed(const Terrain &terrain, const Sight &sight, int threads, const Progress &progress)
{
    BitGrid seen(terrain.width(), terrain.height());
    const auto doRow = [&](int row) {
        for (int column = 0; column < terrain.width(); ++column) {
            if (sight.reaches(column, row) && sees(terrain, sight, column, row))
                seen.set(column, row, true);
        }
    };
    runJobs(terrain.height(), threads, doRow, progress);
    return seen;
}

} // namespace viewshed
