#include "app/preview/profile/profile.h"

#include "viewshed/lineofsight.h"
#include "viewshed/problem.h"

#include <algorithm>
#include <cmath>

namespace
{

using viewshed::latticePoints;

/// A line from an eye to the centre of a cell, in lattice points.
struct Line
{
    const viewshed::Terrain &terrain;
    const viewshed::Sight &sight;
    int farColumn;
    int farRow;

    std::int64_t dx() const { return std::int64_t(farColumn) * latticePoints - sight.eye.x; }
    std::int64_t dy() const { return std::int64_t(farRow) * latticePoints - sight.eye.y; }
};

/// Where a line crosses a column or a row of cell centres: on a centre, or between two of them.
struct Crossing
{
    double share; ///< of the line that lies before the crossing
    int column;   ///< the cell on the crossing, or the first of the two beside it
    int row;
    bool alongColumn; ///< the second cell is the next of the same column, not of the same row
    double weight;    ///< of the second cell, 0 to below 1; 0: the crossing is the cell's centre
};

/// The shares are quotients of whole numbers, so that of a crossing with both a column and a row is the same
/// double both times.
bool isBefore(const Crossing &a, const Crossing &b)
{
    return a.share < b.share;
}

/// The heights at a place of the line, in the DEM's vertical unit.
struct Heights
{
    double ground = viewshed::noHeight; ///< elevation; NaN without data
    double drop = 0.0;                  ///< what the viewshed subtracts from it for the Earth's curvature
    double aboveEye = viewshed::noHeight;
};

/// The crossings with the columns (or rows) strictly between the eye and the far end, nearest first, as far as
/// the grid reaches. `size` is the number of columns and `acrossSize` that of rows, or the other way round.
QVector<Crossing> crossings(std::int64_t eyeAlong, std::int64_t along, std::int64_t eyeAcross,
                            std::int64_t across, int size, int acrossSize, bool ofColumns)
{
    QVector<Crossing> found;
    constexpr std::int64_t unit = latticePoints;
    const std::int64_t length = std::abs(along);
    const int direction = along > 0 ? 1 : -1;
    const double eye = static_cast<double>(eyeAlong) / unit;
    const auto first = static_cast<std::int64_t>(direction > 0 ? std::floor(eye) + 1.0 : std::ceil(eye) - 1.0);
    std::int64_t line =
        direction > 0 ? std::max<std::int64_t>(first, 0) : std::min<std::int64_t>(first, size - 1);
    for (; line >= 0 && line < size; line += direction) {
        const std::int64_t part = std::abs(line * unit - eyeAlong);
        if (part >= length)
            break;
        const std::int64_t whole = length * unit; // one cell across
        const std::int64_t place = eyeAcross * length + across * part;
        if (place < 0 || place > (acrossSize - 1) * whole)
            continue;
        const auto cell = static_cast<int>(place / whole);
        const double weight = static_cast<double>(place % whole) / static_cast<double>(whole);
        const auto at = static_cast<int>(line);
        const double share = static_cast<double>(part) / static_cast<double>(length);
        found += Crossing{share, ofColumns ? at : cell, ofColumns ? cell : at, ofColumns, weight};
    }
    return found;
}

/// All crossings of the line, nearest first, each once.
QVector<Crossing> crossings(const Line &line)
{
    const viewshed::Eye &eye = line.sight.eye;
    const int width = line.terrain.width();
    const int height = line.terrain.height();
    const QVector<Crossing> columns = crossings(eye.x, line.dx(), eye.y, line.dy(), width, height, true);
    const QVector<Crossing> rows = crossings(eye.y, line.dy(), eye.x, line.dx(), height, width, false);
    QVector<Crossing> all;
    std::set_union(columns.begin(), columns.end(), rows.begin(), rows.end(), std::back_inserter(all), isBefore);
    return all;
}

Heights heightsOfCell(const Line &line, int column, int row)
{
    const double ground = line.terrain.at(column, row);
    const viewshed::Sight &sight = line.sight;
    return {ground, sight.curvatureDrop * sight.squaredMetres(column, row),
            sight.aboveEye(ground, column, row)};
}

Heights heightsAt(const Line &line, const Crossing &crossing)
{
    const Heights one = heightsOfCell(line, crossing.column, crossing.row);
    if (crossing.weight == 0.0)
        return one;
    const Heights other = heightsOfCell(line, crossing.column + (crossing.alongColumn ? 0 : 1),
                                        crossing.row + (crossing.alongColumn ? 1 : 0));
    const auto between = [&](double a, double b) { return a + (b - a) * crossing.weight; };
    return {between(one.ground, other.ground), between(one.drop, other.drop),
            between(one.aboveEye, other.aboveEye)};
}

/// Whether the ground of a crossing can hide what lies behind it; lineofsight.h defines it.
bool canHide(const Line &line, const Crossing &crossing, const Heights &heights)
{
    if (std::isnan(heights.ground) || crossing.weight > 0.0)
        return !std::isnan(heights.ground);
    const auto hasData = [&](int column, int row) { return !std::isnan(line.terrain.at(column, row)); };
    return hasData(crossing.column - 1, crossing.row) || hasData(crossing.column + 1, crossing.row)
        || hasData(crossing.column, crossing.row - 1) || hasData(crossing.column, crossing.row + 1);
}

/// The ground under the eye: interpolated between the four cell centres around it, or that of its cell.
double groundUnderEye(const Line &line)
{
    const double column = line.sight.eye.column();
    const double row = line.sight.eye.row();
    const double left = std::floor(column);
    const double top = std::floor(row);
    const auto height = [&](int right, int below) {
        return line.terrain.at(static_cast<int>(left) + right, static_cast<int>(top) + below);
    };
    double sum = 0.0;
    for (const int right : {0, 1}) {
        for (const int below : {0, 1}) {
            const double share =
                (right == 1 ? column - left : 1.0 - column + left) * (below == 1 ? row - top : 1.0 - row + top);
            sum += share == 0.0 ? 0.0 : share * height(right, below);
        }
    }
    return std::isnan(sum) ? height(column - left < 0.5 ? 0 : 1, row - top < 0.5 ? 0 : 1) : sum;
}

/// Follows a line outwards and collects its samples.
class Walk
{
public:
    Walk(const LiveTerrain &terrain, const Line &line, Profile &profile)
        : m_terrain(terrain)
        , m_line(line)
        , m_profile(profile)
        , m_far(heightsOfCell(line, line.farColumn, line.farRow))
    { }

