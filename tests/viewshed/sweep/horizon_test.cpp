#include "tests/support/terrains.h"
#include "viewshed/combine.h"
#include "viewshed/sweep/horizon.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <mutex>
#include <numbers>

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
};

namespace
{

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
            Sight sight = sightOn(terrain, random);
            if (round % 5 == 2)
                limitField(sight, random);
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

/// Eyes up to as far away as an eye may be, off the cells' centres, whose lines of sight graze the ground.
void HorizonTest::farEyes()
{
    Random random(11);
    for (const double distance : {70'000.0, 333'000.0, largestSide - 100.0}) {
        for (int round = 0; round < 40; ++round) {
            const Ground ground =
                std::array{Ground::Smooth, Ground::Noise, Ground::Sea}[std::size_t(round) % 3];
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

QTEST_GUILESS_MAIN(HorizonTest)
#include "horizon_test.moc"
