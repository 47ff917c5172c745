#include "dataset/extremes.h"
#include "dataset/gdalmessages.h"
#include "dataset/rasterinfo.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

/// Runs the batch program as a user does, with GDAL's tools.
class BatchTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void productEqualsTheToolsOwn_data();
    void productEqualsTheToolsOwn();
    void recipeAndOverrides();
    void recipeOnStandardInput();
    void tablesOfOtherPrograms();
    void severalDems();
    void severalDemsStop();
    void mosaicOfTiles();
    void namesOfAllKinds();
    void badArguments_data();
    void badArguments();
    void badContours();
    void everyWarningIsShown();
    void sightNumbers();
    void existingOutputIsKept();
    void inputIsNeverOverwritten();
    void toolFailureLeavesNothing();
    void neighboursAreKept();
    void linkedOutputIsFollowed();
    void ignoredSignalsStayIgnored();
    void secondRunOnTheSameOutput();
    void missingTool();
    void textWithoutDisplay();
    void stopsLeaveNothing();

private:
    Ended batch(const QStringList &arguments) { return runProgram(program(), arguments); }
    static QString program() { return QStringLiteral(QUVO_TREE "/QuvoDemBatch"); }
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList files() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    QStringList hillshade(const QString &output, const QStringList &more = {}) const
    {
        return QStringList{"--process", "hillshade", "--input", path("dem.tif"), "--output", path(output)}
        + more;
    }

    /// Makes a DEM that can be opened but that the tool cannot read to its end.
    void breakDem() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

/// Bands of a raster, and the range of the first one's numbers.
struct Numbers
{
    int bands = 0;
    double lowest = 0.0;
    double highest = 0.0;
};

Numbers numbersOf(const QString &path)
{
    ExtremesReader reader(path, 1, ExtremesReader::Exact);
    while (reader.advance(1000)) { }
    return {readRasterInfo(path).bandCount, reader.extremes().minimum, reader.extremes().maximum};
}

const QString wholeProgress = QStringLiteral("0...10...20...30...40...50...60...70...80...90...100 - done.\n");

} // namespace

void BatchTest::initTestCase()
{
    setUpGdal();
}

void BatchTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/lot é中 XXXXXX"));
    QVERIFY(writeHill(path("dem.tif"), 64));
}

void BatchTest::productEqualsTheToolsOwn_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("byHand");

    const auto row = [](const char *name, const QString &options, const QString &byHand) {
        QTest::newRow(name) << options.split(' ', Qt::SkipEmptyParts) << byHand.split(' ');
    };
    row("defaults", "", "-z 1 -s 1 -az -45 -alt 45 -b 1 -of GTiff");
    row("options",
        "--set altitude=60 --set compass=90 --set exaggeration=2.5 --set scaleText=0.5 --set computeEdges=true "
        "--set zevenbergenThorne=true --tiled --world-file",
        "-z 2.5 -s 0.5 -az 180 -alt 60 -compute_edges -alg ZevenbergenThorne -b 1 -of GTiff -co TILED=YES "
        "-co TFW=YES");
}

void BatchTest::productEqualsTheToolsOwn()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, byHand);
    const Ended ended = batch(hillshade("product.tif", options));
    QCOMPARE(ended.error, QString());
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, wholeProgress);
    const Ended hand = runProgram(QStringLiteral(QUVO_TREE "/gdal_dem.exe"),
                                  QStringList{"hillshade", path("dem.tif"), path("hand.tif")} + byHand);
    QCOMPARE(hand.code, 0);
    QCOMPARE(bytesOf(path("product.tif")), bytesOf(path("hand.tif")));
    QCOMPARE(QFile::exists(path("product.tfw")), options.contains("--world-file"));
    QVERIFY(files().filter("aux.xml").isEmpty());
}

void BatchTest::recipeAndOverrides()
{
    writeFile(path("recette.json"),
              R"({"format": 1, "process": "hillshade", "input": "dem.tif", "output": "a.tif",
        "options": {"altitude": 30}})");
    const QStringList recipe{path("recette.json")};
    QCOMPARE(batch(recipe).code, 0);
    QVERIFY(QFile::exists(path("a.tif"))); // relative to the recipe

    const Ended printed =
        batch(recipe + QStringList{"--print-command", "--set", "altitude=60", "--output", path("b")});
    QCOMPARE(printed.code, 0);
    QCOMPARE(printed.out,
             QStringLiteral(
                 "\"%1/gdal_dem.exe\" hillshade \"%2\"  \"%3\" -z 1 -s 1 -az -45 -alt 60  -b 1 -of \"GTiff\"\n")
                 .arg(QDir(QUVO_TREE).canonicalPath(), path("dem.tif"), path("b.tif")));
    QVERIFY(!QFile::exists(path("b.tif")));

    writeFile(path("bad.json"), "{\"format\": 1,\n");
    const Ended bad = batch({path("bad.json")});
    QCOMPARE(bad.code, 2);
    QVERIFY2(bad.error.contains(path("bad.json")), qPrintable(bad.error));
}