    void run()
    {
        m_profile.farSeen = viewshed::sees(m_line.terrain, m_line.sight, m_line.farColumn, m_line.farRow);
        add(0.0, {groundUnderEye(m_line), 0.0, 0.0}, false);
        for (const Crossing &crossing : crossings(m_line)) {
            const Heights heights = heightsAt(m_line, crossing);
            add(crossing.share, heights, isHidden(crossing, heights));
            if (canHide(m_line, crossing, heights))
                m_horizon = std::max(m_horizon, heights.aboveEye / crossing.share);
        }
        if (m_line.dx() != 0 || m_line.dy() != 0)
            add(1.0, m_far, !m_profile.farSeen);
        if (m_profile.farSeen)
            m_profile.leastHeight = 0.0;
        else if (!std::isnan(m_far.ground))
            m_profile.leastHeight = std::max(m_horizon - m_far.aboveEye, m_profile.targetHeight);
    }

private:
    /// Whether a target on the crossing is hidden by the crossings before it. A tie is visible.
    bool isHidden(const Crossing &crossing, const Heights &heights) const
    {
        constexpr double rounding = 1e-12; // relative
        const double limit = m_horizon * crossing.share;
        const double target = heights.aboveEye + m_profile.targetHeight;
        return limit > target + rounding * (std::abs(limit) + std::abs(target));
    }

    void add(double share, const Heights &heights, bool hidden)
    {
        const viewshed::Eye &eye = m_line.sight.eye;
        const double perPoint = share / latticePoints;
        ProfileSample sample;
        sample.distance = share * m_profile.length;
        sample.point = m_terrain.toGround({eye.column() + static_cast<double>(m_line.dx()) * perPoint,
                                           eye.row() + static_cast<double>(m_line.dy()) * perPoint});
        if (!std::isnan(m_far.ground))
            sample.sightLine = eye.z + (m_far.aboveEye + m_profile.targetHeight) * share + heights.drop;
        if (!std::isnan(heights.ground))
            sample.ground = heights.ground;
        sample.hidden = hidden && sample.ground;
        m_profile.hiddenCount += sample.hidden ? 1 : 0;
        m_profile.voidCount += sample.ground ? 0 : 1;
        m_profile.samples += sample;
    }

    const LiveTerrain &m_terrain;
    const Line &m_line;
    Profile &m_profile;
    Heights m_far;
    /// The greatest height above the eye that the ground so far has, carried on to the far end.
    double m_horizon = -std::numeric_limits<double>::infinity();
};

} // namespace

Profile profileAlong(const LiveTerrain &terrain, const ToolObserver &observer, const QPointF &farPoint,
                     const viewshed::SightOptions &options)
{
    const QPointF farCell = terrain.toCells(farPoint);
    const double side = std::max(std::abs(farCell.x()), std::abs(farCell.y()));
    if (!(side < viewshed::largestSide - 1.0))
        return {};
    viewshed::Sight sight;
    try {
        sight = terrain.sight(observer, options);
    } catch (const viewshed::Problem &) {
        return {};
    }
    const Line line{terrain.ground()->terrain, sight, static_cast<int>(std::lround(farCell.x())),
                    static_cast<int>(std::lround(farCell.y()))};
    Profile profile;
    profile.length = std::sqrt(sight.squaredMetres(line.farColumn, line.farRow));
    profile.eyeAltitude = sight.eye.z;
    profile.targetHeight = sight.targetHeight;
    profile.curvature = options.curvature;
    profile.curvatureDrop = sight.curvatureDrop;
    profile.beyondReach = !sight.reaches(line.farColumn, line.farRow);
    Walk(terrain, line, profile).run();
    return profile;
}

ProfileSample sampleAt(const Profile &profile, double distance)
{
    const QVector<ProfileSample> &samples = profile.samples;
    const auto next =
        std::lower_bound(samples.begin(), samples.end(), distance,
                         [](const ProfileSample &sample, double d) { return sample.distance < d; });
    if (next == samples.begin() || next == samples.end())
        return next == samples.end() ? samples.last() : samples.first();
    const ProfileSample &before = *(next - 1);
    const double share = (distance - before.distance) / (next->distance - before.distance);
    const auto between = [&](const std::optional<double> &a, const std::optional<double> &b) {
        return a && b ? std::optional(*a + (*b - *a) * share) : std::nullopt;
    };
    return {distance, before.point + (next->point - before.point) * share, between(before.ground, next->ground),
            between(before.sightLine, next->sightLine), next->hidden};
}
