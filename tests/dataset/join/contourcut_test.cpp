#include "dataset/join/contourcut.h"

#include "dataset/join/contourwindow.h"

#include <QStringList>
#include <QTest>

#include <cmath>

namespace
{

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double tolerance = 1e-3;

QVector<QPointF> line(const QString &text)
{
    QVector<QPointF> points;
    for (const QString &point : text.split(',')) {
        const QStringList numbers = point.split(' ', Qt::SkipEmptyParts);
        points += QPointF(numbers[0].toDouble(), numbers[1].toDouble());
    }
    return points;
}

/// "W 0 1, 2 3 E" for a piece from the west to the east side; pieces are separated by "; ".
QString text(const QVector<LinePiece> &pieces)
{
    const auto side = [](CutSide at) { return QString("-WSEN").at(static_cast<int>(at)); };
    QStringList texts;
    for (const LinePiece &piece : pieces) {
        QStringList points;
        for (const QPointF &point : piece.points)
            points += QString::number(point.x(), 'g', 6) + ' ' + QString::number(point.y(), 'g', 6);
        texts += side(piece.first) + ' ' + points.join(", ") + ' ' + side(piece.last);
    }
    return texts.join("; ");
}

} // namespace

/// The cutting of lines at the sides of a tile, and the tile's window.
class ContourCutTest : public QObject
{
    Q_OBJECT

private slots:
    void piecesEndAtTheSides_data();
    void piecesEndAtTheSides();
    void neighboursShareALineOfCells();
};

void ContourCutTest::piecesEndAtTheSides_data()
{
    QTest::addColumn<QString>("uncut");
    QTest::addColumn<QString>("pieces");
    const auto row = [](const char *name, const char *uncut, const char *pieces) {
        QTest::newRow(name) << QString(uncut) << QString(pieces);
    };
    // The rectangle reaches from 0 0 to 10 10.
    row("inside", "1 1, 9 9, 5 2", "- 1 1, 9 9, 5 2 -");
    row("closed inside", "1 1, 9 1, 9 9, 1 1", "- 1 1, 9 1, 9 9, 1 1 -");
    row("outside", "-5 5, 3 -9, 21 -5, 12 20", "");
    row("past a corner", "-5 4, 4 -5", "");
    row("over a corner", "-2 4, 4 -2", "W 0 2, 2 0 S");
    row("straight through", "-5 5, 15 5", "W 0 5, 10 5 E");
    row("out and in beside a corner", "5 5, 15 12, 12 15, 5 5", "N 8.5 10, 5 5, 10 8.5 E");
    row("in and out again", "5 5, 5 12, 7 12, 7 8, 12 8", "- 5 5, 5 10 N; N 7 10, 7 8, 10 8 E");
    row("ends at vertices on a side", "10.5 5, 10 5, 5 4, 3 0, 3 -0.5", "E 10 5, 5 4, 3 0 S");
    row("vertices within the tolerance stay", "11 5, 10.0005 5, 5 5, 0.0005 6, -1 6",
        "E 10.0005 5, 5 5, 0.0005 6 W");
    row("begins within the tolerance", "10.0005 5, 5 5, 4 4", "- 10.0005 5, 5 5, 4 4 -");
    row("its own end on a side is no cut", "10 5, 5 5, 4 4", "- 10 5, 5 5, 4 4 -");
    row("along a side", "10.5 2, 10 2, 10.0005 5, 10 8, 10.5 8", "E 10 2, 10.0005 5, 10 8 E");
    row("around a cell on a side", "10.5 5, 10 5, 9.9999 5, 10 5, 10.5 5", "E 10 5, 9.9999 5, 10 5 E");
    row("around a corner", "10.5 10, 10 10, 10 9.9999, 10 10.5", "E 10 10, 10 9.9999 N");
    row("touches a side from outside", "12 5, 10 6, 12 7", "");
    row("touches a side from inside", "5 5, 10 6, 5 7", "- 5 5, 10 6, 5 7 -");
    row("closed, and closes inside", "5 5, 12 5, 12 7, 5 7, 5 5", "E 10 7, 5 7, 5 5, 10 5 E");
    row("closed, and closes outside", "12 7, 5 7, 5 5, 12 5, 12 7", "E 10 7, 5 7, 5 5, 10 5 E");
}

void ContourCutTest::piecesEndAtTheSides()
{
    QFETCH(const QString, uncut);
    QFETCH(const QString, pieces);
    QCOMPARE(text(cutLine(line(uncut), {0.0, 0.0, 10.0, 10.0}, tolerance)), pieces);
    QCOMPARE(text(cutLine(line(uncut), {}, tolerance)), text({{line(uncut)}}));
}

void ContourCutTest::neighboursShareALineOfCells()
{
    const std::array<double, 6> toGround{1000.0, 10.0, 0.0, 5000.0, 0.0, -20.0};
    const QSize dem(300, 200);
    const ContourWindow middle = contourWindow(dem, {100, 50, 120, 90}, toGround);
    QCOMPARE(middle.cells, QRect(100, 50, 121, 91));
    QVERIFY((middle.keep == CutSides{2005.0, 2190.0, 3205.0, 3990.0}));
    const ContourWindow corner = contourWindow(dem, {220, 140, 80, 60}, toGround);
    QCOMPARE(corner.cells, QRect(220, 140, 80, 60));
    QVERIFY((corner.keep == CutSides{3205.0, -infinite, infinite, 2190.0}));
    QVERIFY(contourWindow(dem, {0, 0, 300, 200}, toGround).keep == CutSides());
}

QTEST_GUILESS_MAIN(ContourCutTest)
#include "contourcut_test.moc"
