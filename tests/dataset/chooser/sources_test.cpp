#include "dataset/chooser/ItemLister.h"
#include "dataset/chooser/ownraster.h"
#include "dataset/chooser/sourceinfo.h"
#include "dataset/chooser/sourcetexts.h"
#include "dataset/elevationgrid.h"
#include "dataset/elevationpicture.h"

#include "dataset/gdalmessages.h"
#include "dataset/vectorpicture.h"
#include "tests/support/dictionaries.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <cpl_conv.h>
#include <cpl_vsi.h>

#include <cmath>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr char points[] =
    R"({"type":"FeatureCollection","name":"sommets","features":[{"type":"Feature","properties":{},)"
    R"("geometry":{"type":"Point","coordinates":[6.5,45.5]}}]})";

QStringList titlesOf(ItemLister &lister)
{
    while (lister.advance(10)) { }
    QStringList titles;
    for (const SourceItem &item : lister.items())
        titles += item.title;
    titles.sort();
    return titles;
}

} // namespace

class SourcesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void init();
    void rasters();
    void placeOfATurnedRaster();
    void subdatasets();
    void vectors();
    void extentsThatMustBeFound();
    void unreadable_data();
    void unreadable();
    void silentServer();
    void containers();
    void ownHeaders();
    void conversion();
    void sampleSizes_data();
    void sampleSizes();
    void samples();
    void samplesUseOverviews();
    void texts();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    SourceInfo read(const QString &name, SourceWanted wanted = SourceWanted::Rasters) const
    {
        return readSourceInfo(path(name), wanted);
    }
    QString zip(const QString &name, const QStringList &files) const
    {
        for (const QString &file : files) {
            VSILFILE *member = VSIFOpenL(("/vsizip/" + path(name) + '/' + file).toUtf8().constData(), "wb");
            const QByteArray bytes = bytesOf(path(file.section('/', -1)));
            VSIFWriteL(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), member);
            VSIFCloseL(member);
        }
        return path(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void SourcesTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/essai é XXXXXX"));
    QVERIFY(writeRaster(path("dem.tif"), 3, 2, {1, -9999, 3, 4, 5, 7}, 2));
    writeFile(path("points.geojson"), points);
}

void SourcesTest::rasters()
{
    const SourceInfo info = read("dem.tif");
    QCOMPARE(info.kind, SourceKind::Raster);
    QCOMPARE(info.problem, QString());
    QCOMPARE(info.width, 3);
    QCOMPARE(info.height, 2);
    QCOMPARE(info.bands.size(), 2);
    QCOMPARE(info.bands.at(1).type, QString("Float32"));
    QCOMPARE(info.bands.at(1).noData, QString("-9999"));
    QVERIFY(!info.bands.at(0).known); // looking does not compute statistics
    QCOMPARE(info.crs, QString("WGS 84 / UTM zone 32N (EPSG:32632)"));
    QCOMPARE(*info.box, QRectF(QPointF(500000, 5099980), QPointF(500030, 5100000)));
    QCOMPARE(info.cell, QSizeF(10, 10));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), (QStringList{"dem.tif", "points.geojson"}));
    QVERIFY(read("dem.tif", SourceWanted::Vectors).problem.contains("raster"));
}

void SourcesTest::placeOfATurnedRaster()
{
    writeFile(path("turned.vrt"),
              "<VRTDataset rasterXSize='2' rasterYSize='1'><GeoTransform>10, 0, 3, 20, 4, 0</GeoTransform>"
              "<VRTRasterBand dataType='Byte' band='1'/></VRTDataset>");
    const SourceInfo info = read("turned.vrt");
    QCOMPARE(*info.box, QRectF(QPointF(10, 20), QPointF(13, 28)));
    QCOMPARE(info.cell, QSizeF(4, 3));
    QCOMPARE(info.crs, QString());
}

void SourcesTest::subdatasets()
{
    QVERIFY(copyRaster(path("dem.tif"), path("byte.tif"), {"-b", "1", "-ot", "Byte", "-a_nodata", "none"}));
    for (const QByteArray table : {"one", "other"})
        QVERIFY(copyRaster(path("byte.tif"), path("two.gpkg"),
                           {"-of", "GPKG", "-co", "APPEND_SUBDATASET=YES", "-co", "RASTER_TABLE=" + table}));
    const SourceInfo info = read("two.gpkg");
    QCOMPARE(info.kind, SourceKind::Container);
    QCOMPARE(info.items.size(), 2);
    QCOMPARE(readSourceInfo(info.items.at(1).name, SourceWanted::Rasters).kind, SourceKind::Raster);
}

