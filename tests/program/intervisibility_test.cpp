#include "dataset/pathencoding.h"
#include "tests/support/rasters.h"
#include "viewshed/io/raster_io.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <ogrsf_frmts.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <cmath>
#include <csignal>

struct Point
{
    double x;
    double y;
    double z;
    double reach; ///< the field Max_Dist
};

/// gdal_intervisibility.exe on small rasters: what it writes, and what it refuses.
class IntervisibilityTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void picture();
    void distances_data();
    void distances();
    void verticalFeet();
    void voidsBeyondTheReach();
    void rawBands();
    void oneStrip();
    void inputsStay_data();
    void inputsStay();
    void oldOutput();
    void refused_data();
    void refused();
    void tooManyCells();
    void oneLine();
    void fullDisk();
    void stopLeavesNothing();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    bool writePoints(const QString &name, const QVector<Point> &points, OGRwkbGeometryType type = wkbPoint25D);
    bool write(const char *name, const QString &text);
    int run(const QStringList &arguments);
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name); }
    QString cells(const QString &name) const;

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/dossier à blancs \"中\" XXXXXX")};
    QString m_output;
    QString m_error;
};

namespace
{

using DataSet = std::unique_ptr<GDALDataset>;

/// The observer in the second row's first cell of mur.tif, 2 m above its ground.
const Point west{.x = 500005, .y = 5099985, .z = 2, .reach = 0};
/// The observer in the second row's last cell, who sees the neighbouring cells only.
const Point east{.x = 500045, .y = 5099985, .z = 2, .reach = 11};

/// The colours that IntervisibilityTest::cells() knows.
const QStringList colors{"-CNoData", "7", "8", "9", "-COZ", "1", "2", "3", "-CNOZ", "4", "5", "6"};

Point moved(Point point, double x, double z)
{
    point.x = x;
    point.z = z;
    return point;
}

DataSet opened(const QString &path, unsigned flags = GDAL_OF_RASTER)
{
    return DataSet(GDALDataset::Open(encodePath(path).constData(), flags));
}

} // namespace

