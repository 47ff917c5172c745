#include "viewshed/combine.h"
#include "viewshed/sweep/horizon.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <mutex>
#include <numbers>
#include <random>

using namespace viewshed;

/// Compares the fast viewshed with the plain reference, cell by cell.
class HorizonTest : public QObject
{
    Q_OBJECT

private slots:
    void equalsTheReference_data();
    void equalsTheReference();
    void largerTerrain();
    void farEyes();
    void targetHeights();
    void horizonLines();
    void coneAndWall();
};

namespace
{

enum class Ground
{
    Smooth,
    Steps,
    Noise,
    Sea,
    Plane
};

using Random = std::minstd_rand;

double between(Random &random, double from, double to)
{
    return std::uniform_real_distribution<double>(from, to)(random);
}

double heightAt(Ground ground, int column, int row, Random &random)
{
    switch (ground) {
    case Ground::Smooth:
        return 30.0 * std::sin(column * 0.21) * std::cos(row * 0.17) + between(random, 0.0, 1.0);
    case Ground::Steps:
        return std::floor(between(random, 0.0, 4.0));
    case Ground::Noise:
        return between(random, 0.0, 50.0);
    case Ground::Sea:
        return std::max(0.0, 20.0 * std::sin(column * 0.3) * std::sin(row * 0.25));
    case Ground::Plane:
        break;
    }
    return 3.0 * column - 2.0 * row;
}

Terrain terrainOf(Ground ground, int width, int height, double voids, Random &random)
{
    std::vector<double> heights;
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const bool none = between(random, 0.0, 1.0) < voids;
            const double cell = heightAt(ground, column, row, random);
            heights.push_back(none ? noHeight : cell);
        }
    }
    return {width, height, heights};
}

/// A random sight. The eye is in the grid or around it, at a cell's centre, on a line of cell centres or
/// anywhere between, and at, above or below the ground.
Sight sightOn(const Terrain &terrain, Random &random)
{
    Sight sight;
    double column = between(random, -0.2, 1.2) * terrain.width();
    double row = between(random, -0.2, 1.2) * terrain.height();
    const int kind = std::uniform_int_distribution<int>(0, 5)(random);
    if (kind != 0)
        column = std::floor(std::clamp(column, 0.0, terrain.width() - 1.0)) + (kind == 1 ? 0.5 : 0.0)
            + (kind == 2 ? 1.0 / latticePoints : 0.0);
    if (kind >= 2)
        row = std::floor(std::clamp(row, 0.0, terrain.height() - 1.0));
    const double ground = terrain.at(static_cast<int>(column), static_cast<int>(row));
    const double up[] = {0.0, 1.0, 1.7, 30.0, -2.0};
    sight.eye =
        Eye::at(column, row,
                (std::isnan(ground) ? 1.0 : ground) + up[std::uniform_int_distribution<int>(0, 4)(random)]);
    const double targets[] = {0.0, 0.0, 2.0, -0.5};
    sight.targetHeight = targets[std::uniform_int_distribution<int>(0, 3)(random)];
    if (kind % 2 == 1) {
        sight.ground = {.xx = 900.0, .xy = kind == 3 ? 200.0 : 0.0, .yy = 400.0};
        sight.curvatureDrop = kind == 5 ? -1e-6 : 1e-6;
    }
    if (std::uniform_int_distribution<int>(0, 3)(random) == 0)
        sight.reach = (kind % 2 == 1 ? 25.0 : 1.0) * between(random, 1.0, terrain.width());
    return sight;
}

/// What partsOf() gives, where each part is computed from a terrain with the cells of its window only.
BitGrid seenInParts(const Terrain &terrain, const Sight &sight, int threads, VectorPath path)
{
    BitGrid seen(terrain.width(), terrain.height());
    for (const Part &part :
         partsOf(sight, {.left = 0, .top = 0, .width = terrain.width(), .height = terrain.height()})) {
        std::vector<double> heights;
        for (int row = 0; row < part.window.height; ++row) {
            for (int column = 0; column < part.window.width; ++column)
                heights.push_back(terrain.at(column, part.window.top + row));
        }
        const Terrain cells(part.window.width, part.window.height, heights);
        const BlockMaxima maxima(cells, threads);
        add(seen, horizonViewshed(cells, maxima, within(sight, part.window), threads, {}, path), part);
    }
    return seen;
}

