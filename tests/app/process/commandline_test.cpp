#include "app/process/commandline.h"

#include "dataset/gdalmessages.h"
#include "runner/commandsplit.h"

#include <QTest>

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void golden_data();
    void golden();
    void compression_data();
    void compression();
    void noProcessHasNoArguments();
    void declared();
};

namespace
{

ProcessingRequest request(Process process, const QString &mode = {})
{
    ProcessingRequest request;
    request.process = process;
    request.mode = mode;
    request.input = QStringLiteral("/a b/dem.tif");
    request.output = QStringLiteral("/out/p.tif");
    request.band = 2;
    request.toolInput.fragment = QStringLiteral("-x 1 ");
    return request;
}

} // namespace

Q_DECLARE_METATYPE(ProcessingRequest)

void CommandLineTest::golden_data()
{
    QTest::addColumn<ProcessingRequest>("asked");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("arguments");

    const auto row = [](const char *name, ProcessingRequest asked, const char *text,
                        const QStringList &arguments) {
        QTest::newRow(name) << asked << QString::fromLatin1(text) << arguments;
    };
    row("shaded relief", request(Process::ShadedRelief, "hillshade"),
        "hillshade \"/a b/dem.tif\"  \"/out/p.tif\" -x 1  -b 2 -of \"GTiff\"",
        {"hillshade", "/a b/dem.tif", "/out/p.tif", "-x", "1", "-b", "2", "-of", "GTiff"});

    ProcessingRequest empty = request(Process::TriTpiRoughness, "TPI");
    empty.toolInput.fragment.clear();
    empty.outputOptions.format = QStringLiteral("COG");
    row("empty fragment", empty, "TPI \"/a b/dem.tif\"  \"/out/p.tif\"  -b 2 -of \"COG\"",
        {"TPI", "/a b/dem.tif", "/out/p.tif", "-b", "2", "-of", "COG"});

    ProcessingRequest colours = request(Process::ColorRelief, "color-relief");
    colours.toolInput.colorTableFile = QStringLiteral("/c d.txt");
    colours.outputOptions.tiled = true;
    row("colour relief, tiled", colours,
        "color-relief \"/a b/dem.tif\" \"/c d.txt\" \"/out/p.tif\" -x 1  -b 2 -of \"GTiff\" -co \"TILED=YES\"",
        {"color-relief", "/a b/dem.tif", "/c d.txt", "/out/p.tif", "-x", "1", "-b", "2", "-of", "GTiff", "-co",
         "TILED=YES"});

    ProcessingRequest worldFile = request(Process::Slope, "slope");
    worldFile.outputOptions.worldFile = true;
    row("world file without tiles", worldFile,
        "slope \"/a b/dem.tif\"  \"/out/p.tif\" -x 1  -b 2 -of \"GTiff\"",
        {"slope", "/a b/dem.tif", "/out/p.tif", "-x", "1", "-b", "2", "-of", "GTiff"});

    ProcessingRequest zones = request(Process::Intervisibility);
    zones.outputOptions.tiled = zones.outputOptions.worldFile = true;
    row("intervisibility", zones,
        "-SrcFile \"/a b/dem.tif\" -DstFile \"/out/p.tif\" -iBand 2 -x 1  -co \"TILED=YES\" -co \"TFW=YES\"",
        {"-SrcFile", "/a b/dem.tif", "-DstFile", "/out/p.tif", "-iBand", "2", "-x", "1", "-co", "TILED=YES",
         "-co", "TFW=YES"});

    zones.outputOptions.worldFile = false;
    zones.toolInput.sideFiles = {{"-Skyline", "/à b/h.csv", {}, "-SkylineStep 2 "},
                                 {"-Statistics", "/s.csv", {}}};
    QTest::newRow("side files")
        << zones
        << QStringLiteral(
               "-SrcFile \"/a b/dem.tif\" -DstFile \"/out/p.tif\" -iBand 2 -x 1 -Skyline \"/à b/h.csv\" "
               "-SkylineStep 2 -Statistics \"/s.csv\"  -co \"TILED=YES\"")
        << QStringList{
               "-SrcFile", "/a b/dem.tif", "-DstFile",   "/out/p.tif",   "-iBand", "2",           "-x",
               "1",        "-Skyline",     "/à b/h.csv", "-SkylineStep", "2",      "-Statistics", "/s.csv",
               "-co",      "TILED=YES"};

    ProcessingRequest lines = request(Process::Contour);
    lines.outputOptions.tiled = true;
    row("contours", lines, "-b 2 -f \"ESRI Shapefile\" -x 1  -nln \"contour\" \"/a b/dem.tif\" \"/out/p.tif\" ",
        {"-b", "2", "-f", "ESRI Shapefile", "-x", "1", "-nln", "contour", "/a b/dem.tif", "/out/p.tif"});
}

