#include "dataset/join/contourjoin.h"

#include "dataset/gdalmessages.h"
#include "dataset/join/contourwindow.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"

#include <QDir>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

namespace
{

constexpr int width = 300;
constexpr int height = 240;
constexpr double cell = 10.0; // metres, and the places of writeRaster()
constexpr std::array<double, 6> toGround{500000.0, cell, 0.0, 5100000.0, 0.0, -cell};
constexpr int columns[] = {0, 97, 98, width}; // a tile may be a single column
constexpr int rows[] = {0, 60, 199, height};

/// Hills. `exact`: many elevations equal the level 20 or almost, on seams and where four tiles meet. `voids`:
/// cells without data, also on seams.
QVector<float> terrain(bool exact, bool voids)
{
    QVector<float> cells(width * height);
    const auto fill = [&](const QRect &part, auto elevation) {
        for (int row = part.top(); row <= part.bottom(); ++row)
            for (int column = part.left(); column <= part.right(); ++column)
                cells[row * width + column] = static_cast<float>(elevation(column, row));
    };
    const auto level = [&](const QRect &part, double elevation) {
        fill(part, [elevation](int, int) { return elevation; });
    };
    fill({0, 0, width, height}, [](int column, int row) {
        return 25.0 * std::sin(column * 0.11) * std::cos(row * 0.07) + 0.05 * column
            + 3.0 * std::sin(row * 1.3);
    });
    if (exact) {
        std::minstd_rand random;
        fill({85, 45, 25, 30}, [&random](int, int) {
            constexpr double around[] = {15.0, 20.0, 20.0, 20.0005, 19.9995, 25.0};
            return around[random() / 7 % std::size(around)];
        });
        level({85, 120, 40, 80}, 17.0);
        level({97, 125, 1, 20}, 20.0); // a ridge along a column of shared cells
        level({98, 150, 3, 9}, 20.0);  // plateaus that begin and end at one
        level({93, 160, 5, 9}, 20.0);
        level({90, 195, 12, 9}, 20.0);   // and one over a corner of four tiles
        level({150, 199, 30, 1}, 20.0);  // a ridge along a shared row
        level({230, 180, 20, 30}, 20.0); // two levels on one seam
        level({235, 190, 5, 20}, 25.0);
    }
    if (voids) {
        level({60, 55, 8, 9}, -9999.0);
        level({95, 90, 3, 12}, -9999.0);
        level({98, 160, 1, 6}, -9999.0);
        level({94, 57, 4, 3}, -9999.0);
        level({200, 199, 12, 1}, -9999.0);
        level({0, 100, 6, 20}, -9999.0);
    }
    return cells;
}

const QMap<QString, QString> extensions{{"ESRI Shapefile", ".shp"},  {"FlatGeobuf", ".fgb"},
                                        {"GPKG", ".gpkg"},           {"GeoJSON", ".geojson"},
                                        {"GeoJSONSeq", ".geojsonl"}, {"KML", ".kml"}};

/// A line that can be compared with another one of the same course, whatever its first vertex.
struct Course
{
    int id = 0;
    double level = 0.0;
    bool isClosed = false;
    double length = 0.0;
    int vertices = 0;
    QVector<std::pair<double, double>> ends; ///< sorted, in millimetres; empty if it is closed
};

QVector<Course> coursesOf(const QString &path, const QString &attribute)
{
    QVector<Course> courses;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(qPrintable(path), GDAL_OF_VECTOR));
    if (!dataset)
        return courses;
    for (const auto &feature : *dataset->GetLayer(0)) {
        const OGRLineString &line = *feature->GetGeometryRef()->toLineString();
        Course course{feature->GetFieldAsInteger("ID"),
                      line.Is3D() ? line.getZ(0) : 0.0,
                      line.get_IsClosed() != 0,
                      line.get_Length(),
                      line.getNumPoints(),
                      {}};
        if (!attribute.isEmpty())
            course.level = feature->GetFieldAsDouble(qPrintable(attribute));
        OGRPoint first;
        OGRPoint last;
        line.StartPoint(&first);
        line.EndPoint(&last);
        if (!course.isClosed)
            for (const OGRPoint &end : {first, last})
                course.ends += {std::round(end.getX() * 1e3), std::round(end.getY() * 1e3)};
        std::sort(course.ends.begin(), course.ends.end());
        courses += course;
    }
    std::sort(courses.begin(), courses.end(), [](const Course &one, const Course &other) {
        return std::tie(one.level, one.isClosed, one.ends, one.vertices, one.length)
            < std::tie(other.level, other.isClosed, other.ends, other.vertices, other.length);
    });
    return courses;
}