void BatchTest::recipeOnStandardInput()
{
    writeFile(path("table.txt"), "nv 0 0 0 0\n450 1 2 3\n25% 9 9 9\n600 200 100 50\n");
    const QStringList byHand{"color-relief", path("dem.tif"), path("table.txt"), path("hand.tif"), "-b", "1"};
    QCOMPARE(runProgram(QStringLiteral(QUVO_TREE "/gdal_dem.exe"), byHand).code, 0);
    QVERIFY(QFile::remove(path("dem.tif.aux.xml")));
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.start(program(), {"-", "--output", "product.tif"});
    process.write(R"({"format": 1, "process": "color-relief", "input": "dem.tif", "options": {"table": "mine",
        "colors": [{"value": 600, "color": [200, 100, 50]}, {"percent": 25, "color": [9, 9, 9, 255]},
                   {"value": 450, "color": [1, 2, 3]}, {"value": "nv", "color": [0, 0, 0, 0]}]}})");
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
    QVERIFY(!bytesOf(path("hand.tif")).isEmpty());
    QCOMPARE(bytesOf(path("product.tif")), bytesOf(path("hand.tif")));
    // A table that is named on the command line replaces the colours of the recipe.
    writeFile(path("a.json"), R"({"format": 1, "process": "color-relief", "options":
        {"colors": [{"value": 1, "color": [1, 1, 1]}]}})");
    const Ended other = batch({path("a.json"), "--input", path("dem.tif"), "--output", path("c.tif"), "--set",
                               "table=" + path("table.txt"), "--print-command"});
    QVERIFY2(other.code == 0 && !other.out.contains("quvodemtoolbox-"), qPrintable(other.out));
}

void BatchTest::tablesOfOtherPrograms()
{
    // A cell of exactly 50 belongs below the bound of QGIS, and above the edge of GMT.
    writeFile(path("a.txt"), "INTERPOLATION:DISCRETE\n50,1,2,3,255,low\ninf,4,5,6,255,high\n");
    writeFile(path("hand_a.txt"), "50 1 2 3\n50.0000038146973 4 5 6\n");
    writeFile(path("b.cpt"), "# CYCLIC\n10 1/2/3 50 1/2/3\n50 4/5/6 90 4/5/6\n");
    writeFile(path("hand_b.txt"), "49.9999961853027 1 2 3\n50 4 5 6\n");
    for (const QString &table : {path("a.txt"), path("b.cpt")}) {
        const QString hand = path("hand_" + QFileInfo(table).completeBaseName() + ".txt");
        const Ended ended = batch({"--process", "color-relief", "--input", path("dem.tif"), "--output",
                                   path("p.tif"), "--overwrite", "--set", "table=" + table});
        QVERIFY2(ended.code == 0, qPrintable(ended.error));
        QCOMPARE(ended.error.contains("GMT") || ended.error.contains("se répète")
                     || ended.error.contains("repeats"),
                 table.endsWith(".cpt"));
        QCOMPARE(runProgram(QStringLiteral(QUVO_TREE "/gdal_dem.exe"),
                            {"color-relief", path("dem.tif"), hand, path("hand.tif"), "-b", "1"})
                     .code,
                 0);
        QCOMPARE(bytesOf(path("p.tif")), bytesOf(path("hand.tif")));
    }
    writeFile(path("bad.cpt"), "0 1/2/3 9 1/2/300\n");
    const Ended bad = batch({"--process", "color-relief", "--input", path("dem.tif"), "--output", path("q.tif"),
                             "--set", "table=" + path("bad.cpt")});
    QVERIFY2(bad.code == 3 && bad.error.contains("1/2/300"), qPrintable(bad.error));
}

