#include "dataset/hgt.h"

#include "dataset/extremes.h"
#include "dataset/gdalmessages.h"
#include "dataset/rasterinfo.h"
#include "tests/support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class HgtTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void gdalsRules_data();
    void gdalsRules();
    void likelyTiles_data();
    void likelyTiles();
    void tileProblems();
    void virtualRaster();

private:
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/été & <hgt> XXXXXX")};
};

void HgtTest::gdalsRules_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("cells");
    QTest::addColumn<QString>("reason"); // a part of the problem; empty: GDAL opens the file
    QTest::newRow("3 seconds") << "N45E006.hgt" << 1201 * 1201 << "";
    QTest::newRow("1 second") << "N45E006.hgt" << 3601 * 3601 << "";
    QTest::newRow("far north") << "n60w006.SRTMGL1.HGT" << 1801 * 3601 << "";
    QTest::newRow("half a second") << "N47E006.hgt" << 7201 * 7201 << "octets";
    QTest::newRow("another name") << "dem.hgt" << 1201 * 1201 << "nom";
    QTest::newRow("more after the corner") << "N45E006_old.hgt" << 1201 * 1201 << "nom";
}

/// The rules are those of the GDAL that is installed.
void HgtTest::gdalsRules()
{
    QFETCH(QString, name);
    QFETCH(int, cells);
    QFETCH(QString, reason);
    QFile file(m_folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(2LL * cells)); // a hole takes no room
    file.close();
    const QString problem = readRasterInfo(file.fileName()).problem;
    QCOMPARE(problem, hgtProblem(name, 2LL * cells));
    QVERIFY2(reason.isEmpty() ? problem.isEmpty() : problem.contains(reason), qPrintable(problem));
}

void HgtTest::likelyTiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<HgtTile>("tile");
    const auto row = [](const char *name, qint64 cells, const HgtTile &tile) {
        QTest::newRow(name) << QString(name) << 2 * cells << tile;
    };
    row("N47E006.hgt", 7201LL * 7201, {7201, 7201, 47.0, 6.0, 1.0 / 7200});
    row("s01w002_v2.hgt", 1801LL * 3601, {1801, 3601, -1.0, -2.0, 1.0 / 3600});
    row("dem.hgt", 9, {3, 3, 0.0, 0.0, 0.5});
    row("nothing.hgt", 0, {0, 0, 0.0, 0.0, 1.0});
}

void HgtTest::likelyTiles()
{
    QFETCH(QString, name);
    QFETCH(qint64, bytes);
    QFETCH(HgtTile, tile);
    QVERIFY(likelyTile(name, bytes) == tile);
    QCOMPARE(tileProblem(tile, bytes).isEmpty(), bytes > 0);
}

void HgtTest::tileProblems()
{
    const HgtTile good{3, 2, 89.0, 10.0, 1.0};
    QCOMPARE(tileProblem(good, 12), QString());
    QVERIFY(tileProblem(good, 14).contains("14"));
    for (const HgtTile &bad : {HgtTile{3, 2, 89.5, 10.0, 1.0}, HgtTile{3, 2, 0.0, 0.0, 0.0},
                               HgtTile{3, 2, 0.0, -180.5, 1.0}, HgtTile{-3, -2, 0.0, 0.0, 1.0}})
        QVERIFY(!tileProblem(bad, 12).isEmpty());
}

void HgtTest::virtualRaster()
{
    const QByteArray cells("\x01\x02\x80\x00\xff\xff\x00\x09\x00\x08\x00\x07", 12); // 258, no data, -1, 9, 8, 7
    const QString file = writeFile(m_folder.filePath("a & b.hgt"), cells);
    const QString raster = writeFile(m_folder.filePath("a.vrt"), tileVrt({3, 2, 45.0, 6.0, 0.5}, file));
    const RasterInfo info = readRasterInfo(raster);
    QCOMPARE(info.problem, QString());
    QCOMPARE(info.width, 3);
    QCOMPARE(info.height, 2);
    QVERIFY(info.files.contains(file)); // a run must not replace it
    ExtremesReader extremes(raster, 1, ExtremesReader::Exact);
    while (extremes.advance(1000)) { }
    QCOMPARE(extremes.extremes().minimum, -1.0);
    QCOMPARE(extremes.extremes().maximum, 258.0);
    QVERIFY(bytesOf(raster).contains("<GeoTransform>5.75, 0.5, 0, 45.75, 0, -0.5<"));
    QCOMPARE(bytesOf(file), cells);
}

Q_DECLARE_METATYPE(HgtTile)
QTEST_GUILESS_MAIN(HgtTest)
#include "hgt_test.moc"
