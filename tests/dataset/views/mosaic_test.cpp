#include "dataset/views/mosaic.h"

#include "dataset/gdalmessages.h"
#include "dataset/rasterinfo.h"
#include "dataset/views/tiles.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <gdal_priv.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

class MosaicTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void differences();
    void gaps_data();
    void gaps();
    void sharedRow();
    void roundedCoordinates();
    void refusals();
    void names();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/tuiles é中 XXXXXX")};
    WorkFolder m_workFolder;
};

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A tile of 100 × 100 cells of 10 m.
Tile tileAt(double x, double y)
{
    Tile tile;
    tile.path = QStringLiteral("/t/%1.tif").arg(x);
    tile.width = tile.height = 100;
    tile.toGround = {x, 10.0, 0.0, y, 0.0, -10.0};
    tile.georeferenced = true;
    tile.types = QStringList{"Int16"};
    tile.units = QStringList{"m"};
    tile.noData = {-9999.0};
    return tile;
}

QVector<float> cellsOf(const QString &path)
{
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(path.toUtf8().constData()));
    if (!dataset)
        return {};
    const int width = dataset->GetRasterXSize();
    const int height = dataset->GetRasterYSize();
    QVector<float> cells(width * height);
    const CPLErr result = dataset->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, cells.data(), width,
                                                              height, GDT_Float32, 0, 0, nullptr);
    return result == CE_None ? cells : QVector<float>();
}

} // namespace

void MosaicTest::differences()
{
    struct Row
    {
        std::function<void(Tile &)> change;
        QString words; ///< text in the sentence; empty: the tiles fit
    };
    const QString wgs84 = "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
                          "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";
    const QVector<Row> rows{
        {[](Tile &) {}, {}},
        {[](Tile &tile) { tile.toGround[3] += 123450.0; }, {}},
        {[](Tile &tile) { tile.toGround[0] += 0.4; }, {}},
        {[](Tile &tile) { tile.toGround[1] *= 1.0 + 1e-4; }, {}},
        {[](Tile &tile) { tile.toGround[1] *= 1.0 + 1e-3; }, "10.01 × 10"},
        {[](Tile &tile) { tile.toGround[5] = -5.0; }, "10 × 5"},
        {[](Tile &tile) { tile.toGround[0] += 5.0; }, "0.50 cellule en largeur et de 0.00"},
        {[](Tile &tile) { tile.toGround[3] -= 2.5; }, "0.00 cellule en largeur et de 0.25"},
        {[](Tile &tile) { tile.types = QStringList{"Float32"}; }, "Int16 dans la première et Float32"},
        {[](Tile &tile) { tile.types += "Int16"; }, "1 dans la première, 2"},
        {[](Tile &tile) { tile.units = QStringList{"ft"}; }, "« m » dans la première et « ft »"},
        {[](Tile &tile) { tile.noData = {-32768.0}; }, QStringLiteral("sans donnée")},
        {[](Tile &tile) { tile.noData = {std::nullopt}; }, "aucune valeur"},
        {[&](Tile &tile) { tile.crs = wgs84; }, "WGS 84"},
    };
    QLocale::setDefault(QLocale(QLocale::French));
    for (const Row &row : rows) {
        Tile other = tileAt(2000.0, 0.0);
        row.change(other);
        const QString sentence = tileDifference(tileAt(1000.0, 0.0), other);
        QVERIFY2(row.words.isEmpty() ? sentence.isEmpty() : sentence.contains(row.words), qPrintable(sentence));
        if (!row.words.isEmpty())
            QVERIFY2(sentence.contains("1000.tif") && sentence.contains("2000.tif"), qPrintable(sentence));
    }
    Tile undefined = tileAt(0.0, 0.0);
    undefined.noData = {notANumber};
    QCOMPARE(tileDifference(undefined, undefined), QString());

    for (const auto &change : QVector<std::function<void(Tile &)>>{
             [](Tile &tile) { tile.georeferenced = false; }, [](Tile &tile) { tile.toGround[2] = 0.1; },
             [](Tile &tile) { tile.toGround[5] = 10.0; }, [](Tile &tile) { tile.toGround[1] = -10.0; },
             [](Tile &tile) { tile.problem = "Non."; }}) {
        Tile tile = tileAt(1000.0, 0.0);
        QCOMPARE(tileProblem(tile), QString());
        change(tile);
        QVERIFY(tileProblem(tile).contains("1000.tif"));
    }
}

void MosaicTest::gaps_data()
{
    QTest::addColumn<QVector<QPointF>>("corners");
    QTest::addColumn<bool>("expected");
    QTest::newRow("one") << QVector<QPointF>{{0, 0}} << false;
    QTest::newRow("side by side") << QVector<QPointF>{{1000, 0}, {0, 0}} << false;
    QTest::newRow("a column between") << QVector<QPointF>{{0, 0}, {1010, 0}} << true;
    QTest::newRow("overlapping") << QVector<QPointF>{{0, 0}, {990, 0}} << false;
    QTest::newRow("L") << QVector<QPointF>{{0, 0}, {1000, 0}, {0, 1000}} << true;
    QTest::newRow("square") << QVector<QPointF>{{0, 0}, {1000, 0}, {0, 1000}, {1000, 1000}} << false;
    QTest::newRow("a row between") << QVector<QPointF>{{0, 0}, {0, 1010}} << true;
}

