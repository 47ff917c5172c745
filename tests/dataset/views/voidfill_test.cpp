#include "dataset/views/voidfill.h"

#include "dataset/gdalmessages.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

/// The filling of voids while it runs.
class VoidFillTest : public QObject
{
    Q_OBJECT

private slots:
    void temporaryFilesStandBesideTheDem();
};

/// They would stay in the system's folder after a sudden end, and fill its disk.
void VoidFillTest::temporaryFilesStandBesideTheDem()
{
    setUpGdal();
    const QTemporaryDir folder;
    const QDir system(folder.filePath("system"));
    QVERIFY(QDir(folder.path()).mkpath("system") && QDir(folder.path()).mkpath("run"));
    QVERIFY(qputenv("TMPDIR", system.path().toLocal8Bit()));
    QVector<float> cells(100 * 100, 5.0F);
    for (int at = 3000; at < 4000; ++at)
        cells[at] = -9999.0F;
    QVERIFY(writeRaster(folder.filePath("dem.tif"), 100, 100, cells));
    int most = 0;
    int foreign = 0;
    const FillResult result =
        fillVoids({.dem = folder.filePath("dem.tif"), .filled = folder.filePath("run/filled.tif")}, [&](int) {
            most = qMax(most, static_cast<int>(QDir(folder.filePath("run")).entryList(QDir::Files).size()));
            foreign += static_cast<int>(system.entryList(QDir::Files).size());
            return true;
        });
    QVERIFY2(result.problem.isEmpty(), qPrintable(result.problem));
    QCOMPARE(result.filled, 1000LL);
    QCOMPARE(foreign, 0);
    QVERIFY(most > 1);
    QCOMPARE(QDir(folder.filePath("run")).entryList(QDir::Files), QStringList{"filled.tif"});
}

QTEST_GUILESS_MAIN(VoidFillTest)
#include "voidfill_test.moc"