/// The first difference between the courses of two files, as a text; empty where there is none.
QString difference(const QVector<Course> &whole, const QVector<Course> &joined)
{
    const auto text = [](const Course &course) {
        QString ends;
        for (const auto &[x, y] : course.ends)
            ends += QString(" %1 %2").arg(x / 1e3, 0, 'f', 3).arg(y / 1e3, 0, 'f', 3);
        return QString("level %1, length %2, ends%3")
            .arg(course.level)
            .arg(course.length, 0, 'g', 15)
            .arg(ends);
    };
    for (int at = 0; at < std::max(whole.size(), joined.size()); ++at) {
        const Course here = whole.value(at);
        const Course there = joined.value(at);
        if (here.level != there.level || here.isClosed != there.isClosed || here.ends != there.ends
            || here.vertices != there.vertices
            || std::abs(here.length - there.length) > 1e-9 * here.length + 1e-6)
            return text(here) + " is not " + text(there);
    }
    return whole.size() == joined.size() ? QString()
                                         : QString("%1 is not %2").arg(whole.size()).arg(joined.size());
}

} // namespace

/// The joining of contour lines, against one run of the tool over the whole DEM.
class ContourJoinTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isOneRunOfTheTool_data();
    void isOneRunOfTheTool();
    void failureLeavesNothing();

private:
    QString contours(const QString &dem, const QString &product, const QString &driver,
                     const QStringList &options) const;
    QVector<ContourTile> makeTiles(const QString &dem, const QString &driver, const QStringList &options) const;
    QString path(const QString &name) const { return m_folder.filePath(name); }

    const QTemporaryDir m_folder;
};

void ContourJoinTest::initTestCase()
{
    setUpGdal();
}

/// Runs the tool and returns the product's path. `product`: without extension.
QString ContourJoinTest::contours(const QString &dem, const QString &product, const QString &driver,
                                  const QStringList &options) const
{
    const QString file = product + extensions[driver];
    const Ended ended =
        runProgram(QStringLiteral(QUVO_TREE "/gdal_contour.exe"),
                   QStringList{"-q", "-nln", "contour", "-f", driver} + options + QStringList{dem, file});
    return ended.code == 0 ? file : ended.error;
}

QVector<ContourTile> ContourJoinTest::makeTiles(const QString &dem, const QString &driver,
                                                const QStringList &options) const
{
    QVector<ContourTile> tiles;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const QRect rect(columns[column], rows[row], columns[column + 1] - columns[column],
                             rows[row + 1] - rows[row]);
            const ContourWindow window = contourWindow({width, height}, rect, toGround);
            const QString name = path(QString("tile%1%2").arg(row).arg(column));
            QList<QByteArray> cut{"-srcwin"};
            for (const int number :
                 {window.cells.x(), window.cells.y(), window.cells.width(), window.cells.height()})
                cut += QByteArray::number(number);
            copyRaster(dem, name + ".tif", cut);
            tiles += {contours(name + ".tif", name, driver, options), window.keep};
        }
    }
    return tiles;
}

void ContourJoinTest::isOneRunOfTheTool_data()
{
    QTest::addColumn<bool>("exact");
    QTest::addColumn<bool>("voids");
    QTest::addColumn<QString>("tileDriver");
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("attribute");
    QTest::addColumn<QStringList>("options");
    const auto row = [](const char *name, bool exact, bool voids, const char *tileDriver, const char *driver,
                        const char *attribute, const char *options) {
        QStringList all = QString(options).split(' ');
        if (*attribute)
            all += {"-a", attribute};
        QTest::newRow(name) << exact << voids << tileDriver << driver << attribute << all;
    };
    row("hills", false, false, "ESRI Shapefile", "ESRI Shapefile", "Z", "-i 2.5");
    row("offset and voids", false, true, "FlatGeobuf", "GPKG", "height", "-i 5 -off 1.37");
    row("exact", true, false, "GPKG", "FlatGeobuf", "Z", "-i 5");
    row("fixed levels", true, true, "GeoJSON", "GeoJSON", "Z", "-3d -fl 17 20 20.0003 23");
    row("no attribute", false, true, "FlatGeobuf", "ESRI Shapefile", "", "-i 5 -3d");
    row("no level", false, true, "FlatGeobuf", "ESRI Shapefile", "", "-i 5");
    row("fields of the format's own", false, false, "GPKG", "KML", "Z", "-i 5");
    row("no lines", false, true, "GeoJSON", "GeoJSON", "Z", "-i 5000 -off 900");
}