void MosaicTest::gaps()
{
    QFETCH(QVector<QPointF>, corners);
    QVector<Tile> tiles;
    for (const QPointF &corner : corners)
        tiles += tileAt(corner.x(), corner.y());
    QTEST(leaveGaps(tiles), "expected");
}

/// Tiles of one degree hold 1201 rows: the southernmost of one is the northernmost of the next.
void MosaicTest::sharedRow()
{
    constexpr int side = 1201;
    const auto elevation = [](int row, int column) { return (7 * row + column) % 3000; };
    const auto writeTile = [&](const QString &name, int firstRow) {
        QVector<qint16> cells;
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column)
                cells += qToBigEndian(static_cast<qint16>(elevation(firstRow + row, column)));
        }
        return writeFile(path(name),
                         QByteArray(reinterpret_cast<const char *>(cells.constData()), side * side * 2));
    };
    const QStringList tiles{writeTile("N45E006.hgt", side - 1), writeTile("N46E006.hgt", 0)};
    const Mosaic mosaic = makeMosaic(tiles, m_workFolder);
    QCOMPARE(mosaic.problem, QString());
    QCOMPARE(mosaic.warnings, QStringList());
    QVERIFY(mosaic.path.startsWith(m_workFolder.path()));
    const RasterInfo info = readRasterInfo(mosaic.path);
    QCOMPARE(QSize(info.width, info.height), QSize(side, 2 * side - 1));
    QCOMPARE(info.files, (QStringList{mosaic.path} + tiles));
    QVERIFY(bytesOf(mosaic.path).contains("<UnitType>m</UnitType>")); // of such files
    const QVector<float> cells = cellsOf(mosaic.path);
    QCOMPARE(cells.size(), side * (2 * side - 1));
    for (int row = 0; row < 2 * side - 1; ++row) {
        for (int column = 0; column < side; ++column)
            QCOMPARE(static_cast<int>(cells.at(row * side + column)), elevation(row, column));
    }
    QCOMPARE(QDir(m_folder.path()).entryList({"N4*"}, QDir::Files).size(), 2);
}

/// A grid off by a few hundredths of a cell shows the very cells of each tile.
void MosaicTest::roundedCoordinates()
{
    QVERIFY(writeRaster(path("plain.tif"), 3, 2, {1, 2, 3, 4, 5, 6}));
    QVERIFY(copyRaster(path("plain.tif"), path("off.tif"),
                       {"-a_ullr", "500029.7", "5100000.2", "500059.71", "5099980.2"}));
    const Mosaic mosaic = makeMosaic({path("plain.tif"), path("off.tif")}, m_workFolder);
    QCOMPARE(mosaic.problem, QString());
    QCOMPARE(cellsOf(mosaic.path), (QVector<float>{1, 2, 3, 1, 2, 3, 4, 5, 6, 4, 5, 6}));
}

void MosaicTest::refusals()
{
    QVERIFY(writeRaster(path("one.tif"), 3, 2, {1, 2, 3, 4, 5, 6}));
    QVERIFY(copyRaster(path("one.tif"), path("whole.tif"), {"-ot", "Int16"}));
    QVERIFY(copyRaster(path("one.tif"), path("plain.tif"), {"-a_nodata", "none"}));
    QVERIFY(copyRaster(path("one.tif"), path("far.tif"),
                       {"-a_nodata", "none", "-a_ullr", "500060", "5100000", "500090", "5099980"}));
    const Mosaic refused = makeMosaic({path("one.tif"), path("whole.tif")}, m_workFolder);
    QVERIFY(refused.path.isEmpty() && refused.problem.contains("Float32"));
    QVERIFY(makeMosaic({path("one.tif"), path("missing.tif")}, m_workFolder).problem.contains("missing.tif"));
    const Mosaic gapped = makeMosaic({path("plain.tif"), path("far.tif")}, m_workFolder);
    QVERIFY2(gapped.problem.isEmpty() && gapped.warnings.size() == 1, qPrintable(gapped.problem));
}

void MosaicTest::names()
{
    QCOMPARE(mosaicName({"/a/b.c.tif", "/a/d.tif"}), QString("/a/b.c_mosaic.vrt"));
    QCOMPARE(mosaicName({}), QString());
    QDir(m_folder.path()).mkpath("sub/inner");
    QVERIFY(writeRaster(path("sub/b.tif"), 1, 1, {1}) && writeRaster(path("sub/a.tif"), 1, 1, {1})
            && writeRaster(path("sub/inner/c.tif"), 1, 1, {1}));
    QVERIFY(QFile::copy(path("sub/a.tif"), path("sub/a.tif.ovr")));
    writeFile(path("sub/notes.txt"), "text");
    QCOMPARE(rastersInFolder(path("sub")), (QStringList{path("sub/a.tif"), path("sub/b.tif")}));
}

QTEST_GUILESS_MAIN(MosaicTest)
#include "mosaic_test.moc"