void SourcesTest::vectors()
{
    const SourceInfo info = read("points.geojson", SourceWanted::Vectors);
    QCOMPARE(info.kind, SourceKind::Vector);
    QCOMPARE(info.layers.size(), 1);
    QCOMPARE(info.layers.at(0).name, QString("sommets"));
    QCOMPARE(info.layers.at(0).geometry, LayerGeometry::Points);
    QCOMPARE(info.layers.at(0).count, 1LL);
    QVERIFY(read("points.geojson").problem.contains("vecteur"));

    // A GPX has five layers, of which most are empty; it counts only when all is read.
    QFile track(m_folder->filePath("trace.gpx"));
    QVERIFY(track.open(QIODevice::WriteOnly));
    track.write("<gpx version=\"1.1\" creator=\"t\" xmlns=\"http://www.topografix.com/GPX/1/1\">"
                "<wpt lat=\"46.5\" lon=\"3\"/><wpt lat=\"46.6\" lon=\"3\"/><trk><trkseg>"
                "<trkpt lat=\"46\" lon=\"3\"/><trkpt lat=\"47\" lon=\"3\"/></trkseg></trk></gpx>");
    track.close();
    QStringList layers;
    for (const LayerFacts &layer : usableLayers(track.fileName()))
        layers += QStringLiteral("%1 %2 %3").arg(layer.name, layer.crs).arg(layer.count);
    QCOMPARE(layers.join(", "),
             QStringLiteral("waypoints WGS 84 (EPSG:4326) 2, tracks WGS 84 (EPSG:4326) 1, "
                            "track_points WGS 84 (EPSG:4326) 2"));
    QVERIFY(usableLayers(m_folder->filePath("absent.gpx")).isEmpty());
}

/// A text file does not know the extent of its features at once.
void SourcesTest::extentsThatMustBeFound()
{
    writeFile(path("places.csv"), "id,WKT\n1,\"POINT (1 2)\"\n2,\"LINESTRING (3 9,-4 5)\"\n3,\n");
    for (const char *layer : {"", "places"}) {
        VectorPicture picture(path("places.csv"), layer);
        while (picture.findExtent(0)) { }
        QCOMPARE(picture.foundExtent(), QRectF(QPointF(-4, 2), QPointF(3, 9)));
        QCOMPARE(picture.foundExtent(), picture.extent());
    }
    VectorPicture none(path("places.csv"), "absent");
    QVERIFY(!none.findExtent(0) && none.foundExtent().isNull());
}

void SourcesTest::unreadable_data()
{
    QTest::addColumn<QString>("name"); // %1: the folder
    QTest::addColumn<QString>("words");
    const auto row = [](const char *title, const char *name, const char *words) {
        QTest::newRow(title) << QString(name) << QString(words);
    };
    row("missing", "%1/absent.tif", "n'existe pas");
    row("empty", "%1/empty.tif", "n'est pas un raster");
    row("pipe", "%1/pipe", "tube");
    row("device", "/dev/zero", "tube");
    row("standard input", "/vsistdin/", "tube");
    row("dead connection", "/vsicurl/http://127.0.0.1:9/dem.tif", "");
    row("dead data base", "PG:host=127.0.0.1 port=9 dbname=x", "");
    row("elevations of an unusual size", "%1/dem.hgt", "cellules");
}

void SourcesTest::unreadable()
{
    QFETCH(QString, name);
    QFETCH(QString, words);
    writeFile(path("empty.tif"), {});
    writeFile(path("dem.hgt"), QByteArray(18, '\1'));
    QCOMPARE(mkfifo(path("pipe").toUtf8().constData(), 0600), 0);
    const SourceInfo info = readSourceInfo(name.replace("%1", m_folder->path()), SourceWanted::Rasters);
    QCOMPARE(info.kind, SourceKind::Unreadable);
    QVERIFY2(!info.problem.isEmpty() && info.problem.contains(words), qPrintable(info.problem));
    QCOMPARE(info.mayBeTile, name.endsWith("dem.hgt"));
}

/// A server that accepts connections and never answers is waited for once.
void SourcesTest::silentServer()
{
    const int server = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *place = reinterpret_cast<sockaddr *>(&address);
    QCOMPARE(bind(server, place, size), 0);
    QCOMPARE(listen(server, 8), 0); // the kernel accepts up to so many
    QCOMPARE(getsockname(server, place, &size), 0);
    CPLSetConfigOption("GDAL_HTTP_LOW_SPEED_TIME", "1");
    QElapsedTimer clock;
    clock.start();
    const QString name = QStringLiteral("/vsicurl/http://127.0.0.1:%1/dem.tif").arg(ntohs(address.sin_port));
    const SourceInfo info = readSourceInfo(name, SourceWanted::Rasters);
    CPLSetConfigOption("GDAL_HTTP_LOW_SPEED_TIME", nullptr);
    close(server);
    QVERIFY(!info.problem.isEmpty());
    QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
}