void ContourJoinTest::isOneRunOfTheTool()
{
    QFETCH(const bool, exact);
    QFETCH(const bool, voids);
    QFETCH(const QString, tileDriver);
    QFETCH(const QString, driver);
    QFETCH(const QString, attribute);
    QFETCH(const QStringList, options);
    const QDir folder(path(""));
    for (const QString &file : folder.entryList(QDir::Files))
        QFile::remove(folder.filePath(file));
    const QString dem = path("dem.tif");
    QVERIFY(writeRaster(dem, width, height, terrain(exact, voids)));
    const QString whole = contours(dem, path("whole"), driver, options);
    QVector<ContourTile> tiles = makeTiles(dem, tileDriver, options);
    std::rotate(tiles.begin(), tiles.begin() + 4, tiles.end()); // the order does not count
    const QString product = path("joined" + extensions[driver]);
    double last = 0.0;
    const ContourJoinResult result =
        joinContours(tiles, {product, driver, "contour", attribute, cell / 1000.0}, [&last](double share) {
            const bool isGreater = share > last;
            last = share;
            return isGreater;
        });
    QCOMPARE(result.problem, QString());
    QCOMPARE(last, 1.0);
    QCOMPARE(result.unmatched, 0);
    const QVector<Course> courses = coursesOf(product, attribute);
    QCOMPARE(difference(coursesOf(whole, attribute), courses), QString());
    QCOMPARE(result.lines, static_cast<long long>(courses.size()));
    QMap<int, int> ids; // from 0 on, each once
    for (const Course &course : courses)
        ++ids[course.id];
    QCOMPARE(ids.size(), courses.size());
    QVERIFY(ids.isEmpty() || (ids.firstKey() == 0 && ids.lastKey() == courses.size() - 1));

    const auto description = [](const QString &file) {
        QString text = runProgram("ogrinfo", {"-ro", "-so", "-al", file}).out;
        return text.mid(text.indexOf("Geometry:")).remove(QRegularExpression("Extent:[^\n]*"));
    };
    QCOMPARE(description(product), description(whole)); // kind of geometry, CRS, fields
}

void ContourJoinTest::failureLeavesNothing()
{
    QVERIFY(writeRaster(path("dem.tif"), width, height, terrain(false, false)));
    const QStringList options{"-i", "1", "-a", "Z"};
    QVector<ContourTile> tiles = makeTiles(path("dem.tif"), "ESRI Shapefile", options);
    QVERIFY(QDir(path("")).mkpath("out"));
    const QDir out(path("out"));
    const auto run = [&](const QString &driver, const std::function<bool(double)> &progress) {
        return joinContours(tiles, {out.filePath("lines.shp"), driver, "contour", "Z", 0.01}, progress);
    };
    const ContourJoinResult stopped = run("ESRI Shapefile", [](double share) { return share < 0.5; });
    QVERIFY(stopped.isStopped && stopped.problem.isEmpty());
    QCOMPARE(out.entryList(QDir::Files), QStringList());

    const auto always = [](double) { return true; };
    QVERIFY(run("no driver", always).problem.contains("lines.shp"));
    const QByteArray bytes = bytesOf(tiles[7].path);
    writeFile(tiles[7].path, bytes.left(bytes.size() / 2));
    const ContourJoinResult cut = run("ESRI Shapefile", always);
    QVERIFY2(cut.problem.contains("tile21.shp"), qPrintable(cut.problem));
    tiles[7].path = path("missing.shp");
    QVERIFY(run("ESRI Shapefile", always).problem.contains("missing.shp"));
    tiles = makeTiles(path("dem.tif"), "GeoJSONSeq", options); // holds longitudes and latitudes
    QVERIFY(run("ESRI Shapefile", always).problem.contains(".geojsonl"));
    QCOMPARE(out.entryList(QDir::Files), QStringList());
}

QTEST_GUILESS_MAIN(ContourJoinTest)
#include "contourjoin_test.moc"
