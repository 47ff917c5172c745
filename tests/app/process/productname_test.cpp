#include "app/process/productname.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class ProductNameTest : public QObject
{
    Q_OBJECT

private slots:
    void proposals();
    void extensions();
    void relativeNames();
    void productsOfAFolder();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString makeFile(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
    }

    QTemporaryDir m_folder;
};

void ProductNameTest::proposals()
{
    makeFile("dem.tif");
    QCOMPARE(proposeOutputName(path("a.%2.b.tif"), "hillshade", "tif"), path("a.%2.b_hillshade.tif"));
    makeFile("dem_slope.tif");
    makeFile("dem_slope_2.tif");
    QCOMPARE(proposeOutputName(path("dem.tif"), "slope", "tif"), path("dem_slope_3.tif"));
    QCOMPARE(proposeOutputName("/vsizip/a.zip/dem.tif", "slope", "tif"),
             QDir::current().filePath("dem_slope.tif"));
    for (const char *name : {"/a/dem_slope.tif", "/a/dem_slope_12.img"})
        QVERIFY2(isProposedName(name, "/a/dem.tif", "slope"), name);
    for (const char *name :
         {"/b/dem_slope.tif", "/a/dem_slope_x.tif", "/a/dem_slopes.tif", "/a/dem_aspect.tif"})
        QVERIFY2(!isProposedName(name, "/a/dem.tif", "slope"), name);
}

void ProductNameTest::extensions()
{
    QCOMPARE(adaptExtension("/a/b.tif", {"shp"}, {"tif", "shp"}), QStringLiteral("/a/b.shp"));
    QCOMPARE(adaptExtension("/a/b.TIFF", {"tif", "tiff"}, {"tif", "shp"}), QStringLiteral("/a/b.TIFF"));
    QCOMPARE(adaptExtension("/a/b.v2", {"shp"}, {"tif", "shp"}), QStringLiteral("/a/b.v2"));
    QCOMPARE(adaptExtension("/a.tif/b", {"shp"}, {"tif", "shp"}), QStringLiteral("/a.tif/b"));
}

void ProductNameTest::relativeNames()
{
    const QString dem = makeFile("dem.tif");
    QCOMPARE(besideInput("mine.tif", dem), path("mine.tif"));
    QCOMPARE(besideInput("../mine.tif", dem), QDir::cleanPath(path("../mine.tif")));
    QCOMPARE(besideInput("/abs/mine.tif", dem), QStringLiteral("/abs/mine.tif"));
    QCOMPARE(besideInput("mine.tif", QString()), QStringLiteral("mine.tif"));
    QCOMPARE(besideInput("mine.tif", "/vsizip/a.zip/dem.tif"), QStringLiteral("mine.tif"));
}

void ProductNameTest::productsOfAFolder()
{
    const QStringList dems{"/a/dem.tif", "/a/relief_slope.tif", "/a/dem_slopes.tif", "/a/slope.tif"};
    const QStringList products{"/a/dem_slope.png", "/a/dem_hillshade_2.tif", "/a/dem_mosaic_aspect.tif"};
    QCOMPARE(withoutProducts(dems + products), dems);
}

QTEST_APPLESS_MAIN(ProductNameTest)

#include "productname_test.moc"
