#include "dataset/contours/contourfinish.h"

#include "dataset/contours/contourstyles.h"
#include "dataset/contours/linecourse.h"
#include "dataset/contours/smoothing.h"
#include "dataset/demground.h"
#include "dataset/gdalmessages.h"
#include "dataset/vectorpicture.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <functional>
#include <memory>
#include <numbers>
#include <random>

Q_DECLARE_METATYPE(VoidRule)

namespace
{

constexpr int width = 120;
constexpr int height = 90;
constexpr double cell = 10.0; // metres, and the places of writeRaster()
constexpr float noData = -9999.0F;

const QMap<QString, QString> extensions{
    {"GPKG", ".gpkg"},  {"SQLite", ".sqlite"},   {"GeoJSON", ".geojson"},    {"FlatGeobuf", ".fgb"},
    {"GML", ".gml"},    {"DXF", ".dxf"},         {"ESRI Shapefile", ".shp"}, {"KML", ".kml"},
    {"LIBKML", ".kml"}, {"MapInfo File", ".tab"}};

/// Elevations by column and row.
QVector<float> cellsOf(const std::function<double(double, double)> &elevation)
{
    QVector<float> cells;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            cells += static_cast<float>(elevation(column, row));
    return cells;
}

/// Hills and hollows around 0.
double hills(double column, double row)
{
    return 25.0 * std::sin(column * 0.11) * std::cos(row * 0.07) + 0.05 * column;
}

bool always(double)
{
    return true;
}

/// What a product holds.
struct Read
{
    int points = 0;
    int indexLines = 0;
    int thinLines = 0;
    int wrongWay = 0; ///< lines with the lower ground on their left, and points with their head downhill
    QStringList names;
    QString problem;
};

/// Whether the ground is higher to the left of a direction, a third of a cell away.
bool isHigherOnTheLeft(const DemGround &ground, const LinePlace &place)
{
    const double radians = place.angle * std::numbers::pi / 180.0;
    const QPointF left(-std::sin(radians) * cell / 3.0, std::cos(radians) * cell / 3.0);
    return ground.surfaceElevation(place.point + left).value_or(0.0)
        > ground.surfaceElevation(place.point - left).value_or(0.0);
}

/// Reads a styled product of lines with interval 5 and an index line every 25.
Read readLines(const QString &path, const DemGround &ground, bool isInDegrees)
{
    Read read;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(qPrintable(path), GDAL_OF_VECTOR));
    if (!dataset)
        return {.problem = "not open"};
    for (const auto &feature : *dataset->GetLayer(0)) {
        const OGRGeometry &geometry = *feature->GetGeometryRef();
        const QString style = feature->GetStyleString();
        if (wkbFlatten(geometry.getGeometryType()) == wkbPoint) {
            ++read.points;
            const double angle = QRegularExpression(",a:([-0-9.]+)").match(style).captured(1).toDouble();
            const QPointF place(geometry.toPoint()->getX(), geometry.toPoint()->getY());
            read.wrongWay += isHigherOnTheLeft(ground, {place, angle}) ? 0 : 1;
            read.names += QRegularExpression("t:\"([^\"]*)\"").match(style).captured(1);
            continue;
        }
        const int level = feature->GetFieldIndex("Z");
        const int index = feature->GetFieldIndex("INDEX_LINE");
        const bool isIndexLine = index >= 0 ? feature->GetFieldAsInteger(index) == 1
                                            : style.contains(QRegularExpression("0.4mm|3px"));
        if (level >= 0 && index >= 0
            && isIndexLine != (std::fmod(feature->GetFieldAsDouble(level), 25.0) == 0.0))
            read.problem = "wrong index line";
        ++(isIndexLine ? read.indexLines : read.thinLines);
        const OGRLineString &line = *geometry.toLineString();
        if (!isInDegrees && line.get_Length() > 10 * cell)
            read.wrongWay += isHigherOnTheLeft(ground, middleOf(line)) ? 0 : 1;
        if (!style.contains("8A5A32", Qt::CaseInsensitive)
            && !style.contains("7f5f3f")) // DXF: the nearest of 256
            read.problem = "style " + style;
    }
    return read;
}

} // namespace

/// The finishing of what the contour tool wrote.
class ContourFinishTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void init();
    void styledLines_data();
    void styledLines();
    void plainLinesAreTheTool_s();
    void mirroredDems();
    void shortRings();
    void areas_data();
    void areas();
    void picture_data();
    void picture();
    void smoothedLinesNeitherCrossNorStray();
    void qgisStyleNamesTheFields();
    void stopAndFailureLeaveNothing();