void BatchTest::severalDems()
{
    writeFile(path("recette.json"),
              R"({"format": 1, "process": "slope", "input": "none", "output": "none.tif"})");
    QVERIFY(QFile::copy(path("dem.tif"), path("b%1.c.tif")));
    writeFile(path("a.tif"), "broken");
    const auto all = [&](const QStringList &more = {}) {
        return batch(QStringList{path("recette.json")} + more
                     + QStringList{path("a.tif"), path("b%1.c.tif"), path("dem.tif")});
    };
    const Ended first = all();
    QCOMPARE(first.code, 1);
    QCOMPARE(
        files(),
        (QStringList{"a.tif", "b%1.c.tif", "b%1.c_slope.tif", "dem.tif", "dem_slope.tif", "recette.json"}));
    const QStringList lines = first.out.split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(0).startsWith(path("a.tif") + ": ") && !lines.at(0).contains("done"));
    QCOMPARE(lines.at(2) + '\n', path("dem.tif") + ": " + wholeProgress);
    QVERIFY2(first.error.contains(path("a.tif")), qPrintable(first.error));

    // Existing files are kept, and a product of the first call is not a DEM of the second.
    const QByteArray product = bytesOf(path("dem_slope.tif"));
    writeFile(path("dem_slope.tif"), "precious");
    const Ended second = all({path("dem_slope.tif")});
    QCOMPARE(second.code, 1);
    QCOMPARE(bytesOf(path("dem_slope.tif")), QByteArray("precious"));
    QVERIFY(!second.out.contains(path("dem_slope.tif")));
    QCOMPARE(all({"--overwrite"}).code, 1);
    QCOMPARE(bytesOf(path("dem_slope.tif")), product);
    QVERIFY(QFile::remove(path("a.tif")) && QFile::copy(path("dem.tif"), path("a.tif")));
    QCOMPARE(all({"--overwrite"}).code, 0);

    // Of two DEMs with the same product, the second must not replace the product of the first.
    QVERIFY(QFile::copy(path("dem.tif"), path("dem.asc")));
    const Ended twins = batch({path("recette.json"), "--overwrite", path("dem.tif"), path("dem.asc")});
    QCOMPARE(twins.code, 1);

    QCOMPARE(all({"--print-command"}).out.count('\n'), 3);
    QCOMPARE(all({"--set", "percents=true"}).code, 2);
    QCOMPARE(all({"--output", path("x.tif")}).code, 2);
}

void BatchTest::severalDemsStop()
{
    writeFile(path("recette.json"), R"({"format": 1, "process": "hillshade"})");
    QVERIFY(writeHill(path("large.tif"), 6000));
    QProcess process;
    process.start(program(), {path("recette.json"), path("large.tif"), path("dem.tif")});
    QTRY_VERIFY(!partOf(path("large_hillshade.tif")).isEmpty());
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    QVERIFY(process.waitForFinished(10000));
    QVERIFY(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 130);
    QCOMPARE(files(), (QStringList{"dem.tif", "large.tif", "recette.json"}));
}

void BatchTest::mosaicOfTiles()
{
    const QString left = path("a été.tif");
    const QString right = path("b.tif");
    QVERIFY(copyRaster(path("dem.tif"), left, {"-srcwin", "0", "0", "30", "60"}));
    QVERIFY(copyRaster(path("dem.tif"), right, {"-srcwin", "30", "0", "30", "60"}));
    QVERIFY(copyRaster(right, path("c.tif"), {"-ot", "Float64"}));
    QVERIFY(copyRaster(path("dem.tif"), path("whole.tif"), {"-srcwin", "0", "0", "60", "60"}));
    QCOMPARE(batch({"--process", "slope", "--input", path("whole.tif"), "--output", path("hand.tif")}).code, 0);
    writeFile(path("recette.json"),
              R"({"format": 1, "process": "slope", "input": "none", "output": "none.tif"})");
    const QStringList mosaic{path("recette.json"), "--mosaic", left, right};
    const QString product = path("a été_mosaic_slope.tif");
    const Ended ended = batch(mosaic);
    QVERIFY2(ended.code == 0, qPrintable(ended.error));
    QCOMPARE(bytesOf(product), bytesOf(path("hand.tif")));
    // A product of an earlier call is no tile of the next one.
    QCOMPARE(batch(mosaic + QStringList{product, "--overwrite"}).code, 0);

    // The tiles of a recipe, in place of those of the command line, and the other way round.
    writeFile(path("tuiles.json"), R"({"format": 1, "process": "slope", "tiles": ["a été.tif", "b.tif"]})");
    QCOMPARE(batch({path("tuiles.json"), "--output", path("d.tif")}).code, 0);
    QCOMPARE(bytesOf(path("d.tif")), bytesOf(path("hand.tif")));
    QVERIFY(batch({path("tuiles.json"), "--input", right, "--output", path("e.tif"), "--print-command"})
                .out.contains(right));

    // No product replaces a tile, and tiles that do not fit are named.
    const QByteArray tile = bytesOf(right);
    QCOMPARE(batch({path("tuiles.json"), "--output", right, "--overwrite"}).code, 4);
    QCOMPARE(bytesOf(right), tile);
    const Ended unlike = batch(mosaic + QStringList{path("c.tif")});
    QVERIFY2(unlike.code == 3 && unlike.error.contains("a été.tif") && unlike.error.contains("c.tif"),
             qPrintable(unlike.error));
    QCOMPARE(batch(mosaic.mid(0, 3)).code, 2);
    QVERIFY(!batch(mosaic + QStringList{"--output", path("f.tif"), "--print-command"}).error.isEmpty());
}

