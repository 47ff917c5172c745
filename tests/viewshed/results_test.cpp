#include "tests/support/terrains.h"
#include "viewshed/observergroups.h"
#include "viewshed/seenarea.h"
#include "viewshed/sightcounter.h"
#include "viewshed/sweep/heightgrid.h"
#include "viewshed/sweep/horizon.h"

#include <QTest>

#include <set>

using namespace viewshed;

/// What several observers find together: counts, heights, areas, and which of them share the elevations in
/// memory.
class ResultsTest : public QObject
{
    Q_OBJECT

private slots:
    void counts();
    void heights();
    void areas();
    void sectors_data();
    void sectors();
    void groups();
};

namespace
{

BitGrid randomBits(int width, int height, Random &random)
{
    BitGrid bits(width, height);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column)
            bits.set(column, row, between(random, 0.0, 1.0) < 0.7);
    }
    return bits;
}

} // namespace

/// More observers than an 8-bit number counts, in windows of all kinds.
void ResultsTest::counts()
{
    constexpr int width = 200;
    constexpr int height = 9;
    constexpr std::size_t observers = 300;
    Random random(1);
    SightCounter counter(width, height);
    counter.makeRoom(observers);
    std::vector<std::uint32_t> expected(std::size_t(width) * height);
    const Window windows[] = {
        {0, 0, width, height}, {64, 2, 70, 5}, {128, 0, 72, 1}, {64, 8, 1, 1}, {0, 3, 64, 6}};
    for (std::size_t observer = 0; observer < observers; ++observer) {
        const Window &window = windows[observer < 280 ? 0 : observer % 5];
        const BitGrid seen = randomBits(window.width, window.height, random);
        const int middle = window.top + window.height / 2;
        counter.add(seen, window, window.top, middle);
        counter.add(seen, window, middle, window.top + window.height);
        for (int row = 0; row < window.height; ++row) {
            for (int column = 0; column < window.width; ++column)
                expected[static_cast<std::size_t>((window.top + row) * width + window.left + column)] +=
                    seen.test(column, row) ? 1 : 0;
        }
    }
    std::vector<std::uint32_t> counts(std::size_t(width) * height);
    for (int row = 0; row < height; ++row)
        counter.readRow(row, counts.data() + std::ptrdiff_t(row) * width);
    QCOMPARE(counts, expected);
    QVERIFY(*std::max_element(counts.begin(), counts.end()) < observers);
}

void ResultsTest::heights()
{
    constexpr auto never = static_cast<float>(neverSeen);
    const Window whole{.left = 0, .top = 0, .width = 4, .height = 2};
    const HeightTarget target{.left = 1, .top = 0, .firstRow = 1, .endRow = 2, .contended = false};
    HeightGrid lowest(whole, never);
    const double first[] = {0.7, 5.0, noHeight};
    const double second[] = {3.0, neverSeen, 4.0};
    lowest.lower({.column = 0, .row = 1, .count = 3}, first, target);
    lowest.lower({.column = 0, .row = 0, .count = 3}, first, target); // outside the rows that count
    lowest.lower({.column = 0, .row = 1, .count = 3}, second, target);
    QVERIFY(lowest.row(0)[1] == never && lowest.row(1)[0] == never);
    // A target as high as the float says is not below the limit; the float nearest to 0.7 would be.
    QVERIFY(double(lowest.row(1)[1]) >= 0.7 && double(lowest.row(1)[1]) < 0.7 + 1e-7);
    QCOMPARE(lowest.row(1)[2], 5.0F);
    QCOMPARE(lowest.row(1)[3], 4.0F);

    HeightGrid either(whole, never);
    HeightGrid both(whole, 0.0F);
    HeightGrid part({.left = 2, .top = 1, .width = 2, .height = 1}, 1.0F);
    for (const HeightGrid *grid : {&lowest, &part}) {
        either.combine(*grid, HeightGrid::Choice::Lower);
        both.combine(*grid, HeightGrid::Choice::Greater);
    }
    QVERIFY(either.row(1)[1] == lowest.row(1)[1] && either.row(1)[2] == 1.0F && either.row(0)[0] == never);
    QVERIFY(both.row(1)[1] == never && both.row(1)[2] == 5.0F && both.row(0)[2] == never);
}

void ResultsTest::areas()
{
    const Terrain terrain(3, 3, {1, 1, 1, 1, noHeight, 1, 1, 1, 1});
    Sight sight;
    sight.eye = Eye::at(0, 0, 5);
    sight.reach = 2.1;
    const Window window{.left = 0, .top = 0, .width = 3, .height = 3};
    const BitGrid reached = reachedCells(terrain, sight, window);
    QCOMPARE(areaOf(reached, 10, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 10, 1}), 311.0);
    SeenArea area;
    BitGrid seen(3, 3);
    seen.set(2, 0, true);
    seen.set(0, 1, true);
    addFarthest(area, seen, {.left = 64, .top = 7, .width = 3, .height = 3}, [&] {
        Sight moved = sight;
        moved.eye = Eye::at(64, 7, 5);
        return moved;
    }());
    QVERIFY(area.farthest == 2.0 && area.farthestColumn == 66 && area.farthestRow == 7);
}

void ResultsTest::sectors_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<QString>("reached"); // of 3 × 3 cells around an eye, row by row
    QTest::newRow("all") << 0.0 << 0.0 << "#########";
    QTest::newRow("half-open") << 45.0 << 90.0 << "..#.#....";
    QTest::newRow("the next one") << 90.0 << 135.0 << "....##...";
    QTest::newRow("across north") << 315.0 << 45.0 << "##..#....";
    QTest::newRow("west") << 225.0 << 316.0 << "#..##.#..";
}

void ResultsTest::sectors()
{
    QFETCH(double, from);
    QFETCH(double, to);
    Sight sight;
    sight.eye = Eye::at(1, 1, 0);
    sight.field.fromAzimuth = from;
    sight.field.toAzimuth = to;
    QString reached;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            reached += sight.reaches(column, row) ? '#' : '.';
    }
    QTEST(reached, "reached");
}

void ResultsTest::groups()
{
    // Two crowds far apart, given in turn, and an observer who reaches nothing.
    std::vector<Window> windows;
    windows.reserve(21);
    for (int index = 0; index < 20; ++index)
        windows.push_back({index % 2 * 64'000, index * 10, 256, 256});
    windows.push_back({});
    const auto all = observerGroups(windows, GroupOrder::ByPlace, 1e12);
    QCOMPARE(all.size(), std::size_t(2));
    std::set<std::size_t> seen;
    for (const ObserverGroup &group : all) {
        for (const std::size_t observer : group.observers) {
            QVERIFY(group.window.holds(windows[observer]) || windows[observer].width == 0);
            seen.insert(observer);
        }
    }
    QCOMPARE(seen.size(), windows.size());
    // In a fixed order, each must be read anew; with little memory, too.
    QCOMPARE(observerGroups(windows, GroupOrder::Fixed, 1e12).size(), std::size_t(20));
    for (const ObserverGroup &group : observerGroups(windows, GroupOrder::ByPlace, 256 * 270))
        QVERIFY(group.window.width * group.window.height <= 256 * 270 && group.observers.size() <= 3);
    QCOMPARE(observerGroups({{}, {}}, GroupOrder::ByPlace, 1e12).size(), std::size_t(1));
}

QTEST_GUILESS_MAIN(ResultsTest)
#include "results_test.moc"