bool IntervisibilityTest::writePoints(const QString &name, const QVector<Point> &points,
                                      OGRwkbGeometryType type)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    const DataSet dataset(driver->Create(encodePath(path(name)).constData(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer *layer = dataset->CreateLayer("points", nullptr, type);
    OGRFieldDefn field("Max_Dist", OFTReal);
    layer->CreateField(&field);
    bool written = true;
    for (const Point &point : points) {
        const std::unique_ptr<OGRFeature> feature(OGRFeature::CreateFeature(layer->GetLayerDefn()));
        OGRPoint shape(point.x, point.y, point.z);
        if (type == wkbPoint)
            shape.flattenTo2D();
        OGRLinearRing ring;
        for (const auto &[x, y] : {std::pair{0, 0}, {1, 0}, {0, 1}, {0, 0}})
            ring.addPoint(x, y);
        OGRPolygon area;
        area.addRing(&ring);
        feature->SetGeometry(type == wkbPolygon ? static_cast<OGRGeometry *>(&area) : &shape);
        feature->SetField("Max_Dist", point.reach);
        written = written && layer->CreateFeature(feature.get()) == OGRERR_NONE;
    }
    return written;
}

bool IntervisibilityTest::write(const char *name, const QString &text)
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0;
}

int IntervisibilityTest::run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(QUVO_TREE "/gdal_intervisibility.exe"), arguments);
    process.waitForFinished(60000);
    m_output = QString::fromLocal8Bit(process.readAllStandardOutput());
    m_error = QString::fromLocal8Bit(process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

/// The picture's rows, separated by '|': '#' for a seen cell, '.' for a hidden one, ' ' for one without data,
/// '?' for any other colour.
QString IntervisibilityTest::cells(const QString &name) const
{
    const DataSet dataset = opened(path(name));
    if (!dataset || dataset->GetRasterCount() != 3)
        return {};
    QString text;
    for (int row = 0; row < dataset->GetRasterYSize(); ++row) {
        text += row > 0 ? "|" : "";
        for (int column = 0; column < dataset->GetRasterXSize(); ++column) {
            std::array<uchar, 3> color{};
            if (dataset->RasterIO(GF_Read, column, row, 1, 1, color.data(), 1, 1, GDT_Byte, 3, nullptr, 0, 0, 0,
                                  nullptr)
                != CE_None)
                return {};
            const std::map<std::array<uchar, 3>, QString> names{
                {{1, 2, 3}, "#"}, {{4, 5, 6}, "."}, {{7, 8, 9}, " "}};
            text += names.count(color) > 0 ? names.at(color) : "?";
        }
    }
    return text;
}

void IntervisibilityTest::initTestCase()
{
    GDALAllRegister();
    // A wall of 9 m with a cell without data beside it. Cells are 10 m wide.
    QVERIFY(writeRaster(path("mur.tif"), 5, 3, {0, 0, 9, 0, 0, 0, 0, 9, -9999, 0, 0, 0, 9, 0, 0}));
    QVERIFY(writePoints("deux.shp", {west, east}));
}

void IntervisibilityTest::picture()
{
    const QStringList given{"-SrcFile",     path("mur.tif"), "-DstFile",
                            path("vu.tif"), "-point_file",   path("deux.shp")};
    QCOMPARE(run(given + colors), 0);
    QCOMPARE(cells("vu.tif"), QString("###.#|### #|###.#"));
    QCOMPARE(m_output, QString("0...10...20...30...40...50...60...70...80...90...100 - done.\n"));
    QCOMPARE(m_error, QString());
    QCOMPARE(run(colors + QStringList{"-co", "TILED=YES", "-co", "TFW=YES", "-DstOp", "AND"} + given), 0);
    QCOMPARE(cells("vu.tif"), QString(".....|... .|....."));
    QVERIFY(QFile::remove(path("vu.tfw")));
    // Each observer alone: the program then reads the raster in parts, or a second time for the cells without
    // data.
    for (const auto &[point, seen] : {std::pair{west, "###..|### .|###.."}, {east, "....#|... #|....#"}}) {
        QVERIFY(writePoints("seul.shp", {point}));
        QCOMPARE(run(colors + given + QStringList{"-point_file", path("seul.shp")}), 0);
        QCOMPARE(cells("vu.tif"), QString(seen));
    }
    // With a target of 14 m, the first observer sees beyond the wall.
    QCOMPARE(run(colors + QStringList{"-DstOp", "OR", "-SH", "14"} + given), 0);
    QCOMPARE(cells("vu.tif"), QString("#####|### #|#####"));

    const DataSet dem = opened(path("mur.tif"));
    const DataSet seen = opened(path("vu.tif"));
    double one[6];
    double other[6];
    QVERIFY(dem->GetGeoTransform(one) == CE_None && seen->GetGeoTransform(other) == CE_None);
    QVERIFY(std::equal(one, one + 6, other));
    QVERIFY(seen->GetSpatialRef() != nullptr && seen->GetSpatialRef()->IsSame(dem->GetSpatialRef()) != FALSE);
    QVERIFY(QFile::remove(path("vu.tif")));
}

void IntervisibilityTest::distances_data()
{
    // A flat raster of 41 by 41 cells under an eye at its centre: the disc's half width and half height in
    // cells.
    QTest::addColumn<QList<QByteArray>>("placing");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("reach");
    QTest::addColumn<int>("halfWidth");
    QTest::addColumn<int>("halfHeight");
    using Words = QList<QByteArray>;
    QTest::newRow("metres") << Words{"-a_srs", "EPSG:32632", "-a_ullr", "0", "410", "410", "0"} << 205.0
                            << 205.0 << 155.0 << 15 << 15;
    QTest::newRow("south-up") << Words{"-a_srs", "EPSG:32632", "-a_ullr", "0", "0", "410", "820"} << 205.0
                              << 410.0 << 155.0 << 15 << 7;
    QTest::newRow("US feet") << Words{"-a_srs", "EPSG:2263", "-a_ullr", "0", "410", "410", "0"} << 205.0
                             << 205.0 << 38.0 << 12 << 12;
    // At 60 degrees a degree is 55800 m wide and 111412 m high.
    QTest::newRow("degrees") << Words{"-a_srs", "EPSG:4326", "-a_ullr", "-20.5", "80.5", "20.5", "39.5"} << 0.0
                             << 60.0 << 570000.0 << 10 << 5;
    QTest::newRow("rotated") << Words{"-of",  "VRT", "-gcp", "0",      "0",         "0",    "0",
                                      "-gcp", "41",  "0",    "246",    "328",       "-gcp", "0",
                                      "41",   "328", "-246", "-a_srs", "EPSG:32632"}
                             << 287.0 << 41.0 << 155.0 << 15 << 15;
}

void IntervisibilityTest::distances()
{
    QFETCH(QList<QByteArray>, placing);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(double, reach);
    QFETCH(int, halfWidth);
    QFETCH(int, halfHeight);
    QVERIFY(writeRaster(path("plat.tif"), 41, 41, QVector<float>(41 * 41, 0.0F)));
    QVERIFY(copyRaster(path("plat.tif"), path("posé.tif"), placing));
    QVERIFY(writePoints("un.shp", {{.x = x, .y = y, .z = 1e6, .reach = reach}}));
    QCOMPARE(run(QStringList{"-SrcFile", path("posé.tif"), "-DstFile", path("disque.tif"), "-point_file",
                             path("un.shp"), "-cc", "0"}
                 + colors),
             0);
    const QStringList rows = cells("disque.tif").split('|');
    QCOMPARE(rows.size(), 41);
    QCOMPARE(rows.at(20).count('#'), 2 * halfWidth + 1);
    QCOMPARE(rows.at(20).indexOf('#'), 20 - halfWidth);
    QCOMPARE(rows.join("").count('#') > halfWidth * halfHeight * 3, true);
    for (int row = 0; row < 41; ++row)
        QCOMPARE(rows.at(row).at(20), QChar(std::abs(row - 20) <= halfHeight ? '#' : '.'));
    const DataSet placed = opened(path("posé.tif"));
    const DataSet disc = opened(path("disque.tif"));
    QCOMPARE(disc->GetGCPCount(), placed->GetGCPCount());
    for (const char *name : {"plat.tif", "posé.tif", "disque.tif"})
        QFile::remove(path(name));
}

/// At 20 km the Earth's curvature lowers the sea by 26.9 m: an eye at 1 m sees a target of 20 m, but not one of
/// 20 feet.
void IntervisibilityTest::verticalFeet()
{
    QVERIFY(writeRaster(path("plat.tif"), 2001, 1, QVector<float>(2001, 0.0F)));
    QVERIFY(writePoints("un.shp", {{.x = 500005, .y = 5099995, .z = 1, .reach = 0}}));
    for (const auto &[unit, sees] : {std::pair{"metre", true}, {"ft", false}}) {
        const DataSet dem = opened(path("plat.tif"), GDAL_OF_RASTER | GDAL_OF_UPDATE);
        dem->GetRasterBand(1)->SetUnitType(unit);
        dem->FlushCache();
        QCOMPARE(run(QStringList{"-SrcFile", path("plat.tif"), "-DstFile", path("vu.tif"), "-point_file",
                                 path("un.shp"), "-SH", "20"}
                     + colors),
                 0);
        QCOMPARE(cells("vu.tif").endsWith('#'), sees);
    }
    QVERIFY(QFile::remove(path("plat.tif")) && QFile::remove(path("vu.tif")));
}

/// The observers' windows are as wide as the raster and end above its bottom, where there are voids as well.
void IntervisibilityTest::voidsBeyondTheReach()
{
    constexpr int height = 300;
    QVector<float> values(5 * height, 0.0F);
    for (const int row : {1, 20, 150, 299})
        values[5 * row + 3] = -9999;
    QVERIFY(writeRaster(path("haut.tif"), 5, height, values));
    const Point low{.x = west.x, .y = west.y, .z = west.z, .reach = 155};
    for (const QVector<Point> &points : {QVector<Point>{low}, {low, low}}) {
        QVERIFY(writePoints("proche.shp", points));
        QCOMPARE(run(QStringList{"-SrcFile", path("haut.tif"), "-DstFile", path("vu.tif"), "-point_file",
                                 path("proche.shp")}
                     + colors),
                 0);
        const QStringList rows = cells("vu.tif").split('|');
        for (int row = 0; row < height; ++row)
            QCOMPARE(rows.at(row).at(3) == ' ', values.at(5 * row + 3) < 0);
    }
    QVERIFY(QFile::remove(path("haut.tif")) && QFile::remove(path("vu.tif")));
}

/// Two GDAL handles of a virtual raster of raw bands share one open file if one thread opened them.
void IntervisibilityTest::rawBands()
{
    constexpr int side = 1000;
    QVERIFY(writeHill(path("colline.tif"), side));
    QVERIFY(copyRaster(path("colline.tif"), path("colline.bin"), {"-of", "ENVI"}));
    write("brut.vrt",
          QStringLiteral("<VRTDataset rasterXSize='%1' rasterYSize='%1'><SRS>EPSG:32632</SRS><GeoTransform>"
                         "500000,10,0,5100000,0,-10</GeoTransform><VRTRasterBand dataType='Float32' "
                         "band='1' subClass='VRTRawRasterBand'><SourceFilename relativeToVRT='1'>colline.bin"
                         "</SourceFilename></VRTRasterBand></VRTDataset>")
              .arg(side));
    QVERIFY(writePoints("un.shp", {{.x = 505005, .y = 5094985, .z = 600, .reach = 0}}));
    const auto picture = [this](const char *source) {
        if (run({"-SrcFile", path(source), "-DstFile", path("vu.tif"), "-point_file", path("un.shp")}) != 0)
            return QByteArray();
        QFile written(path("vu.tif"));
        return written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray();
    };
    const QByteArray expected = picture("colline.tif");
    QVERIFY(expected.size() > side * side);
    for (int round = 0; round < 10; ++round)
        QVERIFY(picture("brut.vrt") == expected);
    for (const char *name : {"colline.tif", "colline.bin", "colline.hdr", "brut.vrt", "vu.tif"})
        QFile::remove(path(name));
}

/// A compressed file of one strip takes little more processor time than the same cells in tiles: it is decoded
/// once, although the observer's window and the rest of the raster are read one after the other.
void IntervisibilityTest::oneStrip()
{
    constexpr int side = 2500;
    QVERIFY(writeHill(path("colline.tif"), side));
    const QList<QByteArray> compressed{"-co", "COMPRESS=DEFLATE", "-co"};
    QVERIFY(copyRaster(path("colline.tif"), path("carreaux.tif"), compressed + QList<QByteArray>{"TILED=YES"}));
    QVERIFY(copyRaster(path("colline.tif"), path("bande.tif"),
                       compressed + QList<QByteArray>{"BLOCKYSIZE=" + QByteArray::number(side)}));
    QVERIFY(writePoints("un.shp", {{.x = 510005, .y = 5089985, .z = 2000, .reach = 500}}));
    const auto seconds = [this](const char *source) {
        const auto used = [] {
            rusage usage{};
            getrusage(RUSAGE_CHILDREN, &usage);
            return static_cast<double>(usage.ru_utime.tv_sec)
                + static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
        };
        const double before = used();
        const int code =
            run({"-SrcFile", path(source), "-DstFile", path("vu.tif"), "-point_file", path("un.shp")});
        return code == 0 ? used() - before : -1.0;
    };
    const double tiles = seconds("carreaux.tif");
    const double strip = seconds("bande.tif");
    QVERIFY(tiles > 0.0 && strip > 0.0);
    QVERIFY2(strip < 2.5 * tiles, qPrintable(QStringLiteral("%1 s, %2 s").arg(strip).arg(tiles)));
    for (const char *name : {"colline.tif", "carreaux.tif", "bande.tif", "vu.tif"})
        QFile::remove(path(name));
}

/// Makes inputs in the ways in which GDAL reads one, each with the name of one of its files as output.
void IntervisibilityTest::inputsStay_data()
{
    const QString archive = "/vsizip/" + path("mnt.zip") + "/mur.tif";
    QVERIFY(CPLCopyFile(encodePath(archive).constData(), encodePath(path("mur.tif")).constData()) == 0);
    QVERIFY(copyRaster(path("mur.tif"), path("place.tif"), {"-co", "PROFILE=BASELINE", "-co", "TFW=YES"})
            && QFile::remove(path("place.tif.aux.xml")));
    QVERIFY(QFile::link(path("mur.tif"), path("lien.tif")) && write("ancien.tif", "II*"));
    QVERIFY(writePoints("proj.shp", {west}) && write("proj.prj", "LOCAL_CS[\"sol\"]"));
    write("union.vrt",
          "<OGRVRTDataSource><OGRVRTUnionLayer name='u'><OGRVRTLayer name='proj'><SrcDataSource "
          "relativeToVRT='1'>proj.shp</SrcDataSource></OGRVRTLayer></OGRVRTUnionLayer></OGRVRTDataSource>");
    const auto writeVirtual = [this](const char *name, const QString &source) {
        const QString size = "RasterXSize='5' RasterYSize='3'";
        write(name,
              "<VRTDataset rasterXSize='5' rasterYSize='3'><VRTRasterBand dataType='Float32' band='1'>"
              "<SimpleSource><SourceFilename>"
                  + source.toHtmlEscaped() + "</SourceFilename><SourceProperties " + size
                  + " DataType='Float32' BlockXSize='5' "
                    "BlockYSize='3'/></SimpleSource></VRTRasterBand></VRTDataset>");
    };
    writeVirtual("zip.vrt", archive);
    writeVirtual("simple.vrt", path("mur.tif"));
    writeVirtual("double.vrt", path("simple.vrt"));
    writeVirtual("image.vrt", "GTIFF_DIR:1:" + path("mur.tif"));
    writeVirtual("place.vrt", path("place.tif"));
    writeVirtual("base.vrt", "PG:dbname=relief");

    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("points");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *name, const QString &source, const char *points, const char *output) {
        QTest::newRow(name) << source << points << output;
    };
    row("zip", archive, "deux.shp", "mnt.zip");
    row("part of a file", "/vsisubfile/0_100000," + path("mur.tif"), "deux.shp", "mur.tif");
    row("link", path("mur.tif"), "deux.shp", "lien.tif");
    row("projection", path("mur.tif"), "proj.shp", "proj.prj");
    row("world file", path("place.tif"), "deux.shp", "place.tfw");
    row("world file of the picture", path("place.tif"), "deux.shp", "place.tiff");
    row("virtual in virtual", path("double.vrt"), "deux.shp", "mur.tif");
    row("virtual over a zip", path("zip.vrt"), "deux.shp", "mnt.zip");
    row("virtual over a name within", path("image.vrt"), "deux.shp", "mur.tif");
    row("virtual over a placed raster", path("place.vrt"), "deux.shp", "place.tfw");
    row("virtual points", path("mur.tif"), "union.vrt", "proj.prj");
    row("a database", path("base.vrt"), "deux.shp", "ancien.tif");
}

