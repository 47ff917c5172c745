#include "dataset/rasterpicture.h"

#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <numeric>

class RasterPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void greyStretch();
    void notedExtremesReachTheTool();
    void whatCannotBeRead();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// 10 × 10 cells with the values 0 to 99; the first has no data instead.
    bool writeRamp() const
    {
        QVector<float> values(100);
        std::iota(values.begin(), values.end(), 0.0f);
        values[0] = -9999;
        return writeRaster(path("ramp.tif"), 10, 10, values);
    }

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void RasterPictureTest::greyStretch()
{
    QVERIFY(writeRamp());
    const QImage picture = RasterPicture(path("ramp.tif"), 1).read({0, 0, 10, 10}, {10, 10});
    QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
    QCOMPARE(qRed(picture.pixel(1, 0)), 0); // below the 2nd percentile
    QCOMPARE(qRed(picture.pixel(9, 9)), 255);
    QVERIFY(qAbs(qRed(picture.pixel(0, 5)) - 128) < 5);
}

void RasterPictureTest::notedExtremesReachTheTool()
{
    QVERIFY(writeRamp());
    // The tool takes percentages of the noted range, not of the range of the cells.
    QVERIFY(noteExtremes(path("ramp.tif"), 1, 0.0, 198.0));
    const QString table = writeFile(path("percent.txt"), "0% 0 0 0\n100% 198 198 198\n");
    QCOMPARE(runProgram(QStringLiteral(QUVO_TREE "/gdal_dem.exe"),
                        {"color-relief", path("ramp.tif"), table, path("grey.tif"), "-q"})
                 .code,
             0);
    QCOMPARE(qRed(RasterPicture(path("grey.tif")).read({0, 0, 10, 10}, {10, 10}).pixel(9, 9)), 99);
}

void RasterPictureTest::whatCannotBeRead()
{
    QVERIFY(writeRamp());
    QVERIFY(RasterPicture(path("ramp.tif"), 1).read({5, 5, 10, 10}, {10, 10}).isNull());
    QVERIFY(!RasterPicture(path("ramp.tif"), 2).isOpen());
    QVERIFY(!RasterPicture(path("none.tif"), 1).isOpen());
}

QTEST_GUILESS_MAIN(RasterPictureTest)
#include "rasterpicture_test.moc"
