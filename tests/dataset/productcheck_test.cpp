#include "dataset/productcheck.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <memory>

class ProductCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void errorLine();
    void rasters();
    void vectors();
    void rasterInfo();
    void dataSetNames();

private:
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void ProductCheckTest::errorLine()
{
    QCOMPARE(firstErrorLine(QStringLiteral("Warning 1: x\r\nERROR 3: disk full\r\nERROR 4: b")),
             QStringLiteral("ERROR 3: disk full"));
    QCOMPARE(firstErrorLine(QStringLiteral("no ERROR at the start of a line\n")), QString());
}

void ProductCheckTest::rasters()
{
    const QString path = m_folder.filePath("product.tif");
    QVERIFY(writeHill(path, 60));
    ExpectedProduct expected{ProductKind::Raster, path, 60, 60, {}};
    QCOMPARE(checkProduct(expected, QStringLiteral("Warning 1: something")).problem, QString());
    QVERIFY(
        checkProduct(expected, QStringLiteral("ERROR 1: something")).problem.contains("ERROR 1: something"));

    expected.width = 61;
    QVERIFY(checkProduct(expected, {}).problem.contains("60 × 60"));
    expected.width = 60;

    QFile file(path);
    QVERIFY(file.resize(file.size()
                        - 200)); // what a full disk leaves: the header is good, the last cells are not there
    QVERIFY(!checkProduct(expected, {}).problem.isEmpty());
    QVERIFY(file.resize(0));
    QVERIFY(!checkProduct(expected, {}).problem.isEmpty());
    QVERIFY(file.remove());
    QVERIFY(!checkProduct(expected, {}).problem.isEmpty());
}

void ProductCheckTest::vectors()
{
    const QString path = m_folder.filePath("lines.gpkg");
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const auto write = [&](const QStringList &layers) {
        const std::unique_ptr<GDALDataset> lines(
            driver->Create(encodePath(path).constData(), 0, 0, 0, GDT_Unknown, nullptr));
        for (const QString &layer : layers)
            lines->CreateLayer(layer.toUtf8().constData(), nullptr, wkbLineString);
    };
    write({"lines"});
    ExpectedProduct expected{ProductKind::Vector, path, 0, 0, QStringLiteral("lines")};
    QCOMPARE(checkProduct(expected, {}).problem, QString());
    QCOMPARE(checkProduct(expected, {}).featureCount, 0);
    expected.layer = QStringLiteral("other");
    QCOMPARE(checkProduct(expected, {}).problem, QString()); // some formats name their one layer after the file
    driver->Delete(encodePath(path).constData());
    write({"lines", "more"});
    QVERIFY(checkProduct(expected, {}).problem.contains("other"));
}

void ProductCheckTest::rasterInfo()
{
    const QString path = m_folder.filePath("two bands.tif");
    QVERIFY(writeRaster(path, 3, 2, {1, 2, 3, 4, 5, 6}, 2));
    const RasterInfo info = readRasterInfo(path);
    QCOMPARE(info.problem, QString());
    QCOMPARE(info.width, 3);
    QCOMPARE(info.height, 2);
    QCOMPARE(info.bandCount, 2);
    QCOMPARE(info.files, QStringList{path});

    // What a virtual raster refers to belongs to the input, at any depth, and so does the file behind a virtual
    // path.
    for (const char *names : {"inner.vrt|two bands.tif", "outer.vrt|inner.vrt"}) {
        const QStringList pair = QString::fromLatin1(names).split('|');
        QFile virtualRaster(m_folder.filePath(pair.at(0)));
        QVERIFY(virtualRaster.open(QIODevice::WriteOnly));
        virtualRaster.write(
            "<VRTDataset rasterXSize='3' rasterYSize='2'><VRTRasterBand dataType='Float32' band='1'>"
            "<SimpleSource><SourceFilename relativeToVRT='1'>"
            + pair.at(1).toUtf8() + "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
    }
    QVERIFY(readRasterInfo(m_folder.filePath("outer.vrt")).files.contains(path));
    QVERIFY(readRasterInfo("/vsisubfile/0_100000," + path).files.contains(path));

    QVERIFY(!readRasterInfo(m_folder.filePath("missing.tif")).problem.isEmpty());
    QVERIFY(!readRasterInfo(m_folder.path()).problem.isEmpty());
    QCOMPARE(QDir(m_folder.path()).entryList({"two bands*"}, QDir::Files), QStringList{"two bands.tif"});
}

void ProductCheckTest::dataSetNames()
{
    const QString local = m_folder.filePath("a:b.tif");
    QVERIFY(writeRaster(local, 1, 1, {0}));
    QCOMPARE(dataSetName(local, QString()), local);
    QCOMPARE(dataSetName(QStringLiteral("../dem.tif"), QStringLiteral("/some/folder")),
             QStringLiteral("/some/dem.tif"));
    for (const QString &name : {QStringLiteral("/vsizip/a.zip/b.tif"), QStringLiteral("NETCDF:\"a b.nc\":z")})
        QCOMPARE(dataSetName(name, QStringLiteral("/some")), name);
}

QTEST_GUILESS_MAIN(ProductCheckTest)
#include "productcheck_test.moc"
