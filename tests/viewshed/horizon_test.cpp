#include "viewshed/combine.h"
#include "viewshed/horizon.h"

#include <QTest>

#include <algorithm>
#include <array>
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

QTEST_GUILESS_MAIN(HorizonTest)
#include "horizon_test.moc"