private:
    ContourFinish runTool(const QStringList &options, const QString &driver) const;
    QString path(const QString &name) const { return m_folder.filePath(name); }

    const QTemporaryDir m_folder;
};

void ContourFinishTest::init()
{
    for (const QFileInfo &entry : QDir(m_folder.path()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
        entry.isDir() ? QDir(entry.filePath()).removeRecursively() : QFile::remove(entry.filePath());
    QVERIFY(writeRaster(path("dem.tif"), width, height, cellsOf(hills)));
}

/// Runs the tool on dem.tif; its file, and a product of the driver.
ContourFinish ContourFinishTest::runTool(const QStringList &options, const QString &driver) const
{
    ContourFinish finish;
    finish.lines = path("lines.gpkg");
    QFile::remove(finish.lines);
    finish.layer = "contour";
    finish.dem = path("dem.tif");
    finish.driver = driver;
    finish.product = path("product" + extensions[driver]);
    finish.attribute = "Z";
    finish.lowestAttribute = "ZMIN";
    finish.highestAttribute = "ZMAX";
    const Ended ended = runProgram(QStringLiteral(QUVO_TREE "/gdal_contour.exe"),
                                   QStringList{"-q", "-nln", "contour", "-f", "GPKG"} + options
                                       + QStringList{finish.dem, finish.lines});
    return ended.code == 0 ? finish : ContourFinish();
}

void ContourFinishTest::styledLines_data()
{
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QStringList>("options");
    for (auto driver = extensions.keyBegin(); driver != extensions.keyEnd(); ++driver)
        QTest::newRow(qPrintable(*driver)) << *driver << QStringList{"-a", "Z", "-i", "5"};
    QTest::newRow("3D") << "GPKG" << QStringList{"-3d", "-i", "5"};
}

void ContourFinishTest::styledLines()
{
    QFETCH(const QString, driver);
    QFETCH(const QStringList, options);
    ContourFinish finish = runTool(options, driver);
    finish.index = {5.0, 0.0, 5};
    finish.styled = true;
    const ContourFinishResult result = finishContours(finish, always);
    QCOMPARE(result.problem, QString());
    const bool isInDegrees = driver.contains("KML");
    const Read read = readLines(finish.product, DemGround(finish.dem, 1), isInDegrees);
    QCOMPARE(read.problem, QString());
    QCOMPARE(read.wrongWay, 0);
    QCOMPARE(read.indexLines + read.thinLines, static_cast<int>(result.features));
    if (labelsArePoints(driver)) {
        QVERIFY(read.points > 5);
        QVERIFY(read.names.contains("-25") || read.names.contains("25"));
    } else {
        QCOMPARE(read.points, 0);
    }
    if (driver != "DXF" && !isInDegrees)
        QVERIFY(read.indexLines > 5 && read.thinLines > read.indexLines);
    QVERIFY(driver != "DXF" || bytesOf(finish.product).contains("370\n40\n")); // hundredths of a millimetre
    QVERIFY(!isInDegrees || bytesOf(finish.product).contains("<name>-5</name>"));
    const QString text = runProgram("ogrinfo", {"-ro", "-so", "-al", finish.product}).out;
    QVERIFY2(isInDegrees || driver == "DXF" || text.contains("Transverse Mercator"), qPrintable(text));
    QCOMPARE(text.contains("3D Line String"), options.contains("-3d") && !isInDegrees);
}

/// Without any wish the product is what the tool itself writes.
void ContourFinishTest::plainLinesAreTheTool_s()
{
    for (const QStringList &options : {QStringList{"-a", "Z", "-i", "5"}, {"-3d", "-fl", "3", "7.5"}}) {
        const ContourFinish made = runTool(options, "ESRI Shapefile");
        ContourFinish finish = made;
        finish.attribute = options.contains("-a") ? "Z" : "";
        QCOMPARE(finishContours(finish, always).problem, QString());
        const QString own = path("own.shp");
        QCOMPARE(runProgram(QStringLiteral(QUVO_TREE "/gdal_contour.exe"),
                            QStringList{"-q", "-nln", "contour"} + options + QStringList{finish.dem, own})
                     .code,
                 0);
        const auto content = [](const QString &file) {
            const QString text = runProgram("ogrinfo", {"-ro", "-al", file}).out;
            return text.mid(text.indexOf("Geometry:")).remove(QRegularExpression("\\((own|product)\\)"));
        };
        QCOMPARE(content(finish.product), content(own));
    }
}

/// The tool knows columns and rows only.
void ContourFinishTest::mirroredDems()
{
    for (const double rowStep : {-cell, cell}) {
        {
            const std::unique_ptr<GDALDataset> dem(
                GDALDataset::Open(qPrintable(path("dem.tif")), GDAL_OF_RASTER | GDAL_OF_UPDATE));
            double toGround[] = {500000.0, cell, 0.0, 5100000.0, 0.0, rowStep};
            dem->SetGeoTransform(toGround);
        }
        ContourFinish finish = runTool({"-a", "Z", "-i", "5"}, "GPKG");
        QFile::remove(finish.product);
        finish.styled = true;
        finish.index = {5.0, 0.0, 5};
        QCOMPARE(finishContours(finish, always).problem, QString());
        const Read read = readLines(finish.product, DemGround(finish.dem, 1), false);
        QVERIFY(read.indexLines > 5);
        QCOMPARE(read.wrongWay, 0);
    }
}

void ContourFinishTest::shortRings()
{
    // Two cones, whose rings at level 5 have radii of about 2 and 10 cells; the ramp behind makes an open line.
    QVERIFY(writeRaster(path("dem.tif"), width, height, cellsOf([](double column, double row) {
                            const double small = 9.0 - 2.0 * std::hypot(column - 20, row - 20);
                            const double large = 10.0 - 0.5 * std::hypot(column - 60, row - 50);
                            return std::max({small, large, column - 112.0, 0.0});
                        })));
    const auto lengths = [](const QString &file) {
        QVector<double> each;
        const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(qPrintable(file), GDAL_OF_VECTOR));
        for (const auto &feature : *dataset->GetLayer(0))
            each += feature->GetGeometryRef()->toLineString()->get_Length();
        return each;
    };
    ContourFinish finish = runTool({"-a", "Z", "-fl", "5"}, "GPKG");
    QCOMPARE(lengths(finish.lines).size(), 3);
    finish.shortestRing = 200.0; // metres: the small ring has about 126
    ContourFinishResult result = finishContours(finish, always);
    QCOMPARE(result.leftOut, 1LL);
    QCOMPARE(result.features, 2LL);
    finish.shortestRing = 5000.0; // the open line is shorter, too
    finish.product = path("open.gpkg");
    result = finishContours(finish, always);
    QCOMPARE(result.leftOut, 2LL);
    QCOMPARE(lengths(finish.product).size(), 1);

    // In degrees the length is that on the ground: these cells at 60° north have 10 m, too.
    QVERIFY(copyRaster(path("dem.tif"), path("degrees.tif"),
                       {"-a_srs", "EPSG:4326", "-a_ullr", "7", "60", "7.0216", "59.9919"}));
    QVERIFY(QFile::remove(path("dem.tif")) && QFile::rename(path("degrees.tif"), path("dem.tif")));
    finish = runTool({"-a", "Z", "-fl", "5"}, "GPKG");
    QFile::remove(finish.product);
    finish.shortestRing = 80.0;
    QCOMPARE(finishContours(finish, always).leftOut, 0LL);
    QFile::remove(finish.product);
    finish.shortestRing = 200.0;
    QCOMPARE(finishContours(finish, always).leftOut, 1LL);
}

void ContourFinishTest::areas_data()
{
    QTest::addColumn<QStringList>("levels");
    QTest::addColumn<bool>("voids");
    QTest::addColumn<VoidRule>("rule");
    QTest::newRow("interval") << QStringList{"-i", "5"} << false << VoidRule();
    QTest::newRow("offset, voids") << QStringList{"-i", "5", "-off", "1.3"} << true << VoidRule();
    QTest::newRow("fixed levels, voids") << QStringList{"-fl", "-7", "0", "12"} << true << VoidRule();
    QTest::newRow("one class") << QStringList{"-i", "1000", "-off", "-500"} << false << VoidRule();
    QTest::newRow("every value valid") << QStringList{"-inodata", "-fl", "0"} << true << VoidRule{true, {}};
    QTest::newRow("another value ignored")
        << QStringList{"-snodata", "777", "-fl", "0"} << true << VoidRule{false, 777.0};
}

void ContourFinishTest::areas()
{
    QFETCH(const QStringList, levels);
    QFETCH(const bool, voids);
    QFETCH(const VoidRule, rule);
    QVector<float> cells = cellsOf(hills);
    for (int at = 0; at < cells.size() && voids; at += at % 7 == 0 ? 211 : 38)
        for (const int neighbour : {at, at + 1, at + width})
            cells[neighbour % cells.size()] = noData;
    if (rule.ignored)
        cells[4000] = static_cast<float>(*rule.ignored);
    QVERIFY(writeRaster(path("dem.tif"), width, height, cells));
    const float ignored = static_cast<float>(rule.ignored.value_or(noData)); // the tool knows a single value
    float lowest = 1e9F;
    float highest = -1e9F;
    int valid = 0;
    for (const float value : cells) {
        if (value == ignored && !rule.everyValueValid)
            continue;
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
        ++valid;
    }
    ContourFinish finish = runTool(QStringList{"-p", "-amin", "low", "-amax", "high"} + levels, "GPKG");
    finish.areas = true;
    finish.styled = true;
    finish.voids = rule;
    const ContourFinishResult result = finishContours(finish, always);
    QCOMPARE(result.problem + result.warning, QString());

    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(qPrintable(finish.product), GDAL_OF_VECTOR));
    double area = 0.0;
    double last = lowest; // each area begins where the one below ends
    for (const auto &feature : *dataset->GetLayer(0)) {
        area += feature->GetGeometryRef()->toMultiPolygon()->get_Area();
        QCOMPARE(feature->GetFieldAsDouble("ZMIN"), last);
        last = feature->GetFieldAsDouble("ZMAX");
        QVERIFY(QString(feature->GetStyleString()).startsWith("BRUSH(fc:#"));
    }
    QCOMPARE(last, static_cast<double>(highest));
    const double expected = valid * cell * cell;
    QVERIFY2(std::abs(area - expected) <= (voids ? 5e-3 : 1e-9) * expected,
             qPrintable(QString("%1 instead of %2").arg(area).arg(expected)));

    // Areas of another DEM do not fill this one.
    QVERIFY(copyRaster(finish.dem, path("half.tif"), {"-srcwin", "0", "0", "60", "90"}));
    finish.dem = path("half.tif");
    finish.product = path("half.gpkg");
    QVERIFY(!finishContours(finish, always).warning.isEmpty());
}

