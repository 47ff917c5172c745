#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <functional>
#include <memory>
#include <vector>

constexpr int side = 200; // cells of the DEM
constexpr int tileSide = 70;

/// Products in tiles, made by the batch program with GDAL's tools, against one run over the whole DEM.
class TilesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void equalToTheWhole_data();
    void equalToTheWhole();
    void contourLines();
    void statistics();
    void sights_data();
    void sights();
    void sharesAndPlan();
    void onlyWhatChanged();
    void stopsAndKills();
    void fullDisk();
    void logOfObjects();
    void refusals();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    Ended batch(const QStringList &arguments) const
    {
        return runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), arguments);
    }
    QString recipe(const QByteArray &text) { return writeFile(path("recette.json"), text); }
    QStringList tiled(const QStringList &more = {}) const
    {
        return QStringList{
                   path("recette.json"),     path("mnt é"), "--tiles", "--into", path("à faire"), "--tile-size",
                   QString::number(tileSide)}
        + more;
    }
    QStringList task(const QStringList &more) const
    {
        return QStringList{"--tiles", "--into", path("à faire")} + more;
    }
    QStringList products() const { return QDir(path("à faire/tiles")).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir m_source;
    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

/// The cells of all bands.
std::vector<float> cellsOf(const QString &path)
{
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (!file)
        return {};
    const int width = file->GetRasterXSize();
    const int height = file->GetRasterYSize();
    std::vector<float> cells(static_cast<std::size_t>(width) * height * file->GetRasterCount());
    const CPLErr error = file->RasterIO(GF_Read, 0, 0, width, height, cells.data(), width, height, GDT_Float32,
                                        file->GetRasterCount(), nullptr, 0, 0, 0, nullptr);
    return error == CE_None ? cells : std::vector<float>();
}

/// Copies the DEM without the data of its first `count` rows and columns.
bool writeSea(const QString &dem, const QString &path, int count)
{
    const std::vector<float> cells = cellsOf(dem);
    QVector<float> values(cells.begin(), cells.end());
    for (int cell = 0; cell < values.size(); ++cell) {
        if (cell / side < count && cell % side < count)
            values[cell] = -9999.0f;
    }
    return writeRaster(path, side, side, values);
}

/// The mean that the first band carries; 0 where it carries none.
double meanOf(const QString &path)
{
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    const char *mean = file ? file->GetRasterBand(1)->GetMetadataItem("STATISTICS_MEAN") : nullptr;
    return mean ? CPLAtof(mean) : 0.0;
}

/// The lengths of the lines of each elevation, sorted.
QMap<double, QVector<double>> lengthsByLevel(const QString &path)
{
    QMap<double, QVector<double>> lengths;
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR));
    OGRLayer *layer = file ? file->GetLayer(0) : nullptr;
    if (!layer)
        return lengths;
    for (const auto &feature : *layer)
        lengths[feature->GetFieldAsDouble("alt")] += feature->GetGeometryRef()->toLineString()->get_Length();
    for (QVector<double> &level : lengths)
        std::sort(level.begin(), level.end());
    return lengths;
}

} // namespace

void TilesTest::initTestCase()
{
    setUpGdal();
    QVERIFY(writeHill(m_source.filePath("whole.tif"), side));
}

void TilesTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/l'été \"tuiles\" XXXXXX"));
    QVERIFY(QDir().mkdir(path("mnt é")));
    QVERIFY(QFile::copy(m_source.filePath("whole.tif"), path("whole.tif")));
    const QVector<int> edges{0, 90, 150, side};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            QList<QByteArray> window{"-srcwin"};
            for (const int number : {edges.at(column), edges.at(row), edges.at(column + 1) - edges.at(column),
                                     edges.at(row + 1) - edges.at(row)})
                window += QByteArray::number(number);
            QVERIFY(copyRaster(path("whole.tif"), path(QStringLiteral("mnt é/t%1%2.tif").arg(row).arg(column)),
                               window));
        }
    }
    recipe(R"({"format": 1, "process": "slope"})");
}

