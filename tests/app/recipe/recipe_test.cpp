#include "app/recipe/recipe.h"

#include "tests/fuzz/mutations.h"

#include <QTest>

Q_DECLARE_METATYPE(ProcessOptions)

class RecipeTest : public QObject
{
    Q_OBJECT

private slots:
    void wholeRecipe();
    void tiles();
    void sideFiles();
    void everyProcessComesBack_data();
    void everyProcessComesBack();
    void problems_data();
    void problems();
    void mutations();
};

void RecipeTest::wholeRecipe()
{
    const RecipeReading reading = readRecipe(R"({"format": 1, "process": "hillshade", "input": "../dém.tif",
        "output": "/abs/out.tif", "band": 3, "outputFormat": "COG", "tiled": true, "worldFile": true,
        "options": {"altitude": 60, "scaleText": "2.5", "computeEdges": true}})",
                                             QStringLiteral("/some/folder"));
    QCOMPARE(reading.problem, QString());
    const Recipe &recipe = reading.recipe;
    QCOMPARE(recipe.input, QStringLiteral("/some/dém.tif"));
    QCOMPARE(recipe.output, QStringLiteral("/abs/out.tif"));
    QCOMPARE(recipe.band, 3);
    QCOMPARE(recipe.outputOptions.format, QStringLiteral("COG"));
    QVERIFY(recipe.outputOptions.tiled && recipe.outputOptions.worldFile);
    QCOMPARE(argumentFragment(recipe.options), QStringLiteral("-z 1 -s 2.5  -az -45 -alt 60  -compute_edges"));
    QCOMPARE(
        readRecipe(R"({"format": 1, "process": "hillshade", "input": "/vsizip/a.zip"})", "/x").recipe.input,
        QStringLiteral("/vsizip/a.zip"));
}

/// A mosaic is written as its tiles; the path of the temporary file that shows them is not.
void RecipeTest::tiles()
{
    Recipe recipe = readRecipe(R"({"format": 1, "process": "hillshade", "tiles": ["a.hgt", "/b/c.hgt"]})",
                               QStringLiteral("/some/folder"))
                        .recipe;
    QCOMPARE(recipe.tiles, (QStringList{"/some/folder/a.hgt", "/b/c.hgt"}));
    QCOMPARE(namingInput(recipe), QStringLiteral("/some/folder/a_mosaic.vrt"));
    const QByteArray json = writeRecipe(recipe);
    recipe.input = QStringLiteral("/tmp/1/a_mosaic.vrt");
    QCOMPARE(writeRecipe(recipe), json);
    QCOMPARE(readRecipe(json, QStringLiteral("/else")).recipe.tiles, recipe.tiles);
}

void RecipeTest::everyProcessComesBack_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<ProcessOptions>("options"); // no field has its default
    const auto row = [](const ProcessOptions &options) {
        QTest::newRow(qPrintable(processWord(options))) << processWord(options) << options;
        const NamedProcess &defaults = *findProcess(processWord(options));
        QTest::newRow(qPrintable(processWord(options) + " as it is"))
            << processWord(options) << defaults.defaults;
    };
    row(ShadedOptions{.exaggeration = 2.34567890123,
                      .scaleIndex = -1,
                      .scaleText = "\"é\\\n",
                      .compass = 12.5,
                      .altitude = 7,
                      .computeEdges = true,
                      .zevenbergenThorne = true});
    row(SlopeOptions{.percent = true, .scaleIndex = -1, .computeEdges = false, .zevenbergenThorne = true});
    row(AspectOptions{
        .trigonometric = true, .zeroForFlat = false, .computeEdges = false, .zevenbergenThorne = true});
    row(TerrainIndexOptions{.type = 2, .computeEdges = false});
    ContourOptions contours;
    contours.attribute.clear();
    contours.threeD = contours.everyValueValid = true;
    contours.fixedLevels = QStringLiteral("1 2.5");
    contours.noDataValue = -3.4028234663852886e38;
    contours.offset = 0.1;
    row(contours);
    ColorReliefOptions colors{
        .table = "中.txt", .spread = true, .minimum = -12.5, .maximum = 3000.0, .alpha = true};
    colors.colors = {{QuvoColorDef::noDataValue, QColor(1, 2, 3, 0), false},
                     {0.1, QColor(4, 5, 6), false},
                     {0.1, QColor(7, 8, 9), false}};
    row(colors);
    colors.colors = {{0.0, QColor(4, 5, 6, 7), true}, {100.0, QColor(255, 0, 255), true}};
    colors.minimum.reset();
    row(colors);
    IntervisibilityOptions observers;
    observers.observers = {{.enabled = false,
                            .x = 558000.123456789,
                            .y = -5146000,
                            .height = 2.5,
                            .mode = AltitudeMode::Absolute,
                            .maxDistance = 0},
                           {}};
    observers.observers.first().name = QStringLiteral("Nœud");
    observers.observers.first().limits = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    observers.points = QStringLiteral("/a/tours.gpx");
    observers.pointsLayer = QStringLiteral("waypoints");
    observers.height = 25.0;
    observers.mode = QStringLiteral("Absolute");
    observers.distance = observers.step = 0.5;
    observers.combination = QStringLiteral("AND");
    observers.groundHeight.reset();
    observers.visibleColor = QStringLiteral("#010203");
    observers.result = QStringLiteral("height");
    observers.ramp = QStringLiteral("magma");
    observers.skyline = QStringLiteral("/é/h.gpkg");
    observers.skylineStep = 0.25;
    observers.statistics = QStringLiteral("/é/s.csv");
    row(observers);
}

