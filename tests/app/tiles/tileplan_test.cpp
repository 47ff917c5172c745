#include "app/tiles/makeplan.h"
#include "app/tiles/tilejoin.h"
#include "app/tiles/tilemarks.h"
#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

class TilePlanTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void grid();
    void shares();
    void planAndFile();
    void stamps();
    void recipes();
    void damagedPlans();
    void marks();
    void manyTiles();

private:
    QTemporaryDir m_folder;
};

namespace
{

/// A plan of 10 x 7 cells in tiles of 4, from two inputs side by side.
TilePlan smallPlan()
{
    TilePlan plan;
    plan.recipe.process = QStringLiteral("slope");
    plan.recipe.input = QStringLiteral("/dem é.vrt");
    plan.recipe.options = SlopeOptions();
    plan.grid = {{10, 7}, 4};
    plan.margin = 1;
    plan.program = QStringLiteral("1");
    plan.tool = QStringLiteral("GDAL");
    plan.inputs = {
        {QStringLiteral("/west \"é\".tif"), 10, QStringLiteral("2026-01-01T00:00:00.000Z"), {0, 0, 5, 7}},
        {QStringLiteral("/east.tif"), 20, QStringLiteral("2026-01-02T00:00:00.000Z"), {5, 0, 5, 7}}};
    return plan;
}

QStringList stampsOf(const TilePlan &plan)
{
    QStringList stamps;
    PlannedTiles tiles(plan);
    for (qint64 tile = 0; tile < plan.grid.count(); ++tile)
        stamps += tiles.tile(tile).stamp;
    return stamps;
}

} // namespace

void TilePlanTest::grid()
{
    const TileGrid grid{{10, 7}, 4};
    QCOMPARE(grid.count(), 6LL);
    QCOMPARE(grid.window(0), QRect(0, 0, 4, 4));
    QCOMPARE(grid.window(5), QRect(8, 4, 2, 3));
    QCOMPARE(grid.name(5), QStringLiteral("r0001_c0002"));
    QCOMPARE((TileGrid{{3, 2}, 4096}.window(0)), QRect(0, 0, 3, 2));
}

void TilePlanTest::shares()
{
    for (const auto &[tiles, tasks] : {QPair<qint64, int>{9, 4}, {3, 7}, {1000000, 999}}) {
        qint64 next = 0;
        for (int task = 0; task < tasks; ++task) {
            const TileShare share = shareOf(tiles, task, tasks);
            QCOMPARE(share.begin, next);
            QVERIFY(share.end - share.begin <= tiles / tasks + 1);
            next = share.end;
        }
        QCOMPARE(next, tiles);
    }
    const TaskNumber number = readTaskNumber(QStringLiteral("3/4"));
    QVERIFY(number.isValid && number.task == 3 && number.tasks == 4);
    for (const char *bad : {"4/4", "-1/4", "1", "1/2/3", "a/4", "1/"})
        QVERIFY2(!readTaskNumber(QString::fromLatin1(bad)).isValid, bad);
}

void TilePlanTest::planAndFile()
{
    const TilePlan plan = smallPlan();
    const QString file = planFile(m_folder.path());
    QCOMPARE(writePlan(file, plan), QString());
    const PlanReading reading = readPlan(file);
    QCOMPARE(reading.problem, QString());
    QVERIFY(reading.plan == plan);
    QCOMPARE(stampsOf(reading.plan), stampsOf(plan));

    PlannedTiles tiles(plan);
    QCOMPARE(tiles.tile(0).inputs, QVector<int>{0});
    QCOMPARE(tiles.tile(1).inputs, (QVector<int>{0, 1})); // a cell of the first one is a neighbour
    QCOMPARE(tiles.tile(2).inputs, QVector<int>{1});

    // A plan that says the same is not written again, so that what depends on the file stays as it is.
    const QDateTime before = QFileInfo(file).lastModified();
    QTest::qSleep(20);
    QCOMPARE(writePlan(file, plan), QString());
    QCOMPARE(QFileInfo(file).lastModified(), before);
    TilePlan other = plan;
    other.inputs[1].size = 21;
    QCOMPARE(writePlan(file, other), QString());
    QVERIFY(QFileInfo(file).lastModified() != before && readPlan(file).plan == other);
    QVERIFY(!writePlan(m_folder.filePath("no/such/plan.jsonl"), plan).isEmpty());
}

void TilePlanTest::stamps()
{
    const TilePlan plan = smallPlan();
    const QStringList before = stampsOf(plan);
    TilePlan changed = plan;
    changed.inputs[0].time = QStringLiteral("2026-02-01T00:00:00.000Z");
    const QStringList west = stampsOf(changed);
    for (int tile = 0; tile < before.size(); ++tile)
        QCOMPARE(west.at(tile) != before.at(tile),
                 tile % 3 < 2); // the last column reads the second input alone

    changed = plan;
    changed.recipe.options = SlopeOptions{.percent = true};
    QVERIFY(stampsOf(changed).first() != before.first());
    changed = plan;
    changed.tool = QStringLiteral("GDAL 4");
    QVERIFY(stampsOf(changed).first() != before.first());
    changed = plan;
    changed.grid.side = 5;
    QVERIFY(stampsOf(changed).first() != before.first());
}