void IntervisibilityTest::inputsStay()
{
    QFETCH(QString, source);
    QFETCH(QString, points);
    QFETCH(QString, output);
    const auto contents = [this] {
        QMap<QString, QByteArray> found;
        for (const QString &name : files()) {
            QFile file(path(name));
            found[name] = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }
        return found;
    };
    const QMap<QString, QByteArray> before = contents();
    QCOMPARE(run({"-SrcFile", source, "-point_file", path(points), "-DstFile", path(output), "-co", "TFW=YES"}),
             1);
    QVERIFY2(m_error.contains("would replace"), qPrintable(m_error));
    QCOMPARE(contents(), before);
}

/// An older file at the destination is replaced, but not the files that GDAL regards as parts of it.
void IntervisibilityTest::oldOutput()
{
    const QString given = path("vieux.shp");
    QVERIFY(writePoints("vieux.shp", {west}));
    const QStringList arguments{"-SrcFile",       path("mur.tif"), "-point_file",
                                path("deux.shp"), "-DstFile",      given};
    QCOMPARE(run(arguments + QStringList{"-co", "TILED=YES", "-co", "BLOCKXSIZE=17"}), 1);
    QVERIFY(opened(given, GDAL_OF_VECTOR) != nullptr);
    QCOMPARE(run(arguments), 0);
    QVERIFY(opened(given) != nullptr && QFile::exists(path("vieux.dbf")));
    for (const char *name : {"vieux.shp", "vieux.shx", "vieux.dbf"})
        QVERIFY(QFile::remove(path(name)));
}

