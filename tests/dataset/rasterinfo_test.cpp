#include "dataset/rasterinfo.h"

#include "dataset/gdalmessages.h"
#include "dataset/references.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

class RasterInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void filesAndSize();
    void referencedFilesBelongToTheInput();
    void sourcesWithoutEnd();
    void truncatedCells_data();
    void truncatedCells();

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

void RasterInfoTest::referencedFilesBelongToTheInput()
{
    const QString source = m_folder.filePath("source.tif");
    QVERIFY(writeRaster(source, 3, 2, {1, 2, 3, 4, 5, 6}));
    const QString sparse = m_folder.filePath("sparse.xml");
    writeFile(sparse,
              "<VSISparseFile><SubfileRegion><Filename relative='1'>source.tif</Filename><DestinationOffset>0"
              "</DestinationOffset><SourceOffset>0</SourceOffset><RegionLength>"
                  + QByteArray::number(QFileInfo(source).size())
                  + "</RegionLength></SubfileRegion></VSISparseFile>");
    const QByteArray band = "<VRTRasterBand dataType='Float32' band='1'><SimpleSource><SourceFilename>"
        + source.toUtf8() + "</SourceFilename></SimpleSource></VRTRasterBand>";
    const QByteArray geolocation = "<Metadata domain='GEOLOCATION'><MDI key='X_DATASET'>" + source.toUtf8()
        + "</MDI><MDI key='Y_DATASET'>" + source.toUtf8() + "</MDI></Metadata>";
    const QByteArray inlineVrt = "<VRTDataset rasterXSize='3' rasterYSize='2'>" + band + "</VRTDataset>";
    QVERIFY(writeRaster(m_folder.filePath("plain.tif"), 3, 2, {1, 2, 3, 4, 5, 6}));
    writeFile(m_folder.filePath("places.vrt"),
              "<VRTDataset rasterXSize='3' rasterYSize='2'>" + geolocation
                  + "<VRTRasterBand dataType='Float32' band='1'><SimpleSource><SourceFilename "
                    "relativeToVRT='1'>plain.tif"
                    "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
    writeFile(m_folder.filePath("masked.vrt"),
              "<VRTDataset rasterXSize='3' rasterYSize='2'><VRTRasterBand dataType='Float32' band='1'>"
              "<SimpleSource><SourceFilename relativeToVRT='1'>plain.tif</SourceFilename></SimpleSource>"
              "<MaskBand><VRTRasterBand dataType='Byte'><SimpleSource><SourceFilename>vrt://"
                  + source.toUtf8()
                  + "?bands=1</SourceFilename></SimpleSource></VRTRasterBand></MaskBand>"
                    "</VRTRasterBand></VRTDataset>");
    for (const QString &name :
         {"GTIFF_DIR:1:" + source, "vrt://" + source + "?bands=1", QString::fromUtf8(inlineVrt),
          "/vsisparse/" + sparse, m_folder.filePath("places.vrt"), m_folder.filePath("masked.vrt"),
          "DERIVED_SUBDATASET:LOGAMPLITUDE:" + source, "/vsisubfile/0_100000," + source}) {
        const RasterInfo info = readRasterInfo(name);
        QVERIFY2(info.problem.isEmpty(), qPrintable(name + info.problem));
        QVERIFY2(info.files.contains(source), qPrintable(name + " | " + info.files.join(" ")));
    }
    for (const QString &name : {"NETCDF:\"" + source + "\":z", "GPKG:" + source + ":t"})
        QCOMPARE(referencedFiles(name), QStringList{source});
    QCOMPARE(referencedFiles("42"), QStringList());
}

/// Reading a pipe would block for ever.
void RasterInfoTest::sourcesWithoutEnd()
{
    const QString pipe = m_folder.filePath("pipe.tif");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString mosaic = writeFile(m_folder.filePath("of a pipe.vrt"),
                                     "<VRTDataset rasterXSize='3' rasterYSize='2'><VRTRasterBand><SimpleSource>"
                                     "<SourceFilename relativeToVRT='1'>pipe.tif</SourceFilename>"
                                     "</SimpleSource></VRTRasterBand></VRTDataset>");
    for (const QString &name :
         {pipe, "vrt://" + pipe, "/vsigzip/" + pipe, QStringLiteral("/vsistdin/"), mosaic})
        QVERIFY2(!readRasterInfo(name).problem.isEmpty(), qPrintable(name));
}

void RasterInfoTest::truncatedCells_data()
{
    QTest::addColumn<QList<QByteArray>>("options");
    QTest::newRow("bands one after another") << QList<QByteArray>{"-of", "ENVI"};
    QTest::newRow("bands by lines") << QList<QByteArray>{"-of", "ENVI", "-co", "INTERLEAVE=BIL"};
    QTest::newRow("bands by cells") << QList<QByteArray>{"-of", "ENVI", "-co", "INTERLEAVE=BIP"};
}

/// GDAL reads the cells behind the file's end as zeros.
void RasterInfoTest::truncatedCells()
{
    QFETCH(QList<QByteArray>, options);
    const QString source = m_folder.filePath("whole.tif");
    QVERIFY(writeRaster(source, 3, 2, {1, 2, 3, 4, 5, 6}, 2));
    const QString raster = m_folder.filePath("plain.bil");
    QVERIFY(copyRaster(source, raster, options));
    QCOMPARE(readRasterInfo(raster).problem, QString());
    QFile file(raster);
    QVERIFY(file.resize(file.size() - 1));
    QVERIFY(readRasterInfo(raster).problem.contains(QLatin1String("47")));
}

QTEST_GUILESS_MAIN(RasterInfoTest)
#include "rasterinfo_test.moc"