void SourcesTest::containers()
{
    QVERIFY(QDir(m_folder->path()).mkdir("tiles"));
    for (const char *name : {"b.tif", "a.tif", "a.tif.ovr"})
        QVERIFY(QFile::copy(path("dem.tif"), path(QString("tiles/") + name)));
    writeFile(path("tiles/readme.txt"), "no raster");
    writeFile(path("tiles/odd.hgt"), "xx");
    QCOMPARE(mkfifo(path("tiles/pipe.tif").toUtf8().constData(), 0600), 0);
    const SourceInfo folder = read("tiles");
    QCOMPARE(folder.kind, SourceKind::Container);
    ItemLister tiles(folder.listing, SourceWanted::Rasters);
    QCOMPARE(titlesOf(tiles), (QStringList{"a.tif", "b.tif", "odd.hgt"}));

    zip("two.zip", {"in/dem.tif", "points.geojson"});
    const SourceInfo archive = read("two.zip");
    QCOMPARE(archive.kind, SourceKind::Container);
    ItemLister inside(archive.listing, SourceWanted::Rasters);
    QCOMPARE(titlesOf(inside), QStringList{"in/dem.tif"});
    QCOMPARE(readSourceInfo(inside.items().at(0).name, SourceWanted::Rasters).kind, SourceKind::Raster);
    ItemLister vectorsInside(archive.listing, SourceWanted::Vectors);
    QCOMPARE(titlesOf(vectorsInside), QStringList{"points.geojson"});

    writeFile(path("broken.zip"), "PK no archive");
    QVERIFY(!read("broken.zip").problem.isEmpty());
    QCOMPARE(archiveListing("/a/b.TAR.GZ"), QString("/vsitar//a/b.TAR.GZ"));
    QCOMPARE(archiveListing("/vsizip/a.zip"), QString("/vsizip/a.zip"));
    QCOMPARE(archiveListing("/a/b.tif"), QString());
}

void SourcesTest::ownHeaders()
{
    RasterHeader header;
    header.magic = "im2";
    header.firstDimension = 1200;
    header.secondDimension = 800;
    header.typeName = "MNT";
    header.comment = "Alpes \xe9t\xe9"; // Latin 1
    const QByteArray bytes(rasterHeaderBytes(header).data(), rasterHeaderSize);
    writeFile(path("own"), bytes);
    const SourceInfo info = read("own");
    QCOMPARE(info.kind, SourceKind::OwnRaster);
    QVERIFY(info.problem.contains("en-tête"));
    QStringList values;
    for (const SourceFact &fact : sourceFacts(info))
        values += fact.value.simplified();
    QCOMPARE(values.mid(1), (QStringList{"MNT", QStringLiteral("Alpes été")}));
    QVERIFY(values.at(0).contains("200 × 800"));
    QCOMPARE(bytesOf(path("own")), bytes);
    writeFile(path("short"), bytes.left(255));
    writeFile(path("foreign"), QByteArray(bytes).replace(26, 3, "xyz"));
    for (const char *name : {"short", "foreign"})
        QCOMPARE(read(name).kind, SourceKind::Unreadable);
}

