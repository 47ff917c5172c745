#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <memory>

namespace
{

constexpr int side = 96; // cells of the DEM

/// Bytes of all bands of a raster, band after band.
struct Picture
{
    int width = 0;
    int height = 0;
    int bands = 0;
    QVector<int> values;

    int at(int band, int row, int column) const { return values.at((band * height + row) * width + column); }
};

Picture readPicture(const QString &path)
{
    Picture picture;
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (!file)
        return picture;
    picture.width = file->GetRasterXSize();
    picture.height = file->GetRasterYSize();
    picture.bands = file->GetRasterCount();
    picture.values.resize(picture.width * picture.height * picture.bands);
    if (file->RasterIO(GF_Read, 0, 0, picture.width, picture.height, picture.values.data(), picture.width,
                       picture.height, GDT_Int32, picture.bands, nullptr, 0, 0, 0, nullptr)
        != CE_None)
        return {};
    return picture;
}

} // namespace

/// Products for maps, made by the batch program, compared with the tools called by hand.
class MapProductsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void lightsEqualTheTool_data();
    void lightsEqualTheTool();
    void shadedColors_data();
    void shadedColors();
    void shadedPartEqualsTheWhole();
    void stoppedShadingLeavesNothing();
    void contoursForMaps();
    void shortRingsAndDigits();
    void stepsRefuse_data();
    void stepsRefuse();
    void smoothedPartEqualsTheWhole();
    void stoppedContoursLeaveNothing();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    int batch(const QStringList &arguments) { return run(QStringLiteral("QuvoDemBatch"), arguments); }
    int tool(const QStringList &arguments) { return run(QStringLiteral("gdal_dem.exe"), arguments); }
    int run(const QString &program, const QStringList &arguments);

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/cartes d'été \"1\" XXXXXX")};
    QString m_error;
};

int MapProductsTest::run(const QString &program, const QStringList &arguments)
{
    const Ended ended = runProgram(QStringLiteral(QUVO_TREE "/") + program, arguments);
    m_error = ended.error;
    return ended.code;
}

void MapProductsTest::initTestCase()
{
    setUpGdal();
    QVector<float> heights;
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column)
            heights += static_cast<float>(400.0 + 90.0 * std::sin(row / 9.0) + 70.0 * std::cos(column / 7.0));
    }
    for (int column = 40; column < 50; ++column)
        heights[30 * side + column] = -9999.0F; // a void
    QVERIFY(writeRaster(path("mnt.tif"), side, side, heights));
    writeFile(path("table.txt"), "nv 10 20 30 0\n200 0 60 200 255\n400 90 250 10 128\n600 255 255 240 255\n");
}

void MapProductsTest::lightsEqualTheTool_data()
{
    QTest::addColumn<QString>("light");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("several suns") << "multidirectional" << QStringList{"-alt", "45", "-multidirectional"};
    QTest::newRow("combined") << "combined" << QStringList{"-az", "-45", "-alt", "45", "-combined"};
    QTest::newRow("soft") << "igor" << QStringList{"-az", "-45", "-igor"};
}

void MapProductsTest::lightsEqualTheTool()
{
    QFETCH(QString, light);
    QFETCH(QStringList, arguments);
    QCOMPARE(batch({"--process", "hillshade", "--input", path("mnt.tif"), "--output", path(light + ".tif"),
                    "--set", "light=" + light}),
             0);
    QCOMPARE(tool(QStringList{"hillshade", path("mnt.tif"), path("main.tif")} + arguments), 0);
    QCOMPARE(readPicture(path(light + ".tif")).values, readPicture(path("main.tif")).values);
}

void MapProductsTest::shadedColors_data()
{
    QTest::addColumn<int>("strength");
    QTest::addColumn<bool>("alpha");
    QTest::newRow("full") << 100 << false;
    QTest::newRow("half, alpha") << 50 << true;
    QTest::newRow("none") << 0 << true;
}

void MapProductsTest::shadedColors()
{
    QFETCH(int, strength);
    QFETCH(bool, alpha);
    const QString product = path(QStringLiteral("ombré %1.tif").arg(strength));
    QCOMPARE(batch({"--process", "color-relief", "--input", path("mnt.tif"), "--output", product, "--set",
                    "table=" + path("table.txt"), "--set", "shaded=true", "--set",
                    QStringLiteral("shadeStrength=%1").arg(strength), "--set", "shade.compass=0", "--set",
                    QStringLiteral("alpha=%1").arg(alpha ? "true" : "false")}),
             0);
    QStringList colors{"color-relief", path("mnt.tif"), path("table.txt"), path("couleurs.tif")};
    QCOMPARE(tool(alpha ? colors << "-alpha" : colors), 0);
    QCOMPARE(tool({"hillshade", path("mnt.tif"), path("ombres.tif"), "-az", "270", "-compute_edges"}), 0);
    const Picture color = readPicture(path("couleurs.tif"));
    const Picture shade = readPicture(path("ombres.tif"));
    const Picture made = readPicture(product);
    QCOMPARE(made.bands, alpha ? 4 : 3);
    QCOMPARE(made.values.size(), color.values.size());
    QVERIFY(shade.at(0, 0, 0) > 0); // the rim is lit, too
    int voids = 0;
    for (int band = 0; band < made.bands; ++band) {
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                const int light = shade.at(0, row, column);
                const double share = strength / 100.0;
                const double darkened = color.at(band, row, column) * (1.0 - share + share * light / 255.0);
                const bool isKept = band == 3 || light == 0;
                voids += light == 0 ? 1 : 0;
                const double expected = isKept ? color.at(band, row, column) : darkened;
                QVERIFY2(std::abs(made.at(band, row, column) - expected) <= (isKept ? 0.0 : 0.51),
                         qPrintable(QStringLiteral("%1 %2 %3").arg(band).arg(row).arg(column)));
            }
        }
    }
    QCOMPARE(voids, 10 * made.bands);
}

