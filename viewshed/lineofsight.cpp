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

/// Whether the ground hides the target at a crossing with one family of grid lines: the columns, or the rows.
/// The terrain has the lines 0 to `lines` - 1. aboveEye(line, place) is the height above the eye of the cell
/// number `place` of the line, NaN without data.
/// The eye's coordinates are lattice points along the view (counted in lines) and across it (in places);
/// `target` is the target's height above the eye. The position of a crossing is kept in whole numbers, and the
/// comparison of heights is multiplied out, so that no quotient is rounded.
template <class AboveEye>
bool isHidden(const AboveEye &aboveEye, int lines, std::int64_t eyeAlong, std::int64_t eyeAcross,
              int targetLine, int targetPlace, double target)
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
    int line = static_cast<int>(direction > 0 ? std::max<std::int64_t>(eyeLine + 1, 0)
                                              : std::min<std::int64_t>(eyeLine - (eyeOnLine ? 1 : 0), lines - 1));
    std::int64_t distance = std::abs(line * unit - eyeAlong);
    auto [place, rest] = divided(eyeAcross * length + across * distance, whole);
    const Quotient step = divided(across * unit, whole);

    for (; line != targetLine; line += direction, distance += unit) {
        const int cell = static_cast<int>(place);
        const double limit = target * static_cast<double>(distance * unit);
        const double left = aboveEye(line, cell) * static_cast<double>(whole - rest);
        if (rest == 0) {
            if (left > limit && hasNeighbour(aboveEye, line, cell))
                return true;
        } else if (left + aboveEye(line, cell + 1) * static_cast<double>(rest) > limit) {
            return true;
        }
        place += step.whole;
        rest += step.rest;
        if (rest >= whole) {
            rest -= whole;
            ++place;
        }
    }
    return false;
}

} // namespace

bool sees(const Terrain &terrain, const Sight &sight, int column, int row)
{
    const auto aboveEye = [&](int x, int y) { return sight.aboveEye(terrain.at(x, y), x, y); };
    const auto transposed = [&](int y, int x) { return aboveEye(x, y); };
    const double target = aboveEye(column, row) + sight.targetHeight;
    const Eye &eye = sight.eye;
    return !std::isnan(target) && !isHidden(aboveEye, terrain.width(), eye.x, eye.y, column, row, target)
        && !isHidden(transposed, terrain.height(), eye.y, eye.x, row, column, target);
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