void CommandLineTest::golden()
{
    QFETCH(ProcessingRequest, asked);
    QTEST(processArguments(asked), "text");
    const ProcessCommand split =
        splitProcessCommand(processCommand(QStringLiteral("/my tools/t.exe"), processArguments(asked)));
    QCOMPARE(split.program, QStringLiteral("/my tools/t.exe"));
    QTEST(split.arguments, "arguments");
}

void CommandLineTest::compression_data()
{
    QTest::addColumn<ProcessingRequest>("asked");
    QTest::addColumn<QString>("creation");
    const auto row = [](const char *name, Process process, const OutputOptions &output, const char *creation) {
        ProcessingRequest asked = request(process);
        asked.outputOptions = output;
        QTest::newRow(name) << asked << QString::fromLatin1(creation);
    };
    row("numbers behind tiles", Process::Slope, {.tiled = true, .worldFile = true, .compression = "deflate"},
        "TILED=YES TFW=YES COMPRESS=DEFLATE PREDICTOR=3 BIGTIFF=IF_SAFER");
    row("smooth bytes", Process::ShadedRelief, {.compression = "LZW"},
        "COMPRESS=LZW PREDICTOR=2 BIGTIFF=IF_SAFER");
    row("even zones", Process::Intervisibility, {.compression = "ZSTD"}, "COMPRESS=ZSTD BIGTIFF=IF_SAFER");
    row("COG", Process::Slope,
        {.format = "COG", .compression = "ZSTD", .blockSize = 256, .overviewResampling = "average"},
        "COMPRESS=ZSTD PREDICTOR=YES BIGTIFF=IF_SAFER BLOCKSIZE=256 OVERVIEW_RESAMPLING=AVERAGE");
    row("COG without copies", Process::Slope, {.format = "COG", .overviewResampling = "none"},
        "OVERVIEWS=NONE");
    ProcessingRequest counts = request(Process::Intervisibility);
    counts.cellUse.sight = SightResult::Count;
    counts.outputOptions.compression = QStringLiteral("LZW");
    QTest::newRow("whole numbers") << counts << QStringLiteral("COMPRESS=LZW PREDICTOR=2 BIGTIFF=IF_SAFER");
}

void CommandLineTest::compression()
{
    QFETCH(ProcessingRequest, asked);
    QFETCH(QString, creation);
    QCOMPARE(writingProblem(asked.outputOptions), QString());
    const OutputOptions supported = supportedOptions(asked.outputOptions, *asked.process);
    QVERIFY(supported == asked.outputOptions);
    QString expected;
    for (const QString &option : creation.split(QLatin1Char(' ')))
        expected += QStringLiteral(" -co \"%1\"").arg(option);
    QVERIFY2(processArguments(asked).endsWith(expected), qPrintable(processArguments(asked)));

    const OutputOptions before = asked.outputOptions;
    asked.outputOptions.format = QStringLiteral("PNG"); // has none of all this
    QVERIFY(!writingProblem(asked.outputOptions).isEmpty());
    QVERIFY(supportedOptions(asked.outputOptions, Process::ShadedRelief).compression.isEmpty());
    asked.outputOptions = before;
    asked.outputOptions.format = outputFormat(asked).toLower(); // as GDAL reads it
    QCOMPARE(writingProblem(asked.outputOptions), QString());
    asked.outputOptions.compression = QStringLiteral("JPEG"); // would change numbers
    QVERIFY(!writingProblem(asked.outputOptions).isEmpty());
}

void CommandLineTest::noProcessHasNoArguments()
{
    QCOMPARE(processArguments({}), QString());
    QVERIFY(declaredOutputs({}).isEmpty());
}

void CommandLineTest::declared()
{
    const auto paths = [](const ProcessingRequest &asked) {
        QStringList list;
        for (const QuvoOutputFile &file : declaredOutputs(asked))
            list += file.path + QLatin1Char('|') + file.driver;
        return list;
    };
    ProcessingRequest asked = request(Process::ShadedRelief, "hillshade");
    asked.output = QStringLiteral("/o.d/a.b.tif");
    asked.outputOptions.worldFile = true;
    QCOMPARE(paths(asked), QStringList{"/o.d/a.b.tif|GTiff"}); // without tiles the tool writes no world file
    asked.outputOptions.tiled = true;
    QCOMPARE(paths(asked), (QStringList{"/o.d/a.b.tif|GTiff", "/o.d/a.b.tfw|"}));
    asked.outputOptions.tiled = false;
    asked.outputOptions.format = QStringLiteral("COG");
    QCOMPARE(paths(asked), (QStringList{"/o.d/a.b.tif|COG", "/o.d/a.b.tif.ovr.tmp|"}));

    const QuvoOutputFilesList lines = declaredOutputs(request(Process::Contour));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().kind, QuvoOutputFileKind::Vector);
}

QTEST_APPLESS_MAIN(CommandLineTest)
#include "commandline_test.moc"
