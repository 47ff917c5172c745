#include "dataset/join/LineJoiner.h"

#include <QStringList>
#include <QTest>

#include <utility>

namespace
{

constexpr auto none = CutSide::None;
constexpr auto west = CutSide::West;
constexpr auto south = CutSide::South;
constexpr auto east = CutSide::East;
constexpr auto north = CutSide::North;

struct TileLines
{
    CutSides keep;
    QVector<LinePiece> pieces;
};

/// Joins the lines of tiles and returns what is passed on after each tile and at the end, as "x y, x y", and
/// how many ends have no partner.
QStringList joined(const QVector<TileLines> &tiles)
{
    QStringList lines;
    LineJoiner joiner(0.1, [&lines](const QVector<QPointF> &points, double) {
        QStringList texts;
        for (const QPointF &point : points)
            texts += QString::number(point.x()) + ' ' + QString::number(point.y());
        lines += texts.join(", ");
    });
    QStringList all;
    const auto pass = [&] {
        lines.sort();
        all += std::exchange(lines, {}).join("; ");
    };
    for (const TileLines &tile : tiles) {
        joiner.beginTile(tile.keep);
        for (const LinePiece &piece : tile.pieces)
            joiner.add(piece, 5.0);
        joiner.endTile();
        pass();
    }
    const int unmatched = joiner.finish();
    pass();
    if (unmatched > 0)
        all += QString::number(unmatched);
    return all;
}

} // namespace

/// What is joined to what, and when it leaves the memory.
class LineJoinerTest : public QObject
{
    Q_OBJECT

private slots:
    void endsFindTheirPartners_data();
    void endsFindTheirPartners();
};

void LineJoinerTest::endsFindTheirPartners_data()
{
    QTest::addColumn<QVector<TileLines>>("tiles");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const QVector<TileLines> &tiles, const QStringList &lines) {
        QTest::newRow(name) << tiles << lines;
    };
    const CutSides left{.east = 0.0};
    const CutSides right{.west = 0.0};
    row("finished lines leave at once",
        {{left, {{{{-3, 1}, {-2, 2}}, none, none}, {{{-5, 3}, {-1, 3}, {0, 3}}, none, east}}},
         {{.west = 10.0}, {{{{15, 4}, {10, 4}}, none, west}}},
         {{.west = 0.0, .east = 10.0}, {{{{10, 4}, {5, 3}, {0, 3}}, east, west}}}},
        {"-3 1, -2 2", "", "15 4, 10 4, 5 3, 0 3, -1 3, -5 3", ""});
    row("what has no neighbour ends", {{left, {{{{-5, 3}, {0, 3}}, none, east}}}}, {"", "-5 3, 0 3", "1"});
    row("rings are closed exactly",
        {{left, {{{{0, 1}, {-5, 0}, {0, -1}}, east, east}}},
         {right, {{{{0, -1}, {5, 0}, {0, 1.0001}}, west, west}}}},
        {"", "0 1, -5 0, 0 -1, 5 0, 0 1", ""});
    row("places beside each other",
        {{left, {{{{-5, 0.0999}, {-1, 0}, {-0.0001, 0.0999}}, none, east}}},
         {right, {{{{0, 0.1001}, {5, 0}}, west, none}}}},
        {"", "-5 0.0999, -1 0, -0.0001 0.0999, 5 0", ""});
    row("above and below a cell",
        {{left, {{{{-5, 3}, {-1, 1}, {0, 0}}, none, east}, {{{-5, -3}, {-1, -1}, {0, 0}}, none, east}}},
         {right, {{{{0, 0}, {5, -3}}, west, none}, {{{0, 0}, {5, 3}}, west, none}}}},
        {"", "-5 -3, -1 -1, 0 0, 5 -3; -5 3, -1 1, 0 0, 5 3", ""});
    row("around a cell",
        {{left, {{{{0, 0.03}, {-0.03, 0}, {0, -0.03}}, east, east}}},
         {right, {{{{0, -0.03}, {5, -3}}, west, none}, {{{0, 0.03}, {5, 3}}, west, none}}}},
        {"", "5 3, 0 0.03, -0.03 0, 0 -0.03, 5 -3", ""});
    row("beside each other at a corner",
        {{{.south = 0.0, .east = 0.0}, {{{{-5, 5}, {-1, 1}, {0, 0}}, none, east}}},
         {{.west = 0.0, .north = 0.0}, {{{{0, 0}, {5, -7}}, west, none}}},
         {{.east = 0.0, .north = 0.0}, {{{{-5, -5}, {-1, -1}, {0, 0}}, none, east}}},
         {{.west = 0.0, .south = 0.0}, {{{{0, 0}, {5, 7}}, west, none}}}},
        {"", "", "-5 -5, -1 -1, 0 0, 5 -7", "-5 5, -1 1, 0 0, 5 7", ""});
    row("above each other at a corner",
        {{{.south = 0.0, .east = 0.0}, {{{{-5, 5}, {-1, 1}, {0, 0}}, none, south}}},
         {{.west = 0.0, .north = 0.0}, {{{{0, 0}, {5, -5}}, north, none}}},
         {{.west = 0.0, .south = 0.0}, {{{{5, 5}, {1, 1}, {0, 0}}, none, south}}},
         {{.east = 0.0, .north = 0.0}, {{{{0, 0}, {-5, -5}}, north, none}}}},
        {"", "", "5 5, 1 1, 0 0, 5 -5", "-5 5, -1 1, 0 0, -5 -5", ""});
}

void LineJoinerTest::endsFindTheirPartners()
{
    QFETCH(const QVector<TileLines>, tiles);
    QFETCH(const QStringList, lines);
    QCOMPARE(joined(tiles), lines);
}

Q_DECLARE_METATYPE(TileLines)
QTEST_GUILESS_MAIN(LineJoinerTest)
#include "linejoiner_test.moc"
