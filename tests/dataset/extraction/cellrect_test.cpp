#include "dataset/extraction/cellrect.h"

#include "dataset/gdalmessages.h"
#include "tests/support/rasters.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>

class CellRectTest : public QObject
{
    Q_OBJECT

private slots:
    void corners_data();
    void corners();
    void groundRectangles_data();
    void groundRectangles();
    void touched_data();
    void touched();
    void margins();
    void moves();
    void handles_data();
    void handles();
    void drags();
    void sizes();
};

Q_DECLARE_METATYPE(CellGrid)

namespace
{

const CellGrid northUp{{100, 50}, {1000.0, 10.0, 0.0, 5000.0, 0.0, -10.0}};
const CellGrid southUp{{100, 50}, {1000.0, 10.0, 0.0, 5000.0, 0.0, 10.0}};
const CellGrid westward{{100, 50}, {1000.0, -10.0, 0.0, 5000.0, 0.0, -20.0}};
/// Columns run to the north-east and rows to the south-east, by cells of 10 × √2.
const CellGrid rotated{{100, 50}, {1000.0, 10.0, 10.0, 5000.0, 10.0, -10.0}};

} // namespace

void CellRectTest::corners_data()
{
    QTest::addColumn<CellGrid>("grid");
    QTest::newRow("north up") << northUp;
    QTest::newRow("south up") << southUp;
    QTest::newRow("columns to the west") << westward;
    QTest::newRow("rotated") << rotated;
}

/// The corners of a rectangle lead back to it, in whatever order, and where they are off by less than half a
/// cell.
void CellRectTest::corners()
{
    QFETCH(CellGrid, grid);
    const QRect cells(3, 4, 20, 10);
    const QPointF first = groundOf(grid, QPointF(3, 4));
    const QPointF last = groundOf(grid, QPointF(23, 14));
    const QPointF other = groundOf(grid, QPointF(23, 4));
    const QPointF fourth = groundOf(grid, QPointF(3, 14));
    QCOMPARE(cellsBetween(grid, first, last), cells);
    QCOMPARE(cellsBetween(grid, last, first), cells);
    QCOMPARE(cellsBetween(grid, other, fourth), cells);
    QCOMPARE(cellsBetween(grid, groundOf(grid, {2.6, 4.4}), groundOf(grid, {23.4, 13.6})), cells);
    QCOMPARE(cellsBetween(grid, first, first), QRect(3, 4, 1, 1));
    QCOMPARE(cellsBetween(grid, first, {1e300, 1e300}).isValid(), true);
}

void CellRectTest::groundRectangles_data()
{
    QTest::addColumn<CellGrid>("grid");
    QTest::addColumn<QRect>("expected");
    // x from 1035 to 1100, y from 4880 to 4950
    QTest::newRow("north up") << northUp << QRect(3, 5, 7, 7);
    QTest::newRow("south up") << southUp << QRect(3, -12, 7, 7);
    QTest::newRow("columns to the west") << westward << QRect(-10, 2, 7, 4);
    QTest::newRow("rotated") << rotated << QRect(-5, 4, 8, 7);
}

void CellRectTest::groundRectangles()
{
    QFETCH(CellGrid, grid);
    QTEST(touchedCells(cellsAround(grid, QRectF(QPointF(1035, 4880), QPointF(1100, 4950)))), "expected");
}

void CellRectTest::touched_data()
{
    QTest::addColumn<QRectF>("cells");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("whole") << QRectF(2, 3, 4, 5) << QRect(2, 3, 4, 5);
    QTest::newRow("rounding") << QRectF(QPointF(1.9999, 3.0001), QPointF(6.0001, 7.9999)) << QRect(2, 3, 4, 5);
    QTest::newRow("parts") << QRectF(QPointF(1.9, 3.1), QPointF(6.1, 7.1)) << QRect(1, 3, 6, 5);
    QTest::newRow("a point") << QRectF(2.5, 3.5, 0, 0) << QRect(2, 3, 1, 1);
    QTest::newRow("a point on an edge") << QRectF(2, 3, 0, 0) << QRect(2, 3, 1, 1);
}