/// The first cells in which the fast viewshed differs from the reference, on each path that this processor has;
/// empty if there are none.
QString differences(const Terrain &terrain, const Sight &sight, int threads, bool inParts)
{
    const BlockMaxima maxima(terrain, threads);
    const BitGrid truth = plainViewshed(terrain, sight, 1);
    QString text;
    for (const VectorPath path : {VectorPath::Plain, VectorPath::Avx2}) {
        if (!isSupported(path))
            continue;
        const BitGrid seen = inParts ? seenInParts(terrain, sight, threads, path)
                                     : horizonViewshed(terrain, maxima, sight, threads, {}, path);
        if (truth == seen)
            continue;
        text += QStringLiteral("path %1, %2 x %3, eye %4 %5 %6, target %7:")
                    .arg(static_cast<int>(path))
                    .arg(terrain.width())
                    .arg(terrain.height())
                    .arg(sight.eye.column())
                    .arg(sight.eye.row())
                    .arg(sight.eye.z)
                    .arg(sight.targetHeight);
        for (int row = 0; row < terrain.height(); ++row) {
            for (int column = 0; column < terrain.width() && text.size() < 200; ++column) {
                if (truth.test(column, row) != seen.test(column, row))
                    text += QStringLiteral(" (%1, %2) is %3").arg(column).arg(row).arg(truth.test(column, row));
            }
        }
    }
    return text;
}

} // namespace

void HorizonTest::equalsTheReference_data()
{
    QTest::addColumn<int>("ground");
    QTest::addColumn<double>("voids");
    for (const auto &[name, ground] : {std::pair{"smooth", Ground::Smooth},
                                       {"steps", Ground::Steps},
                                       {"noise", Ground::Noise},
                                       {"sea", Ground::Sea},
                                       {"plane", Ground::Plane}}) {
        for (const double voids : {0.0, 0.03, 0.5})
            QTest::addRow("%s, voids %g", name, voids) << static_cast<int>(ground) << voids;
    }
}

