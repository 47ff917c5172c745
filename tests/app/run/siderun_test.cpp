#include "app/run/ProductRun.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "panels/options/valueclasses.h"
#include "runner/QuvoScriptRunner.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

/// Runs whose tool, a script here, writes files besides the product.
class SideRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void init();
    void replacesAll();
    void keepsAll_data();
    void keepsAll();
    void stopKeepsAll();
    void stopInTheLastCopyLeavesNothing();
    void badNames_data();
    void badNames();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList files() const
    {
        const QDir::Filters all = QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot;
        return QDir(m_folder->path()).entryList(all) + QDir(path("à côté")).entryList(all);
    }
    /// The plan of a run whose tool, after it has made the product, carries out `commands` with the paths $sky
    /// and $stat.
    RunPlan plan(const QByteArray &commands, const QVector<SideFile> &sides) const;
    QVector<SideFile> bothFiles() const
    {
        return {{"-Skyline", path("à côté/l'\"horizon\".csv"), {"csv", "json", "gpkg"}},
                {"-Statistics", "stat.csv", {"csv"}}};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

bool writeLayers(const QString &path, const QStringList &layers)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const std::unique_ptr<GDALDataset> file(
        driver->Create(encodePath(path).constData(), 0, 0, 0, GDT_Unknown, nullptr));
    for (const QString &layer : layers)
        file->CreateLayer(layer.toUtf8().constData(), nullptr, wkbLineString);
    return file->GetLayerCount() == layers.size();
}

} // namespace

void SideRunTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX"));
    QVERIFY(QDir(m_folder->path()).mkdir("à côté"));
    QVERIFY(writeHill(path("dem.tif"), 20));
    QVERIFY(writeRaster(path("zones.src"), 20, 20, QVector<float>(400, 1.0f), 3));
    writeFile(path("zones.tif"), "old zones");
    writeFile(path("à côté/l'\"horizon\".csv"), "old skyline");
}

RunPlan SideRunTest::plan(const QByteArray &commands, const QVector<SideFile> &sides) const
{
    const QString tool = writeScript(path("tool"),
                                     "while [ $# -gt 0 ]; do case \"$1\" in -DstFile) out=\"$2\";; -Skyline) "
                                     "sky=\"$2\";; -Statistics) stat=\"$2\";; esac; shift; done\n"
                                     "cp \""
                                         + path("zones.src").toUtf8() + "\" \"$out\"\n" + commands + '\n');
    ProcessingRequest request;
    request.process = Process::Intervisibility;
    request.input = path("dem.tif");
    request.output = path("zones.tif");
    request.toolInput.sideFiles = sides;
    return planRun(request, {.intervisibility = tool});
}

void SideRunTest::replacesAll()
{
    QuvoScriptRunner runner(nullptr);
    ProductRun run(runner);
    const QSignalSpy finished(&run, &ProductRun::finished);
    const RunPlan asked = plan("echo new >\"$sky\"; echo \"$sky\" >\"$stat\"", bothFiles());
    QCOMPARE(asked.problem, QString());
    QCOMPARE(writtenFiles(asked).size(), 3);
    QCOMPARE(existingSideOutputs(asked), QStringList{path("à côté/l'\"horizon\".csv")});
    auto lock = std::make_unique<OutputLock>(writtenFiles(asked));
    QVERIFY(!OutputLock(path("stat.csv")).problem().isEmpty()); // no other run writes there meanwhile
    run.start(asked, std::move(lock), false, {});
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(bytesOf(path("à côté/l'\"horizon\".csv")), QByteArray("new\n"));
    QVERIFY(bytesOf(path("stat.csv")).contains("/à côté/.l'\"horizon\".csv.part-"));
    QVERIFY(bytesOf(path("zones.tif")).startsWith("II*"));
    QVERIFY2(run.commands().first().contains(path("stat.csv")) && !run.commands().first().contains(".part-"),
             qPrintable(run.commands().first()));
    QCOMPARE(files().size(),
             7); // DEM, source, tool, product, statistics, folder and skyline: nothing is left over
}

void SideRunTest::keepsAll_data()
{
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<QString>("named");
    QTest::newRow("the tool fails") << QByteArray("echo half >\"$sky\"; echo half >\"$stat\"; exit 3") << "";
    QTest::newRow("no file") << QByteArray("echo new >\"$sky\"") << "stat.csv";
    QTest::newRow("an empty file") << QByteArray("echo new >\"$stat\"; : >\"$sky\"") << "à côté";
    QTest::newRow("another product") << QByteArray(
        "echo n >\"$sky\"; cp \"$sky\" \"$stat\"; cp dem.tif \"$out\"")
                                     << "";
}