void MapProductsTest::shadedPartEqualsTheWhole()
{
    const auto make = [&](const QString &name, const QStringList &more) {
        return batch(QStringList{"--process", "color-relief", "--input", path("mnt.tif"), "--output",
                                 path(name), "--set", "shaded=true", "--set", "shade.light=combined"}
                     + more);
    };
    QCOMPARE(make("tout.tif", {}), 0);
    QCOMPARE(make("partie.tif", {"--part", "20 25 30 20"}), 0);
    const Picture whole = readPicture(path("tout.tif"));
    const Picture part = readPicture(path("partie.tif"));
    QCOMPARE(QSize(part.width, part.height), QSize(30, 20));
    for (int band = 0; band < 3; ++band) {
        for (int row = 0; row < part.height; ++row) {
            for (int column = 0; column < part.width; ++column)
                QCOMPARE(part.at(band, row, column), whole.at(band, row + 25, column + 20));
        }
    }
}

void MapProductsTest::stoppedShadingLeavesNothing()
{
    QVERIFY(QDir(m_folder.path()).mkdir("arrêt"));
    QVERIFY(writeHill(path("arrêt/mnt.tif"), 2500));
    for (const int marks : {1, 12, 26, 38}) { // in each of the three steps
        QProcess process;
        process.start(QStringLiteral(QUVO_TREE "/QuvoDemBatch"),
                      {"--process", "color-relief", "--input", path("arrêt/mnt.tif"), "--output",
                       path("arrêt/ombré.tif"), "--set", "shaded=true"});
        QByteArray shown;
        while (shown.size() < marks && process.waitForReadyRead())
            shown += process.readAllStandardOutput();
        process.terminate();
        QVERIFY(process.waitForFinished());
        if (process.exitCode() != 0)
            QCOMPARE(QDir(path("arrêt")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                     QStringList{"mnt.tif"});
        QFile::remove(path("arrêt/ombré.tif"));
    }
}

void MapProductsTest::contoursForMaps()
{
    QVERIFY(QDir(m_folder.path()).mkdir("carte"));
    writeFile(path("carte/lignes.qml"), "the user's own");
    const QStringList arguments{"--process", "contour",
                                "--input",   path("mnt.tif"),
                                "--output",  path("carte/lignes.gpkg"),
                                "--of",      "GPKG",
                                "--set",     "interval=20",
                                "--set",     "fixedLevels=433",
                                "--set",     "attribute=hauteur",
                                "--set",     "indexEvery=5",
                                "--set",     "styled=true",
                                "--set",     "qgisStyle=true"};
    QCOMPARE(batch(arguments), 4); // a file of the user stands in the way
    QCOMPARE(bytesOf(path("carte/lignes.qml")), QByteArray("the user's own"));
    QCOMPARE(batch(arguments + QStringList{"--overwrite"}), 0);
    QVERIFY(bytesOf(path("carte/lignes.qml")).contains("INDEX_LINE"));
    QCOMPARE(QDir(path("carte")).entryList(QDir::Files), (QStringList{"lignes.gpkg", "lignes.qml"}));
    const std::unique_ptr<GDALDataset> file(
        GDALDataset::Open(encodePath(path("carte/lignes.gpkg")).constData(), GDAL_OF_VECTOR));
    QVERIFY(file && file->GetLayerByName("contour"));
    QSet<double> levels;
    for (const auto &feature : *file->GetLayerByName("contour")) {
        const double level = feature->GetFieldAsDouble("hauteur");
        levels += level;
        QCOMPARE(feature->GetFieldAsInteger("INDEX_LINE"), std::fmod(level, 100.0) == 0.0 ? 1 : 0);
        QVERIFY(QByteArray(feature->GetStyleString()).startsWith("PEN("));
    }
    QVERIFY(levels.contains(433.0) && levels.contains(300.0) && levels.contains(540.0));
}

/// The tool receives six digits of the interval, in which index lines are counted.
void MapProductsTest::shortRingsAndDigits()
{
    QCOMPARE(
        batch({"--process", "contour", "--input", path("mnt.tif"), "--output", path("fin.gpkg"), "--of", "GPKG",
               "--set", "interval=3.3333333", "--set", "indexEvery=10", "--set", "shortestRing=300"}),
        0);
    QVERIFY2(m_error.contains(QRegularExpression(": [1-9][0-9]*\\.\n$")), qPrintable(m_error)); // left out
    const std::unique_ptr<GDALDataset> file(
        GDALDataset::Open(encodePath(path("fin.gpkg")).constData(), GDAL_OF_VECTOR));
    QVERIFY(file);
    int indexLines = 0;
    for (const auto &feature : *file->GetLayer(0)) {
        const double steps = feature->GetFieldAsDouble("Z") / 33.3333;
        const int expected = std::abs(steps - std::round(steps)) < 1e-5 ? 1 : 0;
        QCOMPARE(feature->GetFieldAsInteger("INDEX_LINE"), expected);
        indexLines += expected;
    }
    QVERIFY(indexLines > 0);
}

void MapProductsTest::stepsRefuse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    const QString out = path("x.tif");
    QTest::newRow("no radius") << QStringList{"--smooth-dem", out} << "smoothing=1";
    QTest::newRow("large radius") << QStringList{"--smooth-dem", out, "--set", "smoothing=51"} << "51";
    QTest::newRow("no band") << QStringList{"--smooth-dem", out, "--band", "2", "--set", "smoothing=1"} << "2";
    QTest::newRow("no lines") << QStringList{"--finish-contours", out} << "--lines";
    QTest::newRow("lost lines") << QStringList{"--finish-contours", out, "--lines", path("none.gpkg")}
                                << "none.gpkg";
}