void CellRectTest::touched()
{
    QFETCH(QRectF, cells);
    QTEST(touchedCells(cells), "expected");
}

void CellRectTest::margins()
{
    const QSize grid(100, 50);
    QCOMPARE(withMargin({10, 10, 5, 5}, 3, grid), QRect(7, 7, 11, 11));
    QCOMPARE(withMargin({1, 48, 5, 2}, 3, grid), QRect(0, 45, 9, 5));
    QCOMPARE(onGrid({-5, 45, 10, 10}, grid), QRect(0, 45, 5, 5));
    QVERIFY(onGrid({100, 0, 5, 5}, grid).isEmpty());
}

void CellRectTest::moves()
{
    const QSize grid(100, 50);
    QCOMPARE(movedCells({10, 10, 20, 20}, {5, -3}, grid), QRect(15, 7, 20, 20));
    QCOMPARE(movedCells({10, 10, 20, 20}, {-50, 500}, grid), QRect(0, 30, 20, 20));
    QCOMPARE(movedCells({0, 0, 100, 50}, {5, 5}, grid), QRect(0, 0, 100, 50));
}

void CellRectTest::handles_data()
{
    QTest::addColumn<QPoint>("handle");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QRect>("expected"); // of (10, 10, 20, 20)
    QTest::newRow("left") << QPoint(-1, 0) << QPointF(12.4, 99) << QRect(12, 10, 18, 20);
    QTest::newRow("right") << QPoint(1, 0) << QPointF(12.6, 99) << QRect(10, 10, 3, 20);
    QTest::newRow("upper right") << QPoint(1, -1) << QPointF(40, 5) << QRect(10, 5, 30, 25);
    QTest::newRow("lower left") << QPoint(-1, 1) << QPointF(-9, 99) << QRect(0, 10, 30, 40);
    QTest::newRow("beyond the other edge") << QPoint(-1, -1) << QPointF(90, 40) << QRect(29, 29, 1, 1);
    QTest::newRow("to nothing") << QPoint(1, 1) << QPointF(0, 0) << QRect(10, 10, 1, 1);
}

void CellRectTest::handles()
{
    QFETCH(QPoint, handle);
    QFETCH(QPointF, to);
    QTEST(resizedCells({10, 10, 20, 20}, handle, to, {100, 50}), "expected");
}

void CellRectTest::drags()
{
    const QSize grid(100, 50);
    QCOMPARE(draggedCells({12.5, 9.5}, {3.2, 4.8}, grid), QRect(3, 4, 10, 6));
    QCOMPARE(draggedCells({5, 5}, {5, 5}, grid), QRect(5, 5, 1, 1));
    QCOMPARE(draggedCells({-50, 45}, {500, 500}, grid), QRect(0, 45, 100, 5));
    QCOMPARE(draggedCells({500, 500}, {501, 501}, grid), QRect(99, 49, 1, 1));
}

void CellRectTest::sizes()
{
    QCOMPARE(groundSize(westward, {10, 3}), QSizeF(100, 60));
    QVERIFY(std::abs(groundSize(rotated, {10, 3}).width() - 100.0 * std::sqrt(2.0)) < 1e-9);
    setUpGdal();
    const QTemporaryDir folder;
    const QString dem = folder.filePath("dem.tif");
    QVERIFY(writeRaster(dem, 3, 2, {1, 2, 3, 4, 5, 6}));
    const CellGrid grid = cellGrid(DemGround(dem, 1));
    QCOMPARE(grid.size, QSize(3, 2));
    QCOMPARE(groundOf(grid, {3, 2}), QPointF(500030.0, 5099980.0));
    QVERIFY(cellGrid(DemGround()).isEmpty());
}

QTEST_GUILESS_MAIN(CellRectTest)
#include "cellrect_test.moc"