void IntervisibilityTest::refused_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("points");
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<QString>("problem");
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    writePoints("nul.shp", {west, moved(west, nan, 2)});
    writePoints("loin.shp", {moved(west, 1e300, 2)});
    writePoints("ailleurs.shp", {moved(west, 1e9, 2)});
    writePoints("profond.shp", {moved(west, west.x, -1e38)});
    writePoints("aire.shp", {west}, wkbPolygon);
    writePoints("plan.shp", {west}, wkbPoint);
    writePoints("vide.shp", {});
    QVERIFY(QFile::link("/dev/null", path("nul"))); // a tool that replaces it only deletes the link
    QVERIFY(mkfifo(encodePath(path("tube")).constData(), 0600) == 0);
    // A sparse file of a single strip, which takes twice its size to read.
    constexpr int width = 500000;
    const int height = static_cast<int>(viewshed::availableMemory() / 2 / 8 / width);
    const QByteArray block = "BLOCKYSIZE=" + QByteArray::number(height);
    const char *creation[] = {"SPARSE_OK=TRUE", "COMPRESS=DEFLATE", block.constData(), nullptr};
    QVERIFY(DataSet(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
                encodePath(path("blocs.tif")).constData(), width, height, 1, GDT_Float64, creation))
            != nullptr);
    write("tube.vrt",
          "<VRTDataset rasterXSize='5' rasterYSize='3'><VRTRasterBand dataType='Float32' band='1'>"
          "<SimpleSource><SourceFilename relativeToVRT='1'>tube</SourceFilename></SimpleSource>"
          "</VRTRasterBand></VRTDataset>");
    const auto row = [](const char *name, const char *source, const char *points, const QStringList &more,
                        const char *problem) { QTest::newRow(name) << source << points << more << problem; };
    row("no raster", "absent.tif", "deux.shp", {}, "absent.tif");
    row("a vector file as raster", "deux.shp", "deux.shp", {}, "deux.shp");
    row("no such band", "mur.tif", "deux.shp", {"-iBand", "2"}, "no band 2");
    row("no points", "mur.tif", "absent.shp", {}, "absent.shp");
    row("not a number", "mur.tif", "nul.shp", {}, "Observer 2 of nul.shp");
    row("absurd", "mur.tif", "loin.shp", {}, "Observer 1 of loin.shp");
    row("too far", "mur.tif", "ailleurs.shp", {}, "Observer 1 of ailleurs.shp");
    row("absurd altitude", "mur.tif", "profond.shp", {}, "altitude");
    row("polygons", "mur.tif", "aire.shp", {}, "not a point");
    row("no z", "mur.tif", "plan.shp", {}, "no altitude");
    row("empty", "mur.tif", "vide.shp", {}, "no observer");
    row("a folder that is not there", "mur.tif", "deux.shp", {"-DstFile", "/nowhere/a.tif"}, "/nowhere/a.tif");
    row("onto the points", "mur.tif", "deux.shp", {"-DstFile", path("deux.dbf")}, "deux.dbf");
    row("onto the raster", "mur.tif", "deux.shp", {"-DstFile", path("mur.tif")}, "mur.tif");
    row("an endless height", "mur.tif", "deux.shp", {"-SH", "inf"}, "-SH takes a number from -1000000000 to");
    row("a pipe as raster", "tube", "deux.shp", {}, "pipe or a device");
    row("a pipe as points", "mur.tif", "tube", {}, "pipe or a device");
    row("a pipe in a virtual raster", "tube.vrt", "deux.shp", {}, "pipe or a device");
    row("endless blocks", "blocs.tif", "deux.shp", {}, "blocks are larger than the available memory");
    row("onto a pipe", "mur.tif", "deux.shp", {"-DstFile", path("tube")}, "not a regular file");
    row("onto a device", "mur.tif", "deux.shp", {"-DstFile", path("nul")}, "not a regular file");
    row("onto a folder", "mur.tif", "deux.shp", {"-DstFile", m_folder.path()}, "not a regular file");
}

