#include "dataset/demground.h"

#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QTemporaryDir>
#include <QTest>

class DemGroundTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void surface_data();
    void surface();
    void oneCell();
    void elevationUnits();

private:
    QTemporaryDir m_folder;
};

void DemGroundTest::initTestCase()
{
    setUpGdal();
    // Cells of 10 m from (500000, 5100000) on, rows to the south.
    QVERIFY(writeRaster(m_folder.filePath("dem.tif"), 3, 3, {0, 10, 20, 100, 110, 120, 200, 210, -9999}));
    QVERIFY(writeRaster(m_folder.filePath("cell.tif"), 1, 1, {7}));
}

void DemGroundTest::surface_data()
{
    QTest::addColumn<QPointF>("cell"); // columns and rows from the upper left corner
    QTest::addColumn<double>("expected");

    QTest::newRow("centre") << QPointF(1.5, 1.5) << 110.0;
    QTest::newRow("right of a centre") << QPointF(1.0, 0.5) << 5.0;
    QTest::newRow("below a centre") << QPointF(0.5, 0.75) << 25.0;
    QTest::newRow("between four") << QPointF(1.25, 1.25) << 82.5;
    QTest::newRow("upper edge") << QPointF(1.0, 0.1) << 5.0;
    QTest::newRow("left edge") << QPointF(0.1, 1.0) << 50.0;
    QTest::newRow("a void beside") << QPointF(1.75, 1.75) << 110.0;
    QTest::newRow("on the line of two centres beside a void") << QPointF(2.5, 1.25) << 95.0;
}

void DemGroundTest::surface()
{
    QFETCH(QPointF, cell);
    const DemGround ground(m_folder.filePath("dem.tif"), 1);
    const auto elevation = ground.surfaceElevation(ground.toGround(cell));
    QVERIFY(elevation);
    QTEST(*elevation, "expected");
}

void DemGroundTest::oneCell()
{
    const DemGround cell(m_folder.filePath("cell.tif"), 1);
    QCOMPARE(cell.surfaceElevation(cell.toGround({0.2, 0.9})), std::optional<double>(7.0));
    QVERIFY(!cell.surfaceElevation(cell.toGround({1.1, 0.5})));
    const DemGround dem(m_folder.filePath("dem.tif"), 1);
    QVERIFY(!dem.surfaceElevation(dem.toGround({2.4, 2.4}))); // the cell under the point is void
    QVERIFY(!DemGround().surfaceElevation({0.0, 0.0}));
}

void DemGroundTest::elevationUnits()
{
    for (const auto &[written, shown] :
         {std::pair("metre", "m"), {"US survey foot", "ft"}, {"cm", ""}, {"", ""}}) {
        const QString path = writeFile(
            m_folder.filePath("unit.vrt"),
            QByteArray("<VRTDataset rasterXSize='1' rasterYSize='1'><VRTRasterBand dataType='Float32' band='1'>"
                       "<UnitType>")
                + written + "</UnitType></VRTRasterBand></VRTDataset>");
        QCOMPARE(DemGround(path, 1).elevationUnit(), QString::fromLatin1(shown));
    }
    QVERIFY(DemGround().elevationUnit().isEmpty());
}

QTEST_GUILESS_MAIN(DemGroundTest)

#include "demground_test.moc"