void SideRunTest::keepsAll()
{
    QFETCH(QByteArray, commands);
    QFETCH(QString, named);
    commands.replace("dem.tif", '"' + path("dem.tif").toUtf8() + '"');
    QuvoScriptRunner runner(nullptr);
    ProductRun run(runner);
    const QSignalSpy failed(&run, &ProductRun::failed);
    const RunPlan asked = plan(commands, bothFiles());
    run.start(asked, std::make_unique<OutputLock>(writtenFiles(asked)), false, {});
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY2(run.outcome().problem.contains(named) && !run.outcome().problem.contains(".part-"),
             qPrintable(run.outcome().problem));
    QCOMPARE(bytesOf(path("zones.tif")), QByteArray("old zones"));
    QCOMPARE(bytesOf(path("à côté/l'\"horizon\".csv")), QByteArray("old skyline"));
    QCOMPARE(files().size(), 6);
}

void SideRunTest::stopKeepsAll()
{
    QuvoScriptRunner runner(nullptr);
    ProductRun run(runner);
    const QSignalSpy aborted(&run, &ProductRun::aborted);
    const RunPlan asked = plan("echo half >\"$sky\"; echo half >\"$stat\"; exec sleep 60", bothFiles());
    run.start(asked, std::make_unique<OutputLock>(writtenFiles(asked)), false, {});
    QTRY_VERIFY(QFileInfo(partOf(path("stat.csv"))).size() > 0);
    run.stop();
    QTRY_COMPARE(aborted.size(), 1);
    QCOMPARE(bytesOf(path("à côté/l'\"horizon\".csv")), QByteArray("old skyline"));
    QCOMPARE(files().size(), 6);
}

/// The product with statistics is a copy, and its classes are painted after that.
void SideRunTest::stopInTheLastCopyLeavesNothing()
{
    const QString tool = writeScript(path("dem"), "cp \"" + path("dem.tif").toUtf8() + "\" \"$3\"\n");
    const QString copy = writeScript(
        path("copy"),
        "for out in \"$@\"; do :; done\necho half >\"$out\"; echo half >\"$out.aux.xml\"; exec sleep 60\n");
    const QStringList before = files();
    ProcessingRequest request;
    request.process = Process::Slope;
    request.mode = QStringLiteral("slope");
    request.input = path("dem.tif");
    request.output = path("slope.tif");
    request.outputOptions.statistics = true;
    request.toolInput = slopeInput({.classes = "building"});
    const RunPlan asked = planRun(request, {.dem = tool, .translate = copy});
    QCOMPARE(asked.problem, QString());
    QCOMPARE(writtenFiles(asked),
             (QStringList{path("slope.tif"), path("slope_classes.tif"), path("slope_classes_legend.png")}));
    QuvoScriptRunner runner(nullptr);
    ProductRun run(runner);
    const QSignalSpy aborted(&run, &ProductRun::aborted);
    run.start(asked, std::make_unique<OutputLock>(writtenFiles(asked)), false, {});
    QTRY_VERIFY(QFileInfo(partOf(path("slope.tif")) + ".aux.xml").size() > 0);
    run.stop();
    QTRY_COMPARE(aborted.size(), 1);
    QCOMPARE(files(), before);
}

void SideRunTest::badNames_data()
{
    QTest::addColumn<QString>("skyline");
    QTest::addColumn<QString>("statistics");
    QTest::addColumn<QString>("named");
    QTest::newRow("both alike") << "a.csv"
                                << "a.csv"
                                << "a.csv";
    QTest::newRow("extension") << "a.shp"
                               << ""
                               << ".gpkg";
    QTest::newRow("no such folder") << "none/a.csv"
                                    << ""
                                    << "none";
    QTest::newRow("the DEM") << "link.csv"
                             << ""
                             << "link.csv";
    QTest::newRow("a folder") << "à côté"
                              << ""
                              << "à côté";
    QTest::newRow("other layers") << "other.gpkg"
                                  << ""
                                  << "other.gpkg";
    QTest::newRow("its own layers") << "own.gpkg"
                                    << ""
                                    << "";
}

void SideRunTest::badNames()
{
    QFETCH(QString, skyline);
    QFETCH(QString, statistics);
    QFETCH(QString, named);
    QVERIFY(QFile::link(path("dem.tif"), path("link.csv")));
    QVERIFY(writeLayers(path("other.gpkg"), {"skyline", "towers"}));
    QVERIFY(writeLayers(path("own.gpkg"), {"skyline", "seen"}));
    QVector<SideFile> sides{{"-Skyline", skyline, {"csv", "json", "gpkg"}}};
    if (!statistics.isEmpty())
        sides += {"-Statistics", statistics, {"csv"}};
    const RunPlan asked = plan({}, sides);
    QCOMPARE(asked.problemKind, named.isEmpty() ? ProblemKind::None : ProblemKind::SideFile);
    QVERIFY2(asked.problem.contains(named), qPrintable(asked.problem));
}

QTEST_MAIN(SideRunTest)
#include "siderun_test.moc"
