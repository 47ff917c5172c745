#include "dataset/extremes.h"

#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class ExtremesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void estimateReadsFewBlocks();
    void truncatedTextEndsTheEstimate();

private:
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void ExtremesTest::estimateReadsFewBlocks()
{
    const QString dem = m_folder.filePath("hill.tif");
    QVERIFY(writeHill(dem, 1000));
    ExtremesReader exact(dem, 1, ExtremesReader::Exact);
    int calls = 0;
    while (exact.advance(0)) // one block at a time
        ++calls;
    QVERIFY(calls > 100);
    ExtremesReader estimate(dem, 1, ExtremesReader::Estimate);
    int blocks = 1;
    while (estimate.advance(0))
        ++blocks;
    QVERIFY2(blocks <= (calls + 1) / 50, qPrintable(QString::number(blocks)));
    QVERIFY(estimate.extremes().known && !estimate.extremes().exact && exact.extremes().exact);
    const double range = exact.extremes().maximum - exact.extremes().minimum;
    QVERIFY(estimate.extremes().maximum - estimate.extremes().minimum > 0.8 * range);
    QVERIFY(estimate.extremes().minimum >= exact.extremes().minimum);
    QVERIFY(!ExtremesReader(dem, 2, ExtremesReader::Exact).advance(10));
    QVERIFY(!ExtremesReader(m_folder.filePath("absent"), 1, ExtremesReader::Exact).extremes().known);
    QVERIFY(QDir(m_folder.path()).entryList({"*.aux.xml"}).isEmpty());
}

/// GDAL's driver would search for the line in the middle practically for ever.
void ExtremesTest::truncatedTextEndsTheEstimate()
{
    const QString dem = writeFile(m_folder.filePath("dem.asc"),
                                  "ncols 3\nnrows 200\nxllcorner 0\nyllcorner 0\ncellsize 10\n1 2 3\n4 5\n");
    QVERIFY(estimatedExtremes(dem, 1).unreadable);
}

QTEST_GUILESS_MAIN(ExtremesTest)
#include "extremes_test.moc"
