#include "panels/options/contours/contourinput.h"
#include "panels/options/contours/contourlevels.h"
#include "panels/options/fragments.h"
#include "panels/options/lightazimuth.h"
#include "panels/options/processoptions.h"
#include "tests/support/files.h"

#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(ShadedOptions)
Q_DECLARE_METATYPE(ProcessOptions)
Q_DECLARE_METATYPE(ContourOptions)
Q_DECLARE_METATYPE(Extremes)

class FragmentsTest : public QObject
{
    Q_OBJECT

private slots:
    void shaded_data();
    void shaded();
    void others_data();
    void others();
    void fieldsAreSetByName_data();
    void fieldsAreSetByName();
    void typedRatio();
    void givenTable();
    void lightFromReading();
    void mergedContourLevels_data();
    void mergedContourLevels();
};

void FragmentsTest::shaded_data()
{
    QTest::addColumn<ShadedOptions>("options");
    QTest::addColumn<QString>("fragment");
    QTest::addColumn<bool>("complete");

    const auto row = [](const char *name, const ShadedOptions &options, const char *fragment,
                        bool complete = true) {
        QTest::newRow(name) << options << QString::fromLatin1(fragment) << complete;
    };
    row("defaults", {}, "-z 1 -s 1 -az -45 -alt 45 ");
    row("north", {.compass = 0}, "-z 1 -s 1 -az 270 -alt 45 ");
    row("east", {.compass = 90}, "-z 1 -s 1 -az 180 -alt 45 ");
    row("west", {.compass = 270}, "-z 1 -s 1 -az 0 -alt 45 ");
    row("compass between", {.compass = 12.3456789}, "-z 1 -s 1 -az 257.654 -alt 45 ");
    row("least wheel", {.exaggeration = 0.1}, "-z 0.1 -s 1 -az -45 -alt 45 ");
    row("rounded wheel", {.exaggeration = 0.1 + 0.2}, "-z 0.3 -s 1 -az -45 -alt 45 ");
    row("full wheel", {.exaggeration = 100}, "-z 100 -s 1 -az -45 -alt 45 ");
    row("feet on metres", {.scaleIndex = 1}, "-z 1 -s 0.31 -az -45 -alt 45 ");
    row("metres on degrees", {.scaleIndex = 2}, "-z 1 -s 111120 -az -45 -alt 45 ");
    row("feet on degrees", {.scaleIndex = 3}, "-z 1 -s 370400 -az -45 -alt 45 ");
    row("list row hides a typed text", {.scaleText = "7"}, "-z 1 -s 1 -az -45 -alt 45 ");
    row("typed ratio", {.scaleIndex = -1, .scaleText = "12"}, "-z 1 -s 12  -az -45 -alt 45 ");
    row("typed placeholder", {.scaleIndex = -1, .scaleText = "%1"}, "-z 1 -s %1  -az -45 -alt 45 ");
    row("emptied ratio", {.scaleIndex = -1}, "-z 1 -az -45 -alt 45 ", false);
    row("both switches", {.altitude = 60, .computeEdges = true, .zevenbergenThorne = true},
        "-z 1 -s 1 -az -45 -alt 60  -compute_edges -alg ZevenbergenThorne");
    row("several suns", {.light = "multidirectional"}, "-z 1 -s 1 -alt 45  -multidirectional");
    row("combined", {.compass = 0, .altitude = 30, .light = "combined"},
        "-z 1 -s 1 -az 270 -alt 30  -combined");
    row("soft", {.computeEdges = true, .light = "igor"}, "-z 1 -s 1 -az -45  -compute_edges -igor");
    row("unknown light", {.light = "moon"}, "-z 1 -s 1 -az -45 -alt 45 ");
}

void FragmentsTest::shaded()
{
    QFETCH(ShadedOptions, options);
    QTEST(shadedFragment(options), "fragment");
    QTEST(isComplete(options), "complete");
}

