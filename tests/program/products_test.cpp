#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

/// Runs every process of the batch program on DEMs of several kinds, and compares the products with those of
/// the tools called by hand.
class ProductsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void equalsTheToolsOwn_data();
    void equalsTheToolsOwn();
    void formatsEqualTheToolsOwn_data();
    void formatsEqualTheToolsOwn();
    void colorTables();
    void observers();
    void vectorOutputIsReplacedWhole();
    void stoppedContoursLeaveNothing();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QStringList files(const QString &pattern) const
    {
        return QDir(m_folder.path())
            .entryList({pattern}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    int batch(const QStringList &arguments) { return run(QStringLiteral("QuvoDemBatch"), arguments); }
    int run(const QString &program, const QStringList &arguments);

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/dossier à blancs \"中\" XXXXXX")};
    QString m_error;
};

int ProductsTest::run(const QString &program, const QStringList &arguments)
{
    const Ended ended = runProgram(QStringLiteral(QUVO_TREE "/") + program, arguments);
    m_error = ended.error;
    return ended.code;
}

void ProductsTest::initTestCase()
{
    setUpGdal();
    // A temporary directory for this test alone, which checks that nothing is left there.
    QVERIFY(QDir(m_folder.path()).mkdir("tmp") && qputenv("TMPDIR", path("tmp").toLocal8Bit()));
    qputenv("OGR_CURRENT_DATE", "2020-01-01T00:00:00.000Z"); // GeoPackages hold the time
    QVERIFY(writeHill(path("metres.tif"), 64));
    QVERIFY(copyRaster(path("metres.tif"), path("degrés.tif"),
                       {"-a_srs", "EPSG:4326", "-a_ullr", "6", "46", "6.5", "45.5", "-a_nodata", "20"}));
    QVERIFY(copyRaster(path("metres.tif"), path("entiers.tif"), {"-ot", "Int16"}));
}

void ProductsTest::equalsTheToolsOwn_data()
{
    QTest::addColumn<QString>("dem");
    QTest::addColumn<QStringList>("ours");
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QStringList>("byHand"); // "IN" and "OUT" stand for the paths

    const auto row = [](const QString &dem, const QStringList &ours, const QString &tool,
                        const QStringList &byHand) {
        QTest::addRow("%s %s", qPrintable(dem), qPrintable(ours.first())) << dem << ours << tool << byHand;
    };
    for (const char *dem : {"metres.tif", "degrés.tif", "entiers.tif"}) {
        row(dem, {"slope", "--set", "percent=true", "--set", "scaleIndex=2"}, "gdal_dem.exe",
            {"slope", "IN", "OUT", "-p", "-compute_edges", "-s", "111120"});
        row(dem, {"aspect", "--as-is", "--set", "trigonometric=true", "--set", "zevenbergenThorne=true"},
            "gdal_dem.exe",
            {"aspect", "IN", "OUT", "-trigonometric", "-zero_for_flat", "-compute_edges", "-alg",
             "ZevenbergenThorne"});
        row(dem, {"TRI"}, "gdal_dem.exe", {"TRI", "IN", "OUT", "-compute_edges"});
        row(dem, {"TPI", "--set", "computeEdges=false"}, "gdal_dem.exe", {"TPI", "IN", "OUT"});
        row(dem, {"roughness"}, "gdal_dem.exe", {"roughness", "IN", "OUT", "-compute_edges"});
        row(dem, {"color-relief", "--set", "table=viridis", "--set", "alpha=true"}, "gdal_dem.exe",
            {"color-relief", "IN", QUVO_TREE "/libraries/colormap/viridis.txt", "OUT", "-alpha"});
        row(dem, {"contour", "--set", "interval=7.5", "--set", "threeD=true", "--set", "offset=1"},
            "gdal_contour.exe",
            {"-a", "Z", "-3d", "-i", "7.5", "-off", "1", "-nln", "contour", "-f", "ESRI Shapefile", "IN",
             "OUT"});
    }
}

