#include "app/run/overviewrun.h"

#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class OverviewRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void equalsTheDirectWay_data();
    void equalsTheDirectWay();
    void aStopKeepsWhatWasThere();

private:
    QStringList files() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void OverviewRunTest::equalsTheDirectWay_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<QByteArray>>("options");
    QTest::newRow("GTiff") << "a.tif" << QList<QByteArray>{"-of", "GTiff"};
    QTest::newRow("a header beside it") << "b.img" << QList<QByteArray>{"-of", "ENVI"};
    QTest::newRow("refers to another file") << "c.vrt" << QList<QByteArray>{"-of", "VRT"};
    QTest::newRow("a mask beside it") << "d.tif" << QList<QByteArray>{"-mask", "1"};
}

void OverviewRunTest::equalsTheDirectWay()
{
    QFETCH(QString, name);
    QFETCH(QList<QByteArray>, options);
    const QString source = m_folder.filePath("source.tif");
    QVERIFY(writeHill(source, 600));
    const QString raster = m_folder.filePath(name);
    QVERIFY(copyRaster(source, raster, options));
    const auto goOn = [](int) { return true; };

    QCOMPARE(buildOverviews(raster, goOn).problem, QString());
    const QStringList direct = files();
    const QByteArray overviews = bytesOf(overviewFile(raster));
    for (const QString &file : direct) {
        if (file.startsWith(name) && file.endsWith(QLatin1String(".ovr")))
            QFile::remove(m_folder.filePath(file));
    }
    QCOMPARE(runOverviews(raster, goOn).problem, QString());
    QCOMPARE(files(), direct);
    QCOMPARE(bytesOf(overviewFile(raster)), overviews);
    QCOMPARE(runOverviews(raster, goOn).problem, QString()); // over those that are there
    QCOMPARE(files(), direct);
    QCOMPARE(bytesOf(overviewFile(raster)), overviews);
}

void OverviewRunTest::aStopKeepsWhatWasThere()
{
    const QString raster = m_folder.filePath("stopped.tif");
    QVERIFY(writeHill(raster, 600));
    const QStringList before = files();
    const auto stop = [](int) { return false; };
    QCOMPARE(static_cast<int>(runOverviews(raster, stop).state), static_cast<int>(OverviewResult::Stopped));
    QCOMPARE(files(), before);
    writeFile(overviewFile(raster), "what stood here");
    QCOMPARE(static_cast<int>(runOverviews(raster, stop).state), static_cast<int>(OverviewResult::Stopped));
    QCOMPARE(bytesOf(overviewFile(raster)), QByteArray("what stood here"));
    QCOMPARE(files().size(), before.size() + 1);
    // In a part folder the overviews are built in place: what else stood there would be moved as the product's.
    const QString part = m_folder.filePath(".p.tif.part-abcDEF/new");
    QVERIFY(QDir().mkpath(part) && QFile::copy(raster, part + "/p.tif"));
    QCOMPARE(static_cast<int>(runOverviews(part + "/p.tif", stop).state),
             static_cast<int>(OverviewResult::Stopped));
    QCOMPARE(QDir(part).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"p.tif"});
}

QTEST_GUILESS_MAIN(OverviewRunTest)
#include "overviewrun_test.moc"
