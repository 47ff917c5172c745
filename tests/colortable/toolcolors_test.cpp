#include "colortable/toolcolors.h"

#include "colortable/colortablefile.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

#include <cmath>
#include <memory>

/// Compares the colours with those of the tool, cell by cell.
class ToolColorsTest : public QObject
{
    Q_OBJECT

private slots:
    void equalTheTools_data();
    void equalTheTools();
};

namespace
{

constexpr int width = 200;
constexpr int height = 50;

/// Elevations on the entries of the tables below, just beside them, between them, beyond them, and voids.
QVector<float> elevations()
{
    QVector<float> cells;
    for (const float value : {-20.0F, 0.0F, 10.0F, 33.3F, 50.0F, 100.0F, 250.0F, -9999.0F}) {
        for (const float direction : {-1e30F, 1e30F})
            cells += {value, std::nextafter(value, direction)};
    }
    QRandomGenerator random(5);
    while (cells.size() < width * height)
        cells += static_cast<float>(random.bounded(300.0) - 50.0);
    cells[20] = 260.0F; // the extremes, for percentages
    cells[21] = -60.0F;
    for (float &cell : cells)
        cell = cell < -100.0F ? -9999.0F : cell;
    return cells;
}

} // namespace

void ToolColorsTest::equalTheTools_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("elevations") << QByteArray("0 0 0 0\n50 200 100 7\n100 255 255 255 100\n");
    QTest::newRow("no-data entry") << QByteArray("nv 1 2 3 4\n10 9 8 7\n250 255 0 128 200\n");
    QTest::newRow("edges") << QByteArray("0 0 0 90\n0 90 200 90\n50 1 2 3\n50 9 9 9\n50 200 0 0\n"
                                         "33.3 0 0 0\n33.3 255 255 255\n100 3 4 5\n");
    QTest::newRow("percentages") << QByteArray("0% 0 0 0\n33.3% 250 3 77\n100% 255 255 255\n");
    // Of other programs: bounds that belong to the range below, single values, and colours outside of the
    // ranges.
    QTest::newRow("bounds below") << QByteArray(
        "INTERPOLATION:DISCRETE\n0,1,1,1,9,\n10,2,2,2,99,\n33.3,3,3,3,255,\n"
        "50,4,4,4,255,\n100,5,5,5,255,\n");
    QTest::newRow("single values") << QByteArray(
        "INTERPOLATION:EXACT\n0,1,1,1,9,\n33.3,2,2,2,99,\n250,3,3,3,255,\n");
    QTest::newRow("ranges") << QByteArray("# COLOR_MODEL = +HSV\n0 0-1-1 33.3 300-1-0.5\n33.3 red 50 -\n"
                                          "50 - 100 -\n100 9 250 10\nB 1-1-1\nF 99-0.5-1\nN -\n");
    QTest::newRow("one entry") << QByteArray("10 1 2 3\n");
}

void ToolColorsTest::equalTheTools()
{
    QFETCH(QByteArray, table);
    const QTemporaryDir folder;
    const QVector<float> cells = elevations();
    QVERIFY(writeRaster(folder.filePath("dem.tif"), width, height, cells));
    const QList<QuvoColorDef> entries = parseColorTable(table).entries;
    writeFile(folder.filePath("table.txt"), toolTableText(entries));
    const Ended ended = runProgram(QUVO_TREE "/gdal_dem.exe",
                                   {"color-relief", folder.filePath("dem.tif"), folder.filePath("table.txt"),
                                    folder.filePath("relief.tif"), "-alpha", "-q"});
    QCOMPARE(ended.code, 0);

    GDALAllRegister();
    const std::unique_ptr<GDALDataset> relief(
        GDALDataset::Open(folder.filePath("relief.tif").toUtf8().constData(), GDAL_OF_RASTER));
    QVERIFY(relief);
    std::vector<unsigned char> levels(std::size_t{width} * height * 4);
    QCOMPARE(relief->RasterIO(GF_Read, 0, 0, width, height, levels.data(), width, height, GDT_Byte, 4, nullptr,
                              4, width * 4, 1, nullptr),
             CE_None);
    const ToolColors colors(entries, -60.0, 260.0);
    for (int cell = 0; cell < cells.size(); ++cell) {
        const unsigned char *tools = &levels[static_cast<std::size_t>(cell) * 4];
        const float elevation = cells.at(cell);
        const QRgb ours = elevation == -9999.0F ? colors.noDataColor() : colors.color(elevation);
        QVERIFY2(ours == qRgba(tools[0], tools[1], tools[2], tools[3]),
                 qPrintable(QStringLiteral("%1: %2, the tool has %3 %4 %5 %6")
                                .arg(QString::number(elevation, 'g', 9), QString::number(ours, 16))
                                .arg(tools[0])
                                .arg(tools[1])
                                .arg(tools[2])
                                .arg(tools[3])));
    }
}

QTEST_GUILESS_MAIN(ToolColorsTest)
#include "toolcolors_test.moc"