void IntervisibilityTest::refused()
{
    QFETCH(QString, source);
    QFETCH(QString, points);
    QFETCH(QStringList, more);
    QFETCH(QString, problem);
    const QStringList before = files();
    QCOMPARE(run(QStringList{"-SrcFile", path(source), "-point_file", path(points), "-DstFile", path("non.tif")}
                 + more),
             1);
    QVERIFY2(m_error.contains(problem) && m_error.count('\n') == 1, qPrintable(m_error));
    QCOMPARE(files(), before);
}

/// The elevations for two observers without a limit do not fit into memory; those within the distance that the
/// program names do.
void IntervisibilityTest::tooManyCells()
{
    const double available = viewshed::availableMemory();
    const int side = static_cast<int>(std::sqrt(available)); // of cells with 4 bytes each
    if (side >= viewshed::largestSide)
        QSKIP("No raster is as large as this memory.");
    write("vaste.vrt",
          QStringLiteral("<VRTDataset rasterXSize='%1' rasterYSize='%1'><SRS>EPSG:32632</SRS><GeoTransform>"
                         "500000,10,0,5100000,0,-10</GeoTransform><VRTRasterBand dataType='Float32' band='1'/>"
                         "</VRTDataset>")
              .arg(side));
    QCOMPARE(run({"-SrcFile", path("vaste.vrt"), "-point_file", path("deux.shp"), "-DstFile", path("non.tif")}),
             1);
    const QRegularExpressionMatch match =
        QRegularExpression("Observer 1 of deux.shp .* a Max_Dist of (\\d+) m would fit").match(m_error);
    QVERIFY2(match.hasMatch(), qPrintable(m_error));
    const double cells = 2.0 * match.captured(1).toDouble() / 10.0;
    QVERIFY(4.0 * cells * cells < available && 4.0 * cells * cells > available / 4.0);
    QVERIFY(QFile::remove(path("vaste.vrt")));
}