void SourcesTest::conversion()
{
    const QByteArray older = QByteArray(rasterHeaderBytes({}).data(), rasterHeaderSize).replace(26, 3, "im*");
    writeFile(path("older"), older + "cells");
    for (const char *variable : {"LUMAGRAF_HOME", "GEOLANGUE", "MON_DICO"})
        qunsetenv(variable);
    QVERIFY(convertOwnHeader(path("older")).contains("introuvables")); // the reader would end the process
    QCOMPARE(bytesOf(path("older")), older + "cells");

    QVERIFY(QDir(m_folder->path()).mkdir("MESSAGES"));
    writeDictionary(path("MESSAGES/geodico.lc"),
                    "ERREUR = E\nAVERTISSEMENT = ATTENTION\nUSAGE = U\n"
                    "AVER_OUV_RDONLY (warning 1) = %s en lecture seule");
    qputenv("LUMAGRAF_HOME", m_folder->path().toUtf8());
    QCOMPARE(convertOwnHeader(path("older")), QString());
    QCOMPARE(bytesOf(path("older")).mid(26, 5), QByteArray("im2m#"));

    // A folder cannot be opened as a file, and the message of a read-only file reaches the user.
    QVERIFY(convertOwnHeader(m_folder->path()).contains(m_folder->path()));
    writeFile(path("older"), older);
    QVERIFY(QFile::setPermissions(path("older"), QFile::Permissions(0x4444)));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7755)));
    const pid_t child = fork();
    if (child == 0) { // a user who may only read the file
        const bool mayOnlyRead = getuid() != 0 || setuid(65534) == 0;
        _exit(mayOnlyRead && convertOwnHeader(path("older")).contains("ATTENTION 1") ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    QCOMPARE(status, 0);
    QCOMPARE(bytesOf(path("older")), older);
}

void SourcesTest::sampleSizes_data()
{
    QTest::addColumn<QSize>("band");
    QTest::addColumn<QSize>("block");
    QTest::addColumn<QSize>("sample");
    QTest::newRow("smaller than the picture") << QSize(30, 20) << QSize(30, 1) << QSize(30, 20);
    QTest::newRow("reduced") << QSize(1000, 500) << QSize(1000, 1) << QSize(100, 50);
    QTest::newRow("strips too costly") << QSize(100000, 100000) << QSize(100000, 1) << QSize(100, 25);
    QTest::newRow("tiles too costly") << QSize(100000, 100000) << QSize(256, 256) << QSize(6, 6);
    QTest::newRow("one block") << QSize(4000, 4000) << QSize(4000, 4000) << QSize(100, 100);
}

void SourcesTest::sampleSizes()
{
    QFETCH(QSize, band);
    QFETCH(QSize, block);
    QTEST(sampleSize(band, block, 100, 2.5e6), "sample");
}

void SourcesTest::samples()
{
    ElevationGridReader sampler(path("dem.tif"), 2, 100);
    while (sampler.advance(1)) { }
    QVERIFY(sampler.isWhole());
    const SampleSummary summary = summaryOf(sampler.grid());
    QCOMPARE(summary.minimum, 1.0);
    QCOMPARE(summary.maximum, 7.0);
    QCOMPARE(summary.mean, 4.0);
    QCOMPARE(summary.voids, 1.0 / 6.0);
    const QImage picture = elevationPicture(sampler.grid());
    QCOMPARE(picture.size(), QSize(3, 2));
    QCOMPARE(qAlpha(picture.pixel(1, 0)), 0);
    QVERIFY(qGray(picture.pixel(0, 0)) < qGray(picture.pixel(2, 1)));

    for (const auto &[name, band] : {std::pair("dem.tif", 3), std::pair("absent.tif", 1)}) {
        ElevationGridReader none(path(name), band, 100);
        QVERIFY(!none.advance(1) && none.grid().isEmpty());
    }
    QVERIFY(!summaryOf({}).known);
}

void SourcesTest::samplesUseOverviews()
{
    QVERIFY(writeHill(path("hill.tif"), 600));
    // An overview of other values shows which of both was read.
    QVERIFY(copyRaster(path("hill.tif"), path("hill.tif.ovr"),
                       {"-of", "GTiff", "-outsize", "50%", "50%", "-scale", "0", "1", "5", "5"}));
    ElevationGridReader coarse(path("hill.tif"), 1, 200);
    while (coarse.advance(100)) { }
    QCOMPARE(summaryOf(coarse.grid()).maximum, 5.0);
    QVERIFY(!coarse.isWhole());
    ElevationGridReader fine(path("hill.tif"), 1, 400);
    while (fine.advance(100)) { }
    QVERIFY(summaryOf(fine.grid()).maximum != 5.0);
}

void SourcesTest::texts()
{
    SampleSummary summary{true, -12.5, 2405.123456, 1e-8, 0.032};
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const auto said = [&](bool isWhole, const QString &problem = {}) {
        QStringList lines;
        for (const SourceFact &fact : sampleFacts(summary, isWhole, problem))
            lines += fact.title + ' ' + fact.value;
        return lines;
    };
    QCOMPARE(said(true),
             (QStringList{QStringLiteral("Valeurs : de -12.5 à 2,405.12, en moyenne 1e-08"),
                          "Cellules sans valeur : 3.2 %"}));
    QVERIFY(said(false).at(1).contains("environ 3.2"));
    QCOMPARE(said(true, "broken"), QStringList{"Cellules illisibles : broken"});
    summary.known = false;
    QCOMPARE(said(true), QStringList{"Cellules sans valeur : 3.2 %"});
    const QVector<QStringList> rows = partRows(read("dem.tif"));
    QCOMPARE(rows.at(1).mid(0, 4), (QStringList{"2", "Float32", "-9999", ""}));
    QCOMPARE(rows.at(1).size(), partTitles(SourceKind::Raster).size());
}

QTEST_GUILESS_MAIN(SourcesTest)
#include "sources_test.moc"
