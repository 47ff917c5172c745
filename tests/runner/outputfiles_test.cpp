#include "runner/outputfiles.h"

#include "dataset/gdalmessages.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class OutputFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void deletionStopsAtAnEmptyStep();
    void driversDeleteTheirSideFiles();

private:
    QString write(const QString &name) const { return writeFile(m_folder.filePath(name), "x"); }
    QStringList left() const { return QDir(m_folder.path()).entryList(QDir::Files); }

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void OutputFilesTest::deletionStopsAtAnEmptyStep()
{
    const QuvoOutputFile later{.path = write("later"), .driver = {}};
    deleteOutputFiles({{{.path = write("first"), .driver = {}}}, {}, {later}});
    QCOMPARE(left(), QStringList{"later"});
    deleteOutputFiles({{later}});
}

void OutputFilesTest::driversDeleteTheirSideFiles()
{
    const auto raster = [](const QString &path) {
        return QuvoOutputFile{.path = path, .driver = "GTiff", .kind = QuvoOutputFileKind::Raster};
    };
    const QString whole = m_folder.filePath("dém.tif");
    QVERIFY(writeRaster(whole, 2, 2, {1, 2, 3, 4}));
    writeFile(whole + ".aux.xml", "<PAMDataset/>");
    deleteOutputFiles({{raster(whole),
                        raster(write("half.tif")), // what a killed tool leaves; no driver recognises it
                        {.path = write("odd"), .driver = "No such driver", .kind = QuvoOutputFileKind::Vector},
                        raster(m_folder.filePath("never made"))}});
    QCOMPARE(left(), QStringList());
}

QTEST_GUILESS_MAIN(OutputFilesTest)
#include "outputfiles_test.moc"
