#include "tests/support/terrains.h"
#include "viewshed/sweep/horizon.h"

#include <QTest>

#include <array>
#include <numbers>

using namespace viewshed;

/// Compares the horizon around an eye with the highest of all crossings of single directions, and with angles
/// that can be computed by hand.
class HorizonLineTest : public QObject
{
    Q_OBJECT

private slots:
    void equalsTheCrossings();
    void coneAndWall();
    void gaps();
};

namespace
{

constexpr double radians = std::numbers::pi / 180.0;

/// A sector, and a direction in it.
struct Direction
{
    Frame frame;
    double m;
};

/// The direction of a step in cells.
Direction directionOf(double columns, double rows)
{
    const bool alongColumns = std::abs(columns) >= std::abs(rows);
    const double ahead = alongColumns ? columns : rows;
    return {{.linesAreColumns = alongColumns, .awayStep = ahead > 0.0 ? 1 : -1},
            (alongColumns ? rows : columns) / std::abs(ahead)};
}

/// The step in cells that leads to an azimuth in degrees.
Direction directionOf(double azimuth, const GroundSteps &steps)
{
    const double east = std::sin(azimuth * radians);
    const double north = std::cos(azimuth * radians);
    const double scale = steps.columnEast * steps.rowNorth - steps.rowEast * steps.columnNorth;
    return directionOf((east * steps.rowNorth - north * steps.rowEast) / scale,
                       (north * steps.columnEast - east * steps.columnNorth) / scale);
}

/// The height above the eye over the distance ahead, of the ground that is highest in a direction. No crossing
/// may be at a cell's centre.
double plainHorizon(const Terrain &terrain, const Sight &sight, const Direction &direction)
{
    const Frame &frame = direction.frame;
    double highest = -std::numeric_limits<double>::infinity();
    const double eyeLine = frame.linesAreColumns ? sight.eye.column() : sight.eye.row();
    const double eyePlace = frame.linesAreColumns ? sight.eye.row() : sight.eye.column();
    const auto above = [&](int line, int place) {
        const int column = frame.column(line, place);
        const int row = frame.row(line, place);
        const bool reached = sight.squaredMetres(column, row) <= sight.reach * sight.reach;
        return reached ? sight.aboveEye(terrain.at(column, row), column, row) : noHeight;
    };
    const auto add = [&](double ahead, double one, double other, double part) {
        const double height = one * (1.0 - part) + other * part;
        highest = std::max(highest, std::isnan(height) ? highest : height / ahead);
    };
    for (int number = 0; number < std::max(terrain.width(), terrain.height()); ++number) {
        if (const double ahead = (number - eyeLine) * frame.awayStep; ahead > 0.0) {
            const double place = eyePlace + direction.m * ahead;
            const int before = static_cast<int>(std::floor(place));
            add(ahead, above(number, before), above(number, before + 1), place - before);
        }
        if (const double ahead = (number - eyePlace) / direction.m; ahead > 0.0) {
            const double line = eyeLine + frame.awayStep * ahead;
            const int before = static_cast<int>(std::floor(line));
            add(ahead, above(before, number), above(before + 1, number), line - before);
        }
    }
    return highest;
}

/// A point in the coordinates of a sector.
struct InSector
{
    double m;
    double g; ///< height above the eye, lowered by the Earth's curvature, over the distance ahead
};

InSector inSector(const HorizonPoint &point, const Sight &sight, const Frame &frame)
{
    const double columns = point.column - sight.eye.column();
    const double rows = point.row - sight.eye.row();
    const double ahead = (frame.linesAreColumns ? columns : rows) * frame.awayStep;
    const double lowered =
        point.z - sight.eye.z - sight.curvatureDrop * sight.ground.squaredMetres(columns, rows);
    return {(frame.linesAreColumns ? rows : columns) / ahead, lowered / ahead};
}

constexpr double metresOfHeight = 2.0;

/// What is wrong with the angle and the distance of a point at its place; empty if nothing is.
QString wrongPoint(const HorizonPoint &point, const Sight &sight)
{
    const double columns = point.column - sight.eye.column();
    const double rows = point.row - sight.eye.row();
    const double metres = std::sqrt(sight.ground.squaredMetres(columns, rows));
    const double lowered = point.z - sight.eye.z - sight.curvatureDrop * metres * metres;
    const bool angle = std::abs(point.angle * radians - std::atan2(metresOfHeight * lowered, metres)) < 1e-9;
    const bool distance = std::abs(point.distance - metres) < 1e-9 * metres;
    return angle && distance ? QString() : QStringLiteral("azimuth %1").arg(point.azimuth);
}

/// Whether the line between two neighbouring points is as high as the highest crossing at a place between them.
bool isHorizonBetween(const HorizonPoint &one, const HorizonPoint &next, double part, const Terrain &terrain,
                      const Sight &sight)
{
    const auto unit = [&](const HorizonPoint &point) {
        const double columns = point.column - sight.eye.column();
        const double rows = point.row - sight.eye.row();
        const double length = std::max(std::abs(columns), std::abs(rows));
        return std::pair{columns / length, rows / length};
    };
    const auto [columns, rows] = unit(one);
    const auto [nextColumns, nextRows] = unit(next);
    Direction direction = directionOf(columns + nextColumns, rows + nextRows);
    const InSector from = inSector(one, sight, direction.frame);
    const InSector to = inSector(next, sight, direction.frame);
    if (std::abs(to.m - from.m) < 1e-7)
        return true; // a leap, or too narrow for a place between
    direction.m = std::lerp(from.m, to.m, part);
    const double plain = plainHorizon(terrain, sight, direction);
    return std::abs(plain - std::lerp(from.g, to.g, part)) < 1e-9 * std::max(1.0, std::abs(plain));
}

/// A terrain of side × side cells around an eye at height 0 in its middle.
template <class Height> HorizonLine lineAround(int side, Height height)
{
    std::vector<double> heights;
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column)
            heights.push_back(height(column - side / 2, row - side / 2));
    }
    const Terrain terrain(side, side, heights);
    const BlockMaxima maxima(terrain, 1);
    Sight sight;
    sight.eye = Eye::at((side - 1) / 2.0, (side - 1) / 2.0, 0.0);
    return Sweeper(terrain, maxima).horizonLine(sight, 1.0, 2);
}

} // namespace