void TilesTest::equalToTheWhole_data()
{
    QTest::addColumn<QString>("process");
    QTest::addColumn<QString>("options");

    QTest::newRow("hillshade, with its edges") << "hillshade"
                                               << R"({"computeEdges": true})";
    QTest::newRow("slope, without its edges") << "slope"
                                              << R"({"computeEdges": false})";
    QTest::newRow("slope of degrees") << "slope"
                                      << "{}";
    QTest::newRow("aspect") << "aspect"
                            << "{}";
    QTest::newRow("roughness") << "roughness"
                               << "{}";
    QTest::newRow("table spread over the elevations") << "color-relief"
                                                      << R"({"table": "viridis", "spread": true})";
    QTest::newRow("colours under a shaded relief") << "color-relief"
                                                   << R"({"table": "viridis", "spread": true, "shaded": true})";
    QTest::newRow("table of percentages")
        << "color-relief"
        << R"({"colors": [{"percent": 0, "color": [0, 0, 0]}, {"percent": 33.3, "color": [255, 0, 10]},
              {"percent": 100, "color": [255, 255, 255]}]})";
}

void TilesTest::equalToTheWhole()
{
    QFETCH(QString, process);
    QFETCH(QString, options);
    recipe(QStringLiteral(R"({"format": 1, "process": "%1", "options": %2})").arg(process, options).toUtf8());
    QStringList arguments = tiled();
    if (QByteArray(QTest::currentDataTag())
            .contains("degrees")) { // over ten of them the cells change their width
        QVERIFY(copyRaster(path("whole.tif"), path("degrés.tif"),
                           {"-a_srs", "EPSG:4326", "-a_ullr", "7", "52", "9", "42"}));
        QVERIFY(QFile::remove(path("whole.tif")) && QFile::rename(path("degrés.tif"), path("whole.tif")));
        arguments[1] = path("whole.tif");
    }
    const Ended whole =
        batch({path("recette.json"), "--input", path("whole.tif"), "--output", path("expected.tif")});
    QVERIFY2(whole.code == 0, qPrintable(whole.error));
    const Ended tiles = batch(arguments);
    QVERIFY2(tiles.code == 0, qPrintable(tiles.error));
    const std::vector<float> expected = cellsOf(path("expected.tif"));
    QVERIFY(!expected.empty());
    QVERIFY(cellsOf(path("à faire/" + process + ".vrt")) == expected);
    QCOMPARE(products().size(), 9);

    // The folder can be moved, and the joined product be made again.
    QVERIFY(QDir().rename(path("à faire"), path("ailleurs")));
    QVERIFY(cellsOf(path("ailleurs/" + process + ".vrt")) == expected);
    QVERIFY(QDir().rename(path("ailleurs"), path("à faire")));
    QCOMPARE(batch(task({"--join", "cog"})).code, 0);
    QVERIFY(cellsOf(path("à faire/" + process + ".tif")) == expected);
}

/// The lines of the tiles are those of one run: as many, as long, and each at its elevation.
void TilesTest::contourLines()
{
    // The first tile has no data but in the row and the column that it shares.
    QVERIFY(writeSea(path("whole.tif"), path("mer.tif"), tileSide));
    recipe(R"({"format": 1, "process": "contour", "options":
        {"interval": 7, "attribute": "alt", "smoothing": 2}})");
    QCOMPARE(batch({path("recette.json"), "--input", path("mer.tif"), "--output", path("expected.shp")}).code,
             0);
    QStringList tiled = this->tiled();
    tiled[1] = path("mer.tif");
    const Ended tiles = batch(tiled);
    QVERIFY2(tiles.code == 0 && tiles.error.count('\n') == 1, qPrintable(tiles.error));
    const QMap<double, QVector<double>> expected = lengthsByLevel(path("expected.shp"));
    const QMap<double, QVector<double>> joined = lengthsByLevel(path("à faire/contour.shp"));
    QVERIFY(expected.size() > 3);
    QCOMPARE(joined.keys(), expected.keys());
    for (const double level : expected.keys()) {
        QCOMPARE(joined.value(level).size(), expected.value(level).size());
        for (int line = 0; line < expected.value(level).size(); ++line)
            QVERIFY(std::abs(joined.value(level).at(line) - expected.value(level).at(line)) < 1e-5);
    }
}

/// A tile without data has none, and does not keep the others and the joined product from theirs.
void TilesTest::statistics()
{
    QVERIFY(writeSea(path("whole.tif"), path("mer.tif"), tileSide + 2));
    recipe(R"({"format": 1, "process": "slope", "statistics": true})");
    QStringList tiled = this->tiled();
    tiled[1] = path("mer.tif");
    const Ended tiles = batch(tiled);
    QVERIFY2(tiles.code == 0, qPrintable(tiles.error));
    QCOMPARE(batch({path("recette.json"), "--input", path("mer.tif"), "--output", path("expected.tif")}).code,
             0);
    const double mean = meanOf(path("expected.tif"));
    QVERIFY(mean > 0.0 && std::abs(meanOf(path("à faire/slope.vrt")) - mean) < 1e-6 * mean);
}

