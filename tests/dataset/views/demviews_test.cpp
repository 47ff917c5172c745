#include "dataset/views/demviews.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/views/viewtexts.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

#include <cmath>
#include <memory>

/// Turned and reprojected views, and how views mark cells without data.
class DemViewsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void turnedVoids_data();
    void turnedVoids();
    void maskIsNoElevation();
    void roundingIsNoRotation();
    void seaLevelIsNoVoid();
    void sidesInTheUnitOfTheCrs_data();
    void sidesInTheUnitOfTheCrs();
    void noViewInAnUnknownCrs_data();
    void noViewInAnUnknownCrs();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// A DEM of 12 × 10 cells at 100 m; a copy with these options of gdal_translate.
    DemFacts dem(const QList<QByteArray> &options, float value = 100.0F);
    float cell(const QString &view, int column, int row) const;

    QTemporaryDir m_folder;
};

void DemViewsTest::initTestCase()
{
    setUpGdal();
}

DemFacts DemViewsTest::dem(const QList<QByteArray> &options, float value)
{
    QVector<float> cells(120, 100.0F);
    cells[2 * 12 + 3] = value;
    const bool isWritten = writeRaster(path("plain.tif"), 12, 10, cells)
        && copyRaster(path("plain.tif"), path("dem.tif"), options);
    return isWritten ? readDemFacts(path("dem.tif"), 1) : DemFacts();
}

float DemViewsTest::cell(const QString &view, int column, int row) const
{
    float value = 0.0F;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(encodePath(view).constData(), GDAL_OF_RASTER));
    const bool isRead = dataset
        && dataset->GetRasterBand(1)->RasterIO(GF_Read, column, row, 1, 1, &value, 1, 1, GDT_Float32, 0, 0,
                                               nullptr)
            == CE_None;
    return isRead ? value : NAN;
}

void DemViewsTest::turnedVoids_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("noData");
    QTest::newRow("largest Float32") << QByteArray("Float32") << QByteArray("-3.4028234663852886e38");
    QTest::newRow("largest Float32 as Float64")
        << QByteArray("Float64") << QByteArray("-3.4028234663852886e38");
    QTest::newRow("usual") << QByteArray("Int16") << QByteArray("-9999");
}

/// Whoever reads the view recognises its void cells by their value.
void DemViewsTest::turnedVoids()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, noData);
    const DemFacts facts =
        dem({"-ot", type, "-a_nodata", noData, "-a_ullr", "0", "0", "12", "10"}, noData.toFloat());
    const DemView view = writeTurnedView(path("dem.tif"), facts, path("turned.vrt"));
    QVERIFY2(view.facts.noData.has_value(), qPrintable(view.problem));
    QCOMPARE(cell(view.path, 3, 7), static_cast<float>(*view.facts.noData));
    QCOMPARE(cell(view.path, 3, 2), 100.0F);
}

/// Like the tools on an upright DEM, the view shows the elevation of a masked cell.
void DemViewsTest::maskIsNoElevation()
{
    const DemFacts facts = dem({"-a_nodata", "none", "-b", "1", "-mask", "1", "-scale", "0", "100", "50", "60",
                                "-a_ullr", "0", "0", "12", "10"},
                               0.0F);
    const DemView view = writeTurnedView(path("dem.tif"), facts, path("turned.vrt"));
    QCOMPARE(cell(view.path, 3, 7), 50.0F);
}

void DemViewsTest::roundingIsNoRotation()
{
    DemFacts facts = dem({});
    facts.toGround = {500000.0, 10.0, 1e-12, 5100000.0, -1e-12, -10.0};
    QVERIFY(!isRotated(facts) && !isMirrored(facts));
    facts.toGround[5] = 10.0;
    QVERIFY(!isRotated(facts) && isMirrored(facts));
    facts.toGround[2] = 0.1;
    QVERIFY(isRotated(facts));
}

/// The stored value 0 marks void cells; an elevation of 0 m is stored as another number.
void DemViewsTest::seaLevelIsNoVoid()
{
    const DemFacts facts = dem({"-ot", "UInt16", "-a_nodata", "0", "-a_scale", "1", "-a_offset", "-100"}, 0.0F);
    writeFile(path("metres.vrt"), metreView({path("dem.tif"), facts}, {0, 10}, {10.0, 10.0}));
    const DemFacts view = readDemFacts(path("metres.vrt"), 1);
    QVERIFY(view.noData.has_value());
    QCOMPARE(cell(path("metres.vrt"), 3, 2), static_cast<float>(*view.noData));
    QCOMPARE(cell(path("metres.vrt"), 0, 0), 0.0F);
    QVERIFY(*view.noData != 0.0);
}

void DemViewsTest::sidesInTheUnitOfTheCrs_data()
{
    QTest::addColumn<QString>("crs");
    QTest::addColumn<double>("side"); // of a cell of 10 m
    QTest::newRow("metres") << "EPSG:3035" << 10.0;
    QTest::newRow("feet") << "EPSG:2263" << 10.0 * 3937.0 / 1200.0;
    QTest::newRow("degrees") << "EPSG:4326" << 10.0 / 111319.49;
}

void DemViewsTest::sidesInTheUnitOfTheCrs()
{
    QFETCH(QString, crs);
    QFETCH(double, side);
    const DemFacts facts = dem({});
    const DemView view = writeReprojectedView(path("dem.tif"), facts, crs, path("projected.vrt"));
    QVERIFY2(view.facts.isOpen, qPrintable(view.problem));
    QVERIFY(std::abs(view.facts.toGround[1] / side - 1.0) < 0.002);
}

void DemViewsTest::noViewInAnUnknownCrs_data()
{
    QTest::addColumn<bool>("hasCrs");
    QTest::addColumn<QString>("crs");
    QTest::newRow("a misspelt CRS") << true << "EPSG:999999";
    QTest::newRow("a CRS of heights") << true << "EPSG:5773";
    QTest::newRow("none to propose") << true << "";
    QTest::newRow("a DEM without CRS") << false << "EPSG:32632";
}

void DemViewsTest::noViewInAnUnknownCrs()
{
    QFETCH(bool, hasCrs);
    QFETCH(QString, crs);
    DemFacts facts = dem({});
    facts.crs = hasCrs ? facts.crs : DemCrs::None;
    const DemView view = writeReprojectedView(path("dem.tif"), facts, crs, path("projected.vrt"));
    QVERIFY(view.path.isEmpty() && !view.problem.isEmpty());
}

QTEST_GUILESS_MAIN(DemViewsTest)
#include "demviews_test.moc"