void BatchTest::namesOfAllKinds()
{
    for (const QString &name :
         {QStringLiteral("l'été \"haut\" 中文.tif"), QStringLiteral("%1 %2 $HOME `x`;&.tif"),
          QStringLiteral("-of.tif"), QStringLiteral("a.b.c.tif"), QStringLiteral("dem.tif.tif")}) {
        const QString input = path("in " + name);
        QVERIFY(QFile::copy(path("dem.tif"), input));
        const Ended ended = batch({"--process", "hillshade", "--input", input, "--output", path(name)});
        QVERIFY2(ended.code == 0, qPrintable(ended.error));
        QVERIFY(QFile::exists(path(name)));
    }
    // In a locale without an encoding of its own, paths are UTF-8, too.
    QProcessEnvironment plain = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LC_CTYPE", "LC_MESSAGES"})
        plain.remove(name);
    plain.insert("LC_ALL", "C");
    QCOMPARE(runProgram(program(), hillshade("中é.tif"), plain).code, 0);
    QVERIFY(QFile::exists(path("中é.tif")));
}

void BatchTest::badArguments_data()
{
    QTest::addColumn<QStringList>("change"); // option and value: added, or in place of the valid one
    QTest::addColumn<QString>("named");
    QTest::addColumn<int>("code");

    QTest::newRow("process") << QStringList{"--process", "relief"} << "relief" << 2;
    QTest::newRow("missing input") << QStringList{"--input", "/no/such.tif"} << "/no/such.tif" << 3;
    QTest::newRow("band") << QStringList{"--band", "2"} << "2" << 3;
    QTest::newRow("folder of the output") << QStringList{"--output", "/no/such/a.tif"} << "/no/such" << 2;
    QTest::newRow("a folder") << QStringList{"--output", "/tmp"} << "/tmp" << 2;
    QTest::newRow("the folder above") << QStringList{"--output", ".."} << ".." << 2;
    QTest::newRow("empty output") << QStringList{"--output", ""} << "--output" << 2;
    QTest::newRow("meant for Qt") << QStringList{"--style", "x"} << "style" << 2;
    QTest::newRow("world file") << QStringList{"--of", "PDF", "--tiled", "--world-file"} << "PDF" << 2;
    QTest::newRow("extension") << QStringList{"--output", "/tmp/a.png"} << "png" << 2;
    QTest::newRow("format") << QStringList{"--of", "PDFF"} << "PDFF" << 2;
    QTest::newRow("tiles") << QStringList{"--of", "COG", "--tiled"} << "COG" << 2;
    QTest::newRow("option") << QStringList{"--set", "azimuth=3"} << "azimuth" << 2;
    QTest::newRow("value") << QStringList{"--set", "altitude=100"} << "altitude" << 2;
    QTest::newRow("unknown") << QStringList{"--verbose"} << "verbose" << 2;
}

void BatchTest::badArguments()
{
    QFETCH(QStringList, change);
    QFETCH(QString, named);
    const Ended ended = batch(hillshade("product.tif", change)); // the last of two equal options counts
    QTEST(ended.code, "code");
    QVERIFY2(ended.error.contains(named), qPrintable(ended.error));
    QCOMPARE(files(), QStringList{"dem.tif"});
    QCOMPARE(ended.out, QString());
}

