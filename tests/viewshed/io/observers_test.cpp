#include "viewshed/io/observers.h"

#include "tests/fuzz/mutations.h"
#include "viewshed/problem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <gdal_utils.h>

/// The observers in vector files.
class ObserversTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingBesideTheFile_data();
    void nothingBesideTheFile();
    void anyBytes();
};

namespace
{

const QByteArray geojson =
    R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"Max_Dist":250.5},
"geometry":{"type":"Point","coordinates":[500005.5,5099985,2e2]}},{"type":"Feature","properties":{"Max_Dist":null},
"geometry":{"type":"Point","coordinates":[-1,1e3,0]}}]})";

} // namespace

void ObserversTest::nothingBesideTheFile_data()
{
    QTest::addColumn<QByteArray>("driver");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *driver, const char *name) {
        QTest::newRow(driver) << QByteArray(driver) << name;
    };
    row("GML", "points.gml");
    row("GPKG", "points.gpkg");
    row("SQLite", "points.sqlite");
    row("ESRI Shapefile", "points.shp");
    row("KML", "points.kml");
    row("MapInfo File", "points.mif");
    row("DXF", "points.dxf");
    row("FlatGeobuf", "points.fgb");
}

/// Reading leaves the folder as it was. Some drivers lose the altitude, which is a problem of the observer
/// after the file was opened.
void ObserversTest::nothingBesideTheFile()
{
    QFETCH(QByteArray, driver);
    QFETCH(QString, name);
    GDALAllRegister();
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    if (GetGDALDriverManager()->GetDriverByName(driver.constData()) == nullptr)
        QSKIP("This GDAL lacks the driver.");
    const QTemporaryDir folder;
    const auto bytes = reinterpret_cast<GByte *>(const_cast<char *>(geojson.constData()));
    const char *const source = "/vsimem/source.geojson";
    VSIFCloseL(VSIFileFromMemBuffer(source, bytes, static_cast<vsi_l_offset>(geojson.size()), FALSE));
    const QByteArray path = folder.filePath(name).toLocal8Bit();
    QByteArray format = "-f";
    char *words[] = {format.data(), driver.data(), nullptr};
    GDALVectorTranslateOptions *options = GDALVectorTranslateOptionsNew(words, nullptr);
    GDALDatasetH points = GDALOpenEx(source, GDAL_OF_VECTOR, nullptr, nullptr, nullptr);
    GDALClose(GDALVectorTranslate(path.constData(), nullptr, 1, &points, options, nullptr));
    GDALVectorTranslateOptionsFree(options);
    GDALClose(points);
    VSIUnlink(source);
    QFile::remove(folder.filePath("points.xsd")); // GDAL derives a schema from GML that has none

    const QStringList before = QDir(folder.path()).entryList(QDir::Files);
    QVERIFY(before.contains(name));
    try {
        QCOMPARE(viewshed::readObservers(path.toStdString()).size(), std::size_t(2));
    } catch (const viewshed::Problem &problem) {
        QVERIFY2(QByteArray(problem.what()).startsWith("Observer 1 of"), problem.what());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), before);
}

void ObserversTest::anyBytes()
{
    fuzzMutations({geojson}, 2000);
}

QTEST_APPLESS_MAIN(ObserversTest)
#include "observers_test.moc"