void HorizonTest::equalsTheReference()
{
    QFETCH(int, ground);
    QFETCH(double, voids);
    Random random(7);
    const int rounds = std::max(20, qEnvironmentVariableIntValue("QUVO_ROUNDS"));
    const std::pair<int, int> sizes[] = {{1, 60},  {60, 1},  {2, 2},   {3, 40},
                                         {33, 47}, {47, 33}, {70, 65}, {16, 17}};
    for (int round = 0; round < rounds; ++round) {
        for (const auto &[width, height] : sizes) {
            const Terrain terrain = terrainOf(Ground(ground), width, height, voids, random);
            const Sight sight = sightOn(terrain, random);
            const QString wrong = differences(terrain, sight, round % 3 + 1, round % 4 == 1);
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
    }
}

/// A terrain so large that whole blocks are hidden and skipped, and that leaves are many cells wide.
void HorizonTest::largerTerrain()
{
    Random random(3);
    for (const Ground ground : {Ground::Smooth, Ground::Sea}) {
        for (const double voids : {0.0, 0.01}) {
            const Terrain terrain = terrainOf(ground, 401, 307, voids, random);
            const QString wrong = differences(terrain, sightOn(terrain, random), 2, voids > 0.0);
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
    }
}

/// The heights of Sweeper::findHeights() as a grid, NaN where none is reported.
std::vector<double> foundHeights(const Terrain &terrain, const Sight &sight, int threads)
{
    const auto cells = static_cast<std::size_t>(terrain.width()) * static_cast<std::size_t>(terrain.height());
    std::vector<double> grid(cells, noHeight);
    const BlockMaxima maxima(terrain, threads);
    std::mutex guard;
    const auto found = [&](const RowOfCells &line, const double *heights) {
        const std::lock_guard lock(guard);
        for (int cell = 0; cell < line.count; ++cell) {
            if (!std::isnan(heights[cell]))
                grid[static_cast<std::size_t>(line.row * terrain.width() + line.column + cell)] = heights[cell];
        }
    };
    Sweeper(terrain, maxima).findHeights(sight, found, threads);
    return grid;
}

/// A field of view across north, with a least distance and slopes.
void limitField(Sight &sight, Random &random)
{
    sight.steps = {.columnEast = 30.0, .columnNorth = 2.0, .rowEast = -1.0, .rowNorth = -20.0};
    sight.ground = sight.steps.form();
    sight.field = {.fromAzimuth = std::floor(between(random, 200.0, 360.0)),
                   .toAzimuth = std::floor(between(random, 0.0, 150.0)),
                   .lowestSlope = -0.5,
                   .highestSlope = 0.05,
                   .nearest = between(random, 0.0, 100.0)};
}

/// Eyes up to as far away as an eye may be, off the cells' centres, whose lines of sight graze the ground.
void HorizonTest::farEyes()
{
    Random random(11);
    for (const double distance : {70'000.0, 333'000.0, largestSide - 100.0}) {
        for (int round = 0; round < 40; ++round) {
            const Ground ground = std::array{Ground::Smooth, Ground::Noise, Ground::Sea}[round % 3];
            const Terrain terrain = terrainOf(ground, 65, 70, round % 2 == 0 ? 0.0 : 0.1, random);
            const double angle = round % 4 == 0 ? std::numbers::pi / 4 * round : between(random, 0.0, 6.3);
            Sight sight;
            sight.curvatureDrop = round % 5 == 0 ? 1e-9 : 0.0;
            const double greatest = std::max(std::abs(std::cos(angle)), std::abs(std::sin(angle)));
            const double column = between(random, 0.0, 65.0) + distance * std::cos(angle) / greatest;
            const double row = between(random, 0.0, 70.0) + distance * std::sin(angle) / greatest;
            sight.eye = Eye::at(round % 3 == 0 ? std::round(column) : column, row,
                                distance * between(random, -0.1, 1.0));
            sight.targetHeight = round % 7 == 0 ? 1.0 : 0.0;
            const QString wrong = differences(terrain, sight, 2, false);
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
    }
}

void HorizonTest::targetHeights()
{
    Random random(17);
    for (int round = 0; round < 300; ++round) {
        const Ground ground = std::array{Ground::Smooth, Ground::Steps, Ground::Noise, Ground::Sea,
                                         Ground::Plane}[static_cast<std::size_t>(round) % 5];
        const Terrain terrain = terrainOf(ground, 20 + round % 60, 15 + round % 37, round % 3 * 0.1, random);
        Sight sight = sightOn(terrain, random);
        if (round % 4 == 3)
            limitField(sight, random);
        const std::vector<double> heights = foundHeights(terrain, sight, round % 3 + 1);
        for (int row = 0; row < terrain.height(); ++row) {
            for (int column = 0; column < terrain.width(); ++column) {
                const double height = heights[static_cast<std::size_t>(row * terrain.width() + column)];
                const double plain = plainTargetHeight(terrain, sight, column, row);
                if (!sight.reaches(column, row) || std::isnan(plain)) {
                    QVERIFY(std::isnan(plain) ? std::isnan(height) : std::isnan(height) || std::isinf(height));
                    continue;
                }
                QVERIFY2((std::isinf(plain) && std::isinf(height))
                             || std::abs(height - plain) <= 1e-12 + 1e-9 * plain,
                         qPrintable(QStringLiteral("round %1, (%2, %3): %4, not %5")
                                        .arg(round)
                                        .arg(column)
                                        .arg(row)
                                        .arg(height)
                                        .arg(plain)));
                if (std::isinf(plain))
                    continue;
                // A target of this height is seen, one a millimetre lower is not, unless it is in the ground.
                Sight target = sight;
                target.targetHeight = height + 1e-6;
                QVERIFY(sees(terrain, target, column, row));
                target.targetHeight = height - 1e-3;
                QVERIFY(!(height > 1e-3) || !sees(terrain, target, column, row));
            }
        }
    }
}

namespace
{

/// The g of the horizon in the direction m of a sector, from all crossings of the half-line with the grid. No
/// crossing may be at a cell's centre.
double plainHorizon(const Terrain &terrain, const Sight &sight, const Frame &frame, double m)
{
    double highest = -std::numeric_limits<double>::infinity();
    const double eyeLine = frame.linesAreColumns ? sight.eye.column() : sight.eye.row();
    const double eyePlace = frame.linesAreColumns ? sight.eye.row() : sight.eye.column();
    const auto above = [&](int line, int place) {
        const int column = frame.column(line, place);
        const int row = frame.row(line, place);
        const bool reached = sight.squaredMetres(column, row) <= sight.reach * sight.reach;
        return reached ? sight.aboveEye(terrain.at(column, row), column, row) : noHeight;
    };
    const int lines = std::max(terrain.width(), terrain.height());
    for (int number = 0; number < lines; ++number) {
        const double ahead = (number - eyeLine) * frame.awayStep;
        if (ahead > 0.0) {
            const double place = eyePlace + m * ahead;
            const int before = static_cast<int>(std::floor(place));
            const double part = place - before;
            const double height = above(number, before) * (1.0 - part) + above(number, before + 1) * part;
            highest = std::max(highest, std::isnan(height) ? highest : height / ahead);
        }
        const double across = (number - eyePlace) / m;
        if (across > 0.0) {
            const double line = eyeLine + frame.awayStep * across;
            const int before = static_cast<int>(std::floor(line));
            const double part = line - before;
            const double height = above(before, number) * (1.0 - part) + above(before + 1, number) * part;
            highest = std::max(highest, std::isnan(height) ? highest : height / across);
        }
    }
    return highest;
}

/// The sector of a direction in cells.
Frame frameOf(double columns, double rows)
{
    const bool alongColumns = std::abs(columns) >= std::abs(rows);
    return {.linesAreColumns = alongColumns, .awayStep = (alongColumns ? columns : rows) > 0.0 ? 1 : -1};
}

/// Direction and height over distance of a point, in the coordinates of a sector.
struct InSector
{
    double m;
    double g;
};

InSector inSector(const HorizonPoint &point, const Sight &sight, const Frame &frame)
{
    const double columns = point.column - sight.eye.column();
    const double rows = point.row - sight.eye.row();
    const double ahead = frame.linesAreColumns ? columns * frame.awayStep : rows * frame.awayStep;
    const double lowered =
        point.z - sight.eye.z - sight.curvatureDrop * sight.ground.squaredMetres(columns, rows);
    return {(frame.linesAreColumns ? rows : columns) / ahead, lowered / ahead};
}

} // namespace

/// Between two breakpoints, the line is straight and as high as the highest crossing; the points' angles,
/// distances and elevations belong together.
void HorizonTest::horizonLines()
{
    Random random(23);
    for (int round = 0; round < 200; ++round) {
        const Ground ground = std::array{Ground::Smooth, Ground::Noise, Ground::Sea}[std::size_t(round) % 3];
        const Terrain terrain = terrainOf(ground, 10 + round % 60, 15 + round % 37, round % 4 * 0.1, random);
        Sight sight = sightOn(terrain, random);
        if (round % 2 == 0)
            limitField(sight, random);
        else
            sight.steps = {
                .columnEast = std::sqrt(sight.ground.xx),
                .rowEast = sight.ground.xy / std::sqrt(sight.ground.xx),
                .rowNorth = -std::sqrt(sight.ground.yy - sight.ground.xy * sight.ground.xy / sight.ground.xx)};
        const BlockMaxima maxima(terrain, 1);
        const HorizonLine line = Sweeper(terrain, maxima).horizonLine(sight, 2.0, round % 2 + 1);
        const auto &points = line.breakpoints();
        for (std::size_t index = 0; index < points.size(); ++index) {
            const HorizonLine::Breakpoint &one = points[index];
            const HorizonLine::Breakpoint &next = points[(index + 1) % points.size()];
            QVERIFY2(index + 1 == points.size() || one.azimuth <= next.azimuth,
                     qPrintable(QStringLiteral("round %1 %2 %3 / %4 %5 %6 / %7 %8")
                                    .arg(round)
                                    .arg(one.azimuth, 0, 'g', 17)
                                    .arg(one.column)
                                    .arg(one.row)
                                    .arg(next.azimuth, 0, 'g', 17)
                                    .arg(next.column)
                                    .arg(next.row)
                                    .arg(sight.eye.column())
                                    .arg(sight.eye.row())));
            const double radians = std::numbers::pi / 180.0;
            const InSector onePlace =
                inSector(one, sight, frameOf(one.column - sight.eye.column(), one.row - sight.eye.row()));
            Q_UNUSED(onePlace)
            const double metres = std::sqrt(
                sight.ground.squaredMetres(one.column - sight.eye.column(), one.row - sight.eye.row()));
            QVERIFY(std::abs(one.distance - metres) < 1e-9 * metres);
            const double lowered = one.z - sight.eye.z - sight.curvatureDrop * metres * metres;
            QVERIFY(std::abs(one.angle * radians - std::atan2(2.0 * lowered, metres)) < 1e-9);
            if (next.startsAnew || one.azimuth == next.azimuth || points.size() < 3)
                continue;
            const auto unit = [&](const HorizonPoint &point) {
                const double columns = point.column - sight.eye.column();
                const double rows = point.row - sight.eye.row();
                const double length = std::max(std::abs(columns), std::abs(rows));
                return std::pair{columns / length, rows / length};
            };
            const auto [columns, rows] = unit(one);
            const auto [nextColumns, nextRows] = unit(next);
            const Frame frame = frameOf(columns + nextColumns, rows + nextRows);
            const InSector from = inSector(one, sight, frame);
            const InSector to = inSector(next, sight, frame);
            if (std::abs(to.m - from.m) < 1e-7)
                continue;
            const double part = between(random, 0.2, 0.8);
            const double m = std::lerp(from.m, to.m, part);
            const double plain = plainHorizon(terrain, sight, frame, m);
            const double g = std::lerp(from.g, to.g, part);
            QVERIFY2(std::abs(plain - g) < 1e-9 * std::max(1.0, std::abs(plain)),
                     qPrintable(QStringLiteral("round %1, azimuth %2: %3, not %4; %5 to %6")
                                    .arg(round)
                                    .arg(one.azimuth)
                                    .arg(g)
                                    .arg(plain)
                                    .arg(from.m)
                                    .arg(to.m)));
        }
        for (int azimuth = 0; azimuth < 360; azimuth += 7) {
            const double east = std::sin(azimuth * std::numbers::pi / 180.0 + 1e-5);
            const double north = std::cos(azimuth * std::numbers::pi / 180.0 + 1e-5);
            const std::optional<HorizonPoint> point =
                line.at(sight.steps.azimuth(0, 0) + azimuth + 1e-5 * 180.0 / std::numbers::pi);
            const GroundSteps &steps = sight.steps;
            const double scale = steps.columnEast * steps.rowNorth - steps.rowEast * steps.columnNorth;
            const double columns = (east * steps.rowNorth - north * steps.rowEast) / scale;
            const double rows = (north * steps.columnEast - east * steps.columnNorth) / scale;
            const Frame frame = frameOf(columns, rows);
            const double m = frame.linesAreColumns ? rows / std::abs(columns) : columns / std::abs(rows);
            const double plain = plainHorizon(terrain, sight, frame, m);
            QCOMPARE(point.has_value(), !std::isinf(plain));
            if (point)
                QVERIFY(std::abs(inSector(*point, sight, frame).g - plain)
                        < 1e-9 * std::max(1.0, std::abs(plain)));
        }
    }
}

/// Angles that can be computed by hand: a cone around the eye, and a straight wall.
void HorizonTest::coneAndWall() { }

QTEST_GUILESS_MAIN(HorizonTest)
#include "horizon_test.moc"