/// Options that the contour tool would accept and make a wrong product of.
void BatchTest::badContours()
{
    const QStringList contour{"--process", "contour", "--input", path("dem.tif"), "--output", path("lines")};
    for (const QStringList &options :
         QList<QStringList>{{"--set", "fixedLevels=40 20 10"},
                            {"--set", "interval=10", "--set", "noDataValue=-2147483648"},
                            {"--set", "interval=10", "--set", "attribute=ID"},
                            {"--set", "interval=10", "--set", "attribute=élévation"},
                            {"--set", "interval=10", "--set", "attribute=fid", "--of", "GPKG"}}) {
        const Ended ended = batch(contour + options);
        QVERIFY2(ended.code == 2 && !ended.error.isEmpty(), qPrintable(options.join(' ')));
        QCOMPARE(files(), QStringList{"dem.tif"});
    }
    const Ended rounded = batch(contour + QStringList{"--set", "interval=1.2345678", "--print-command"});
    QCOMPARE(rounded.code, 0);
    QVERIFY2(rounded.error.contains("1.23457"), qPrintable(rounded.error));
}

void BatchTest::everyWarningIsShown()
{
    writeFile(path("recette.json"), R"({"format": 1, "process": "intervisibility", "input": "dem.tif",
        "output": "zones.tif", "options": {"observers": [{"x": 500100, "y": 5099900}, {"x": 0, "y": 0}]}})");
    const Ended ended = batch({path("recette.json"), "--world-file", "--print-command"});
    QCOMPARE(ended.code, 0);
    // Warnings: an observer without ground, a temporary file in the command, a world file that is not written.
    QCOMPARE(ended.error.trimmed().split('\n').size(), 3);
}

/// Counts, heights and the files besides them, made by the tool itself.
void BatchTest::sightNumbers()
{
    writeFile(path("recette.json"), R"({"format": 1, "process": "intervisibility", "input": "dem.tif",
        "output": "n.tif", "options": {"skyline": "h é.gpkg", "result": "count",
        "observers": [{"x": 500020, "y": 5099980}, {"x": 500100, "y": 5099900}]}})");
    const QStringList run{path("recette.json"), "--set", "statistics=" + path("s.csv")};
    const Ended ended = batch(run);
    QVERIFY2(ended.code == 0, qPrintable(ended.error));
    QVERIFY2(ended.out.contains(path("h é.gpkg")) && ended.out.contains(path("s.csv")), qPrintable(ended.out));
    QCOMPARE(files(), (QStringList{"dem.tif", "h é.gpkg", "n.tif", "recette.json", "s.csv"}));
    QCOMPARE(bytesOf(path("s.csv")).trimmed().count('\n'), 3); // a head, two observers and all of them
    QVERIFY(bytesOf(path("h é.gpkg")).startsWith("SQLite"));
    const Numbers counts = numbersOf(path("n.tif"));
    QCOMPARE(counts.bands, 1);
    QCOMPARE(counts.highest, 2.0);

    // Files that the run would replace stay, with the product, until that is allowed.
    QVERIFY(QFile::remove(path("n.tif")));
    QCOMPARE(batch(run).code, 4);
    QVERIFY(!QFile::exists(path("n.tif")));
    const Ended height = batch(run + QStringList{"--set", "result=height", "--overwrite"});
    QVERIFY2(height.code == 0, qPrintable(height.error));
    const Numbers heights = numbersOf(path("n.tif"));
    QVERIFY(heights.bands == 1 && heights.lowest == 0.0 && heights.highest > 2.0);

    // A series names these files after each product.
    QVERIFY(QFile::copy(path("dem.tif"), path("b.tif")));
    QCOMPARE(batch(run + QStringList{path("dem.tif"), path("b.tif")}).code, 0);
    for (const char *name : {"dem_intervisibility_horizon.gpkg", "b_intervisibility_statistics.csv"})
        QVERIFY2(QFile::exists(path(name)), name);

    for (const QStringList &wrong : QList<QStringList>{{"--set", "result=number"},
                                                       {"--of", "PNG"},
                                                       {"--set", "skyline=" + path("h.txt")},
                                                       {"--set", "ramp=octarine"},
                                                       {"--set", "skylineStep=-3"}}) {
        const Ended refused = batch(run + wrong + QStringList{"--overwrite"});
        QVERIFY2(refused.code == 2 && refused.error.contains(wrong.last().section('=', -1)),
                 qPrintable(refused.error));
    }
}