void ProductsTest::equalsTheToolsOwn()
{
    QFETCH(QString, dem);
    QFETCH(QStringList, ours);
    QFETCH(QString, tool);
    QFETCH(QStringList, byHand);
    const QString extension = tool == QLatin1String("gdal_contour.exe") ? ".shp" : ".tif";
    QCOMPARE(batch(QStringList{"--input", path(dem), "--output", path("ours" + extension), "--overwrite",
                               "--process"}
                   + ours),
             0);
    QVERIFY2(!m_error.contains("ERR"), qPrintable(m_error));
    QVERIFY(files("*.aux.xml").isEmpty());
    byHand.replaceInStrings(QRegularExpression("^IN$"), path(dem));
    byHand.replaceInStrings(QRegularExpression("^OUT$"), path("hand" + extension));
    QCOMPARE(run(tool, byHand), 0);
    QVERIFY(bytesOf(path("ours" + extension)).size() > 1000);
    QCOMPARE(bytesOf(path("ours" + extension)), bytesOf(path("hand" + extension)));
    QCOMPARE(bytesOf(path("ours.dbf")), bytesOf(path("hand.dbf")));
    QFile::remove(path(dem) + ".aux.xml"); // the tool leaves it when it is called by hand
}

void ProductsTest::formatsEqualTheToolsOwn_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("lines");
    for (const auto &[format, extension] :
         {std::pair{"ENVI", "img"}, {"EHdr", "bil"}, {"AAIGrid", "asc"}, {"PNG", "png"}, {"COG", "tif"}})
        QTest::newRow(format) << extension << false;
    for (const auto &[format, extension] : {std::pair{"ESRI Shapefile", "shp"},
                                            {"GPKG", "gpkg"},
                                            {"SQLite", "sqlite"},
                                            {"GML", "gml"},
                                            {"KML", "kml"},
                                            {"MapInfo File", "tab"},
                                            {"GeoJSON", "geojson"}})
        QTest::newRow(format) << extension << true;
}

/// Names inside of files and names of side files are those of a product that was written in its place.
void ProductsTest::formatsEqualTheToolsOwn()
{
    QFETCH(QString, extension);
    QFETCH(bool, lines);
    const QString format = QTest::currentDataTag();
    const QString name = "relief 1.2." + extension;
    for (const char *folder : {"hand", "ours"}) {
        QDir(path(folder)).removeRecursively();
        QVERIFY(QDir(m_folder.path()).mkdir(folder));
    }
    const QStringList byHand = lines
        ? QStringList{"-b", "1", "-f", format, "-a", "Z", "-i", "10", "-nln", "contour", path("metres.tif")}
        : QStringList{"hillshade", path("metres.tif")};
    const QStringList rest = lines ? QStringList{} : QStringList{"-az", "-45", "-of", format};
    const QString tool = lines ? QUVO_TREE "/gdal_contour.exe" : QUVO_TREE "/gdal_dem.exe";
    // Some formats store the name that the tool was given.
    QCOMPARE(runProgram("env", QStringList{"-C", path("hand"), tool} + byHand + QStringList{name} + rest).code,
             0);
    writeFile(path("ours/" + name), "old");
    QStringList ours{"--input", path("metres.tif"), "--output", path("ours/" + name), "--overwrite", "--of",
                     format,    "--process"};
    ours += lines ? QStringList{"contour", "--set", "interval=10"} : QStringList{"hillshade"};
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(batch(ours), 0);
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        const QStringList made = QDir(path("hand")).entryList(all);
        QCOMPARE(QDir(path("ours")).entryList(all), made);
        for (const QString &file : made)
            QVERIFY2(bytesOf(path("ours/" + file)) == bytesOf(path("hand/" + file)), qPrintable(file));
    }
}

