#include "dataset/contours/smoothing.h"

#include "dataset/gdalmessages.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

#include <cmath>
#include <memory>
#include <random>

namespace
{

constexpr int width = 41;
constexpr int height = 37;
constexpr float noData = -9999.0F;

/// Noise on a slope, with voids at corners, edges and as lone cells; one is not a number.
QVector<float> terrain()
{
    QVector<float> cells(width * height);
    std::minstd_rand random;
    for (int at = 0; at < cells.size(); ++at)
        cells[at] = static_cast<float>(100 + at % width + static_cast<int>(random() % 1000) / 100.0);
    for (const int at : {0, 1, width - 1, 5 * width + 7, 20 * width, 20 * width + 1, width * height - 1})
        cells[at] = noData;
    for (int row = 10; row < 16; ++row)
        for (int column = 12; column < 30; ++column)
            cells[row * width + column] = noData;
    cells[13 * width + 20] = 150.0F; // an island
    cells[30 * width + 11] = std::numeric_limits<float>::quiet_NaN();
    return cells;
}

bool isVoid(double cell, const QVector<double> &voids)
{
    return std::isnan(cell) || voids.contains(cell);
}

/// The weighted mean by its definition.
double meanAround(const QVector<float> &cells, int column, int row, int radius, const QVector<double> &voids)
{
    double sum = 0.0;
    double weights = 0.0;
    for (int y = row - radius; y <= row + radius; ++y) {
        for (int x = column - radius; x <= column + radius; ++x) {
            if (x < 0 || y < 0 || x >= width || y >= height || isVoid(cells[y * width + x], voids))
                continue;
            const double distance2 = (x - column) * (x - column) + (y - row) * (y - row);
            const double weight = std::exp(-distance2 / (2.0 * radius * radius / 4.0));
            sum += weight * cells[y * width + x];
            weights += weight;
        }
    }
    return sum / weights;
}

QVector<double> cellsOf(const QString &path)
{
    QVector<double> cells(width * height);
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(qPrintable(path)));
    const bool isRead = dataset
        && dataset->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, cells.data(), width, height,
                                               GDT_Float64, 0, 0, nullptr)
            == CE_None;
    return isRead ? cells : QVector<double>();
}

bool always(int)
{
    return true;
}

} // namespace

/// The smoothing of a DEM before its contours are drawn.
class SmoothingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void isTheWeightedMean_data();
    void isTheWeightedMean();
    void keepsTypeAndDescription();
    void keepsFlatGround();
    void stopAndFailureLeaveNothing();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    const QTemporaryDir m_folder;
};

void SmoothingTest::isTheWeightedMean_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<bool>("everyValueValid");
    QTest::addColumn<double>("ignored"); // 0: none
    QTest::addColumn<QVector<double>>("voids");
    QTest::newRow("one cell") << 1 << false << 0.0 << QVector<double>{noData};
    QTest::newRow("few cells") << 4 << false << 0.0 << QVector<double>{noData};
    QTest::newRow("farther than the DEM reaches") << 50 << false << 0.0 << QVector<double>{noData};
    QTest::newRow("every value valid") << 3 << true << 0.0 << QVector<double>{};
    QTest::newRow("ignored value") << 3 << false << 150.0 << QVector<double>{noData, 150.0};
}

void SmoothingTest::isTheWeightedMean()
{
    QFETCH(const int, radius);
    QFETCH(const bool, everyValueValid);
    QFETCH(const double, ignored);
    QFETCH(const QVector<double>, voids);
    const QVector<float> before = terrain();
    QVERIFY(writeRaster(path("dem.tif"), width, height, before));
    SmoothRequest request{path("dem.tif"), 1, radius, {everyValueValid, {}}, path("smooth.tif")};
    if (ignored != 0.0)
        request.voids.ignored = ignored;
    int last = 0;
    const SmoothResult result = smoothDem(request, [&last](int percent) {
        last = percent;
        return true;
    });
    QVERIFY2(result.problem.isEmpty() && !result.isStopped, qPrintable(result.problem));
    QCOMPARE(last, 100);
    const QVector<double> after = cellsOf(path("smooth.tif"));
    QCOMPARE(after.size(), before.size());
    for (int at = 0; at < before.size(); ++at) {
        if (isVoid(before[at], voids)) {
            QVERIFY(std::isnan(before[at]) ? std::isnan(after[at])
                                           : after[at] == static_cast<double>(before[at]));
            continue;
        }
        const double mean = meanAround(before, at % width, at / width, radius, voids);
        QVERIFY2(std::abs(after[at] - mean) <= 1e-4 * std::abs(mean),
                 qPrintable(QString("cell %1: %2, not %3").arg(at).arg(after[at]).arg(mean)));
    }
}

void SmoothingTest::keepsTypeAndDescription()
{
    QVERIFY(writeRaster(path("dem.tif"), width, height, terrain()));
    for (const auto &[type, smoothed] :
         {std::pair("Int16", "Float32"), {"Int32", "Float64"}, {"Float64", "Float64"}}) {
        QVERIFY(
            copyRaster(path("dem.tif"), path("typed.tif"), {"-ot", type, "-a_scale", "0.5", "-a_offset", "7"}));
        QVERIFY(smoothDem({path("typed.tif"), 1, 2, {}, path("smooth.tif")}, always).problem.isEmpty());
        const auto description = [](const QString &file) {
            QStringList kept;
            for (const QString &line : runProgram("gdalinfo", {file}).out.split('\n'))
                if (line.contains(QRegularExpression("Origin|Pixel|NoData|Offset|ID\\[")))
                    kept += line;
            return kept;
        };
        QVERIFY(description(path("smooth.tif")).size() >= 5);
        QCOMPARE(description(path("smooth.tif")), description(path("typed.tif")));
        QVERIFY(runProgram("gdalinfo", {path("smooth.tif")}).out.contains(QString("Type=") + smoothed));
    }
}

/// Rounding would make a shore of every lake, whose contour lines are noise.
void SmoothingTest::keepsFlatGround()
{
    QVector<float> cells(width * height, 373.1F);
    cells[20 * width + 20] = noData;
    QVERIFY(writeRaster(path("dem.tif"), width, height, cells));
    QVERIFY(copyRaster(path("dem.tif"), path("double.tif"), {"-ot", "Float64"})); // Float32 would hide rounding
    QVERIFY(smoothDem({path("double.tif"), 1, 7, {}, path("smooth.tif")}, always).problem.isEmpty());
    QCOMPARE(cellsOf(path("smooth.tif")), cellsOf(path("double.tif")));
}

void SmoothingTest::stopAndFailureLeaveNothing()
{
    QVERIFY(writeRaster(path("dem.tif"), width, height, terrain()));
    QVERIFY(QDir(path("")).mkpath("out"));
    const SmoothResult stopped =
        smoothDem({path("dem.tif"), 1, 5, {}, path("out/a.tif")}, [](int percent) { return percent < 60; });
    QVERIFY(stopped.isStopped && stopped.problem.isEmpty());
    QVERIFY(smoothDem({path("none.tif"), 1, 5, {}, path("out/a.tif")}, always).problem.contains("none.tif"));
    QCOMPARE(QDir(path("out")).entryList(QDir::Files), QStringList());
}

QTEST_GUILESS_MAIN(SmoothingTest)
#include "smoothing_test.moc"
