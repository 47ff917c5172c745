#include "panels/options/vectorobservers.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "panels/options/pointfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

class VectorObserversTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void pointFileFields_data();
    void pointFileFields();
    void pointFileValues();
    void recipeRows();
    void toolFields();
    void nameFields_data();
    void nameFields();
    void references();
    void layers();
    void manyPoints();

private:
    QString write(const QString &name, const QByteArray &text) const;

    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/vues é 中 XXXXXX")};
};

Q_DECLARE_METATYPE(ToolObserver)

namespace
{

/// The first columns of a text of which x and y are coordinates.
const QByteArray csvHead = "x,y,";

QString wktOf(int epsg)
{
    OGRSpatialReference crs;
    crs.importFromEPSG(epsg);
    char *wkt = nullptr;
    crs.exportToWkt(&wkt);
    const QString text = QString::fromUtf8(wkt);
    CPLFree(wkt);
    return text;
}

QString feature(const QString &properties, const QString &geometry)
{
    return QStringLiteral("{\"type\":\"Feature\",\"properties\":{%1},\"geometry\":%2}")
        .arg(properties, geometry);
}

QByteArray collection(const QStringList &features)
{
    return "{\"type\":\"FeatureCollection\",\"features\":[" + features.join(',').toUtf8() + "]}";
}

QString pointAt(double x, double y)
{
    return QStringLiteral("{\"type\":\"Point\",\"coordinates\":[%1,%2]}").arg(x, 0, 'f', 6).arg(y, 0, 'f', 6);
}

} // namespace

QString VectorObserversTest::write(const QString &name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

void VectorObserversTest::pointFileFields_data()
{
    QTest::addColumn<ToolObserver>("second");
    QTest::addColumn<QString>("fields");
    QTest::newRow("none") << ToolObserver{} << "Max_Dist";
    QTest::newRow("name") << ToolObserver{.name = "a"} << "Max_Dist NAME";
    QTest::newRow("some limits") << ToolObserver{.limits = {.azimuthFrom = 0.0, .angleTo = 5.0}}
                                 << "Max_Dist AZIMUTH1 VERT1";
    QTest::newRow("all") << ToolObserver{.name = "a", .limits = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}}
                         << "Max_Dist NAME OFFSETB AZIMUTH1 AZIMUTH2 VERT2 VERT1 RADIUS1";
}

void VectorObserversTest::pointFileFields()
{
    QFETCH(ToolObserver, second);
    const QString path = writePointFile(m_folder.path(), {ToolObserver{}, second});
    const std::unique_ptr<GDALDataset> file(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR));
    QVERIFY(file);
    OGRLayer *layer = file->GetLayer(0);
    QStringList names;
    const std::unique_ptr<OGRFeature> first(layer->GetFeature(0));
    for (int field = 0; field < layer->GetLayerDefn()->GetFieldCount(); ++field) {
        names += QString::fromUtf8(layer->GetLayerDefn()->GetFieldDefn(field)->GetNameRef());
        QCOMPARE(static_cast<bool>(first->IsFieldSetAndNotNull(field)), field == 0);
    }
    QTEST(names.join(' '), "fields");
}

void VectorObserversTest::pointFileValues()
{
    // The fields of the point file are those that an import reads.
    const QString longName = QString(84, QChar(0x4e2d)) + "é!"; // 255 bytes; the last one is cut off
    const QList<ToolObserver> observers{
        {1.5, 2.5, 3.5, 1e9, QString::fromUtf8("Pic 中 é"), {-1e7, 0.0, 360.0, -90.0, 90.0, 1e9}},
        {0.1, 0.2, 0.3, 0.1 + 0.2, longName, {.leastDistance = 1.0 / 3.0}},
        {4.0, 5.0, 6.0, 0.0, {}, {}}};
    const QString path = writePointFile(m_folder.path(), observers);
    const SampledObservers read = observersFrom(readVectorObservers(path, {}), 1.0, {}, {true, {}});
    QCOMPARE(read.points.size(), 3);
    for (int at = 0; at < 3; ++at) {
        const ObserverPoint &point = read.points.at(at);
        const ToolObserver &tool = observers.at(at);
        QCOMPARE(point.name, at == 1 ? longName.chopped(1) : tool.name);
        QVERIFY(point.height == tool.z && std::abs(point.maxDistance - tool.maxDistance) < 1e-15);
        for (const LimitField &field : limitFields()) {
            const auto value = point.limits.*field.value;
            const auto expected = tool.limits.*field.value;
            QVERIFY2(value.has_value() == expected.has_value()
                         && std::abs(value.value_or(0.0) - expected.value_or(0.0)) < 1e-15,
                     field.name);
        }
    }
}