void IntervisibilityTest::oneLine()
{
    QCOMPARE(run({"-SrcFile", path("mur.tif"), "-point_file", path("deux.shp"), "-DstFile", path("vu.tif"),
                  "-co", "NO_SUCH=1", "-co", "NO_SUCH=2"}),
             0);
    QVERIFY2(m_error.count('\n') == 1 && m_error.contains("NO_SUCH") && m_error.endsWith("(2 times)\n"),
             qPrintable(m_error));
    QVERIFY(QFile::remove(path("vu.tif")));
}

/// The tool cannot write its picture to the end.
void IntervisibilityTest::fullDisk()
{
    QVERIFY(writeHill(path("gros.tif"), 300));
    const QStringList before = files();
    for (const char *compression : {"NONE", "DEFLATE"}) {
        QProcess process;
        process.start("/bin/sh",
                      {"-c", "ulimit -f 1; exec \"$0\" \"$@\"", QUVO_TREE "/gdal_intervisibility.exe",
                       "-SrcFile", path("gros.tif"), "-DstFile", path("plein.tif"), "-point_file",
                       path("deux.shp"), "-co", "TFW=YES", "-co", QStringLiteral("COMPRESS=") + compression});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(process.readAllStandardError().count('\n'), 1);
        QCOMPARE(files(), before);
    }
    QVERIFY(QFile::remove(path("gros.tif")));
}

void IntervisibilityTest::stopLeavesNothing()
{
    QVERIFY(writeHill(path("gros.tif"), 3000));
    QVERIFY(writePoints("près.shp", {{.x = west.x, .y = west.y, .z = west.z, .reach = 20}})); // soon done
    const QStringList before = files();
    const QStringList arguments{"-SrcFile", path("gros.tif"),  "-point_file", path("deux.shp"),
                                "-DstFile", path("arrêt.tif"), "-co",         "COMPRESS=DEFLATE",
                                "-co",      "TFW=YES"};
    for (const bool writing : {false, true}) {
        QProcess process;
        process.start(QStringLiteral(QUVO_TREE "/gdal_intervisibility.exe"),
                      writing ? arguments + QStringList{"-point_file", path("près.shp")} : arguments);
        if (writing)
            QTRY_VERIFY(files() != before);
        else
            QVERIFY(process.waitForReadyRead());
        process.terminate();
        QVERIFY(process.waitForFinished());
        QVERIFY(process.exitStatus() == QProcess::CrashExit || process.exitCode() == 1);
        QCOMPARE(files(), before);
    }
}

QTEST_GUILESS_MAIN(IntervisibilityTest)
#include "intervisibility_test.moc"