void ContourFinishTest::picture_data()
{
    QTest::addColumn<QString>("driver");
    QTest::addColumn<double>("rise"); // per row, to the south
    QTest::newRow("label of a line") << "GPKG" << -1.0;
    QTest::newRow("label of a line, hill in the south") << "GPKG" << 1.0;
    QTest::newRow("point, hill in the north") << "MapInfo File" << -1.0;
    QTest::newRow("point, hill in the south") << "MapInfo File" << 1.0;
}

/// The index line is thick and brown, and the head of its label is uphill.
void ContourFinishTest::picture()
{
    QFETCH(const QString, driver);
    QFETCH(const double, rise);
    QVERIFY(writeRaster(path("dem.tif"), width, height, cellsOf([rise](double, double row) {
                            return 700.0 + rise * (row - 44.5); // the level 700 at y = 5099550
                        })));
    ContourFinish finish = runTool({"-a", "Z", "-i", "10"}, driver);
    finish.index = {10.0, 0.0, 70};
    finish.styled = true;
    QCOMPARE(finishContours(finish, always).problem, QString());
    QImage image(600, 450, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    VectorPicture picture(finish.product);
    constexpr double pixel = 0.5; // metres; the middle of the line of 700 is in the middle of the picture
    picture.begin(image, {500600.0 - 300 * pixel, pixel, 0.0, 5099550.0 + 225 * pixel, 0.0, -pixel}, 1.0);
    while (picture.advance(100)) { }

    const auto ink = [&image](const QRect &part) {
        int sum = 0;
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                sum += 255 - image.pixelColor(x, y).blue();
        return sum;
    };
    const int thick = ink({100, 215, 1, 20});
    const int thin = ink({100, 15, 1, 20}); // 100 m to the north
    QVERIFY2(thin > 0 && thick > 1.25 * thin, qPrintable(QString("%1 and %2").arg(thick).arg(thin)));
    const QColor colour = image.pixelColor(100, 225).blue() < image.pixelColor(100, 224).blue()
        ? image.pixelColor(100, 225)
        : image.pixelColor(100, 224);
    QVERIFY2(std::abs(colour.hue() - contourColor.hue()) < 8, qPrintable(colour.name()));
    // The 7 of "700" stands at the text's beginning; its bar makes its head the heavier half.
    QRect text;
    for (int x = 200; x < 400; ++x)
        for (int y = 195; y < 255; ++y)
            if (std::abs(y - 225) > 2 && image.pixelColor(x, y).blue() < 180)
                text |= QRect(x, y, 1, 1);
    QVERIFY(text.height() >= 7 && std::abs(text.center().x() - 300) <= 2);
    QVERIFY(driver == "GPKG"
            || (rise < 0.0 ? text.bottom() < 225 : text.top() > 225)); // it is on the hill's side
    QRect upper(text.left(), text.top(), text.width() / 4, 3);
    QRect lower(text.left(), text.bottom() - 2, text.width() / 4, 3);
    if (rise > 0.0) {
        upper.moveRight(text.right());
        lower.moveRight(text.right());
        std::swap(upper, lower);
    }
    QVERIFY2(ink(upper) > ink(lower), qPrintable(QString("%1 and %2").arg(ink(upper)).arg(ink(lower))));
}

/// Lines of the smoothed DEM, against the DEM's own surface.
void ContourFinishTest::smoothedLinesNeitherCrossNorStray()
{
    constexpr double interval = 4.0;
    std::minstd_rand random;
    QVERIFY(writeRaster(path("rough.tif"), width, height, cellsOf([&random](double column, double row) {
                            return hills(column, row) + static_cast<double>(random() % 100) / 500.0;
                        })));
    QVERIFY(
        smoothDem({path("rough.tif"), 1, 2, {}, path("dem.tif")}, [](int) { return true; }).problem.isEmpty());
    ContourFinish finish = runTool({"-a", "Z", "-i", QString::number(interval)}, "GPKG");
    finish.styled = true;
    QCOMPARE(finishContours(finish, always).problem, QString());
    std::vector<std::pair<double, std::unique_ptr<OGRLineString>>> lines;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(qPrintable(finish.product), GDAL_OF_VECTOR));
    for (const auto &feature : *dataset->GetLayer(0))
        lines.emplace_back(feature->GetFieldAsDouble("Z"), feature->GetGeometryRef()->toLineString()->clone());
    const DemGround rough(path("rough.tif"), 1);
    for (const auto &[level, line] : lines)
        for (int at = 0; at < line->getNumPoints(); ++at) {
            const double ground = rough.surfaceElevation({line->getX(at), line->getY(at)}).value_or(level);
            QVERIFY2(std::abs(ground - level) <= interval / 2.0, qPrintable(QString::number(ground - level)));
        }
    int neighbours = 0;
    for (int pair = 0; pair < 10000; ++pair) {
        const auto &[level, line] = lines[random() % lines.size()];
        const auto &[other, neighbour] = lines[random() % lines.size()];
        if (std::abs(level - other) > 1.5 * interval || level == other)
            continue;
        ++neighbours;
        QVERIFY2(!line->Intersects(neighbour.get()), qPrintable(QString("%1 and %2").arg(level).arg(other)));
    }
    QVERIFY(neighbours > 100);
}