void MapProductsTest::stepsRefuse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, word);
    QVERIFY(batch(arguments + QStringList{"--input", path("mnt.tif")}) != 0);
    QVERIFY2(m_error.contains(word), qPrintable(m_error));
    QVERIFY(!QFile::exists(path("x.tif")));
}

void MapProductsTest::smoothedPartEqualsTheWhole()
{
    const auto lines = [&](const QString &name, const QStringList &more) {
        const int code =
            batch(QStringList{"--process", "contour", "--input", path("mnt.tif"), "--output", path(name),
                              "--of", "GPKG", "--set", "fixedLevels=400", "--set", "smoothing=4"}
                  + more);
        const std::unique_ptr<GDALDataset> file(
            GDALDataset::Open(encodePath(path(name)).constData(), GDAL_OF_VECTOR));
        const auto all = std::make_unique<OGRMultiLineString>();
        if (code == 0 && file) {
            for (const auto &feature : *file->GetLayer(0))
                all->addGeometry(feature->GetGeometryRef());
        }
        return std::unique_ptr<OGRGeometry>(all->clone());
    };
    const auto whole = lines("lisse.gpkg", {});
    const auto part = lines("lisse partie.gpkg", {"--part", "10 40 60 40"});
    OGREnvelope extent;
    part->getEnvelope(&extent);
    QVERIFY(!part->IsEmpty() && extent.MaxX - extent.MinX > 300.0);
    OGRLinearRing inside; // without the half cell in which the tool ends the lines of a part
    for (const auto &[x, y] : {std::pair{500106.0, 5099594.0},
                               {500694.0, 5099594.0},
                               {500694.0, 5099206.0},
                               {500106.0, 5099206.0},
                               {500106.0, 5099594.0}})
        inside.addPoint(x, y);
    OGRPolygon window;
    window.addRing(&inside);
    const std::unique_ptr<OGRGeometry> there(part->Intersection(&window));
    const std::unique_ptr<OGRGeometry> expected(whole->Intersection(&window));
    const std::unique_ptr<OGRGeometry> around(expected->Buffer(0.001));
    QVERIFY(around->Contains(there.get()));
    QVERIFY(std::abs(OGR_G_Length(OGRGeometry::ToHandle(there.get()))
                     - OGR_G_Length(OGRGeometry::ToHandle(expected.get())))
            < 0.01);
}

void MapProductsTest::stoppedContoursLeaveNothing()
{
    for (const int marks : {1, 10, 20, 32, 40}) { // while smoothing, drawing and finishing
        QProcess process;
        process.start(QStringLiteral(QUVO_TREE "/QuvoDemBatch"),
                      {"--process", "contour", "--input", path("arrêt/mnt.tif"), "--output",
                       path("arrêt/lignes.gpkg"), "--of", "GPKG", "--set", "interval=5", "--set",
                       "indexEvery=5", "--set", "smoothing=3", "--set", "qgisStyle=true"});
        QByteArray shown;
        while (shown.size() < marks && process.waitForReadyRead())
            shown += process.readAllStandardOutput();
        process.terminate();
        QVERIFY(process.waitForFinished());
        const QStringList left =
            QDir(path("arrêt")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
        QCOMPARE(left,
                 process.exitCode() == 0 ? (QStringList{"lignes.gpkg", "lignes.qml", "mnt.tif"})
                                         : QStringList{"mnt.tif"});
        QFile::remove(path("arrêt/lignes.gpkg"));
        QFile::remove(path("arrêt/lignes.qml"));
    }
}

QTEST_GUILESS_MAIN(MapProductsTest)
#include "mapproducts_test.moc"
