#include "dataset/pathencoding.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPoint>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <ogrsf_frmts.h>

#include <cmath>
#include <numeric>
#include <random>

/// An observer in a file, and the fields that are set there besides.
struct Watcher
{
    int column; ///< of the cell at whose centre it stands
    int row;
    double z;
    QMap<QByteArray, double> fields;
};

/// gdal_intervisibility.exe counts observers, finds target heights, and writes horizons and areas.
class SightResultsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void countIsTheSumOfPictures();
    void heightsMakeVisible();
    void fields_data();
    void fields();
    void skylines();
    void statistics();
    void refused_data();
    void refused();
    void noHalfSideFiles();
    void stopLeavesNoSideFiles();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void writeWatchers(const QString &name, const QVector<Watcher> &watchers);
    int run(const QString &dem, const QString &points, const QStringList &more);
    std::vector<double> values(const QString &name) const;
    QByteArray text(const QString &name) const;
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/vu d'été XXXXXX")};
    QString m_error;
};

namespace
{

constexpr int side = 150;
constexpr std::size_t cellCount = std::size_t(side) * side;
constexpr double left = 500000.0;
constexpr double top = 5100000.0;
constexpr double cell = 10.0;

using DataSet = std::unique_ptr<GDALDataset>;

const QString tool = QStringLiteral(QUVO_TREE "/gdal_intervisibility.exe");

/// Watchers at random places, 2 m to 40 m above 100 m.
QVector<Watcher> crowd(int count, double reach)
{
    std::minstd_rand random(3);
    QVector<Watcher> watchers;
    for (int index = 0; index < count; ++index) {
        const int column = static_cast<int>(random() % side);
        const int row = static_cast<int>(random() % side);
        watchers.push_back({column, row, 102.0 + index % 39, {{"Max_Dist", index % 7 == 0 ? 0.0 : reach}}});
    }
    return watchers;
}

/// The seen cells are painted 1, the hidden ones 0.
const QStringList bits{"-COZ", "1", "1", "1", "-CNOZ", "0", "0", "0", "-CNoData", "0", "0", "0"};

std::size_t cellAt(int column, int row)
{
    return static_cast<std::size_t>(row * side + column);
}

} // namespace

