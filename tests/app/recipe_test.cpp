#include "app/recipe.h"

#include "app/batcharguments.h"

#include <QTest>

class RecipeTest : public QObject
{
    Q_OBJECT

private slots:
    void wholeRecipe();
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
    QCOMPARE(reading.error, QString());
    const Recipe &recipe = reading.recipe;
    QCOMPARE(recipe.input, QStringLiteral("/some/dém.tif"));
    QCOMPARE(recipe.output, QStringLiteral("/abs/out.tif"));
    QCOMPARE(recipe.band, 3);
    QCOMPARE(recipe.outputFormat, QStringLiteral("COG"));
    QVERIFY(recipe.tiled && recipe.worldFile);
    QCOMPARE(argumentFragment(recipe.options), QStringLiteral("-z 1 -s 2.5  -az -45 -alt 60  -compute_edges"));
    QCOMPARE(
        readRecipe(R"({"format": 1, "process": "hillshade", "input": "/vsizip/a.zip"})", "/x").recipe.input,
        QStringLiteral("/vsizip/a.zip"));
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
}

void RecipeTest::faults()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, named);
    const QString error = readRecipe(json, QStringLiteral("/")).error;
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
    QTest::newRow("two recipes") << QStringList{"a.json", "b.json"} << false;
}

void RecipeTest::arguments()
{
    QFETCH(QStringList, given);
    QFETCH(bool, good);
    const BatchArguments read = readBatchArguments(QStringList{"QuvoDemBatch"} + given);
    QCOMPARE(read.error.isEmpty(), good);
    if (!good)
        return;
    QCOMPARE(read.output, std::optional<QString>("b"));
    QCOMPARE(read.band, std::optional<int>(2));
    QCOMPARE(read.options.at(0).second, QStringLiteral("b=c"));
    QCOMPARE(read.options.at(1).second, QString());
    QVERIFY(read.tiled && read.worldFile && read.overwrite);
}

QTEST_GUILESS_MAIN(RecipeTest)
#include "recipe_test.moc"