void RecipeTest::sideFiles()
{
    const ProcessOptions read = readRecipe(R"({"format": 1, "process": "intervisibility",
        "options": {"skyline": "../h.json", "skylineStep": 2}})",
                                           QStringLiteral("/some/folder"))
                                    .recipe.options;
    QCOMPARE(std::get<IntervisibilityOptions>(read).skyline, QStringLiteral("/some/h.json"));
    // Each DEM of a series has files of its own, and only those that are asked for.
    const auto own = std::get<IntervisibilityOptions>(withOwnSideFiles(read, QStringLiteral("/b/dém_2.tif")));
    QCOMPARE(own.skyline, QStringLiteral("/b/dém_2_horizon.json"));
    QCOMPARE(own.statistics, QString());
    QVERIFY(withoutSideFiles(read) == withoutSideFiles(own) && own.skylineStep);
    auto wrong = own;
    wrong.result = QStringLiteral("number");
    QVERIFY(valuesProblem(own).isEmpty() && valuesProblem(wrong).contains("number"));
}

void RecipeTest::everyProcessComesBack()
{
    QFETCH(QString, word);
    QFETCH(ProcessOptions, options);
    const Recipe recipe{.process = word,
                        .input = "/l'été \"\\中\n/dem.tif",
                        .output = "/out %1.tif",
                        .band = 3,
                        .outputOptions = {.format = "COG",
                                          .tiled = true,
                                          .worldFile = true,
                                          .statistics = true,
                                          .overviews = true,
                                          .compression = "ZSTD",
                                          .blockSize = 256,
                                          .overviewResampling = "MODE",
                                          .layerName = "couche"},
                        .options = options};
    for (const Recipe &written : {recipe, Recipe{.process = word, .options = options}}) {
        const RecipeReading reading = readRecipe(writeRecipe(written), QStringLiteral("/else"));
        QCOMPARE(reading.problem, QString());
        QVERIFY(reading.recipe == written);
    }
}

void RecipeTest::problems_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("named"); // the problem must contain this

    const auto row = [](const char *name, const char *json, const char *named) {
        QTest::newRow(name) << QByteArray(json) << QString(named);
    };
    row("not JSON", "{\n\"format\": 1,\n oops}", "3");
    row("empty", "", "1");
    row("not an object", "[1]", "JSON");
    row("no format", R"({"process": "hillshade"})", "format");
    row("later format", R"({"format": 2, "process": "hillshade"})", "format");
    row("no process", R"({"format": 1})", "process");
    row("odd process", R"({"format": 1, "process": "relief"})", "relief");
    row("slip of the pen", R"({"format": 1, "process": "hillshade", "inptu": "a"})", "inptu");
    row("input is a number", R"({"format": 1, "process": "hillshade", "input": 3})", "input");
    row("one tile", R"({"format": 1, "process": "hillshade", "tiles": ["a.tif"]})", "tiles");
    row("tiles are numbers", R"({"format": 1, "process": "hillshade", "tiles": ["a.tif", 3]})", "tiles");
    row("tiles and input", R"({"format": 1, "process": "hillshade", "input": "c", "tiles": ["a", "b"]})",
        "input");
    row("band 0", R"({"format": 1, "process": "hillshade", "band": 0})", "band");
    row("band 1.5", R"({"format": 1, "process": "hillshade", "band": 1.5})", "band");
    row("tiled is a text", R"({"format": 1, "process": "hillshade", "tiled": "yes"})", "tiled");
    const auto options = [](const char *process, const char *json, const char *named) {
        QTest::newRow(json) << QByteArray(R"({"format": 1, "process": ")") + process + R"(", "options": )"
                + json + "}" << named;
    };
    options("hillshade", "[]", "options");
    options("hillshade", R"({"azimuth": 3})", "azimuth");
    options("hillshade", R"({"altitude": null})", "altitude");
    options("color-relief", R"({"colors": []})", "colors");
    options("color-relief", R"({"colors": "red"})", "colors");
    options("color-relief", R"({"colors": [{"value": 1, "color": [1, 2]}]})", "colors");
    options("color-relief", R"({"colors": [{"value": 1, "color": [1, 2, 256]}]})", "colors");
    options("color-relief", R"({"colors": [{"percent": 101, "color": [1, 2, 3]}]})", "colors");
    options("color-relief", R"({"colors": [{"value": true, "color": [1, 2, 3]}]})", "colors");
    options("color-relief", R"({"colors": [{"value": 1, "percent": 1, "color": [1, 2, 3]}]})", "colors");
}

void RecipeTest::problems()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, named);
    const QString problem = readRecipe(json, QStringLiteral("/")).problem;
    QVERIFY2(problem.contains(named), qPrintable(problem));
}

void RecipeTest::mutations()
{
    fuzzMutations(fuzzCorpus("recipe"), 20000);
}

QTEST_GUILESS_MAIN(RecipeTest)
#include "recipe_test.moc"