void SightResultsTest::writeWatchers(const QString &name, const QVector<Watcher> &watchers)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    QFile::remove(path(name));
    const DataSet dataset(driver->Create(encodePath(path(name)).constData(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer *layer = dataset->CreateLayer("points", nullptr, wkbPoint25D);
    OGRFieldDefn text("name", OFTString);
    layer->CreateField(&text);
    for (const Watcher &watcher : watchers) {
        for (const QByteArray &field : watcher.fields.keys()) {
            OGRFieldDefn definition(field.constData(), OFTReal);
            if (layer->GetLayerDefn()->GetFieldIndex(field.constData()) < 0)
                layer->CreateField(&definition);
        }
    }
    dataset->StartTransaction();
    for (const Watcher &watcher : watchers) {
        const std::unique_ptr<OGRFeature> feature(OGRFeature::CreateFeature(layer->GetLayerDefn()));
        const OGRPoint point(left + (watcher.column + 0.5) * cell, top - (watcher.row + 0.5) * cell, watcher.z);
        feature->SetGeometry(&point);
        feature->SetField("name", "Été \"1\", tour");
        for (auto field = watcher.fields.begin(); field != watcher.fields.end(); ++field)
            feature->SetField(field.key().constData(), field.value());
        QVERIFY(layer->CreateFeature(feature.get()) == OGRERR_NONE);
    }
    dataset->CommitTransaction();
}

int SightResultsTest::run(const QString &dem, const QString &points, const QStringList &more)
{
    QProcess process;
    process.start(tool,
                  QStringList{"-SrcFile", path(dem), "-DstFile", path("vu.tif"), "-point_file", path(points)}
                      + more);
    process.waitForFinished(60000);
    m_error = QString::fromLocal8Bit(process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

/// The cells of the first band, row by row, with NaN for no data. A picture's cells are 1 if they are seen.
std::vector<double> SightResultsTest::values(const QString &name) const
{
    const DataSet dataset(GDALDataset::Open(encodePath(path(name)).constData(), GDAL_OF_RASTER));
    if (!dataset)
        return {};
    std::vector<double> cells(cellCount);
    int known = FALSE;
    const double noData = dataset->GetRasterBand(1)->GetNoDataValue(&known);
    if (dataset->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, side, side, cells.data(), side, side, GDT_Float64, 0,
                                            0, nullptr)
        != CE_None)
        return {};
    for (double &value : cells)
        value = known != FALSE && value == noData ? std::nan("") : value;
    return cells;
}

QByteArray SightResultsTest::text(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SightResultsTest::initTestCase()
{
    GDALAllRegister();
    QVector<float> heights;
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const bool isVoid = column > 100 && column < 105 && row < 30;
            const double height = std::round(40.0 * std::sin(column * 0.11) * std::cos(row * 0.07)) + 60.0;
            heights.push_back(isVoid ? -9999.0F : static_cast<float>(height));
        }
    }
    QVERIFY(writeRaster(path("relief.tif"), side, side, heights));
}

void SightResultsTest::countIsTheSumOfPictures()
{
    const QVector<Watcher> watchers = crowd(40, 300.0);
    std::vector<double> sum(cellCount);
    for (const Watcher &watcher : watchers) {
        writeWatchers("un.gpkg", {watcher});
        QCOMPARE(run("relief.tif", "un.gpkg", bits), 0);
        const std::vector<double> seen = values("vu.tif");
        std::transform(sum.begin(), sum.end(), seen.begin(), sum.begin(), std::plus());
    }
    writeWatchers("tous.gpkg", watchers);
    QCOMPARE(run("relief.tif", "tous.gpkg", {"-Output", "count"}), 0);
    const std::vector<double> counts = values("vu.tif");
    const DataSet dataset(GDALDataset::Open(encodePath(path("vu.tif")).constData(), GDAL_OF_RASTER));
    QCOMPARE(dataset->GetRasterCount(), 1);
    QCOMPARE(dataset->GetRasterBand(1)->GetRasterDataType(), GDT_UInt16);
    QVERIFY(std::isnan(counts[cellAt(102, 5)]));
    for (std::size_t index = 0; index < counts.size(); ++index)
        QVERIFY(std::isnan(counts[index]) ? sum[index] == 0.0 : counts[index] == sum[index]);
    // The picture of all under OR is where somebody is counted, under AND where all are.
    for (const auto &[operation, least] : {std::pair{"OR", 1.0}, {"AND", 40.0}}) {
        QCOMPARE(run("relief.tif", "tous.gpkg", bits + QStringList{"-DstOp", operation}), 0);
        const std::vector<double> seen = values("vu.tif");
        for (std::size_t index = 0; index < seen.size(); ++index)
            QCOMPARE(seen[index], sum[index] >= least ? 1.0 : 0.0);
    }
}

void SightResultsTest::heightsMakeVisible()
{
    const QVector<Watcher> watchers = crowd(9, 400.0);
    writeWatchers("tous.gpkg", watchers);
    QCOMPARE(run("relief.tif", "tous.gpkg", bits + QStringList{"-DstOp", "OR"}), 0);
    const std::vector<double> seen = values("vu.tif");
    QCOMPARE(run("relief.tif", "tous.gpkg", {"-Output", "height", "-DstOp", "OR", "-SH", "7"}), 0);
    const std::vector<double> either = values("vu.tif");
    QCOMPARE(run("relief.tif", "tous.gpkg", {"-Output", "height", "-DstOp", "AND"}), 0);
    const std::vector<double> both = values("vu.tif");
    std::vector<double> lowest(cellCount, std::numeric_limits<double>::infinity());
    std::vector<double> greatest(cellCount, 0.0);
    for (const Watcher &watcher : watchers) {
        writeWatchers("un.gpkg", {watcher});
        QCOMPARE(run("relief.tif", "un.gpkg", {"-Output", "height"}), 0);
        const std::vector<double> one = values("vu.tif");
        for (std::size_t index = 0; index < one.size(); ++index) {
            const double height = std::isnan(one[index]) ? std::numeric_limits<double>::infinity() : one[index];
            lowest[index] = std::min(lowest[index], height);
            greatest[index] = std::max(greatest[index], height);
        }
    }
    for (std::size_t index = 0; index < seen.size(); ++index) {
        QVERIFY(std::isinf(lowest[index]) ? std::isnan(either[index]) : either[index] == lowest[index]);
        QVERIFY(std::isinf(greatest[index]) ? std::isnan(both[index]) : both[index] == greatest[index]);
        QCOMPARE(either[index] == 0.0, seen[index] == 1.0);
    }
    // A target of the least height is seen, one a millimetre lower is not.
    std::size_t hidden = 0;
    while (hidden < either.size() && !(either[hidden] > 1.0))
        ++hidden;
    QVERIFY(hidden < either.size());
    for (const auto &[lower, isSeen] : {std::pair{0.0, 1.0}, {0.001, 0.0}}) {
        const QString height = QString::number(either[hidden] - lower, 'g', 12);
        QCOMPARE(run("relief.tif", "tous.gpkg", bits + QStringList{"-DstOp", "OR", "-SH", height}), 0);
        QCOMPARE(values("vu.tif")[hidden], isSeen);
    }
}

void SightResultsTest::fields_data()
{
    // A plain of 100 m with a wall of 120 m at the column 90; the eye is at 110 m above the cell (75, 75).
    using Map = QMap<QByteArray, double>;
    QTest::addColumn<Map>("fields");
    QTest::addColumn<QPoint>("seen");   // a cell that is seen
    QTest::addColumn<QPoint>("hidden"); // one that is not
    const auto row = [](const char *name, const Map &fields, QPoint seen, QPoint hidden) {
        QTest::newRow(name) << fields << seen << hidden;
    };
    row("none", {}, {89, 75}, {91, 75});
    row("a higher eye", {{"OFFSETA", 30.0}}, {120, 75}, {91, 75});
    row("a higher target", {{"OFFSETB", 60.0}}, {149, 75}, {-1, 0});
    row("a target too low", {{"OFFSETB", 59.0}}, {148, 75}, {149, 75});
    row("a sector", {{"AZIMUTH1", 90.0}, {"AZIMUTH2", 180.0}}, {80, 75}, {75, 80});
    row("a sector across north", {{"AZIMUTH1", 350.0}, {"AZIMUTH2", 10.0}}, {75, 70}, {75, 80});
    row("only the end of a sector", {{"AZIMUTH2", 180.0}}, {75, 70}, {75, 80});
    row("not nearer", {{"RADIUS1", 50.0}}, {80, 75}, {79, 75});
    row("not farther", {{"RADIUS2", 100.0}}, {85, 75}, {86, 75});
    row("the smaller reach", {{"RADIUS2", 100.0}, {"Max_Dist", 50.0}}, {80, 75}, {81, 75});
    row("not above", {{"VERT1", -10.0}}, {80, 75}, {81, 75});
    row("not below", {{"VERT2", -10.0}}, {81, 75}, {80, 75});
}

void SightResultsTest::fields()
{
    using Map = QMap<QByteArray, double>;
    QFETCH(Map, fields);
    QFETCH(QPoint, seen);
    QFETCH(QPoint, hidden);
    QVector<float> heights(side * side, 100.0F);
    for (int row = 0; row < side; ++row)
        heights[row * side + 90] = 120.0F;
    QVERIFY(writeRaster(path("plaine.tif"), side, side, heights));
    // A second observer sees nothing of these cells, so that the elevations are not read in two halves only.
    writeWatchers("un.gpkg", {{75, 75, 110, fields}});
    writeWatchers("deux.gpkg", {{75, 75, 110, fields}, {5, 5, 110, {{"RADIUS2", 20.0}}}});
    for (const char *points : {"un.gpkg", "deux.gpkg"}) {
        QCOMPARE(run("plaine.tif", points, bits + QStringList{"-DstOp", "OR", "-cc", "0"}), 0);
        const std::vector<double> cells = values("vu.tif");
        QCOMPARE(cells[cellAt(seen.x(), seen.y())], 1.0);
        QVERIFY(hidden.x() < 0 || cells[cellAt(hidden.x(), hidden.y())] == 0.0);
    }
}

void SightResultsTest::skylines()
{
    writeWatchers("deux.gpkg", {{75, 75, 150, {{"AZIMUTH1", 300.0}, {"AZIMUTH2", 60.0}}}, {20, 20, 130, {}}});
    QCOMPARE(run("relief.tif", "deux.gpkg", {"-Skyline", path("h.csv"), "-SkylineStep", "90"}), 0);
    const QList<QByteArray> lines = text("h.csv").trimmed().split('\n');
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines[0], QByteArray("observer,name,azimuth,angle,distance,x,y,z"));
    QVERIFY2(lines[1].startsWith("1,\"Été \"\"1\"\", tour\",0,"), lines[1].constData());
    QVERIFY(lines[3].startsWith("2,") && lines[3].contains(",90,"));

    QCOMPARE(run("relief.tif", "deux.gpkg", {"-Skyline", path("h.json")}), 0);
    const QJsonArray observers = QJsonDocument::fromJson(text("h.json")).array();
    QCOMPARE(observers.size(), 2);
    const QJsonObject one = observers[0].toObject();
    QCOMPARE(one["name"].toString(), QString("Été \"1\", tour"));
    QCOMPARE(one["azimuth"].toArray().size(), one["horizon_height"].toArray().size());
    QCOMPARE(one["azimuth"].toArray().size(), one["horizon_distance"].toArray().size());
    for (const QVariant &azimuth : one["azimuth"].toArray().toVariantList())
        QVERIFY(azimuth.toDouble() >= 300.0 || azimuth.toDouble() < 60.0);
    QVERIFY(observers[1].toObject()["azimuth"].toArray().size() > 100);

    QCOMPARE(run("relief.tif", "deux.gpkg", bits + QStringList{"-Skyline", path("h.gpkg"), "-DstOp", "OR"}), 0);
    const DataSet layers(GDALDataset::Open(encodePath(path("h.gpkg")).constData(), GDAL_OF_VECTOR));
    QVERIFY(layers && layers->GetLayerCount() == 2);
    OGRLayer *lineLayer = layers->GetLayerByName("skyline");
    QVERIFY(lineLayer->GetFeatureCount() == 2 && lineLayer->GetSpatialRef() != nullptr);
    // The outlines hold the cells that are seen.
    OGRLayer *outlines = layers->GetLayerByName("seen");
    const std::unique_ptr<OGRFeature> first(outlines->GetNextFeature());
    const std::unique_ptr<OGRFeature> second(outlines->GetNextFeature());
    const std::unique_ptr<OGRGeometry> all(first->GetGeometryRef()->Union(second->GetGeometryRef()));
    const std::vector<double> seen = values("vu.tif");
    const double cells = std::accumulate(seen.begin(), seen.end(), 0.0);
    QVERIFY(cells > 0.0);
    const double area = all->getGeometryType() == wkbMultiPolygon ? all->toMultiPolygon()->get_Area()
                                                                  : all->toPolygon()->get_Area();
    QCOMPARE(area, cells * cell * cell);
}

void SightResultsTest::statistics()
{
    QVector<Watcher> watchers = crowd(30, 200.0);
    watchers.push_back({1000, 1000, 50, {{"Max_Dist", 100.0}}}); // reaches nothing
    writeWatchers("tous.gpkg", watchers);
    QCOMPARE(run("relief.tif", "tous.gpkg", {"-Output", "count", "-Statistics", path("s.csv")}), 0);
    const std::vector<double> counts = values("vu.tif");
    const auto seenCells =
        std::count_if(counts.begin(), counts.end(), [](double count) { return count > 0.0; });
    const QList<QByteArray> lines = text("s.csv").trimmed().split('\n');
    QCOMPARE(lines.size(), 33);
    double sum = 0.0;
    for (int line = 1; line <= 31; ++line) {
        const QList<QByteArray> fields = lines[line].split(',');
        QCOMPARE(fields[0].toInt(), line);
        sum += fields[6].toDouble() * 1e6;
    }
    double counted = 0.0;
    for (const double count : counts)
        counted += std::isnan(count) ? 0.0 : count;
    QVERIFY(std::abs(sum - counted * cell * cell) < 1e-3);
    QVERIFY(lines[31].endsWith(",0,,0,,"));
    const QList<QByteArray> all = lines[32].split(',');
    QCOMPARE(all[0], QByteArray("all"));
    QCOMPARE(all[5].toDouble() * 1e6, double(seenCells) * cell * cell);
    QVERIFY(all[6].toDouble() > 0.0 && all[6].toDouble() <= 100.0);
}

void SightResultsTest::refused_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<QString>("problem");
    writeWatchers("un.gpkg", {{5, 5, 150, {}}});
    QTest::newRow("an unknown output") << QStringList{"-Output", "map"} << "picture, count or height";
    QTest::newRow("an unknown suffix") << QStringList{"-Skyline", path("h.shp")} << ".csv or .json or .gpkg";
    QTest::newRow("a step alone") << QStringList{"-SkylineStep", "5"} << "needs -Skyline";
    QTest::newRow("one file for two") << QStringList{"-Skyline", path("s.csv"), "-Statistics", path("s.csv")}
                                      << "the same file";
    QTest::newRow("onto the points") << QStringList{"-Skyline", path("un.gpkg")} << "which is an input";
    QTest::newRow("a folder that is not there")
        << QStringList{"-Statistics", "/nowhere/s.csv"} << "/nowhere/s.csv cannot be written: No such file";
    QDir(m_folder.path()).mkdir("dossier.csv");
    QTest::newRow("onto a folder") << QStringList{"-Statistics", path("dossier.csv")} << "not a regular file";
}