void FragmentsTest::others_data()
{
    QTest::addColumn<ProcessOptions>("options");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("fragment");

    const auto row = [](const char *name, const ProcessOptions &options, const char *word,
                        const char *fragment) {
        QTest::newRow(name) << options << QString::fromLatin1(word) << QString::fromLatin1(fragment);
    };
    row("slope", SlopeOptions{}, "slope", "-compute_edges -s 1 ");
    row("slope, everything", SlopeOptions{.percent = true, .scaleIndex = 2, .zevenbergenThorne = true}, "slope",
        "-p -compute_edges -alg ZevenbergenThorne -s 111120 ");
    row("slope, typed", SlopeOptions{.scaleIndex = -1, .scaleText = "%1", .computeEdges = false}, "slope",
        "-s %1 ");
    row("slope, emptied", SlopeOptions{.scaleIndex = -1, .computeEdges = false}, "slope", "");
    row("aspect", AspectOptions{}, "aspect", " -zero_for_flat -compute_edges");
    row("aspect, everything", AspectOptions{.trigonometric = true, .zevenbergenThorne = true}, "aspect",
        "-trigonometric -zero_for_flat -compute_edges -alg ZevenbergenThorne");
    row("aspect, nothing", AspectOptions{.zeroForFlat = false, .computeEdges = false}, "aspect", "");
    row("TRI", TerrainIndexOptions{}, "TRI", "-compute_edges");
    row("TPI", TerrainIndexOptions{.type = 1, .computeEdges = false}, "TPI", "");
    row("roughness", TerrainIndexOptions{.type = 2, .computeEdges = false}, "roughness", "");
}

void FragmentsTest::others()
{
    QFETCH(ProcessOptions, options);
    QTEST(processWord(options), "word");
    QTEST(argumentFragment(options), "fragment");
}

void FragmentsTest::fieldsAreSetByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("fragment"); // empty: the value is refused

    QTest::newRow("text for a number") << "exaggeration" << QVariant("2.5") << "-z 2.5 -s 1 -az -45 -alt 45 ";
    QTest::newRow("JSON number") << "compass" << QVariant(90.0) << "-z 1 -s 1 -az 180 -alt 45 ";
    QTest::newRow("whole JSON number") << "altitude" << QVariant(60.0) << "-z 1 -s 1 -az -45 -alt 60 ";
    QTest::newRow("text for a switch")
        << "computeEdges" << QVariant("true") << "-z 1 -s 1 -az -45 -alt 45  -compute_edges";
    QTest::newRow("JSON switch") << "zevenbergenThorne" << QVariant(false) << "-z 1 -s 1 -az -45 -alt 45 ";
    QTest::newRow("too large") << "altitude" << QVariant("91") << "";
    QTest::newRow("not whole") << "altitude" << QVariant(45.5) << "";
    QTest::newRow("far too large") << "altitude" << QVariant(1e300) << "";
    QTest::newRow("not a number") << "exaggeration" << QVariant("nan") << "";
    QTest::newRow("decimal comma") << "exaggeration" << QVariant("2,5") << "";
    QTest::newRow("switch for a number") << "exaggeration" << QVariant(true) << "";
    QTest::newRow("number for a switch") << "computeEdges" << QVariant(1.0) << "";
    QTest::newRow("number for a text") << "scaleText" << QVariant(2.5) << "";
    QTest::newRow("no such field") << "azimuth" << QVariant("90") << "";
}

void FragmentsTest::fieldsAreSetByName()
{
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    QFETCH(QString, fragment);
    ProcessOptions options = ShadedOptions{};
    const QString problem = setOption(options, name, value);
    if (fragment.isEmpty()) {
        QVERIFY2(problem.contains(name), qPrintable(problem));
        QCOMPARE(argumentFragment(options), shadedFragment({}));
    } else {
        QCOMPARE(problem, QString());
        QCOMPARE(argumentFragment(options), fragment);
    }
}

void FragmentsTest::typedRatio()
{
    ProcessOptions options = ShadedOptions{};
    QCOMPARE(setOption(options, "scaleText", QVariant("2.5")), QString());
    completeOptions(options, {"scaleText"}, {});
    QCOMPARE(argumentFragment(options), QStringLiteral("-z 1 -s 2.5  -az -45 -alt 45 "));
    QCOMPARE(optionsProblem(options), QString());
    for (const char *text : {"", "abc", "-1", "0", "1 -alg X", "inf"}) {
        QCOMPARE(setOption(options, "scaleText", QVariant(text)), QString());
        QVERIFY2(!optionsProblem(options).isEmpty(), text);
    }
}

