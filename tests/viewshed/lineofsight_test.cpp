#include "viewshed/combine.h"
#include "viewshed/lineofsight.h"
#include "viewshed/options.h"
#include "viewshed/problem.h"

#include <QTest>

using namespace viewshed;

/// The plain reference on grids that can be checked by eye, the combination of observers, and the arguments.
class LineOfSightTest : public QObject
{
    Q_OBJECT

private slots:
    void grids_data();
    void grids();
    void curvature();
    void reachAndThreads();
    void combinations();
    void arguments_data();
    void arguments();
};

namespace
{

constexpr double none = noHeight;

Sight sightAt(double column, double row, double z, double targetHeight = 0.0)
{
    return {.eye = Eye::at(column, row, z), .targetHeight = targetHeight, .ground = {}};
}

/// The grid's rows, separated by blanks: '#' for a seen cell, '.' for any other.
QString drawn(const BitGrid &grid)
{
    QStringList rows;
    for (int row = 0; row < grid.height(); ++row) {
        QString text;
        for (int column = 0; column < grid.width(); ++column)
            text += grid.test(column, row) ? '#' : '.';
        rows += text;
    }
    return rows.join(' ');
}

} // namespace

Q_DECLARE_METATYPE(std::vector<double>)
Q_DECLARE_METATYPE(viewshed::Sight)

void LineOfSightTest::grids_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<std::vector<double>>("heights");
    QTest::addColumn<Sight>("sight");
    QTest::addColumn<QString>("seen");
    const auto row = [](const char *name, int width, const std::vector<double> &heights, const Sight &sight,
                        const char *seen) { QTest::newRow(name) << width << heights << sight << seen; };

    const std::vector<double> flat(9, 5.0);
    row("an eye in the plane: ties are seen", 3, flat, sightAt(1, 1, 5), "### ### ###");
    row("an eye below the ground sees its neighbours", 3, flat, sightAt(0, 0, 4), "##. ##. ...");
    row("an eye outside, over the edge", 3, flat, sightAt(-2, 1, 6), "### ### ###");
    row("an eye outside, below the edge", 3, flat, sightAt(-2, 1, 4), "#.. #.. #..");

    const std::vector<double> wall{0, 0, 9, 0, 0, 0, 0, 9, 0, 0, 0, 0, 9, 0, 0};
    row("a wall", 5, wall, sightAt(0, 1, 2), "###.. ###.. ###..");
    row("a wall, a target as high as the line", 5, wall, sightAt(0, 1, 2, 14), "####. ####. ####.");
    row("a wall from its top", 5, wall, sightAt(2, 1, 9), "##### ##### #####");

    const std::vector<double> pillar{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    row("a pillar", 5, pillar, sightAt(0, 2, 1), "##### ###.. ###.. ###.. #####");
    row("a pillar from a corner", 5, pillar, sightAt(0, 0, 1), "##### ##### ###.# ##... ###..");
    const std::vector<double> pit{5, 5, 5, 5, 5, 5, 0, 5, 5, 5, 5, 5, 5, 5, 5};
    row("a pit", 5, pit, sightAt(3, 1, 6), "##### #.### #####");
    const std::vector<double> dip{0, 0, 4, 0, 1, 9, 11, 0};
    row("a dip behind a ridge", 8, dip, sightAt(0, 0, 1), "###..##.");
    row("off the centre, the line passes between the posts", 3, {0, 0, 0, 9, none, 9, 0, 0, 0},
        sightAt(1.25, 0, 1), "### #.# ###");
    row("off the centre, beside a post", 3, {0, 0, 0, 0, 9, 0, 0, 0, 0}, sightAt(1.5, 0, 1), "### .## ...");

    row("one row hides, too", 5, {0, 0, 9, 0, 0}, sightAt(0, 0, 1), "###..");
    row("one column hides, too", 1, {0, 0, 9, 0, 0}, sightAt(0, 0, 1), "# # # . .");
    row("a cell alone hides nothing", 3, {0, none, 0, none, 9, none, 0, none, 0}, sightAt(0, 0, 1),
        "#.# .#. #.#");
    row("an edge with one cell hides nothing", 4, {0, 0, 0, 0, 0, 9, 0, 0, 0, none, 0, 0}, sightAt(0, 1.5, 1),
        "#... #### #.##");
    row("an eye on a cell without data", 4, {none, 0, 9, 0}, sightAt(0, 0, 1), ".##.");
}

void LineOfSightTest::grids()
{
    QFETCH(int, width);
    QFETCH(std::vector<double>, heights);
    QFETCH(Sight, sight);
    const Terrain terrain(width, static_cast<int>(heights.size()) / width, heights);
    QTEST(drawn(plainViewshed(terrain, sight, 1)), "seen");
}

/// Over water, a target of height h is in sight as far as the sum of both horizons reaches:
/// sqrt(h / curvatureDrop) + sqrt(eye / curvatureDrop).
void LineOfSightTest::curvature()
{
    const Terrain sea(1001, 1, std::vector<double>(1001, 0.0)); // cells of 100 m
    Sight sight = sightAt(0, 0, 20, 100);
    sight.ground = {.xx = 1e4, .xy = 0.0, .yy = 1e4};
    sight.curvatureDrop = 0.85714 / (2.0 * 6378137.0);
    const double horizon =
        (std::sqrt(20.0 / sight.curvatureDrop) + std::sqrt(100.0 / sight.curvatureDrop)) / 100.0;
    const BitGrid seen = plainViewshed(sea, sight, 1);
    for (int column = 0; column <= 1000; ++column) {
        if (std::abs(column - horizon) > 1.0)
            QCOMPARE(seen.test(column, 0), column < horizon);
    }
}