void TilePlanTest::recipes()
{
    // What the joining would lose in silence is refused.
    const QVector<ProcessOptions> refused{SlopeOptions{.classes = QStringLiteral("avalanche")},
                                          AspectOptions{.directions = 8},
                                          ContourOptions{.interval = 10.0, .indexEvery = 5},
                                          ContourOptions{.interval = 10.0, .shortestRing = 9.0},
                                          ContourOptions{.interval = 10.0, .polygons = true},
                                          ContourOptions{.interval = 10.0, .styled = true},
                                          ContourOptions{.interval = 10.0, .qgisStyle = true}};
    for (const ProcessOptions &options : refused)
        QVERIFY2(!tilesProblem({.options = options}).isEmpty(), qPrintable(processWord(options)));
    for (const ProcessOptions &options : {ProcessOptions(SlopeOptions()), ProcessOptions(AspectOptions()),
                                          ProcessOptions(ColorReliefOptions{.shaded = true})})
        QVERIFY2(tilesProblem({.options = options}).isEmpty(), qPrintable(processWord(options)));

    const Recipe smoothed{.options = ContourOptions{.interval = 10.0, .smoothing = 4}};
    QCOMPARE(tilesProblem(smoothed), QString());
    const QString dem = m_folder.filePath("hill.tif");
    QVERIFY(writeHill(dem, 12));
    WorkFolder workFolder;
    const TilePlanning planning =
        makePlan({smoothed, {dem}, m_folder.path(), 16}, workFolder, [] { return false; });
    QCOMPARE(planning.problem, QString());
    QCOMPARE(planning.plan.margin, 5); // cells that the smoothing reads, and one for the lines
}

void TilePlanTest::damagedPlans()
{
    const QString file = m_folder.filePath("bad.jsonl");
    QVERIFY(readPlan(file).problem.contains(file));
    QCOMPARE(writePlan(file, smallPlan()), QString());
    const QByteArray good = bytesOf(file);
    const auto lines = good.split('\n');
    for (const QByteArray &bad :
         {QByteArray(), QByteArray("{}\n"), QByteArray("[1]\n"), lines.at(0) + '\n',
          lines.at(0) + '\n' + lines.at(1) + '\n', good.left(100), QByteArray("\0\xff{", 3),
          QByteArray(good).replace("\"tileSize\":4", "\"tileSize\":0")}) {
        writeFile(file, bad);
        QVERIFY2(!readPlan(file).problem.isEmpty(), bad.constData());
    }
}

void TilePlanTest::marks()
{
    const TilePlan plan = smallPlan();
    const QString folder = m_folder.path();
    QCOMPARE(makeTileFolders(folder), QString());
    PlannedTiles tiles(plan);
    PlannedTile tile = tiles.tile(1);
    const QString product = tileProduct(folder, tile.name, QStringLiteral("tif"));
    QVERIFY(!isTileDone(folder, tile, product));
    writeFile(product, "cells");
    QVERIFY(!isTileDone(folder, tile, product));
    QCOMPARE(markTile(folder, tile, product), QString());
    QVERIFY(isTileDone(folder, tile, product));
    QCOMPARE(finishedTiles(folder, plan).products, QStringList{product});
    QCOMPARE(finishedTiles(folder, plan).missing.size(), 5);
    const QString stamp = tile.stamp;
    tile.stamp = QStringLiteral("0");
    QVERIFY(!isTileDone(folder, tile, product));
    tile.stamp = stamp;
    writeFile(product, "other cells");
    QVERIFY(!isTileDone(folder, tile, product));
}

/// Every line of a large plan is the tile that its number stands for.
void TilePlanTest::manyTiles()
{
    TilePlan plan = smallPlan();
    constexpr int side = 300;
    plan.grid = {{side * 16, side * 16}, 16};
    plan.inputs.clear();
    for (int at = 0; at < 400; ++at)
        plan.inputs +=
            {QStringLiteral("/%1.tif").arg(at), 1, QString(), QRect(at % 20 * 240, at / 20 * 240, 240, 240)};
    const QString file = m_folder.filePath("many.jsonl");
    QCOMPARE(writePlan(file, plan), QString());
    const PlanReading reading = readPlan(file);
    QVERIFY(reading.plan == plan);
    QCOMPARE(bytesOf(file).count('\n'), 1 + 400 + side * side);
    PlannedTiles tiles(reading.plan);
    const PlannedTile tile = tiles.tile(side * side - 1);
    QCOMPARE(tile.inputs, QVector<int>{399});
    QVERIFY(bytesOf(file).contains(tile.stamp.toLatin1()));
}

QTEST_APPLESS_MAIN(TilePlanTest)
#include "tileplan_test.moc"