void BatchTest::existingOutputIsKept()
{
    writeFile(path("product.tif"), "precious");
    QCOMPARE(batch(hillshade("product.tif")).code, 4);
    QCOMPARE(bytesOf(path("product.tif")), QByteArray("precious"));
    QCOMPARE(batch(hillshade("product.tif", {"--overwrite"})).code, 0);
    QVERIFY(bytesOf(path("product.tif")).startsWith("II*"));

    // Side files alone, which would be read with the new product.
    QVERIFY(QFile::remove(path("product.tif")));
    writeFile(path("product.tif.ovr"), "stale");
    QCOMPARE(batch(hillshade("product.tif")).code, 4);
    QCOMPARE(batch(hillshade("product.tif", {"--overwrite"})).code, 0);
    QVERIFY(!QFile::exists(path("product.tif.ovr")));
}

void BatchTest::inputIsNeverOverwritten()
{
    const QByteArray before = bytesOf(path("dem.tif"));
    QVERIFY(QFile::link(path("dem.tif"), path("link.tif")));
    for (const char *name : {"dem.tif", "link.tif"})
        QCOMPARE(batch(hillshade(name, {"--overwrite"})).code, 4);
    QCOMPARE(bytesOf(path("dem.tif")), before);
}

void BatchTest::breakDem() const
{
    QVERIFY(writeHill(path("whole.tif"), 64));
    QVERIFY(copyRaster(path("whole.tif"), path("dem.tif"), {"-co", "COMPRESS=DEFLATE"}));
    QVERIFY(QFile::remove(path("whole.tif")));
    QFile dem(path("dem.tif"));
    QVERIFY(dem.resize(dem.size() / 2));
}

void BatchTest::toolFailureLeavesNothing()
{
    // Cells are missing from the end of the input. Where they stand plainly, that shows before the run.
    QFile dem(path("dem.tif"));
    QVERIFY(dem.resize(dem.size() / 2));
    QCOMPARE(batch(hillshade("product.tif")).code, 3);
    breakDem();
    const Ended ended = batch(hillshade("product.tif"));
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.error.contains("ERROR"), qPrintable(ended.error));
    QCOMPARE(files(), QStringList{"dem.tif"});
}

void BatchTest::neighboursAreKept()
{
    // A run that fails deletes only its own product, not the user's files of the same base name.
    breakDem();
    for (const char *name : {"product.tfw", "product.tif.aux.xml", "product.txt"})
        writeFile(path(name), "precious");
    // What is left of an earlier product would be read with the new one, so it counts as an existing output.
    QCOMPARE(batch(hillshade("product.tif")).code, 4);
    QCOMPARE(bytesOf(path("product.tif.aux.xml")), QByteArray("precious"));
    QVERIFY(QFile::remove(path("product.tif.aux.xml")));
    const QStringList before = files();
    QCOMPARE(batch(hillshade("product.tif")).code, 1);
    QCOMPARE(files(), before);
    QCOMPARE(batch(hillshade("product.tif", {"--tiled", "--world-file"})).code, 4); // product.tfw exists

    // A side file of the product must not replace one of the input.
    QVERIFY(writeHill(path("terrain.tiff"), 16));
    writeFile(path("terrain.tfw"), "10\n0\n0\n-10\n500000\n5100000\n");
    const QStringList input{"--process", "hillshade", "--input", path("terrain.tiff"), "--overwrite"};
    QCOMPARE(batch(input + QStringList{"--output", path("terrain.asc"), "--of", "AAIGrid"}).code, 4);
    QCOMPARE(batch(input + QStringList{"--output", path("terrain.tif")}).code, 0);
    QVERIFY(bytesOf(path("terrain.tfw")).startsWith("10"));
    // Not even where the DEM does not need its world file.
    const QStringList besideDem = hillshade("dem.tiff", {"--overwrite", "--tiled", "--world-file"});
    QCOMPARE(batch(besideDem).code, 4);

    // The DEM is kept even where its name is that of a side file of the product.
    QVERIFY(QFile::copy(path("terrain.tiff"), path("terrain.tif.ovr")));
    QCOMPARE(batch({"--process", "hillshade", "--input", path("terrain.tif.ovr"), "--output",
                    path("terrain.tif"), "--overwrite"})
                 .code,
             4);
    QVERIFY(QFile::exists(path("terrain.tif.ovr")));

    // Two formats whose headers have the same name.
    QVERIFY(writeHill(path("dem.tif"), 16));
    QCOMPARE(batch(hillshade("twin.img", {"--of", "ENVI"})).code, 0);
    const QByteArray header = bytesOf(path("twin.hdr"));
    const Ended twin = batch(hillshade("twin.bil", {"--of", "EHdr", "--overwrite"}));
    QCOMPARE(twin.code, 4);
    QVERIFY2(twin.error.contains("twin.img"), qPrintable(twin.error));
    QCOMPARE(bytesOf(path("twin.hdr")), header);
    QCOMPARE(batch(hillshade("twin.img", {"--of", "ENVI", "--overwrite"})).code, 0);
    QCOMPARE(batch(hillshade("twin.png", {"--of", "PNG"})).code, 0); // keeps its position elsewhere

    // A file with the name of a side file counts as an existing output.
    writeFile(path("out.prj"), "precious");
    QCOMPARE(batch(hillshade("out.asc", {"--of", "AAIGrid"})).code, 4);
    QCOMPARE(bytesOf(path("out.prj")), QByteArray("precious"));
    // The files that a replaced data set refers to are kept. The files that GDAL keeps under its name are
    // removed.
    writeFile(path("old.tif"),
              "<VRTDataset rasterXSize='16' rasterYSize='16'><VRTRasterBand dataType='Float32' band='1'>"
              "<SimpleSource><SourceFilename relativeToVRT='1'>dem.tif</SourceFilename></SimpleSource>"
              "</VRTRasterBand></VRTDataset>");
    writeFile(path("old.tif.ovr"), "stale");
    QCOMPARE(batch(hillshade("old.tif", {"--overwrite", "--of", "VRT"})).code, 2);
    QCOMPARE(batch(hillshade("old.tif", {"--overwrite"})).code, 0);
    QVERIFY(QFile::exists(path("dem.tif")) && !QFile::exists(path("old.tif.ovr")));
}

