#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <array>
#include <cmath>
#include <memory>

namespace
{

constexpr double radian = 0.017453292519943295;

/// The cells of a raster's first band and where they lie.
struct Cells
{
    int width = 0;
    int height = 0;
    QVector<float> values;
    std::array<double, 6> toGround{};
    bool isGeoreferenced = false;
    bool hasCrs = false;

    double at(int row, int column) const { return values.at(row * width + column); }
};

Cells readCells(const QString &path)
{
    Cells cells;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (!dataset)
        return cells;
    cells.width = dataset->GetRasterXSize();
    cells.height = dataset->GetRasterYSize();
    cells.values.resize(cells.width * cells.height);
    cells.isGeoreferenced = dataset->GetGeoTransform(cells.toGround.data()) == CE_None;
    cells.hasCrs = dataset->GetSpatialRef() != nullptr;
    if (dataset->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, cells.width, cells.height, cells.values.data(),
                                            cells.width, cells.height, GDT_Float32, 0, 0, nullptr)
        != CE_None)
        cells.values.clear();
    return cells;
}

/// Horn's gradient of a cell, in elevation per column eastwards and per row northwards.
QPointF gradient(const Cells &dem, int row, int column)
{
    const auto z = [&](int down, int right) { return dem.at(row + down, column + right); };
    return {((z(-1, 1) + 2 * z(0, 1) + z(1, 1)) - (z(-1, -1) + 2 * z(0, -1) + z(1, -1))) / 8.0,
            ((z(-1, -1) + 2 * z(-1, 0) + z(-1, 1)) - (z(1, -1) + 2 * z(1, 0) + z(1, 1))) / 8.0};
}

/// Width and height in metres of the cells of a row in degrees on the ellipsoid WGS 84.
QSizeF cellOnEllipsoid(const Cells &dem, int row)
{
    const double latitude = (dem.toGround[3] + (row + 0.5) * dem.toGround[5]) * radian;
    const double flattening = 1.0 / 298.257223563;
    const double square = flattening * (2.0 - flattening);
    const double w = std::sqrt(1.0 - square * std::sin(latitude) * std::sin(latitude));
    return {dem.toGround[1] * radian * 6378137.0 / w * std::cos(latitude),
            -dem.toGround[5] * radian * 6378137.0 * (1.0 - square) / (w * w * w)};
}

double turn(double one, double other)
{
    return std::abs(std::remainder(one - other, 360.0));
}

} // namespace

/// Products of DEMs that the tools misread: in degrees, in feet, with rows from the south, rotated, or without
/// georeference.
class TrueMetresTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void degrees_data();
    void degrees();
    void mirrored_data();
    void mirrored();
    void feetWithVoids();
    void otherFormats_data();
    void otherFormats();
    void withoutGeoreference();
    void rotated();
    void chosenRatioStays();
    void partsEqualTheWhole_data();
    void partsEqualTheWhole();
    void statistics_data();
    void statistics();
    void voidsAreFilled();
    void contoursInMetres();
    void observersInMetres();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    Cells product(const QStringList &arguments, const QString &dem, const QString &output = "product.tif");
    QString inDegrees(double north);

    std::unique_ptr<QTemporaryDir> m_folder;
    const QByteArray m_systemFolder = QDir::tempPath().toLocal8Bit();
    QString m_error;
};

void TrueMetresTest::initTestCase()
{
    setUpGdal();
}

void TrueMetresTest::init()
{
    qputenv("TMPDIR", m_systemFolder);
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/mètres \"é\" XXXXXX"));
    QVERIFY(QDir(m_folder->path()).mkdir("tmp") && qputenv("TMPDIR", path("tmp").toLocal8Bit()));
    QVector<float> values;
    for (int row = 0; row < 240; ++row) {
        for (int column = 0; column < 240; ++column)
            values += static_cast<float>(3000.0 * std::sin(column * 0.21) * std::cos(row * 0.17) + row);
    }
    QVERIFY(writeRaster(path("dem.tif"), 240, 240, values));
}