void VectorObserversTest::recipeRows()
{
    const QList<ObserverPoint> points{{.name = "Nœud"}, {.limits = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}}, {}};
    const QVariantList rows = pointRows(points);
    QVERIFY(readPointRows(rows).points == points);
    QCOMPARE(rows.at(0).toMap().value("name").toString(), QStringLiteral("Nœud"));
    QCOMPARE(rows.at(1).toMap().value("angleFrom").toDouble(), 4.0);
    QCOMPARE(rows.at(2).toMap().size(), 6); // no member for what is not set
    const QVector<QPair<QString, QVariant>> faults{
        {"azimuthTo", 361}, {"angleFrom", "up"}, {"leastDistance", -1}, {"name", 7}, {"azimut", 7}};
    for (const auto &[name, value] : faults) {
        QVariantMap row = rows.at(2).toMap();
        row.insert(name, value);
        QVERIFY2(readPointRows(QVariantList{row}).problem.contains(name), qPrintable(name));
    }
    QVERIFY(limitsProblem({.angleFrom = 5.0, .angleTo = 4.0}).contains("angleFrom"));
}

void VectorObserversTest::toolFields()
{
    const QString path = write("champs.csv",
                               csvHead
                                   + "OffsetA,OFFSETB,azimuth1,AZIMUTH2,VERT1,VERT2,RADIUS1,RADIUS2,Max_Dist,"
                                     "mast,nom\n"
                                     "1,2,10,3,45,90,8,-8,5,700,600,25,Tour\n"
                                     "3,4,,,400,-90,-9,9,-5,0,800,,\n"
                                     "5,6,,,,,,,,,,,\n");
    const char *const options[]{"AUTODETECT_TYPE=YES", "X_POSSIBLE_NAMES=x", "Y_POSSIBLE_NAMES=y", nullptr};
    const QString shapes = m_folder.filePath("champs.gpkg");
    {
        const std::unique_ptr<GDALDataset> source(
            GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR, nullptr, options));
        GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
        const std::unique_ptr<GDALDataset> copy(
            driver->Create(encodePath(shapes).constData(), 0, 0, 0, GDT_Unknown, nullptr));
        QVERIFY(source && copy && copy->CopyLayer(source->GetLayer(0), "champs"));
    }
    const VectorObservers source = readVectorObservers(shapes, {});
    QVERIFY(source.numericAttributes.contains("mast") && !source.numericAttributes.contains("Max_Dist"));
    QCOMPARE(source.unusableValues, 4); // an azimuth of 400, angles in the wrong order, a distance of -5
    const ObserverPoint defaults{.height = 2.0, .maxDistance = 90.0};
    const QList<ObserverPoint> points = observersFrom(source, 1.0, defaults).points;
    QCOMPARE(points.size(), 3);
    QVERIFY(points.at(0).height == 12.0 && points.at(0).maxDistance == 600.0 && points.at(0).name == "Tour");
    QVERIFY((points.at(0).limits == ObserverLimits{3.0, 45.0, 90.0, -8.0, 8.0, 5.0}));
    QVERIFY(points.at(1).maxDistance == 800.0 && points.at(1).limits == ObserverLimits{.azimuthTo = 270.0});
    QVERIFY(points.at(2).height == 2.0 && points.at(2).maxDistance == 90.0);
    QCOMPARE(observersFrom(source, 1.0, defaults, {false, "mast"}).points.at(0).height, 35.0);
}

void VectorObserversTest::nameFields_data()
{
    QTest::addColumn<QString>("properties");
    QTest::addColumn<QString>("name");
    QTest::newRow("best") << R"("ID":"7","Label":"a","NAME":" b\n c ")"
                          << "b c";
    QTest::newRow("French") << R"("id":"7","nom":"é")"
                            << "é";
    QTest::newRow("number") << R"("id":7,"name":8)"
                            << "";
    QTest::newRow("empty") << R"("name":null,"x":"y")"
                           << "";
}

