#include "dataset/productcheck.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

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

private:
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void ProductCheckTest::errorLine()
{
    QCOMPARE(firstErrorLine(QStringLiteral("Warning 1: x\r\nERROR 3: disk full\r\nERROR 4: b")),
             QStringLiteral("ERROR 3: disk full"));
    QCOMPARE(firstErrorLine(QStringLiteral("no ERROR at the start of a line\n")), QString());
    QCOMPARE(firstErrorLine(QStringLiteral(
                 "ERROR 1: a.tif, band 1: Failed to compute statistics, no valid pixels found in sampling.")),
             QString()); // of a product without values
}

void ProductCheckTest::rasters()
{
    const QString path = m_folder.filePath("product.tif");
    QVERIFY(writeHill(path, 60));
    ExpectedProduct expected{.path = path, .width = 60, .height = 60, .layer = {}};
    QCOMPARE(checkProduct(expected, QStringLiteral("Warning 1: something")).problem, QString());
    QVERIFY(
        checkProduct(expected, QStringLiteral("ERROR 1: something")).problem.contains("ERROR 1: something"));

    expected.width = 61;
    QVERIFY(checkProduct(expected, {}).problem.contains("60 × 60"));
    expected.width = 60;
    expected.bands = 3;
    QVERIFY(checkProduct(expected, {}).problem.contains("1 bandes au lieu de 3"));
    expected.bands = 1;

    // On a full disk a PNG's position is an empty file.
    writeFile(path + ".aux.xml", "<PAMDataset></PAMDataset>");
    QCOMPARE(checkProduct(expected, {}).problem, QString());
    for (const char *half : {"", "<PAMDataset><SRS"}) {
        writeFile(path + ".aux.xml", half);
        QVERIFY(checkProduct(expected, {}).problem.contains(".aux.xml"));
    }
    QVERIFY(QFile::remove(path + ".aux.xml"));

    QFile file(path);
    // A full disk leaves a good header without the last cells.
    QVERIFY(file.resize(file.size() - 200));
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
    ExpectedProduct expected{.kind = ProductKind::Vector, .path = path, .layer = QStringLiteral("lines")};
    QCOMPARE(checkProduct(expected, {}).problem, QString());
    QCOMPARE(checkProduct(expected, {}).featureCount, 0);
    expected.layer = QStringLiteral("other");
    QCOMPARE(checkProduct(expected, {}).problem,
             QString()); // some formats name their only layer after the file
    driver->Delete(encodePath(path).constData());
    write({"lines", "more"});
    QVERIFY(checkProduct(expected, {}).problem.contains("other"));

    // A text that ends in the middle of a feature.
    expected.path = m_folder.filePath("lines.gml");
    const QByteArray gml = "<?xml version='1.0'?><ogr:FeatureCollection xmlns:gml='http://www.opengis.net/gml' "
                           "xmlns:ogr='http://ogr.maptools.org/'>"
        + QByteArray(
              "<gml:featureMember><ogr:l fid='l.0'><ogr:geometryProperty><gml:LineString><gml:coordinates>0,0 "
              "1,1</gml:coordinates></gml:LineString></ogr:geometryProperty></ogr:l></gml:featureMember>")
              .repeated(3);
    writeFile(expected.path, gml + "</ogr:FeatureCollection>");
    QCOMPARE(checkProduct(expected, {}).problem, QString());
    writeFile(expected.path, gml + "<gml:featureMember><ogr:l fid='l.0'><ogr:geometryProp");
    QVERIFY(!checkProduct(expected, {}).problem.isEmpty());
}

QTEST_GUILESS_MAIN(ProductCheckTest)
#include "productcheck_test.moc"
