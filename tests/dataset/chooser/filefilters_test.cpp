#include "dataset/chooser/filefilters.h"

#include "dataset/formatfilters.h"
#include "dataset/gdalmessages.h"

#include <QRegularExpression>
#include <QTest>

class FileFiltersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void filters_data();
    void filters();
    void everyDriver();
};

void FileFiltersTest::filters_data()
{
    QTest::addColumn<QVector<FileFormat>>("formats");
    QTest::addColumn<QString>("filter");
    const QString all = "Tous les fichiers (*)";
    QTest::newRow("no format") << QVector<FileFormat>{} << all;
    QTest::newRow("two with a common extension")
        << QVector<FileFormat>{{"GeoTIFF", {"tif", "tiff"}}, {"COG", {"tif"}}}
        << "Tous les formats reconnus (*.tif *.tiff);;GeoTIFF (*.tif *.tiff);;COG (*.tif);;" + all;
    QTest::newRow("characters of the filter's own")
        << QVector<FileFormat>{{"Grid (.hdr);;old", {"hdr"}}, {"None", {}}}
        << "Tous les formats reconnus (*.hdr);;Grid [.hdr];old (*.hdr);;" + all;
}

void FileFiltersTest::filters()
{
    QFETCH(QVector<FileFormat>, formats);
    QTEST(fileFilter(formats), "filter");
}

/// Each row of the installed drivers' filters is one that Qt can split into a title and patterns.
void FileFiltersTest::everyDriver()
{
    static const QRegularExpression row("^[^()]+ \\((\\*|\\*\\.[a-z0-9_.+-]+( \\*\\.[a-z0-9_.+-]+)*)\\)$");
    const QVector<FileFormat> rasters = rasterFileFormats();
    const QVector<FileFormat> vectors = vectorFileFormats();
    for (const auto &formats : {rasters, vectors, allFileFormats()}) {
        const QStringList rows = fileFilter(formats).split(";;");
        QCOMPARE(rows.size(), formats.size() + 2);
        for (const QString &text : rows)
            QVERIFY2(row.match(text).hasMatch(), qPrintable(text));
    }
    // A driver that reads files by their extension has its row, in the list of its kind alone.
    const auto has = [](const QVector<FileFormat> &formats, const char *driver) {
        return fileFilter(formats).contains(formatTitle(driver) + " (*.");
    };
    QVERIFY(has(rasters, "GTiff") && has(rasters, "SRTMHGT") && !has(rasters, "ESRI Shapefile"));
    QVERIFY(has(vectors, "ESRI Shapefile") && has(vectors, "GeoJSON") && !has(vectors, "GTiff"));
    QVERIFY(has(rasters, "GPKG") && has(vectors, "GPKG"));
    QVERIFY(allFileFormats().size() < rasters.size() + vectors.size());
}

Q_DECLARE_METATYPE(FileFormat)
QTEST_GUILESS_MAIN(FileFiltersTest)
#include "filefilters_test.moc"