void ProductsTest::colorTables()
{
    const auto write = [&](const char *name, const QByteArray &text) { return writeFile(path(name), text); };
    const auto relief = [&](const QString &table, const QStringList &more = {}) {
        return batch(QStringList{"--process", "color-relief", "--input", path("metres.tif"), "--output",
                                 path("relief.tif"), "--overwrite", "--set", "table=" + path(table)}
                     + more);
    };
    // The names of the tool have its colours, not those of CSS; the tool alone does not know the other name.
    write("noms.txt", "-100 green\n200 palegreen\n");
    write("nombres.txt", "-100 0 255 0\n200 152 251 152\n");
    QCOMPARE(relief("noms.txt"), 0);
    const QByteArray named = bytesOf(path("relief.tif"));
    QCOMPARE(relief("nombres.txt"), 0);
    QCOMPARE(bytesOf(path("relief.tif")), named);

    // Neither a spread table nor a table of percentages leaves the tool's statistics beside the DEM.
    write("pour cent.txt", "0% 0 0 0\n100% 255 255 255\n");
    const QByteArray aux = "<PAMDataset>mine</PAMDataset>\n";
    write("metres.tif.aux.xml", aux);
    QCOMPARE(relief("pour cent.txt", {"--set", "spread=true"}), 0);
    QCOMPARE(relief("pour cent.txt"), 0);
    QCOMPARE(bytesOf(path("metres.tif.aux.xml")), aux); // the tool wrote its statistics into it
    QFile::remove(path("metres.tif.aux.xml"));
    write("virtuel.vrt",
          "<VRTDataset rasterXSize=\"64\" rasterYSize=\"64\"><VRTRasterBand dataType=\"Float32\" "
          "band=\"1\"><SimpleSource><SourceFilename relativeToVRT=\"1\">metres.tif</SourceFilename>"
          "</SimpleSource></VRTRasterBand></VRTDataset>");
    const QByteArray virtualRaster = bytesOf(path("virtuel.vrt"));
    QCOMPARE(relief("pour cent.txt", {"--input", path("virtuel.vrt")}), 0);
    QCOMPARE(bytesOf(path("virtuel.vrt")), virtualRaster);
    QVERIFY(files("*.aux.xml").isEmpty());

    write("faux.txt", "0 0 0 0\n10 1 2 300\n");
    QCOMPARE(relief("faux.txt"), 3);
    QVERIFY2(m_error.contains("2"), qPrintable(m_error));
    QCOMPARE(relief("absente.txt"), 3);
    QCOMPARE(relief("noms.txt", {"--output", path("noms.txt")}), 2);
    QVERIFY(bytesOf(path("noms.txt")).startsWith("-100"));
    QVERIFY(QDir(QDir::tempPath()).entryList({"quvodemtoolbox-*"}, QDir::Dirs).isEmpty());
}

void ProductsTest::observers()
{
    // A recipe with a relative and an absolute observer. By hand, the relative one stands on the ground of row
    // 32, column 32.
    const QString recipe =
        writeFile(path("vues.json"),
                  R"({"format": 1, "process": "intervisibility", "input": "metres.tif", "output": "vues.tif",
        "options": {"combination": "AND", "observers": [{"x": 500325, "y": 5099675, "height": 2},
        {"x": 500005, "y": 5099995, "height": 150, "mode": "Absolute", "distance": 300},
        {"x": 1, "y": 1, "enabled": false}]}})");
    QCOMPARE(batch({recipe}), 0);
    QCOMPARE(m_error, QString());
    const std::unique_ptr<GDALDataset> dem(
        GDALDataset::Open(encodePath(path("metres.tif")).constData(), GDAL_OF_RASTER));
    double ground = 0.0;
    QCOMPARE(dem->GetRasterBand(1)->RasterIO(GF_Read, 32, 32, 1, 1, &ground, 1, 1, GDT_Float64, 0, 0, nullptr),
             CE_None);
    QVERIFY(QDir().mkpath(path("main")));
    writeFile(path("main/points.csvt"), "String,Real");
    const QString csv = writeFile(
        path("main/points.csv"),
        QStringLiteral("WKT,Max_Dist\nPOINT Z(500325 5099675 %1),100000\nPOINT Z(500005 5099995 150),300\n")
            .arg(QString::number(ground + 2.0, 'g', 17))
            .toUtf8());
    const QString rest = "-iBand 1 -DstOp AND -SH 0 -CNOZ 213 94 0 -COZ 0 158 115 -CNoData 0 0 0";
    QCOMPARE(run("gdal_intervisibility.exe",
                 QStringList{"-SrcFile", path("metres.tif"), "-DstFile", path("hand.tif"), "-point_file", csv}
                     + rest.split(' ')),
             0);
    QCOMPARE(bytesOf(path("vues.tif")), bytesOf(path("hand.tif")));
    QCOMPARE(batch({recipe, "--output", path("x.tif"), "--set", "combination=XOR"}), 2);
    QCOMPARE(batch({"--process", "intervisibility", "--input", path("metres.tif"), "--output", path("x.tif")}),
             2);
    QVERIFY(!QFile::exists(path("x.tif")));
    const QByteArray source = bytesOf(csv);
    QCOMPARE(batch({"--process", "intervisibility", "--input", path("metres.tif"), "--output", csv, "--of",
                    "XYZ", "--overwrite", "--set", "points=" + csv}),
             2);
    QCOMPARE(bytesOf(csv), source);
}