void LineOfSightTest::reachAndThreads()
{
    const Terrain flat(7, 5, std::vector<double>(35, 0.0));
    Sight sight = sightAt(3, 2, 1);
    sight.reach = 20.0;
    sight.ground = {.xx = 100.0, .xy = 0.0, .yy = 400.0}; // cells of 10 m by 20 m
    for (const int threads : {1, 2, 9})
        QCOMPARE(drawn(plainViewshed(flat, sight, threads)),
                 QStringLiteral("....... ...#... .#####. ...#... ......."));
    QCOMPARE(windowOf(sight, 7, 5), (Window{.left = 0, .top = 0, .width = 7, .height = 5}));
    sight.eye = Eye::at(500.5, 40.0, 1);
    QCOMPARE(windowOf(sight, 1000, 60), (Window{.left = 448, .top = 38, .width = 56, .height = 5}));
    sight.eye = Eye::at(-20.0, 40.0, 1);
    QCOMPARE(windowOf(sight, 1000, 60), Window());
    // On a sheared grid, the disc contains more cells along the diagonal that is short on the ground.
    sight.ground = {.xx = 200.0, .xy = 100.0, .yy = 200.0};
    sight.eye = Eye::at(10.0, 10.0, 1);
    QVERIFY(sight.reaches(9, 11) && !sight.reaches(11, 11));
}

void LineOfSightTest::combinations()
{
    // Two observers in a row of 200 cells: the second sees the columns 70 to 74 of its window, and reaches 68
    // to 76.
    const Window window{.left = 64, .top = 0, .width = 64, .height = 1};
    Sight sight = sightAt(72 - 64, 0, 0);
    sight.reach = 4.0;
    BitGrid seen(64, 1);
    for (int column = 70; column <= 74; ++column)
        seen.set(column - 64, 0, true);
    BitGrid before(200, 1);
    for (const int column : {3, 69, 72, 90, 150})
        before.set(column, 0, true);

    const auto after = [&](Combination how) {
        BitGrid picture = before;
        combine(picture, seen, window, sight, how);
        QList<int> columns;
        for (int column = 0; column < 200; ++column) {
            if (picture.test(column, 0))
                columns += column;
        }
        return columns;
    };
    QCOMPARE(after(Combination::Overwrite), (QList<int>{3, 70, 71, 72, 73, 74, 90, 150}));
    QCOMPARE(after(Combination::Or), (QList<int>{3, 69, 70, 71, 72, 73, 74, 90, 150}));
    QCOMPARE(after(Combination::And), (QList<int>{72}));
}

void LineOfSightTest::arguments_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("outcome"); // part of the problem; empty if the line is valid
    const QString files = QStringLiteral("-SrcFile a -DstFile b -point_file c");
    const auto row = [](const char *name, const QString &line, const char *outcome) {
        QTest::newRow(name) << line << QString(outcome);
    };
    row("least", files, "");
    row("all, in another order",
        "-cc 0 -co A=1 -CNoData 1 2 3 -SH -2.5e0 -point_file c -COZ 0 255 0 -co B= -CNOZ 9 9 9 -DstOp AND "
        "-iBand 2 -DstFile b -SrcFile a",
        "");
    row("help needs nothing", "--help", "");
    row("no points", "-SrcFile a -DstFile b", "-point_file");
    row("no source", "-DstFile b -point_file c", "-SrcFile");
    row("unknown", files + " -x", "\"-x\"");
    row("no value", files + " -SH", "-SH");
    for (const char *wrong : {"-SH 1,5", "-SH nan", "-SH 1e999", "-iBand 0", "-iBand 1.5", "-DstOp XOR",
                              "-COZ 1 2", "-COZ 1 2 256", "-CNOZ -1 2 3", "-co TILED", "-co =A"})
        QTest::newRow(wrong) << files + ' ' + wrong << QString(wrong).section(' ', 0, 0);
}

void LineOfSightTest::arguments()
{
    QFETCH(QString, line);
    QFETCH(QString, outcome);
    std::vector<std::string> list;
    for (const QString &argument : line.split(' '))
        list.push_back(argument.toStdString());
    QString text;
    Options options;
    try {
        options = parsedOptions(list);
    } catch (const Problem &problem) {
        text = problem.what();
    }
    QCOMPARE(text.isEmpty(), outcome.isEmpty());
    QVERIFY2(text.contains(outcome), qPrintable(text));
    if (list.size() > 9 && outcome.isEmpty()) {
        QCOMPARE(options.source + options.destination + options.pointFile, std::string("abc"));
        QCOMPARE(options.band, 2);
        QCOMPARE(options.combination, Combination::And);
        QCOMPARE(options.targetHeight, -2.5);
        QCOMPARE(options.curvature, 0.0);
        QCOMPARE(options.creationOptions, (std::vector<std::string>{"A=1", "B="}));
        QVERIFY(options.seen == (Color{0, 255, 0}) && options.hidden == (Color{9, 9, 9})
                && options.noData == (Color{1, 2, 3}));
    }
}

QTEST_GUILESS_MAIN(LineOfSightTest)
#include "lineofsight_test.moc"
