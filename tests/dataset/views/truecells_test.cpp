#include "dataset/views/aspectcorrection.h"
#include "dataset/views/demfacts.h"
#include "dataset/views/metriccrs.h"
#include "dataset/views/truecells.h"
#include "tests/support/rasters.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace
{

DemFacts inDegrees(double north, double cell, int height)
{
    DemFacts facts;
    facts.isOpen = facts.isGeoreferenced = true;
    facts.width = 100;
    facts.height = height;
    facts.toGround = {7.0, cell, 0.0, north, 0.0, -cell};
    facts.crs = DemCrs::Geographic;
    facts.unit = 0.017453292519943295;
    return facts;
}

} // namespace

/// The size of cells on the ground, the strips of rows that share one, and directions over cells that are not
/// square.
class TrueCellsTest : public QObject
{
    Q_OBJECT

private slots:
    void lengthOfADegree_data();
    void lengthOfADegree();
    void projectedCells_data();
    void projectedCells();
    void strips_data();
    void strips();
    void directions_data();
    void directions();
    void units();
    void metricSystems_data();
    void metricSystems();

private:
    QTemporaryDir m_folder;
};

void TrueCellsTest::lengthOfADegree_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("eastWest"); // metres in a degree, by tables of the ellipsoid WGS 84
    QTest::addColumn<double>("northSouth");
    QTest::newRow("equator") << 0.0 << 111319.5 << 110574.3;
    QTest::newRow("45 north") << 45.0 << 78846.8 << 111131.8;
    QTest::newRow("60 south") << -60.0 << 55800.0 << 111412.3;
}

void TrueCellsTest::lengthOfADegree()
{
    QFETCH(double, latitude);
    QFETCH(double, eastWest);
    QFETCH(double, northSouth);
    const DemFacts facts = inDegrees(latitude + 0.5, 1.0, 1);
    QVERIFY(std::abs(trueCell(facts, 0.5).width() - eastWest) < 1.0);
    QVERIFY(std::abs(trueCell(facts, 0.5).height() - northSouth) < 1.0);
    // In gons there are 400 units in a circle.
    DemFacts gons = facts;
    gons.unit *= 0.9;
    gons.toGround = {7.0, 1.0 / 0.9, 0.0, (latitude + 0.5) / 0.9, 0.0, -1.0 / 0.9};
    QVERIFY(std::abs(trueCell(gons, 0.5).width() - eastWest) < 1.0);
}

void TrueCellsTest::projectedCells_data()
{
    QTest::addColumn<QByteArray>("crs");
    QTest::addColumn<QByteArray>("north");
    QTest::addColumn<double>("metres");
    QTest::newRow("UTM: metres as they are") << QByteArray("EPSG:32632") << QByteArray("5100000") << 10.0;
    QTest::newRow("feet") << QByteArray("EPSG:2263") << QByteArray("200000") << 10.0 * 1200.0 / 3937.0;
    // At 60° north the Mercator projection of a sphere doubles lengths, nearly.
    QTest::newRow("Mercator") << QByteArray("EPSG:3857") << QByteArray("8399738") << 5.0;
}

void TrueCellsTest::projectedCells()
{
    QFETCH(QByteArray, crs);
    QFETCH(QByteArray, north);
    QFETCH(double, metres);
    const QString dem = m_folder.filePath("metres.tif");
    const QString file = m_folder.filePath("projected.tif");
    QVERIFY(writeHill(dem, 20));
    const QByteArray south = QByteArray::number(north.toDouble() - 200.0, 'f', 0);
    QVERIFY(copyRaster(dem, file, {"-a_srs", crs, "-a_ullr", "500000", north, "500200", south}));
    const QSizeF cell = trueCell(readDemFacts(file, 1), 10.0);
    QVERIFY2(std::abs(cell.width() / metres - 1.0) < 0.005, qPrintable(QString::number(cell.width())));
    QVERIFY2(std::abs(cell.height() / metres - 1.0) < 0.005, qPrintable(QString::number(cell.height())));
}

void TrueCellsTest::strips_data()
{
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("cell");
    QTest::addColumn<int>("height");
    QTest::addColumn<double>("tolerance");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("low at the equator") << 0.5 << 1.0 / 1200 << 1200 << 0.005 << 1 << 1;
    QTest::newRow("two degrees at most") << 4.0 << 0.01 << 800 << 0.005 << 4 << 4;
    QTest::newRow("a tile of the Alps") << 47.0 << 1.0 / 1200 << 1201 << 0.005 << 2 << 2;
    QTest::newRow("a tile of Lapland") << 69.0 << 1.0 / 1200 << 1201 << 0.005 << 4 << 5;
    QTest::newRow("a coarse picture") << 69.0 << 1.0 / 1200 << 1201 << 0.02 << 1 << 2;
    QTest::newRow("to the pole") << 90.0 << 0.001 << 2000 << 0.005 << 2 << 256;
    QTest::newRow("a cell") << 50.0 << 1.0 << 1 << 0.005 << 1 << 1;
}

