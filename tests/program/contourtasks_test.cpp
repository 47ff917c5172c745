#include "dataset/gdalmessages.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// The batch program's steps around the contour tool.
class ContourTasksTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void smoothThenFinish();
    void refusals();

private:
    static Ended batch(const QStringList &arguments)
    {
        return runProgram(QStringLiteral(QUVO_TREE "/QuvoDemBatch"), arguments);
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    const QTemporaryDir m_folder{QStringLiteral("/tmp/contours d'été XXXXXX")};
};

void ContourTasksTest::smoothThenFinish()
{
    QVERIFY(writeHill(path("dem.tif"), 150));
    const Ended smoothed = batch(
        {"--smooth-dem", path("s.tif"), "--input", path("dem.tif"), "--band", "1", "--set", "smoothing=3"});
    QVERIFY2(smoothed.code == 0 && smoothed.out.endsWith("100 - done.\n"), qPrintable(smoothed.error));
    // The tool receives six digits of the interval.
    QCOMPARE(runProgram(QStringLiteral(QUVO_TREE "/gdal_contour.exe"),
                        {"-q", "-a", "Z", "-i", "3.33333", "-f", "GPKG", "-nln", "lines", path("s.tif"),
                         path("l.gpkg")})
                 .code,
             0);
    const Ended finished = batch({"--finish-contours",
                                  path("product.gpkg"),
                                  "--lines",
                                  path("l.gpkg"),
                                  "--input",
                                  path("s.tif"),
                                  "--of",
                                  "GPKG",
                                  "--layer",
                                  "lines",
                                  "--set",
                                  "interval=3.3333333",
                                  "--set",
                                  "indexEvery=10",
                                  "--set",
                                  "shortestRing=600",
                                  "--set",
                                  "styled=true",
                                  "--set",
                                  "qgisStyle=true"});
    QVERIFY2(finished.code == 0 && finished.out.endsWith("100 - done.\n"), qPrintable(finished.error));
    QVERIFY2(finished.error.contains(QRegularExpression(": [1-9][0-9]*\\.\n$")), qPrintable(finished.error));
    QVERIFY(QFile::exists(path("product.qml")));
    const auto count = [this](const char *condition) {
        const QString text =
            runProgram("ogrinfo", {"-ro", "-so", "-where", condition, path("product.gpkg"), "lines"}).out;
        return text.section("Feature Count: ", 1).section('\n', 0, 0).toInt();
    };
    QVERIFY(count("INDEX_LINE = 1") > 0);
    QCOMPARE(count("INDEX_LINE = 1 and abs(Z / 33.3333 - round(Z / 33.3333)) > 0.00001"), 0);
    QCOMPARE(count("INDEX_LINE = 0 and abs(Z / 33.3333 - round(Z / 33.3333)) < 0.00001"), 0);
}

void ContourTasksTest::refusals()
{
    QVERIFY(writeHill(path("dem.tif"), 20));
    const auto refused = [this](const QStringList &arguments, const char *word) {
        const Ended ended = batch(arguments + QStringList{"--input", path("dem.tif")});
        return ended.code != 0 && ended.error.contains(word);
    };
    QVERIFY(refused({"--smooth-dem", path("x.tif")}, "smoothing=1"));
    QVERIFY(refused({"--smooth-dem", path("x.tif"), "--set", "smoothing=51"}, "51"));
    QVERIFY(refused({"--smooth-dem", path("x.tif"), "--band", "2", "--set", "smoothing=1"}, "2"));
    QVERIFY(refused({"--finish-contours", path("x.gpkg")}, "--lines"));
    QVERIFY(refused({"--finish-contours", path("x.gpkg"), "--lines", path("none.gpkg")}, "none.gpkg"));
    QVERIFY(!QFile::exists(path("x.tif")) && !QFile::exists(path("x.gpkg")));
}

QTEST_GUILESS_MAIN(ContourTasksTest)
#include "contourtasks_test.moc"