void TilesTest::sights_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<double>("reach"); // m

    QTest::newRow("seen by one") << R"("combination": "OR")" << 600.0;
    QTest::newRow("seen by all") << R"("combination": "AND")" << 0.0;
    QTest::newRow("counted") << R"("result": "count")" << 700.0;
    QTest::newRow("least height for one") << R"("result": "height")" << 600.0;
    QTest::newRow("least height for all") << R"("result": "height", "combination": "AND")" << 1500.0;
}

void TilesTest::sights()
{
    QFETCH(QString, options);
    QFETCH(double, reach);
    QStringList observers;
    for (int at = 0; at < 12; ++at) // one of them stands beside the DEM
        observers += QStringLiteral(R"({"x": %1, "y": %2, "height": 400, "mode": "Absolute", "distance": %3})")
                         .arg(QString::number(499970 + 180 * at),
                              QString::number(5099980 - 170 * (at * 5 % 12)), QString::number(reach));
    recipe(QStringLiteral(R"({"format": 1, "process": "intervisibility", "options": {%1, "observers": [%2]}})")
               .arg(options, observers.join(','))
               .toUtf8());
    QCOMPARE(batch({path("recette.json"), "--input", path("whole.tif"), "--output", path("expected.tif")}).code,
             0);
    const Ended tiles = batch(tiled());
    QVERIFY2(tiles.code == 0, qPrintable(tiles.error));
    QVERIFY(products().size() > 4);
    const std::vector<float> expected = cellsOf(path("expected.tif"));
    QVERIFY(std::adjacent_find(expected.begin(), expected.end(), std::not_equal_to<>()) != expected.end());
    QVERIFY(cellsOf(path("à faire/intervisibility.tif")) == expected);
}

void TilesTest::sharesAndPlan()
{
    const Ended plan = batch(tiled({"--plan", "--tasks", "4"}));
    QVERIFY2(plan.code == 0 && plan.error.contains("9"), qPrintable(plan.error));
    const QStringList commands = plan.out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(commands.size(), 4);
    QVERIFY(!QFileInfo::exists(path("à faire/tiles")));
    const Ended early = batch(task({"--join", "vrt"}));
    QVERIFY2(early.code == 1 && early.error.contains("r0000_c0000"), qPrintable(early.error));

    QStringList made;
    for (const QString &command : commands) {
        QCOMPARE(runProgram("/bin/sh", {"-c", command}).code, 0); // as it was printed
        const QStringList now = products();
        QVERIFY(now.size() > made.size());
        made = now;
    }
    QCOMPARE(made.size(), 9);
    QCOMPARE(batch(task({"--join", "vrt"})).code, 0);
    QCOMPARE(batch(task({"--task", "0/4"})).code, 4); // nothing says that they may be replaced
}

void TilesTest::onlyWhatChanged()
{
    QCOMPARE(batch(tiled()).code, 0);
    const auto times = [this] {
        QVector<QDateTime> found;
        for (const QString &product : products())
            found += QFileInfo(path("à faire/tiles/" + product)).lastModified();
        return found;
    };
    const QVector<QDateTime> before = times();
    QTest::qSleep(20);
    const Ended again = batch(tiled({"--skip-done"}));
    QVERIFY2(again.code == 0, qPrintable(again.error));
    QCOMPARE(times(), before);

    // The input of the north-western corner changes. It ends within the second tile of 70 cells.
    QVERIFY(copyRaster(path("whole.tif"), path("mnt é/t00.tif"),
                       {"-srcwin", "0", "0", "90", "90", "-scale", "0", "1", "0", "2"}));
    const Ended stale = batch(task({"--task", "0/1", "--skip-done", "--overwrite"}));
    QCOMPARE(stale.code, 0); // all are done as planned
    QVERIFY(QFile::remove(path("à faire/tiles/r0000_c0000.tif")));
    QCOMPARE(batch(task({"--task", "0/1", "--skip-done"})).code, 3); // the plan is not that of these inputs
    QCOMPARE(batch(tiled({"--skip-done"})).code, 0);
    const QVector<QDateTime> after = times();
    for (int tile = 0; tile < 9; ++tile)
        QCOMPARE(after.at(tile) != before.at(tile), tile % 3 < 2 && tile / 3 < 2);
}

