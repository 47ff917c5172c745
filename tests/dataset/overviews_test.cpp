#include "dataset/overviews.h"

#include "dataset/gdalmessages.h"
#include "tests/support/rasters.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gdal.h>

#include <csignal>
#include <sys/resource.h>

class OverviewsTest : public QObject
{
    Q_OBJECT

private slots:
    void factors();
    void aFullDiskLeavesNothing();
    void averagesAreRecognised();
};

void OverviewsTest::factors()
{
    QCOMPARE(overviewFactors(255, 9000), QVector<int>());
    QCOMPARE(overviewFactors(256, 256), QVector<int>{2});
    QCOMPARE(overviewFactors(9000, 511), QVector<int>{2});
    QCOMPARE(overviewFactors(2048, 3000), (QVector<int>{2, 4, 8, 16}));
}

void OverviewsTest::aFullDiskLeavesNothing()
{
    setUpGdal();
    const auto goOn = [](int) { return true; };
    const QTemporaryDir folder;
    const QString raster = folder.filePath("a.tif");
    QVERIFY(writeHill(raster, 600));
    QCOMPARE(buildOverviews(raster, goOn).problem, QString());
    const qint64 whole = QFileInfo(overviewFile(raster)).size();
    // A limit of the file size stands for a full disk: just below the whole size, at half of it, and at once.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    for (const qint64 room : {whole - 1, whole / 2, qint64{16}}) {
        QVERIFY(QFile::remove(overviewFile(raster)));
        const rlimit limit{static_cast<rlim_t>(room), before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        const QString problem = buildOverviews(raster, goOn).problem;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
        QVERIFY2(!problem.isEmpty() && !QFile::exists(overviewFile(raster)), qPrintable(problem));
        QCOMPARE(buildOverviews(raster, goOn).problem, QString());
    }
}

void OverviewsTest::averagesAreRecognised()
{
    setUpGdal();
    const QTemporaryDir folder;
    for (const char *type : {"Float32", "Int16"}) {
        for (const char *resampling : {"NEAREST", "AVERAGE"}) {
            const QString raster = folder.filePath(QStringLiteral("%1 %2.tif").arg(type, resampling));
            QVERIFY(writeHill(folder.filePath("hill.tif"), 600));
            QVERIFY(copyRaster(folder.filePath("hill.tif"), raster, {"-ot", type}));
            QVERIFY(!hasAveragedOverviews(raster, 1));
            const auto file = GDALOpen(raster.toUtf8().constData(), GA_ReadOnly);
            int factors[] = {2, 4};
            QCOMPARE(GDALBuildOverviews(file, resampling, 2, factors, 0, nullptr, nullptr, nullptr), CE_None);
            GDALClose(file);
            QCOMPARE(hasAveragedOverviews(raster, 1), *resampling == 'A');
        }
    }
}

QTEST_GUILESS_MAIN(OverviewsTest)
#include "overviews_test.moc"
