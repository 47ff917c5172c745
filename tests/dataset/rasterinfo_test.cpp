#include "dataset/rasterinfo.h"

#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class RasterInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void filesAndSize();

private:
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void RasterInfoTest::filesAndSize()
{
    const QString path = m_folder.filePath("two bands.tif");
    QVERIFY(writeRaster(path, 3, 2, {1, 2, 3, 4, 5, 6}, 2));
    const RasterInfo info = readRasterInfo(path);
    QCOMPARE(info.problem, QString());
    QCOMPARE(info.width, 3);
    QCOMPARE(info.height, 2);
    QCOMPARE(info.bandCount, 2);
    QCOMPARE(info.files, QStringList{path});

    // The files of an input include those that a virtual raster refers to, directly or not, and the file that
    // holds a virtual path.
    for (const char *names : {"inner.vrt|two bands.tif", "outer.vrt|inner.vrt"}) {
        const QStringList pair = QString::fromLatin1(names).split('|');
        writeFile(m_folder.filePath(pair.at(0)),
                  "<VRTDataset rasterXSize='3' rasterYSize='2'><VRTRasterBand dataType='Float32' band='1'>"
                  "<SimpleSource><SourceFilename relativeToVRT='1'>"
                      + pair.at(1).toUtf8() + "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
    }
    QVERIFY(readRasterInfo(m_folder.filePath("outer.vrt")).files.contains(path));
    QVERIFY(readRasterInfo("/vsisubfile/0_100000," + path).files.contains(path));

    QVERIFY(!readRasterInfo(m_folder.filePath("missing.tif")).problem.isEmpty());
    QVERIFY(!readRasterInfo(m_folder.path()).problem.isEmpty());
    QCOMPARE(QDir(m_folder.path()).entryList({"two bands*"}, QDir::Files), QStringList{"two bands.tif"});
}

QTEST_GUILESS_MAIN(RasterInfoTest)
#include "rasterinfo_test.moc"