void BatchTest::linkedOutputIsFollowed()
{
    breakDem();
    QVERIFY(QFile::link(path("target.tif"), path("link.tif")));
    QCOMPARE(batch(hillshade("link.tif")).code, 1);
    QVERIFY(QFileInfo(path("link.tif")).isSymLink());
    QVERIFY(!QFile::exists(path("target.tif")));
}

void BatchTest::ignoredSignalsStayIgnored()
{
    QVERIFY(writeHill(path("dem.tif"), 2000));
    QProcess process;
    process.start("nohup", QStringList{program()} + hillshade("product.tif"));
    QTRY_VERIFY(!partOf(path("product.tif")).isEmpty());
    ::kill(static_cast<pid_t>(process.processId()), SIGHUP);
    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitCode(), 0);
}

void BatchTest::secondRunOnTheSameOutput()
{
    // A program whose tool writes half a product and waits.
    QVERIFY(QFile::copy(program(), path("QuvoDemBatch")));
    writeScript(path("gdal_dem.exe"), "echo half > \"$3\"; echo $$ > \"$3.pid\"; exec sleep 60\n");
    const QString old = writeFile(path("product.tif"), "precious");
    const QStringList before = files();
    const QStringList arguments = hillshade("product.tif", {"--overwrite"});
    QProcess first;
    first.start(path("QuvoDemBatch"), arguments);
    QTRY_VERIFY(bytesOf(partOf(old) + ".pid").endsWith('\n'));
    const auto tool = static_cast<pid_t>(bytesOf(partOf(old) + ".pid").trimmed().toInt());

    QProcessEnvironment otherFolder = QProcessEnvironment::systemEnvironment();
    otherFolder.insert("TMPDIR", "/var/tmp");
    const Ended second = runProgram(program(), arguments, otherFolder);
    QCOMPARE(second.code, 75);
    QVERIFY2(second.error.contains("product.tif"), qPrintable(second.error));

    // A killed program takes its tool with it. What it leaves neither hides the old product nor keeps the next
    // run from making and clearing it.
    QCOMPARE(::kill(tool, 0), 0);
    first.kill();
    QVERIFY(first.waitForFinished());
    QTRY_VERIFY(::kill(tool, 0) != 0);
    QCOMPARE(bytesOf(old), QByteArray("precious"));
    QCOMPARE(runProgram(program(), arguments, otherFolder).code, 0);
    QVERIFY(bytesOf(old).startsWith("II*"));
    QCOMPARE(files(), before);
}