void SightResultsTest::refused()
{
    QFETCH(QStringList, more);
    QFETCH(QString, problem);
    QFile::remove(path("vu.tif"));
    const QStringList before = files();
    QCOMPARE(run("relief.tif", "un.gpkg", more), 1);
    QVERIFY2(m_error.contains(problem) && m_error.count('\n') == 1, qPrintable(m_error));
    QCOMPARE(files(), before);
}

/// A run that fails at the end leaves the older side files as they were, and nothing of its own.
void SightResultsTest::noHalfSideFiles()
{
    writeWatchers("un.gpkg", {{75, 75, 150, {}}});
    for (const char *skyline : {"ancien.csv", "ancien.gpkg"}) {
        QFile old(path(skyline));
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
        old.close();
        QFile::remove(path("vu.tif"));
        const QStringList before = files();
        QProcess process;
        process.start("/bin/sh",
                      {"-c", "ulimit -f 20; exec \"$0\" \"$@\"", tool, "-SrcFile", path("relief.tif"),
                       "-DstFile", path("vu.tif"), "-point_file", path("un.gpkg"), "-Skyline", path(skyline),
                       "-Statistics", path("neuf.csv")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(process.readAllStandardError().count('\n'), 1);
        QCOMPARE(files(), before);
        QCOMPARE(text(skyline), QByteArray("old"));
    }
}

void SightResultsTest::stopLeavesNoSideFiles()
{
    writeWatchers("foule.gpkg", crowd(3000, 0.0));
    for (const char *skyline : {"stop.csv", "stop.gpkg"}) {
        QFile::remove(path("vu.tif"));
        const QStringList before = files();
        QProcess process;
        process.start(tool,
                      {"-SrcFile", path("relief.tif"), "-DstFile", path("vu.tif"), "-point_file",
                       path("foule.gpkg"), "-Skyline", path(skyline), "-Statistics", path("stop2.csv")});
        QTRY_VERIFY(files() != before);
        QTest::qWait(300);
        process.terminate();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(files(), before);
    }
}

QTEST_GUILESS_MAIN(SightResultsTest)
#include "sightresults_test.moc"