void ContourFinishTest::qgisStyleNamesTheFields()
{
    ContourFinish finish = runTool({"-a", "Z", "-i", "5"}, "SQLite"); // makes names lower case
    finish.index = {5.0, 0.0, 5};
    finish.qgisStyle = true;
    QCOMPARE(finishContours(finish, always).problem, QString());
    const QString style = QString::fromUtf8(bytesOf(path("product.qml")));
    QVERIFY2(style.contains("&quot;index_line&quot; = 1") && style.contains("&quot;z&quot;"),
             qPrintable(style));
}

void ContourFinishTest::stopAndFailureLeaveNothing()
{
    QVERIFY(QDir(path("")).mkpath("out"));
    const QStringList before = QDir(path("out")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    ContourFinish finish = runTool({"-p", "-amin", "low", "-amax", "high", "-i", "5"}, "ESRI Shapefile");
    finish.areas = true;
    finish.qgisStyle = true;
    finish.product = path("out/product.shp");
    const ContourFinishResult stopped = finishContours(finish, [](double share) { return share < 0.8; });
    QVERIFY(stopped.isStopped && stopped.problem.isEmpty());
    QCOMPARE(QDir(path("out")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
    finish.lines = path("missing.gpkg");
    QVERIFY(finishContours(finish, always).problem.contains("missing.gpkg"));
    finish = runTool({"-a", "Z", "-i", "5"}, "GPKG");
    finish.product = path("out/product.gpkg");
    finish.driver = "no driver";
    QVERIFY(finishContours(finish, always).problem.contains("product.gpkg"));
    QCOMPARE(QDir(path("out")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
}

QTEST_GUILESS_MAIN(ContourFinishTest)
#include "contourfinish_test.moc"
