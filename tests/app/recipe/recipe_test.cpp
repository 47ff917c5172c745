#include "app/recipe/recipe.h"

#include "app/batch/arguments.h"

#include <QTest>

Q_DECLARE_METATYPE(ProcessOptions)

class RecipeTest : public QObject
{
    Q_OBJECT

private slots:
    void wholeRecipe();
    void everyProcessComesBack_data();
    void everyProcessComesBack();
    void faults_data();
    void faults();
    void arguments_data();
    void arguments();
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

void RecipeTest::everyProcessComesBack_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<ProcessOptions>("options"); // other than the defaults in every field
    const auto row = [](const ProcessOptions &options) {
        QTest::newRow(qPrintable(processWord(options))) << processWord(options) << options;
        const NamedProcess &defaults = *findProcess(processWord(options));
        QTest::newRow(qPrintable(processWord(options) + " as it is"))
            << processWord(options) << defaults.defaults;
    };
    row(ShadedOptions{2.34567890123, -1, "\"é\\\n", 12.5, 7, true, true});
    row(SlopeOptions{true, -1, "", false, true});
    row(AspectOptions{true, false, false, true});
    row(TerrainIndexOptions{2, false});
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
    observers.observers = {{false, 558000.123456789, -5146000, 2.5, AltitudeMode::Absolute, 0}, {}};
    observers.points = QStringLiteral("/a/tours.gpx");
    observers.height = 25.0;
    observers.mode = QStringLiteral("Absolute");
    observers.distance = observers.step = 0.5;
    observers.combination = QStringLiteral("AND");
    observers.groundHeight.reset();
    observers.visibleColor = QStringLiteral("#010203");
    row(observers);
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
                                          .layerName = "couche",
                                          .overviews = true},
                        .options = options};
    for (const Recipe &written : {recipe, Recipe{.process = word, .options = options}}) {
        const RecipeReading reading = readRecipe(writeRecipe(written), QStringLiteral("/else"));
        QCOMPARE(reading.problem, QString());
        QVERIFY(reading.recipe == written);
    }
}

void RecipeTest::faults_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("named"); // what the sentence must name

    QTest::newRow("not JSON") << QByteArray("{\n\"format\": 1,\n oops}") << "3";
    QTest::newRow("empty") << QByteArray() << "1";
    QTest::newRow("not an object") << QByteArray("[1]") << "JSON";
    QTest::newRow("no format") << QByteArray(R"({"process": "hillshade"})") << "format";
    QTest::newRow("later format") << QByteArray(R"({"format": 2, "process": "hillshade"})") << "format";
    QTest::newRow("no process") << QByteArray(R"({"format": 1})") << "process";
    QTest::newRow("odd process") << QByteArray(R"({"format": 1, "process": "relief"})") << "relief";
    QTest::newRow("slip of the pen") << QByteArray(R"({"format": 1, "process": "hillshade", "inptu": "a"})")
                                     << "inptu";
    QTest::newRow("input is a number")
        << QByteArray(R"({"format": 1, "process": "hillshade", "input": 3})") << "input";
    QTest::newRow("band 0") << QByteArray(R"({"format": 1, "process": "hillshade", "band": 0})") << "band";
    QTest::newRow("band 1.5") << QByteArray(R"({"format": 1, "process": "hillshade", "band": 1.5})") << "band";
    QTest::newRow("tiled is a text") << QByteArray(R"({"format": 1, "process": "hillshade", "tiled": "yes"})")
                                     << "tiled";
    QTest::newRow("options is a list")
        << QByteArray(R"({"format": 1, "process": "hillshade", "options": []})") << "options";
    QTest::newRow("odd option") << QByteArray(
        R"({"format": 1, "process": "hillshade", "options": {"azimuth": 3}})")
                                << "azimuth";
    const auto options = [](const char *process, const char *json, const char *named) {
        QTest::newRow(json) << QByteArray(R"({"format": 1, "process": ")") + process + R"(", "options": )"
                + json + "}" << named;
    };
    options("hillshade", R"({"altitude": null})", "altitude");
    options("color-relief", R"({"colors": []})", "colors");
    options("color-relief", R"({"colors": "red"})", "colors");
    options("color-relief", R"({"colors": [{"value": 1, "color": [1, 2]}]})", "colors");
    options("color-relief", R"({"colors": [{"value": 1, "color": [1, 2, 256]}]})", "colors");
    options("color-relief", R"({"colors": [{"percent": 101, "color": [1, 2, 3]}]})", "colors");
    options("color-relief", R"({"colors": [{"value": true, "color": [1, 2, 3]}]})", "colors");
    options("color-relief", R"({"colors": [{"value": 1, "percent": 1, "color": [1, 2, 3]}]})", "colors");
}

void RecipeTest::faults()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, named);
    const QString error = readRecipe(json, QStringLiteral("/")).problem;
    QVERIFY2(error.contains(named), qPrintable(error));
}

void RecipeTest::arguments_data()
{
    QTest::addColumn<QStringList>("given");
    QTest::addColumn<bool>("good");

    QTest::newRow("all") << QStringList{"--process",    "hillshade", "--input", "a",     "--output=b",
                                        "--band",       "2",         "--of",    "COG",   "--tiled",
                                        "--world-file", "--set",     "a=b=c",   "--set", "d=",
                                        "--overwrite"}
                         << true;
    QTest::newRow("unknown") << QStringList{"--procss", "x"} << false;
    QTest::newRow("value missing") << QStringList{"--process"} << false;
    QTest::newRow("band") << QStringList{"--band", "0"} << false;
    QTest::newRow("band text") << QStringList{"--band", "two"} << false;
    QTest::newRow("set without a name") << QStringList{"--set", "=3"} << false;
    QTest::newRow("set without a value") << QStringList{"--set", "altitude"} << false;
    QTest::newRow("several DEMs and an output") << QStringList{"a.json", "b.tif", "--output", "c"} << false;
}

void RecipeTest::arguments()
{
    QFETCH(QStringList, given);
    QFETCH(bool, good);
    const BatchArguments read = readBatchArguments(QStringList{"QuvoDemBatch"} + given);
    QCOMPARE(read.problem.isEmpty(), good);
    if (!good)
        return;
    QCOMPARE(read.output, std::optional<QString>("b"));
    QCOMPARE(read.band, std::optional<int>(2));
    QCOMPARE(read.options.at(0).second, QStringLiteral("b=c"));
    QCOMPARE(read.options.at(1).second, QString());
    QVERIFY(read.outputOptions.tiled && read.outputOptions.worldFile && read.overwrite);
}

QTEST_GUILESS_MAIN(RecipeTest)
#include "recipe_test.moc"