void BatchTest::missingTool()
{
    QVERIFY(QFile::copy(program(), path("QuvoDemBatch")));
    QVERIFY(QFile::link("/no/such/gdaldem", path("gdal_dem.exe")));
    const Ended ended = runProgram(path("QuvoDemBatch"), hillshade("product.tif"));
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.error.contains("gdal_dem.exe"), qPrintable(ended.error));

    // A file that the system cannot run: the reason follows the name.
    QVERIFY(QFile::remove(path("gdal_dem.exe")));
    QFile noProgram(writeScript(path("gdal_dem.exe"), ""));
    QVERIFY(noProgram.open(QIODevice::WriteOnly)
            && noProgram.write("\x7f"
                               "ELF")
                == 4);
    noProgram.close();
    const Ended notRun = runProgram(path("QuvoDemBatch"), hillshade("product.tif"));
    QCOMPARE(notRun.code, 1);
    QVERIFY2(notRun.error.contains("gdal_dem.exe") && notRun.error.contains("Exec format error"),
             qPrintable(notRun.error));
}

void BatchTest::textWithoutDisplay()
{
    QProcessEnvironment noPlatform = QProcessEnvironment::systemEnvironment();
    noPlatform.insert("QT_QPA_PLATFORM", "no-such-platform");
    const QStringList printing = hillshade("product.tif", {"--print-command"});
    for (const QStringList &arguments :
         {QStringList{"--help"}, QStringList{"--version"}, QStringList{"--list"}, printing}) {
        const Ended ended = runProgram(program(), arguments, noPlatform);
        QCOMPARE(ended.code, 0);
        QVERIFY(!ended.out.isEmpty());
        QCOMPARE(ended.error, QString());
    }
    QCOMPARE(runProgram(program(), hillshade("product.tif"), noPlatform).code, 0); // it draws nothing
    if (QFile::exists("/dev/full"))
        QCOMPARE(runProgram("/bin/sh", {"-c", "\"$0\" --list > /dev/full", program()}).code, 1);
    const QString listing = batch({"--list"}).out;
    for (const char *name :
         {"hillshade", "exaggeration", "scaleIndex", "scaleText", "compass", "270", "altitude"})
        QVERIFY2(listing.contains(QLatin1String(name)), name);
}

void BatchTest::stopsLeaveNothing()
{
    QVERIFY(writeHill(path("dem.tif"), 6000));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(batch(hillshade("product.tif")).code, 0);
    const int wholeRun = static_cast<int>(clock.elapsed());
    const QByteArray wholeProduct = bytesOf(path("product.tif"));
    QVERIFY(QFile::remove(path("product.tif")));

    // The old product stays until the new one is whole. Only a killed program leaves something, which is
    // hidden.
    const auto visible = [this] { return files().filter(QRegularExpression("^[^.]")); };
    QRandomGenerator random(11);
    for (int round = 0; round < 24; ++round) {
        const bool kill = round >= 16;
        QDir(m_folder->path()).remove("product.tif");
        if (round % 2) {
            writeFile(path("product.tif"), "precious");
            writeFile(path("product.tif.aux.xml"), "<PAMDataset/>");
        }
        const QStringList before = visible();
        const QByteArray old = bytesOf(path("product.tif"));
        QProcess process;
        process.start(program(),
                      hillshade("product.tif",
                                QStringList{"--overwrite"}
                                    + (round % 5 == 4 ? QStringList{"--of", "COG"} : QStringList{})));
        QVERIFY(process.waitForStarted());
        // A run that ends before the signal leaves a whole product.
        if (!process.waitForFinished(random.bounded(wholeRun / 10, wholeRun))) {
            ::kill(static_cast<pid_t>(process.processId()), kill ? SIGKILL : round % 4 < 2 ? SIGTERM : SIGINT);
            QVERIFY(process.waitForFinished(10000));
        }
        const bool done = process.exitCode() == 0 && process.exitStatus() == QProcess::NormalExit;
        // The signal may also arrive between the end of the run and that of the program.
        if (done || bytesOf(path("product.tif")) == wholeProduct) {
            QCOMPARE(visible(), (QStringList{"dem.tif", "product.tif"}));
        } else {
            QCOMPARE(bytesOf(path("product.tif")), old);
            QCOMPARE(kill ? visible() : files(), before);
            QDir(m_folder->path()).remove("product.tif.aux.xml");
        }
    }
    QCOMPARE(batch(hillshade("product.tif", {"--overwrite"})).code, 0);
    QCOMPARE(files(), (QStringList{"dem.tif", "product.tif"}));
}

QTEST_GUILESS_MAIN(BatchTest)
#include "batch_test.moc"