void TrueCellsTest::strips()
{
    QFETCH(double, north);
    QFETCH(double, cell);
    QFETCH(int, height);
    QFETCH(double, tolerance);
    QFETCH(int, least);
    QFETCH(int, most);
    const DemFacts facts = inDegrees(north, cell, height);
    const QVector<RowStrip> found = rowStrips(facts, tolerance);
    QVERIFY2(found.size() >= least && found.size() <= most, qPrintable(QString::number(found.size())));
    int next = 0;
    for (const RowStrip &strip : found) {
        QCOMPARE(strip.first, next);
        QVERIFY(strip.count > 0);
        next += strip.count;
        if (north >= 90.0)
            continue;
        const double middle = trueCell(facts, middleRow(strip)).width();
        QVERIFY(std::abs(trueCell(facts, strip.first + 0.5).width() / middle - 1.0) <= tolerance);
        QVERIFY(std::abs(trueCell(facts, next - 0.5).width() / middle - 1.0) <= tolerance);
    }
    QCOMPARE(next, height);
}

void TrueCellsTest::directions_data()
{
    QTest::addColumn<double>("east"); // components of a slope on the ground, downhill
    QTest::addColumn<double>("north");
    QTest::newRow("north") << 0.0 << 1.0;
    QTest::newRow("north-east") << 1.0 << 1.0;
    QTest::newRow("south-east") << 1.0 << -2.0;
    QTest::newRow("south-west") << -3.0 << -1.0;
    QTest::newRow("west") << -1.0 << 0.0;
    QTest::newRow("north-west") << -0.5 << 1.0;
}

/// A tool that knows no cell sizes sees the slope between two columns as their width times the true slope.
void TrueCellsTest::directions()
{
    QFETCH(double, east);
    QFETCH(double, north);
    constexpr double width = 64.0;
    constexpr double height = 92.6;
    const auto azimuth = [](double x, double y) {
        const double degrees = std::atan2(x, y) * 180.0 / M_PI;
        return degrees < 0.0 ? degrees + 360.0 : degrees;
    };
    const auto counterClockwise = [&](double x, double y) { return azimuth(y, x); };
    QVERIFY(std::abs(trueDirection(azimuth(east * width, north * height), height / width, false)
                     - azimuth(east, north))
            < 1e-9);
    QVERIFY(std::abs(trueDirection(counterClockwise(east * width, north * height), height / width, true)
                     - counterClockwise(east, north))
            < 1e-9);
}

void TrueCellsTest::units()
{
    QCOMPARE(metresInUnit(" Feet "), std::optional(0.3048));
    QCOMPARE(metresInUnit("US survey foot"), std::optional(1200.0 / 3937.0));
    QCOMPARE(metresInUnit("metre"), std::optional(1.0));
    QCOMPARE(metresInUnit("°C"), std::nullopt);
    DemFacts facts;
    facts.crs = DemCrs::Projected;
    facts.unit = 0.3048;
    QCOMPARE(elevationFactor(facts), 0.3048); // nothing is declared: the unit of the coordinates
    facts.elevationUnit = 1.0;
    facts.elevationScale = 0.1;
    QCOMPARE(elevationFactor(facts), 0.1);
}

void TrueCellsTest::metricSystems_data()
{
    QTest::addColumn<QList<double>>("edges"); // west, north, east, south
    QTest::addColumn<QString>("crs");
    QTest::newRow("Switzerland") << QList<double>{8, 47, 9, 46} << "EPSG:32632";
    QTest::newRow("New Zealand") << QList<double>{175, -40, 176, -41} << "EPSG:32760";
    QTest::newRow("Bergen lies in zone 32") << QList<double>{5, 61, 5.5, 60} << "EPSG:32632";
    QTest::newRow("Spitsbergen lies in zone 33") << QList<double>{11, 79, 12, 78} << "EPSG:32633";
    QTest::newRow("the date line") << QList<double>{179, 65, 180.5, 64} << "EPSG:32660";
    QTest::newRow("as wide as a zone") << QList<double>{6, 47, 12, 46} << "EPSG:32632";
    QTest::newRow("wider") << QList<double>{0, 50, 10, 44}
                           << "+proj=laea +lat_0=47.0000 +lon_0=5.0000 +datum=WGS84 +units=m";
    QTest::newRow("the pole") << QList<double>{0, 88, 2, 86}
                              << "+proj=laea +lat_0=87.0000 +lon_0=1.0000 +datum=WGS84 +units=m";
}

void TrueCellsTest::metricSystems()
{
    QFETCH(QList<double>, edges);
    QFETCH(QString, crs);
    const QString dem = m_folder.filePath("hill.tif");
    const QString file = m_folder.filePath("place.tif");
    QVERIFY(writeHill(dem, 20));
    QList<QByteArray> options{"-a_srs", "EPSG:4326", "-a_ullr"};
    for (const double edge : edges)
        options += QByteArray::number(edge);
    QVERIFY(copyRaster(dem, file, options));
    QCOMPARE(metricCrs(readDemFacts(file, 1)), crs);
    QVERIFY(!metricCrsName(readDemFacts(file, 1)).isEmpty());
    QCOMPARE(metricCrs(DemFacts()), QString());
}

QTEST_GUILESS_MAIN(TrueCellsTest)
#include "truecells_test.moc"