void TrueMetresTest::cleanup()
{
    QCOMPARE(QDir(path("tmp")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
    QCOMPARE(QDir(m_folder->path()).entryList({".*"}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

Cells TrueMetresTest::product(const QStringList &arguments, const QString &dem, const QString &output)
{
    const Ended ended =
        runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"),
                   QStringList{"--process"} + arguments
                       + QStringList{"--input", path(dem), "--output", path(output), "--overwrite"});
    m_error = ended.error;
    return ended.code == 0 ? readCells(path(output)) : Cells();
}

/// A DEM of one degree whose northern edge has that latitude.
QString TrueMetresTest::inDegrees(double north)
{
    const bool isWritten = copyRaster(path("dem.tif"), path("degrees.tif"),
                                      {"-a_srs", "EPSG:4326", "-a_ullr", "8", QByteArray::number(north), "9",
                                       QByteArray::number(north - 1.0)});
    return isWritten ? QStringLiteral("degrees.tif") : QString();
}

void TrueMetresTest::degrees_data()
{
    QTest::addColumn<double>("north");
    QTest::newRow("Alps") << 47.0;
    QTest::newRow("Lapland") << 69.0;
    QTest::newRow("across the equator") << 0.4;
}

void TrueMetresTest::degrees()
{
    QFETCH(double, north);
    const QString name = inDegrees(north);
    const Cells dem = readCells(path(name));
    const Cells slope = product({"slope"}, name);
    QVERIFY2(m_error.contains(QRegularExpression("(Degrees|Degrés) ?: ")), qPrintable(m_error));
    const Cells aspect = product({"aspect"}, name);
    const Cells trigonometric = product({"aspect", "--set", "trigonometric=true"}, name);
    const Cells hillshade = product({"hillshade"}, name);
    QCOMPARE(slope.toGround, dem.toGround);
    QCOMPARE(hillshade.toGround, dem.toGround);
    QVERIFY(slope.hasCrs && aspect.hasCrs && hillshade.hasCrs);
    const double light = 315.0 * radian;
    for (int row = 1; row < dem.height - 1; ++row) {
        const QSizeF cell = cellOnEllipsoid(dem, row);
        for (int column = 1; column < dem.width - 1; ++column) {
            const QPointF rise = gradient(dem, row, column);
            const QPointF uphill(rise.x() / cell.width(), rise.y() / cell.height());
            const double steepness = std::hypot(uphill.x(), uphill.y());
            const double angle = std::atan(steepness) / radian;
            if (angle > 5.0)
                QVERIFY(std::abs(slope.at(row, column) / angle - 1.0) < 0.006);
            const double azimuth = std::atan2(-uphill.x(), -uphill.y()) / radian;
            if (steepness > 1e-2) {
                QVERIFY(turn(aspect.at(row, column), azimuth) < 0.01);
                QVERIFY(turn(trigonometric.at(row, column), 90.0 - azimuth) < 0.01);
            }
            const double lit = (1.0 - std::sin(light) * uphill.x() - std::cos(light) * uphill.y())
                * std::sqrt(0.5) / std::sqrt(1.0 + steepness * steepness);
            // The light's own elevation is 45°, so that its vertical and horizontal parts are equal.
            QVERIFY(std::abs(hillshade.at(row, column) - (1.0 + 254.0 * std::max(0.0, lit))) < 2.0);
        }
    }
}

void TrueMetresTest::mirrored_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("hillshade") << QStringList{"hillshade"};
    QTest::newRow("hillshade, a ratio of one's own")
        << QStringList{"hillshade", "--set", "scaleText=2", "--set", "zevenbergenThorne=true"};
    QTest::newRow("slope") << QStringList{"slope", "--set", "percent=true"};
    QTest::newRow("aspect") << QStringList{"aspect"};
    QTest::newRow("TRI") << QStringList{"TRI"};
    QTest::newRow("TPI") << QStringList{"TPI"};
    QTest::newRow("roughness") << QStringList{"roughness", "--set", "computeEdges=false"};
}

/// The same ground, stored with rows from the south and columns from the east, has the same product.
void TrueMetresTest::mirrored()
{
    QFETCH(QStringList, arguments);
    const Cells dem = readCells(path("dem.tif"));
    QVector<float> turned;
    for (auto at = dem.values.size(); at > 0; --at)
        turned += dem.values.at(at - 1);
    QVERIFY(writeRaster(path("mirrored.tif"), dem.width, dem.height, turned));
    {
        const std::unique_ptr<GDALDataset> dataset(
            GDALDataset::Open(encodePath(path("mirrored.tif")).constData(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
        std::array<double, 6> toGround{502400.0, -10.0, 0.0, 5097600.0, 0.0, 10.0};
        QCOMPARE(dataset->SetGeoTransform(toGround.data()), CE_None);
    }
    const Cells straight = product(arguments, "dem.tif");
    const Cells other = product(arguments, "mirrored.tif");
    QVERIFY(!straight.values.isEmpty());
    QCOMPARE(other.values, straight.values);
    QCOMPARE(other.toGround, straight.toGround);
}

void TrueMetresTest::feetWithVoids()
{
    constexpr double foot = 0.3048;
    Cells dem = readCells(path("dem.tif"));
    QVector<float> feet;
    for (const float metres : qAsConst(dem.values))
        feet += static_cast<float>(metres / foot);
    feet[100 * 240 + 50] = -9999.0F;
    QVERIFY(writeRaster(path("plain.tif"), 240, 240, feet));
    {
        const std::unique_ptr<GDALDataset> dataset(
            GDALDataset::Open(encodePath(path("plain.tif")).constData(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
        dataset->GetRasterBand(1)->SetUnitType("ft");
    }
    dem.values[100 * 240 + 50] = -9999.0F;
    QVERIFY(writeRaster(path("void.tif"), 240, 240, dem.values));
    const QStringList worldFile{"--tiled", "--world-file"};
    for (const QString &process : QStringList{"slope", "hillshade", "TRI", "roughness"}) {
        const Cells inMetres = product(QStringList{process} + worldFile, "void.tif", "metres.tif");
        const Cells inFeet = product(QStringList{process} + worldFile, "plain.tif", "feet.tif");
        QCOMPARE(inFeet.values.size(), inMetres.values.size());
        for (int at = 0; at < inFeet.values.size(); ++at) {
            const double expected = inMetres.values.at(at);
            QVERIFY(std::abs(inFeet.values.at(at) - expected) <= 1e-4 * std::abs(expected) + 1e-3);
        }
        QCOMPARE(bytesOf(path("feet.tfw")), bytesOf(path("metres.tfw")));
        QCOMPARE(inFeet.toGround, inMetres.toGround);
        const Cells part = product(QStringList{process} + QStringList{"--part", "40 90 30 20"}, "plain.tif");
        QCOMPARE(part.values.size(), 600);
        for (int at = 0; at < 600; ++at)
            QCOMPARE(part.values.at(at), inFeet.values.at((90 + at / 30) * 240 + 40 + at % 30));
    }
}

void TrueMetresTest::otherFormats_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("output");
    QTest::newRow("ENVI") << "ENVI"
                          << "product.img";
    QTest::newRow("COG") << "COG"
                         << "cog.tif";
    QTest::newRow("AAIGrid") << "AAIGrid"
                             << "product.asc";
}

void TrueMetresTest::otherFormats()
{
    QFETCH(QString, format);
    QFETCH(QString, output);
    const QString name = inDegrees(47.0);
    for (const QString &process : QStringList{"slope", "aspect"}) {
        const Cells expected = product({process}, name);
        const Cells other = product({process, "--of", format}, name, output);
        QVERIFY2(!other.values.isEmpty(), qPrintable(m_error));
        for (int at = 0; at < 6; ++at)
            QVERIFY(std::abs(other.toGround[static_cast<std::size_t>(at)]
                             - expected.toGround[static_cast<std::size_t>(at)])
                    < 1e-9);
        for (int at = 0; at < expected.values.size(); ++at)
            QVERIFY(std::abs(other.values.at(at) - expected.values.at(at)) < 1e-3);
    }
    // A format that cannot hold the cells is refused, as the tool itself refuses it.
    QVERIFY(product({"slope", "--of", "PNG"}, name, "product.png").values.isEmpty());
}

/// Rows run from the north then, as in any picture, and the product has no georeference either.
void TrueMetresTest::withoutGeoreference()
{
    QVERIFY(copyRaster(path("dem.tif"), path("metre.tif"), {"-a_ullr", "0", "240", "240", "0"}));
    const Cells expected = product({"hillshade"}, "metre.tif", "expected.tif");
    const Cells dem = readCells(path("dem.tif"));
    {
        GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        const std::unique_ptr<GDALDataset> plain(
            driver->Create(encodePath(path("none.tif")).constData(), 240, 240, 1, GDT_Float32, nullptr));
        QVector<float> values = dem.values;
        QCOMPARE(plain->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 240, 240, values.data(), 240, 240,
                                                   GDT_Float32, 0, 0, nullptr),
                 CE_None);
    }
    for (const QStringList &ratio : {QStringList(), QStringList{"--set", "scaleText=1"}}) {
        const Cells found = product(QStringList{"hillshade"} + ratio, "none.tif");
        QCOMPARE(found.values, expected.values);
        QVERIFY(!found.isGeoreferenced && !found.hasCrs);
    }
}

void TrueMetresTest::rotated()
{
    QVERIFY(copyRaster(path("dem.tif"), path("rotated.tif"), {}));
    {
        const std::unique_ptr<GDALDataset> dataset(
            GDALDataset::Open(encodePath(path("rotated.tif")).constData(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
        std::array<double, 6> toGround{500000.0, 8.0, 6.0, 5100000.0, 6.0, -8.0};
        QCOMPARE(dataset->SetGeoTransform(toGround.data()), CE_None);
    }
    const Cells found = product({"slope"}, "rotated.tif");
    QVERIFY2(!found.values.isEmpty(), qPrintable(m_error));
    QCOMPARE(found.toGround[2], 0.0);
    QCOMPARE(found.toGround[1], 10.0);
    QVERIFY(found.toGround[5] == -10.0 && found.width > 240);
    QCOMPARE(found.at(0, 0), -9999.0); // a corner of the upright grid
    const Cells filled = product({"slope", "--fill-distance", "50", "--fill-mask"}, "rotated.tif");
    QCOMPARE(filled.values, found.values); // the corners are no voids of the DEM
}

/// A ratio that the user chose goes to the tool, on the DEM as it is.
void TrueMetresTest::chosenRatioStays()
{
    const QString name = inDegrees(47.0);
    const Cells chosen = product({"slope", "--set", "scaleIndex=2"}, name);
    QVERIFY2(m_error.isEmpty(), qPrintable(m_error));
    const Cells asIs = product({"slope", "--set", "scaleIndex=2", "--as-is"}, name, "asis.tif");
    QCOMPARE(chosen.values, asIs.values);
    QVERIFY(product({"slope"}, name).values != asIs.values);
    product({"slope", "--set", "scaleIndex=2", "--print-command"}, name);
    QVERIFY2(m_error.isEmpty(), qPrintable(m_error));
    product({"slope", "--print-command"}, name); // the tool alone does not make that product
    QVERIFY(!m_error.isEmpty());
}

void TrueMetresTest::partsEqualTheWhole_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("mirrored");
    for (const char *process : {"hillshade", "slope", "aspect", "TPI"}) {
        QTest::addRow("%s", process) << QStringList{process} << false;
        QTest::addRow("%s, rows from the south", process) << QStringList{process} << true;
    }
    QTest::newRow("colour relief") << QStringList{"color-relief", "--set", "spread=true", "--set",
                                                  "minimum=0",    "--set", "maximum=3000"}
                                   << false;
    QTest::newRow("slope over filled voids") << QStringList{"slope", "--fill-distance", "20"} << false;
}

/// The part's edge, too, is that of the whole DEM's product.
void TrueMetresTest::partsEqualTheWhole()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, mirrored);
    QString dem = inDegrees(47.0);
    const QRect part(30, 20, 110, 150);
    QRect inProduct = part;
    if (mirrored) {
        QVERIFY(copyRaster(path(dem), path("south.tif"), {"-a_ullr", "8", "46", "9", "47"}));
        dem = "south.tif";
        inProduct.moveTop(240 - part.y() - part.height());
    }
    const Cells whole = product(arguments, dem, "whole.tif");
    QVERIFY2(!whole.values.isEmpty(), qPrintable(m_error));
    const Cells found = product(arguments + QStringList{"--part", "30 20 110 150"}, dem);
    QVERIFY2(found.width == 110 && found.height == 150, qPrintable(m_error));
    for (int row = 0; row < found.height; ++row) {
        for (int column = 0; column < found.width; ++column)
            QCOMPARE(found.at(row, column), whole.at(inProduct.y() + row, inProduct.x() + column));
    }
    QVERIFY(std::abs(found.toGround[3] - whole.toGround[3] - inProduct.y() * whole.toGround[5]) < 1e-9);
}

void TrueMetresTest::statistics_data()
{
    QTest::addColumn<QString>("dem");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("plain") << "dem.tif" << QStringList{"slope", "--compress", "DEFLATE"};
    QTest::newRow("strips, COG") << "degrees.tif" << QStringList{"slope", "--of", "COG", "--compress", "LZW"};
    QTest::newRow("directions") << "degrees.tif" << QStringList{"aspect", "--tiled", "--world-file"};
    QTest::newRow("part") << "dem.tif" << QStringList{"TPI", "--part", "10 20 90 80", "--overviews"};
    QTest::newRow("side file") << "degrees.tif" << QStringList{"hillshade", "--of", "PNG"};
}

/// A product with statistics holds the same cells, and the numbers that GDAL computes from them.
void TrueMetresTest::statistics()
{
    QFETCH(QString, dem);
    QFETCH(QStringList, arguments);
    QVERIFY(!inDegrees(69.0).isEmpty());
    const QString output = arguments.contains("PNG") ? "product.png" : "product.tif";
    const Cells plain = product(arguments, dem, output);
    const auto stored = [&](const char *name) {
        const std::unique_ptr<GDALDataset> file(
            GDALDataset::Open(encodePath(path(output)).constData(), GDAL_OF_RASTER));
        const char *text = file->GetRasterBand(1)->GetMetadataItem(name);
        return text ? QByteArray(text).toDouble() : qQNaN();
    };
    QVERIFY(std::isnan(stored("STATISTICS_MEAN")));
    std::array<double, 4> computed{};
    {
        const std::unique_ptr<GDALDataset> file(
            GDALDataset::Open(encodePath(path(output)).constData(), GDAL_OF_RASTER));
        QCOMPARE(file->GetRasterBand(1)->ComputeStatistics(FALSE, &computed[0], &computed[1], &computed[2],
                                                           &computed[3], nullptr, nullptr),
                 CE_None);
    }
    QFile::remove(path(output + ".aux.xml"));
    const Cells cells = product(arguments + QStringList{"--statistics"}, dem, output);
    QVERIFY2(!cells.values.isEmpty() && cells.values == plain.values, qPrintable(m_error));
    QCOMPARE(cells.toGround, plain.toGround);
    QCOMPARE(stored("STATISTICS_MINIMUM"), computed[0]);
    QCOMPARE(stored("STATISTICS_MAXIMUM"), computed[1]);
    QCOMPARE(stored("STATISTICS_MEAN"), computed[2]);
    QCOMPARE(stored("STATISTICS_STDDEV"), computed[3]);
    QVERIFY(!QFile::exists(path("product.tif.aux.xml")));
    product(arguments, dem, output); // without statistics, which must not stay behind
    QVERIFY(std::isnan(stored("STATISTICS_MEAN")));
}

void TrueMetresTest::voidsAreFilled()
{
    Cells dem = readCells(path("dem.tif"));
    for (int row = 100; row < 110; ++row) {
        for (int column = 100; column < 110; ++column)
            dem.values[row * dem.width + column] = -9999.0F;
    }
    for (int column = 0; column < dem.width; ++column) { // too wide to be filled
        for (int row = 150; row < 200; ++row)
            dem.values[row * dem.width + column] = -9999.0F;
    }
    QVERIFY(writeRaster(path("voids.tif"), dem.width, dem.height, dem.values));
    const QByteArray before = bytesOf(path("voids.tif"));
    const Cells slope = product({"slope", "--fill-distance", "15", "--fill-mask"}, "voids.tif");
    const Cells mask = readCells(path("product_filled.tif"));
    QVERIFY2(mask.width == 240, qPrintable(m_error));
    QCOMPARE(bytesOf(path("voids.tif")), before);
    QVERIFY(slope.at(105, 105) >= 0.0 && slope.at(175, 20) == -9999.0);
    for (const auto &[row, column, filled] :
         {std::tuple{99, 105, 0.0}, {100, 105, 1.0}, {105, 105, 1.0}, {110, 105, 0.0}, {175, 20, 0.0}})
        QCOMPARE(mask.at(row, column), filled);
    QCOMPARE(mask.toGround, slope.toGround);
    const Cells part =
        product({"slope", "--fill-distance", "15", "--fill-mask", "--part", "90 90 40 40"}, "voids.tif");
    const Cells partMask = readCells(path("product_filled.tif"));
    QVERIFY2(partMask.width == 40 && part.width == 40, qPrintable(m_error));
    QVERIFY(partMask.at(10, 15) == 1.0 && partMask.at(9, 15) == 0.0);
}

void TrueMetresTest::contoursInMetres()
{
    const QString dem = inDegrees(47.0);
    QVERIFY2(
        product({"contour", "--set", "interval=500", "--reproject", "auto"}, dem, "lines.shp").values.isEmpty(),
        qPrintable(m_error));
    const std::unique_ptr<GDALDataset> lines(
        GDALDataset::Open(encodePath(path("lines.shp")).constData(), GDAL_OF_VECTOR));
    QVERIFY2(lines && lines->GetLayer(0)->GetSpatialRef(), qPrintable(m_error));
    QCOMPARE(lines->GetLayer(0)->GetSpatialRef()->GetUTMZone(), 32);
    QVERIFY(lines->GetLayer(0)->GetFeatureCount() > 100);
}

/// The observers move along with the DEM: on a plain, the middle of what is seen is the observer.
void TrueMetresTest::observersInMetres()
{
    QVERIFY(writeRaster(path("dem.tif"), 200, 200, QVector<float>(200 * 200, 100.0F)));
    const QString dem = inDegrees(47.0);
    writeFile(path("points.geojson"),
              R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{},)"
              R"("geometry":{"type":"Point","coordinates":[8.4,46.3]}}]})");
    const Cells found = product({"intervisibility", "--set", "points=" + path("points.geojson"), "--set",
                                 "height=50", "--set", "distance=9000", "--set", "visibleColor=#ff0000",
                                 "--set", "hiddenColor=#000000", "--reproject", "EPSG:32632"},
                                dem);
    QVERIFY2(!found.values.isEmpty(), qPrintable(m_error));
    double column = 0.0;
    double row = 0.0;
    int seen = 0;
    for (int at = 0; at < found.values.size(); ++at) {
        if (found.values.at(at) != 255.0F)
            continue;
        column += at % found.width + 0.5;
        row += at / found.width + 0.5;
        ++seen;
    }
    const double side = found.toGround[1];
    QVERIFY(std::abs(seen * side * side / (M_PI * 9000.0 * 9000.0) - 1.0) < 0.05);
    // By the projection's own formulae the observer is at 453792 east, 5127555 north.
    QVERIFY(std::abs(found.toGround[0] + column / seen * side - 453792.0) < side);
    QVERIFY(std::abs(found.toGround[3] - row / seen * side - 5127555.0) < side);
}

QTEST_GUILESS_MAIN(TrueMetresTest)
#include "truemetres_test.moc"