void HorizonLineTest::equalsTheCrossings()
{
    Random random(23);
    for (int round = 0; round < 200; ++round) {
        const Ground ground = std::array{Ground::Smooth, Ground::Noise, Ground::Sea}[std::size_t(round) % 3];
        const Terrain terrain = terrainOf(ground, 10 + round % 60, 15 + round % 37, round % 4 * 0.1, random);
        Sight sight = sightOn(terrain, random);
        const double width = std::sqrt(sight.ground.xx);
        sight.steps = {.columnEast = width,
                       .rowEast = sight.ground.xy / width,
                       .rowNorth = -std::sqrt(sight.ground.yy - std::pow(sight.ground.xy / width, 2.0))};
        if (round % 2 == 0)
            limitField(sight, random);
        const BlockMaxima maxima(terrain, 1);
        const HorizonLine line = Sweeper(terrain, maxima).horizonLine(sight, metresOfHeight, round % 2 + 1);
        const auto &points = line.breakpoints();
        for (std::size_t index = 0; index < points.size(); ++index) {
            const HorizonLine::Breakpoint &one = points[index];
            const HorizonLine::Breakpoint &next = points[(index + 1) % points.size()];
            QVERIFY(index + 1 == points.size() || one.azimuth <= next.azimuth);
            QCOMPARE(wrongPoint(one, sight), QString());
            if (!next.startsAnew && points.size() > 2)
                QVERIFY(isHorizonBetween(one, next, between(random, 0.2, 0.8), terrain, sight));
        }
        for (int step = 0; step < 52; ++step) {
            const double azimuth = 7.0 * step + 1e-3;
            const Direction direction = directionOf(azimuth, sight.steps);
            const double plain = plainHorizon(terrain, sight, direction);
            const std::optional<HorizonPoint> point = line.at(azimuth);
            QCOMPARE(point.has_value(), !std::isinf(plain));
            QVERIFY(!point
                    || std::abs(inSector(*point, sight, direction.frame).g - plain)
                        < 1e-9 * std::max(1.0, std::abs(plain)));
        }
    }
}

void HorizonLineTest::coneAndWall()
{
    constexpr double tolerance = 1e-6;
    // Between the centres of cells, the ground is higher than the cone.
    const HorizonLine cone = lineAround(41, [](int x, int y) { return 0.3 * std::hypot(x, y); });
    for (const double azimuth : {0.0, 45.0, 90.0, 135.0, 180.0, 225.0, 270.0, 315.0})
        QVERIFY(std::abs(cone.at(azimuth)->angle * radians - std::atan(0.3)) < tolerance);
    const HorizonLine pyramid =
        lineAround(41, [](int x, int y) { return 0.3 * std::max(std::abs(x), std::abs(y)); });
    const HorizonLine wall = lineAround(101, [](int x, int /*y*/) { return x == 10 ? 5.0 : -20.0; });
    for (int step = 0; step < 144; ++step) {
        const double azimuth = 2.5 * step;
        const double east = std::sin(azimuth * radians);
        const double north = std::cos(azimuth * radians);
        const double steepest = 0.3 * std::max(std::abs(east), std::abs(north));
        QVERIFY(std::abs(pyramid.at(azimuth)->angle * radians - std::atan(steepest)) < tolerance);
        if (azimuth < 12.0 || azimuth > 168.0) // the terrain ends before the wall
            continue;
        QVERIFY(std::abs(wall.at(azimuth)->angle * radians - std::atan(0.5 * east)) < tolerance);
        QVERIFY(std::abs(wall.at(azimuth)->distance * east - 10.0) < tolerance);
    }
}

/// An eye left of a strip of ground that reaches from north-east to south-east.
void HorizonLineTest::gaps()
{
    const HorizonLine line =
        lineAround(21, [](int x, int y) { return x == 5 && std::abs(y) <= 5 ? 1.0 : noHeight; });
    const auto &points = line.breakpoints();
    QVERIFY(points.size() >= 2 && points.front().startsAnew && !points[1].startsAnew);
    QCOMPARE(points.front().azimuth, 45.0);
    QCOMPARE(points.back().azimuth, 135.0);
    QVERIFY(line.at(45.001) && line.at(90.0) && line.at(134.999));
    QVERIFY(!line.at(44.9) && !line.at(135.1) && !line.at(270.0));
}

QTEST_GUILESS_MAIN(HorizonLineTest)
#include "horizonline_test.moc"