void ProductsTest::vectorOutputIsReplacedWhole()
{
    const QStringList contours{"--process", "contour", "--set", "interval=10", "--input", path("metres.tif")};
    const QString output = path("lignes.shp");
    QFile::copy(path("metres.tif"), output); // not a shapefile, despite its name
    writeFile(path("lignes.txt"), {});
    QCOMPARE(batch(contours + QStringList{"--output", output}), 4);
    QCOMPARE(batch(contours + QStringList{"--output", output, "--overwrite"}), 0);
    writeFile(path("lignes.sbn"), {}); // an index of the lines that are replaced
    QCOMPARE(batch(contours + QStringList{"--output", output, "--overwrite"}), 0);
    QCOMPARE(files("lignes.*"),
             (QStringList{"lignes.dbf", "lignes.prj", "lignes.shp", "lignes.shx", "lignes.txt"}));

    const QString precious =
        writeFile(path("autre.mif"), "mine"); // belongs to a MapInfo file with the extension .mid
    QCOMPARE(batch(contours + QStringList{"--of", "MapInfo File", "--output", path("autre.mid")}), 2);
    QCOMPARE(batch(contours + QStringList{"--of", "MapInfo File", "--output", path("autre.tab")}), 4);
    QCOMPARE(bytesOf(precious), QByteArray("mine"));
    QCOMPARE(batch(contours + QStringList{"--of", "CSV", "--output", path("sans.csv")}),
             2); // the format cannot hold lines
    QVERIFY(!QFile::exists(path("sans.csv")));

    // The second run replaces the whole file, not only its layer.
    const QStringList package{"--of", "GPKG", "--output", path("lignes.gpkg"), "--overwrite"};
    for (int round = 0; round < 2; ++round)
        QCOMPARE(batch(contours + package), 0);
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(path("lignes.gpkg")).constData(), GDAL_OF_VECTOR));
    QVERIFY(dataset && dataset->GetLayerCount() == 1 && dataset->GetLayerByName("contour"));
    // A file with layers of another name is kept.
    const QByteArray other = bytesOf(path("lignes.gpkg"));
    QCOMPARE(batch(contours + package + QStringList{"--layer", "autre"}), 4);
    QCOMPARE(bytesOf(path("lignes.gpkg")), other);

    // Where a virtual data set is replaced, the file that it refers to is kept.
    QVERIFY(QFile::copy(path("lignes.gpkg"), path("source.gpkg")));
    writeFile(path("lignes.gpkg"),
              "<OGRVRTDataSource><OGRVRTLayer name=\"contour\"><SrcDataSource relativeToVRT=\"1\">source.gpkg"
              "</SrcDataSource></OGRVRTLayer></OGRVRTDataSource>");
    QCOMPARE(batch(contours + package), 0);
    QVERIFY(QFile::exists(path("source.gpkg")));
}

void ProductsTest::stoppedContoursLeaveNothing()
{
    QVERIFY(writeHill(path("gros.tif"), 3000));
    const QStringList before = files("*");
    for (const auto &[name, format] :
         {std::pair{"arrêt.shp", "ESRI Shapefile"}, {"arrêt.gpkg", "GPKG"}, {"arrêt.tab", "MapInfo File"}}) {
        QProcess process;
        process.start(QStringLiteral(QUVO_TREE "/QuvoDemBatch"),
                      {"--process", "contour", "--set", "interval=0.5", "--input", path("gros.tif"), "--output",
                       path(name), "--of", format});
        QTRY_VERIFY(!files(".arrêt*.part-*").isEmpty());
        QTest::qWait(300);
        process.terminate();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 143);
        QCOMPARE(files("*"), before);
    }
}

QTEST_GUILESS_MAIN(ProductsTest)
#include "products_test.moc"