void FragmentsTest::givenTable()
{
    const QTemporaryDir folder;
    const QString local = writeFile(folder.filePath("dtm.txt"), "0 1 2 3\n");
    const auto tableAfter = [&](const QStringList &given) {
        ProcessOptions options = ColorReliefOptions{};
        completeOptions(options, given, folder.path());
        return std::get<ColorReliefOptions>(options).table;
    };
    QCOMPARE(tableAfter({"alpha"}),
             QStringLiteral("dtm.txt")); // the default is the library's, not the folder's
    QCOMPARE(tableAfter({"table"}), local);
    QCOMPARE(tableAfter({"colors"}), QString()); // the colours have no name
}

void FragmentsTest::lightFromReading()
{
    const QLocale french(QLocale::French);
    for (const auto &[reading, text] : {std::pair{0.0, "de l'ouest, azimut 270°"},
                                        {90.0, "du sud, azimut 180°"},
                                        {180.0, "de l'est, azimut 90°"},
                                        {270.0, "du nord, azimut 0°"},
                                        {315.0, "du nord-ouest, azimut 315°"},
                                        {225.0, "du nord-est, azimut 45°"},
                                        {135.0, "du sud-est, azimut 135°"},
                                        {45.0, "du sud-ouest, azimut 225°"},
                                        {359.5, "de l'ouest, azimut 270.5°"},
                                        {290.0, "du nord, azimut 340°"},
                                        {295.0, "du nord-ouest, azimut 335°"},
                                        {360.0, "de l'ouest, azimut 270°"}})
        QCOMPARE(lightText(reading, french), QStringLiteral("Lumière venant ") + text);
}

void FragmentsTest::mergedContourLevels_data()
{
    QTest::addColumn<ContourOptions>("options");
    QTest::addColumn<Extremes>("extremes");
    QTest::addColumn<QString>("fragment");
    const Extremes known{.known = true, .exact = true, .minimum = -35.0, .maximum = 42.0};
    const auto row = [](const char *name, const ContourOptions &options, const Extremes &extremes,
                        const char *fragment) {
        QTest::newRow(name) << options << extremes << QString::fromLatin1(fragment);
    };
    row("interval alone", {.interval = 20, .offset = 5}, known, "-a \"Z\" -i \"20\" -off \"5\" ");
    row("levels alone", {.fixedLevels = "3 1e1"}, known, "-a \"Z\" -fl 3 1e1 ");
    row("both", {.interval = 20, .fixedLevels = "7 20 100"}, known, "-a \"Z\" -fl -20 0 7 20 40 100 ");
    row("both with an offset", {.interval = 20, .fixedLevels = "7", .offset = 5}, known,
        "-a \"Z\" -fl -35 -15 5 7 25 ");
    row("sums without their rounding", {.interval = 0.1, .fixedLevels = "0.25"},
        {.known = true, .exact = true, .minimum = 0.15, .maximum = 0.75},
        "-a \"Z\" -fl 0.2 0.25 0.3 0.4 0.5 0.6 0.7 ");
    row("an estimate is widened", {.interval = 20, .fixedLevels = "7"},
        {.known = true, .minimum = 0.0, .maximum = 40.0}, "-a \"Z\" -fl -20 0 7 20 40 60 ");
    row("no DEM", {.interval = 20, .fixedLevels = "7"}, {}, "-a \"Z\" -i \"20\" -fl 7 ");
    row("areas", {.interval = 20, .threeD = true, .polygons = true}, known,
        "-p -amin \"ZMIN\" -amax \"ZMAX\" -i \"20\" ");
}

void FragmentsTest::mergedContourLevels()
{
    QFETCH(ContourOptions, options);
    QFETCH(Extremes, extremes);
    QTEST(contourInput(options, extremes).fragment, "fragment");
    QVERIFY(mergedLevelsProblem(options, extremes).isEmpty());
    options.interval = 0.0001;
    QCOMPARE(mergedLevelsProblem(options, extremes).isEmpty(),
             !extremes.known || options.fixedLevels.isEmpty());
    options.everyValueValid = true; // levels at the no-data value would be missing
    QCOMPARE(mergedLevelsProblem(options, extremes).isEmpty(), options.fixedLevels.isEmpty());
    options.interval = 20;
    options.indexEvery = 5;
    const ContourSteps steps = contourInput(options, extremes).contours;
    QVERIFY(steps.linesFragment.startsWith(options.polygons ? "-p -amin \"low\"" : "-a \"level\""));
    QVERIFY(steps.settings.contains("indexEvery=5") && steps.settings.contains("interval=20"));
}

QTEST_APPLESS_MAIN(FragmentsTest)
#include "fragments_test.moc"