void TilesTest::stopsAndKills()
{
    QCOMPARE(batch(tiled({"--plan"})).code, 0);
    for (const int signal : {SIGKILL, SIGTERM}) {
        QProcess process;
        process.start(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), task({"--skip-done"}));
        const auto begun = products().size();
        QTRY_VERIFY(products().size() > begun);
        ::kill(static_cast<pid_t>(process.processId()), signal);
        QVERIFY(process.waitForFinished(10000));
        if (signal == SIGTERM)
            QVERIFY(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 143);
        for (const QString &product : products())
            QVERIFY2(!cellsOf(path("à faire/tiles/" + product)).empty(), qPrintable(product));
    }
    const Ended ended = batch(task({"--skip-done"}));
    QVERIFY2(ended.code == 0, qPrintable(ended.error));
    QCOMPARE(batch({path("recette.json"), "--input", path("whole.tif"), "--output", path("expected.tif")}).code,
             0);
    QVERIFY(cellsOf(path("à faire/slope.vrt")) == cellsOf(path("expected.tif")));
    QCOMPARE(QDir(path("à faire/tiles")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             products());
}

/// A disk that is full is no failure for good: the same command goes on where it has room again.
void TilesTest::fullDisk()
{
    const QString disk = path("disque");
    QVERIFY(QDir().mkdir(disk));
    if (runProgram("mount", {"-t", "tmpfs", "-o", "size=96k", "none", disk}).code != 0)
        QSKIP("A small file system cannot be mounted here.");
    const QStringList arguments{
        path("recette.json"),      path("mnt é"), "--tiles", "--into", disk + "/tuiles", "--tile-size",
        QString::number(tileSide), "--skip-done"};
    const Ended full = batch(arguments);
    const QStringList made = QDir(disk + "/tuiles/tiles").entryList(QDir::Files);
    const bool isGrown = runProgram("mount", {"-o", "remount,size=4m", disk}).code == 0;
    const Ended grown = isGrown ? batch(arguments) : Ended();
    const std::vector<float> cells = cellsOf(disk + "/tuiles/slope.vrt");
    QCOMPARE(runProgram("umount", {disk}).code, 0);
    QVERIFY2(full.code == 75, qPrintable(full.error + full.out));
    QVERIFY(!made.isEmpty() && made.size() < 9);
    QVERIFY2(grown.code == 0, qPrintable(grown.error));
    QCOMPARE(grown.out.count(QLatin1String("- done.")), 9 - made.size() + 1);
    QCOMPARE(batch({path("recette.json"), "--input", path("whole.tif"), "--output", path("expected.tif")}).code,
             0);
    QVERIFY(cells == cellsOf(path("expected.tif")));
}

void TilesTest::logOfObjects()
{
    QCOMPARE(batch(tiled({"--plan"})).code, 0);
    const Ended ended = batch(task({"--task", "1/3", "--log", "json"}));
    QCOMPARE(ended.code, 0);
    QStringList done;
    for (const QString &line : ended.out.split('\n', Qt::SkipEmptyParts)) {
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        QVERIFY2(object.value("task").toString() == "1/3" && object.contains("time"), qPrintable(line));
        if (object.value("state").toString() != "done")
            continue;
        done += object.value("tile").toString();
        QVERIFY(object.value("command").toString().contains("gdal_dem.exe"));
        QVERIFY(QFileInfo::exists(object.value("product").toString()));
    }
    QCOMPARE(done, (QStringList{"r0001_c0000", "r0001_c0001", "r0001_c0002"}));
}

void TilesTest::refusals()
{
    QCOMPARE(batch(task({"--task", "0/1"})).code, 3); // there is no plan
    QCOMPARE(batch(tiled({"--task", "3/3"})).code, 2);
    QCOMPARE(batch({path("recette.json"), path("mnt é"), "--into", path("à faire")}).code, 2);
    QCOMPARE(batch({path("recette.json"), path("mnt é"), "--tiles"}).code, 2);
    QCOMPARE(batch({path("recette.json"), path("absent"), "--tiles", "--into", path("x")}).code, 3);
    recipe(R"({"format": 1, "process": "slope", "part": "0 0 10 10"})");
    QCOMPARE(batch(tiled()).code, 2);
    recipe(R"({"format": 1, "process": "slope"})");
    QCOMPARE(batch(tiled({"--plan"})).code, 0);
    recipe(R"({"format": 1, "process": "aspect"})");
    const Ended other = batch(tiled());
    QVERIFY2(other.code == 4 && other.error.contains("slope"), qPrintable(other.error));
    QCOMPARE(batch(tiled({"--overwrite"})).code, 0);
}

QTEST_GUILESS_MAIN(TilesTest)
#include "tiles_test.moc"