void VectorObserversTest::nameFields()
{
    QFETCH(QString, properties);
    const QString path = write("noms.geojson", collection({feature(properties, pointAt(1, 2))}));
    const VectorObservers source = readVectorObservers(path, {});
    QCOMPARE(source.sites.size(), 1);
    QTEST(source.sites.first().name, "name");
}

void VectorObserversTest::references()
{
    const QString path = write("degrés.geojson", collection({feature({}, pointAt(3.0, 46.5))}));
    const VectorObservers lambert = readVectorObservers(path, wktOf(2154));
    QCOMPARE(lambert.crsNotes, QStringList("EPSG:4326 → EPSG:2154 : les coordonnées sont reprojetées."));
    const QPointF origin = lambert.sites.first().position; // that of the projection
    QVERIFY(std::abs(origin.x() - 700000.0) < 0.01 && std::abs(origin.y() - 6600000.0) < 0.01);
    QVERIFY(readVectorObservers(path, wktOf(4326)).crsNotes.isEmpty());
    QVERIFY(readVectorObservers(path, {}).crsNotes.value(0).contains("(EPSG:4326) sont reprises"));
    const QString none = writePointFile(m_folder.path(), {{1.0, 2.0, 3.0, 4.0, {}, {}}});
    QVERIFY(readVectorObservers(none, wktOf(2154)).crsNotes.value(0).contains("(EPSG:2154) est supposé"));
    QVERIFY(readVectorObservers(none, {}).crsNotes.isEmpty());
    // A GeoPackage without a CRS: GDAL names one that is undefined.
    const QString package = m_folder.filePath("sans.gpkg");
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    std::unique_ptr<GDALDataset> written(
        driver->Create(encodePath(package).constData(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer *layer = written->CreateLayer("points", nullptr, wkbPoint);
    OGRFeature feature(layer->GetLayerDefn());
    const OGRPoint point(700000.0, 6600000.0);
    QVERIFY(feature.SetGeometry(&point) == OGRERR_NONE && layer->CreateFeature(&feature) == OGRERR_NONE);
    written.reset();
    const VectorObservers undefined = readVectorObservers(package, wktOf(2154));
    QVERIFY(undefined.crsNotes.value(0).contains("(EPSG:2154) est supposé"));
    QCOMPARE(undefined.sites.value(0).position, QPointF(700000.0, 6600000.0));
}

void VectorObserversTest::layers()
{
    const QString path =
        write("trace.gpx", R"(<gpx version="1.1" creator="t" xmlns="http://www.topografix.com/GPX/1/1">
<wpt lat="46.5" lon="3"><ele>12</ele><name>Un</name></wpt><wpt lat="46.6" lon="3"/>
<trk><trkseg><trkpt lat="46" lon="3"/><trkpt lat="47" lon="3"/></trkseg></trk></gpx>)");
    const VectorObservers points = readVectorObservers(path, {}, "waypoints");
    QVERIFY(points.sites.size() == 2 && points.lines.isEmpty() && points.sites.first().name == "Un");
    QVERIFY(readVectorObservers(path, {}).lines.size() == 1);
    QVERIFY(readVectorObservers(path, {}, "absent").problem.contains("absent"));
    QVERIFY(readVectorObservers("absent.gpx", {}).problem.startsWith("Format non reconnu"));
}

/// More points than were once taken; the time grows with their number only, or the test would not end.
void VectorObserversTest::manyPoints()
{
    constexpr int count = 200000;
    QByteArray text = csvHead + "WKT,name\n";
    for (int at = 0; at < count; ++at)
        text += "0,0,POINT(" + QByteArray::number(at % 1000) + " 3),N" + QByteArray::number(at) + '\n';
    const SampledObservers read = observersFrom(readVectorObservers(write("points.csv", text), {}), 1.0, {});
    QCOMPARE(read.points.size(), count);
    QCOMPARE(read.points.last().name, "N" + QString::number(count - 1));
}

QTEST_MAIN(VectorObserversTest)
#include "vectorobservers_test.moc"
