#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "panels/options/valueclasses.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

#include <cmath>
#include <memory>

/// Pictures of slopes and directions in classes beside the product, with the real tools.
class ClassesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/classes é XXXXXX"));
    }
    void boundsAreSharp();
    void products_data();
    void products();
    void failureLeavesNothing();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    Ended run(const QStringList &arguments)
    {
        return runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"),
                          QStringList{"--input", path("dem.tif"), "--output", path("p.tif")} + arguments);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

/// The bands of a raster as numbers, one vector a band; empty where it cannot be read.
QVector<QVector<float>> bandsOf(const QString &path)
{
    QVector<QVector<float>> bands;
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    for (int band = 1; file && band <= file->GetRasterCount(); ++band) {
        const int width = file->GetRasterXSize();
        const int height = file->GetRasterYSize();
        QVector<float> cells(width * height);
        if (file->GetRasterBand(band)->RasterIO(GF_Read, 0, 0, width, height, cells.data(), width, height,
                                                GDT_Float32, 0, 0, nullptr)
            == CE_None)
            bands += cells;
    }
    return bands;
}

QRgb colorOf(const QVector<QVector<float>> &bands, int cell)
{
    return qRgb(qRound(bands.at(0).at(cell)), qRound(bands.at(1).at(cell)), qRound(bands.at(2).at(cell)));
}

} // namespace

void ClassesTest::boundsAreSharp()
{
    const QVector<float> slopes{0.0F,  26.999998F, 27.0F, 29.9999F, std::nextafter(30.0F, 0.0F),
                                30.0F, 44.9F,      45.0F, 89.0F,    -9999.0F};
    const QVector<int> numbers{0, 0, 1, 1, 1, 2, 4, 5, 5};
    QVERIFY(writeRaster(path("slope.tif"), static_cast<int>(slopes.size()), 1, slopes));
    const ClassTable table = slopeClasses({.classes = "avalanche"});
    writeFile(path("table.txt"), classTableText(table));
    const Ended ended = runProgram(QStringLiteral(QUVO_TREE "/gdal_dem.exe"),
                                   {"color-relief", path("slope.tif"), path("table.txt"), path("out.tif")});
    QCOMPARE(ended.code, 0);
    const auto bands = bandsOf(path("out.tif"));
    QCOMPARE(bands.size(), 3);
    for (int at = 0; at < numbers.size(); ++at)
        QCOMPARE(colorOf(bands, at), table.classes.at(numbers.at(at)).color);
    QCOMPARE(colorOf(bands, static_cast<int>(numbers.size())), table.voidColor);
}

void ClassesTest::products_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("inDegrees");
    QTest::newRow("slope") << QStringList{"--process", "slope", "--set", "classes=avalanche"} << false;
    QTest::newRow("percent, statistics, COG")
        << QStringList{"--process",       "slope",        "--set", "percent=true", "--set",
                       "classes=farming", "--statistics", "--of",  "COG"}
        << true;
    QTest::newRow("directions") << QStringList{"--process", "aspect", "--set", "directions=8"} << false;
    QTest::newRow("directions of strips")
        << QStringList{"--process",          "aspect", "--set",    "directions=16", "--set",
                       "trigonometric=true", "--part", "5 5 60 50"}
        << true;
}

/// Every cell of the picture has the colour of its product's class; flat cells have that of none.
void ClassesTest::products()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, inDegrees);
    QVector<float> heights;
    for (int row = 0; row < 80; ++row) {
        for (int column = 0; column < 90; ++column)
            heights +=
                row < 20 ? 0.0F : static_cast<float>(70.0 * std::sin(column * 0.2) * std::cos(row * 0.17));
    }
    QVERIFY(writeRaster(path("dem.tif"), 90, 80, heights));
    if (inDegrees) {
        QVERIFY(copyRaster(path("dem.tif"), path("d.tif"),
                           {"-a_srs", "EPSG:4326", "-a_ullr", "8", "60", "8.02", "59.99"}));
        QVERIFY(QFile::remove(path("dem.tif")) && QFile::rename(path("d.tif"), path("dem.tif")));
    }
    const Ended ended = run(arguments);
    QVERIFY2(ended.code == 0, qPrintable(ended.error));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{"dem.tif", "p.tif", "p_classes.tif", "p_classes_legend.png"}));
    const bool isSlope = arguments.contains("slope");
    const bool percent = arguments.contains("percent=true");
    const bool trigonometric = arguments.contains("trigonometric=true");
    const ClassTable table = isSlope
        ? slopeClasses({.percent = percent, .classes = percent ? "farming" : "avalanche"})
        : directionClasses({.trigonometric = trigonometric, .directions = trigonometric ? 16 : 8});
    const auto values = bandsOf(path("p.tif"));
    const auto picture = bandsOf(path("p_classes.tif"));
    QCOMPARE(picture.size(), 3);
    QCOMPARE(picture.first().size(), values.first().size());
    int flat = 0;
    for (int at = 0; at < values.first().size(); ++at) {
        const float value = values.first().at(at);
        const QRgb expected = table.classes.at(classOf(table, value)).color;
        const QRgb found = colorOf(picture, at);
        const bool isUnclear = !isSlope && value == 0.0F; // flat, or exactly the first direction
        flat += isUnclear && found == table.voidColor ? 1 : 0;
        QVERIFY(found == expected || (isUnclear && found == table.voidColor));
    }
    QVERIFY(isSlope || flat > 300);
    const QImage legend(path("p_classes_legend.png"));
    QVERIFY(legend.height() > 2 * 22 * classRows(table).size());

    const QByteArray before = bytesOf(path("p_classes.tif"));
    writeFile(path("p_classes.tif"), "mine");
    QFile::remove(path("p.tif"));
    QCOMPARE(run(arguments).code, 4); // would replace a file
    QCOMPARE(bytesOf(path("p_classes.tif")), QByteArray("mine"));
    QCOMPARE(run(arguments + QStringList{"--overwrite"}).code, 0);
    QCOMPARE(bytesOf(path("p_classes.tif")), before);
}

void ClassesTest::failureLeavesNothing()
{
    QVERIFY(writeHill(path("dem.tif"), 20));
    writeFile(path("t.txt"), "0% 1 2 3\n");
    QVERIFY(run({"--process", "slope", "--set", "classes=" + path("t.txt")}).code != 0);
    QVERIFY(run({"--process", "aspect", "--set", "directions=9"}).code != 0);
    QVERIFY(QDir(m_folder->path()).mkdir("p_classes_legend.png"));
    QVERIFY(run({"--process", "slope", "--set", "classes=building", "--overwrite"}).code != 0);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{"dem.tif", "p_classes_legend.png", "t.txt"}));
}

QTEST_GUILESS_MAIN(ClassesTest)
#include "classes_test.moc"
