#include "vectordraw/featurelayer.h"
#include "vectordraw/labelpainter.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPolygonF>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogr_featurestyle.h>
#include <ogrsf_frmts.h>

using namespace vectordraw;

class DrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GDALAllRegister(); }
    void penWidths();
    void clippedAndDenseLines();
    void dashesGoOn();
    void hatches_data();
    void hatches();
    void symbolsAndLabels();
    void geometries();
    void transformedAndFiltered();
    void styleSources();
    void areasAtTheEdge();
    void hostileFeatures();
    void maskAgainstPointInPolygon();
    void pageOfEverything();
};

namespace
{

using Feature = QPair<QByteArray, QByteArray>; ///< WKT, style
using DataSet = std::unique_ptr<GDALDataset>;

DataSet memoryLayer(const QList<Feature> &features, int epsg = 0)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("Memory");
    DataSet dataset(driver->Create("", 0, 0, 0, GDT_Unknown, nullptr));
    OGRSpatialReference reference;
    if (epsg != 0)
        reference.importFromEPSG(epsg);
    OGRLayer *layer = dataset->CreateLayer("l", epsg != 0 ? &reference : nullptr, wkbUnknown);
    OGRFieldDefn name("name", OFTString);
    layer->CreateField(&name);
    for (const auto &[wkt, style] : features) {
        OGRFeature feature(layer->GetLayerDefn());
        OGRGeometry *geometry = nullptr;
        if (!wkt.isEmpty())
            OGRGeometryFactory::createFromWkt(wkt.constData(), nullptr, &geometry);
        feature.SetGeometryDirectly(geometry);
        feature.SetField("name", "Été");
        if (!style.isEmpty())
            feature.SetStyleString(style.constData());
        if (layer->CreateFeature(&feature) != OGRERR_NONE)
            return nullptr;
    }
    return dataset;
}

/// A white picture of so many pixels, the features on it; map unit = pixel, counted from the lower left.
struct Picture
{
    explicit Picture(int side = 100)
        : surface(Surface::image(side, side))
        , painter(surface, {96.0, 1.0})
        , view{side, side, {0.0, 1.0, 0.0, double(side), 0.0, -1.0}, {}}
    {
        painter.fillBackground({255, 255, 255, 255});
    }

    QImage image()
    {
        painter.finishLines();
        surface.flush();
        return QImage(surface.pixels(), surface.width(), surface.height(), surface.bytesPerRow(),
                      QImage::Format_ARGB32_Premultiplied)
            .copy();
    }
    /// 0 white to 255 black; counted from the lower left as the features are.
    int ink(int x, int y) { return 255 - qGray(image().pixel(x, surface.height() - 1 - y)); }
    long long total()
    {
        const QImage picture = image();
        long long sum = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                sum += 255 - qGray(picture.pixel(x, y));
        }
        return sum;
    }

    Surface surface;
    Painter painter;
    View view;
};

struct Counts
{
    long long drawn;
    long long skipped;
    long long total;
};

Counts drawn(Picture &picture, GDALDataset &dataset)
{
    FeatureLayer layer(*dataset.GetLayer(0), picture.view, picture.painter);
    while (layer.drawNext(3)) { }
    return {layer.drawn(), layer.skipped(), layer.total()};
}

bool near(int value, int expected)
{
    return std::abs(value - expected) <= 40;
}

} // namespace

void DrawingTest::penWidths()
{
    for (const double dotsPerInch : {96.0, 300.0}) {
        for (const char *width : {"3px", "9pt", "2mm", "0.3cm", "0.1in", "4g"}) {
            Surface surface = Surface::image(100, 100);
            Painter painter(surface, {dotsPerInch, 0.5});
            const Pen pen = std::get<Pen>(parseStyle(std::string("PEN(w:") + width + ")").style.at(0));
            painter.drawLine(std::vector<Point>{{-10.0, 50.0}, {110.0, 50.0}}, pen);
            painter.finishLines();
            surface.flush();
            double ink = 0.0;
            for (int row = 0; row < 100; ++row)
                ink += surface.pixels()[row * surface.bytesPerRow() + 4 * 50 + 3] / 255.0;
            QVERIFY2(std::abs(ink - pixels(pen.width, {dotsPerInch, 0.5})) < 0.2, width);
        }
    }
}

void DrawingTest::clippedAndDenseLines()
{
    Picture picture;
    std::vector<Point> dense; // a diagonal in steps of a hundredth of a pixel, and far out at both ends
    dense.push_back({-1e9, -1e9});
    for (double at = 0.0; at < 100.0; at += 0.01)
        dense.push_back({at, at});
    dense.push_back({1e9, 1e9});
    Pen pen;
    pen.width = {2.0, Unit::Pixel};
    picture.painter.drawLine(dense, pen);
    Picture plain;
    plain.painter.drawLine(std::vector<Point>{{-5.0, -5.0}, {105.0, 105.0}}, pen);
    QVERIFY(std::abs(picture.total() - plain.total()) < plain.total() / 50);
    for (const int at : {1, 50, 98})
        QVERIFY(picture.ink(at, 99 - at) > 200);
    Picture dot; // less than a pixel
    dot.painter.drawLine(std::vector<Point>{{20.0, 80.0}, {20.7, 80.0}}, pen);
    QVERIFY(dot.total() > 100);

    Pen shifted = pen;
    shifted.offset = {10.0, Unit::Pixel};
    Picture right;
    right.painter.drawLine(std::vector<Point>{{50.0, 90.0}, {50.0, 10.0}},
                           shifted); // northwards: right is east
    QVERIFY(right.ink(60, 50) > 200 && right.ink(50, 50) == 0);
}

void DrawingTest::dashesGoOn()
{
    // The same dashes whether the line begins inside the picture or far outside of it.
    const Pen pen = std::get<Pen>(parseStyle("PEN(w:3px,p:\"10px 10px\")").style.at(0));
    Picture inside;
    Picture outside;
    inside.painter.drawLine(std::vector<Point>{{0.0, 50.0}, {100.0, 50.0}}, pen);
    outside.painter.drawLine(std::vector<Point>{{-2000.0, 50.0}, {30.0, 50.0}, {2000.0, 50.0}}, pen);
    for (int x = 1; x < 99; ++x)
        QVERIFY2(near(inside.ink(x, 50), outside.ink(x, 50)), qPrintable(QString::number(x)));
    QVERIFY(inside.ink(5, 50) > 200 && inside.ink(15, 50) == 0);
    Picture tiny; // thousands of dashes a pixel are a solid line
    tiny.painter.drawLine(std::vector<Point>{{0.0, 50.0}, {100.0, 50.0}},
                          std::get<Pen>(parseStyle("PEN(w:3px,p:\"0.00001px 0.00001px\")").style.at(0)));
    QVERIFY(tiny.ink(50, 50) > 200);
}

void DrawingTest::hatches_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QPoint>("on"); // in a tile of 10, from its upper left
    QTest::addColumn<QPoint>("off");
    QTest::newRow("horizontal") << 2 << QPoint(2, 5) << QPoint(2, 2);
    QTest::newRow("vertical") << 3 << QPoint(5, 2) << QPoint(2, 2);
    QTest::newRow("forward diagonal") << 4 << QPoint(3, 3) << QPoint(6, 3);
    QTest::newRow("backward diagonal") << 5 << QPoint(3, 6) << QPoint(3, 3);
    QTest::newRow("cross") << 6 << QPoint(5, 2) << QPoint(2, 2);
    QTest::newRow("diagonal cross") << 7 << QPoint(3, 6) << QPoint(5, 1);
}

void DrawingTest::hatches()
{
    QFETCH(int, id);
    QFETCH(QPoint, on);
    QFETCH(QPoint, off);
    Picture picture;
    const DataSet areas =
        memoryLayer({{"POLYGON((0 0,100 0,100 100,0 100,0 0))",
                      "BRUSH(fc:#000000,bc:#FF0000,s:10px,id:\"ogr-brush-" + QByteArray::number(id) + "\")"}});
    drawn(picture, *areas);
    const QImage image = picture.image();
    for (const QPoint tile : {QPoint(0, 0), QPoint(50, 30)}) { // the tiles meet
        QVERIFY2(qRed(image.pixel(tile + on)) < 160, qPrintable(QString::number(qRed(image.pixel(tile + on)))));
        QCOMPARE(QColor(image.pixel(tile + off)), QColor(Qt::red));
    }
}

void DrawingTest::symbolsAndLabels()
{
    Picture picture;
    const DataSet points =
        memoryLayer({{"POINT(20 20)", "SYMBOL(id:\"ogr-sym-5\",c:#000000,s:10px)"},
                     {"MULTIPOINT(50 20,80 20)", "SYMBOL(id:\"ogr-sym-2\",c:#000000,s:12px)"},
                     {"LINESTRING(10 50,90 50)", "SYMBOL(id:\"ogr-sym-3\",s:4px,dp:20px,di:10px)"}});
    drawn(picture, *points);
    QVERIFY(picture.ink(20, 20) > 200 && picture.ink(24, 24) > 200 && picture.ink(27, 20) == 0);
    QVERIFY(picture.ink(50, 20) == 0 && picture.ink(56, 20) > 60 && picture.ink(86, 20) > 60);
    QVERIFY(picture.ink(20, 50) > 200 && picture.ink(40, 50) > 200 && picture.ink(30, 50) == 0);

    // Anchors: where the ink lies beside the point. Right-to-left and broken texts leave some, too.
    for (int anchor = 1; anchor <= 12; ++anchor) {
        Picture text;
        const DataSet label =
            memoryLayer({{"POINT(50 50)", "LABEL(t:\"{name}\",s:10px,p:" + QByteArray::number(anchor) + ")"}});
        drawn(text, *label);
        const QImage image = text.image();
        long long x = 0, y = 0, count = 0;
        for (int at = 0; at < 10000; ++at) {
            if (qGray(image.pixel(at % 100, at / 100)) < 128) {
                x += at % 100;
                y += at / 100;
                ++count;
            }
        }
        QVERIFY2(count > 10, qPrintable(QString::number(anchor)));
        const int column = (anchor - 1) % 3;
        const int row = (anchor - 1) / 3;
        QVERIFY((column == 0) == (x / count > 53) && (column == 2) == (x / count < 47));
        QVERIFY((row == 2) == (y / count > 53) && (row == 0 || row == 3) == (y / count < 47));
    }
    for (const char *text : {"שלום עולם", "\xff\xfe broken", "العربية"}) {
        Picture strange;
        LabelText label;
        drawLabel(strange.surface, {}, label, text, {{20.0, 50.0}});
        QVERIFY(strange.total() > 1000);
    }
}

void DrawingTest::geometries()
{
    Picture picture;
    const QByteArray black = "BRUSH(fc:#000000)";
    const DataSet all = memoryLayer(
        {{"POLYGON Z((5 5 1,45 5 1,45 45 1,5 45 1,5 5 1),(15 15 1,35 15 1,35 35 1,15 35 1,15 15 1))", black},
         {"GEOMETRYCOLLECTION(POINT(70 20),LINESTRING(60 30,90 30),MULTIPOLYGON(((60 5,70 5,70 15,60 5))))",
          black + ";PEN(w:2px,c:#000000);SYMBOL(id:ogr-sym-3,s:6px)"},
         {"CURVEPOLYGON(CIRCULARSTRING(20 75,30 65,40 75,30 85,20 75))", black},
         {"LINESTRING(60 60,90 60)", ""},
         {"", black},
         {"POINT(nan nan)", black},
         {"POLYGON EMPTY", black}});
    const Counts counts = drawn(picture, *all);
    QCOMPARE(counts.drawn, 4);
    QCOMPARE(counts.skipped, 3);
    QCOMPARE(counts.total, 7);
    QVERIFY(picture.ink(10, 10) > 200 && picture.ink(25, 25) == 0); // the hole
    QVERIFY(picture.ink(70, 20) > 200 && picture.ink(75, 30) > 100 && picture.ink(68, 8) > 200);
    QVERIFY(picture.ink(30, 75) > 200 && picture.ink(23, 81) > 200 && picture.ink(21, 84) == 0); // round
    QVERIFY(picture.ink(75, 60) > 30); // no style of its own
}

void DrawingTest::transformedAndFiltered()
{
    // 9° E is the middle of the zone: easting 500 km.
    const DataSet points = memoryLayer(
        {{"POINT(9 46)", "SYMBOL(id:ogr-sym-3,s:10px,c:#000000)"}, {"POINT(20 10)", ""}, {"POINT(9 95)", ""}},
        4326);
    Picture picture;
    picture.view.geoTransform = {499500.0, 10.0, 0.0, 5094500.0, 0.0, -10.0};
    picture.view.crs = "EPSG:32632";
    {
        FeatureLayer layer(*points->GetLayer(0), picture.view, picture.painter);
        QCOMPARE(layer.error(), std::string());
        while (layer.drawNext(10)) { }
        QCOMPARE(layer.drawn(), 1); // one is far outside, and one no place on Earth
        QCOMPARE(layer.skipped(), 1);
        QVERIFY(picture.ink(50, 54) > 200 && picture.ink(60, 54) == 0);
    }
    QCOMPARE(points->GetLayer(0)->GetFeatureCount(), 3);
    picture.view.crs = "EPSG:nonsense";
    QVERIFY(!FeatureLayer(*points->GetLayer(0), picture.view, picture.painter).error().empty());
    picture.view.geoTransform = {0, 0, 0, 0, 0, 0};
    QVERIFY(!FeatureLayer(*points->GetLayer(0), picture.view, picture.painter).error().empty());
}

void DrawingTest::styleSources()
{
    const DataSet points = memoryLayer({{"POINT(20 50)", "@big"}, {"POINT(80 50)", "@absent"}});
    OGRStyleTable table;
    table.AddStyle("big", "SYMBOL(id:ogr-sym-5,s:30px,c:#000000)");
    Picture picture;
    FeatureLayer layer(*points->GetLayer(0), picture.view, picture.painter, {}, &table);
    while (layer.drawNext(1)) { }
    QVERIFY(picture.ink(32, 62) > 200);
    QVERIFY(picture.ink(80, 50) > 50 && picture.ink(92, 50) == 0); // the default's dot
}

void DrawingTest::areasAtTheEdge()
{
    // A hole that begins outside of the picture tears no wedge, and a thin area keeps its cover.
    Picture picture;
    drawn(picture,
          *memoryLayer({{"POLYGON((-5 -5,105 -5,105 105,-5 105,-5 -5),(120 60,60 60,60 40,120 40,120 60))",
                         "BRUSH(fc:#000000)"}}));
    for (const QPoint inside : {QPoint(2, 2), QPoint(50, 70), QPoint(95, 20), QPoint(70, 65), QPoint(30, 50)})
        QVERIFY(picture.ink(inside.x(), inside.y()) > 250);
    QVERIFY(picture.ink(80, 50) == 0);
    const View view{10, 4, {0.0, 1.0, 0.0, 4.0, 0.0, -1.0}, {}};
    const DataSet thin = memoryLayer({{"POLYGON((1 1.1,9 1.1,9 1.9,1 1.9,1 1.1))", ""},
                                      {"POLYGON((2 3,2.5 3,2.5 4,2 4,2 3))", ""},
                                      {"POLYGON((2.5 3,4 3,4 4,2.5 4,2.5 3))", ""}});
    FeatureMask mask(*thin->GetLayer(0), view);
    while (mask.addNext(1)) { }
    QVERIFY(mask.pixels());
    for (int column = 2; column < 8; ++column)
        QVERIFY(std::abs(mask.coverage(column, 2) - 204) < 20);
    QVERIFY(mask.coverage(2, 0) > 245); // two halves of one cell
    // The corner where an outline closes is as full as the others.
    Picture square;
    drawn(square, *memoryLayer({{"POLYGON((20 20,80 20,80 80,20 80,20 20))", "PEN(w:12px,c:#000000)"}}));
    for (const QPoint corner : {QPoint(16, 16), QPoint(83, 16), QPoint(83, 83), QPoint(16, 83)})
        QVERIFY(square.ink(corner.x(), corner.y()) > 200);
    // Hatches of any size keep their distance: 80 lines of 2.5 px in 200 px.
    Picture hatched(200);
    drawn(
        hatched,
        *memoryLayer({{"POLYGON((0 0,200 0,200 200,0 200,0 0))", "BRUSH(fc:#000000,s:2.5px,id:ogr-brush-3)"}}));
    int lines = 0;
    for (int x = 1; x < 200; ++x)
        lines += hatched.ink(x, 100) > hatched.ink(x - 1, 100)
            && (x < 2 || hatched.ink(x - 1, 100) <= hatched.ink(x - 2, 100));
    QVERIFY2(std::abs(lines - 80) <= 2, qPrintable(QString::number(lines)));
}

void DrawingTest::hostileFeatures()
{
    QByteArray longLine = "LINESTRING(";
    for (int at = 0; at < 50000; ++at)
        longLine += QByteArray::number(at % 100) + " " + QByteArray::number(at % 90) + ",";
    longLine += "1 1)";
    const QByteArray text = QByteArray(100000, 'x');
    Picture picture;
    const Counts counts = drawn(picture,
                                *memoryLayer({{longLine, "SYMBOL(id:ogr-sym-3,s:2px,dp:1px)"},
                                              {"LINESTRING(-1e300 50,1e300 50)", "SYMBOL(id:ogr-sym-3,dp:5px)"},
                                              {"LINESTRING(10 50,500010 50)", "LABEL(t:\"a\",m:a)"},
                                              {"POINT(50 50)", "LABEL(t:\"{name}\",w:1e9,s:1e9px)"},
                                              {"LINESTRING(0 0,9 9)", "LABEL(t:\"" + text + "\",m:s)"},
                                              {"POINT(20 20)", "SYMBOL(id:ogr-sym-5,s:10px,c:#000000)"}}));
    QCOMPARE(counts.drawn, 6);
    QCOMPARE(picture.surface.error(), std::string());
    QVERIFY(picture.ink(20, 20) > 200); // what comes after them is drawn
    QVERIFY(picture.ink(50, 50) > 0);
    const DataSet nothing = memoryLayer({});
    FeatureMask huge(*nothing->GetLayer(0), {40000, 10, {0.0, 1.0, 0.0, 10.0, 0.0, -1.0}, {}});
    QVERIFY(!huge.error().empty() && !huge.addNext(1) && huge.coverage(5, 5) == 0);
}

void DrawingTest::maskAgainstPointInPolygon()
{
    QRandomGenerator random(3);
    for (int round = 0; round < 30; ++round) {
        const auto ring = [&](double radius) { // a star around the middle, so that it does not cross itself
            QPolygonF points;
            for (int at = 0; at < 24; ++at) {
                const double angle = at * M_PI / 12.0;
                const double reach = radius * (0.6 + 0.4 * random.generateDouble());
                points += QPointF(32.0 + reach * std::cos(angle), 32.0 + reach * std::sin(angle));
            }
            points += QPointF(points.first());
            return points;
        };
        const QPolygonF outer = ring(40.0); // partly beyond the grid
        const QPolygonF hole = ring(15.0);
        const auto text = [](const QPolygonF &points) {
            QStringList vertices;
            for (const QPointF &point : points)
                vertices +=
                    QString::number(point.x(), 'g', 17) + " " + QString::number(64.0 - point.y(), 'g', 17);
            return "(" + vertices.join(",").toLatin1() + ")";
        };
        const DataSet areas = memoryLayer({{"POLYGON(" + text(outer) + "," + text(hole) + ")", ""}});
        FeatureMask mask(*areas->GetLayer(0), {64, 64, {0.0, 1.0, 0.0, 64.0, 0.0, -1.0}, {}});
        while (mask.addNext(1)) { }
        QVERIFY(mask.pixels());
        int compared = 0;
        for (int row = 0; row < 64; ++row) {
            for (int column = 0; column < 64; ++column) {
                int inside = 0; // of the cell's surroundings, a pixel being what may be dropped
                for (const double dx : {-1.0, 0.5, 2.0}) {
                    for (const double dy : {-1.0, 0.5, 2.0}) {
                        const QPointF at(column + dx, row + dy);
                        inside += outer.containsPoint(at, Qt::OddEvenFill)
                            && !hole.containsPoint(at, Qt::OddEvenFill);
                    }
                }
                if (inside != 0 && inside != 9)
                    continue;
                ++compared;
                QCOMPARE(int(mask.coverage(column, row)), inside == 9 ? 255 : 0);
            }
        }
        QVERIFY(compared > 500);
        QCOMPARE(int(mask.coverage(-1, 5)), 0);
    }
}

void DrawingTest::pageOfEverything()
{
    QList<Feature> features;
    for (int id = 0; id <= 8; ++id) {
        const QByteArray y = QByteArray::number(570 - id * 18);
        features << Feature{"LINESTRING(20 " + y + ",180 " + y + ")",
                            "PEN(c:#204080,w:3px,id:\"ogr-pen-" + QByteArray::number(id) + "\")"};
    }
    const char *joins[] = {"cap:b,j:m", "cap:r,j:r", "cap:p,j:b", "dp:6px"};
    for (int at = 0; at < 4; ++at)
        features << Feature{QByteArray("LINESTRING(%1 390,%2 350,%3 390)")
                                .replace("%1", QByteArray::number(20 + at * 45))
                                .replace("%2", QByteArray::number(35 + at * 45))
                                .replace("%3", QByteArray::number(50 + at * 45)),
                            QByteArray("PEN(c:#80808080,w:8px,") + joins[at] + ");PEN(c:#000000,w:1px)"};
    for (int id = 0; id <= 7; ++id) {
        const int x = 220 + id % 4 * 90;
        const int y = 500 - id / 4 * 90;
        features << Feature{
            QStringLiteral("POLYGON((%1 %2,%3 %2,%3 %4,%1 %4,%1 %2),(%5 %6,%7 %6,%7 %8,%5 %8,%5 %6))")
                .arg(x)
                .arg(y)
                .arg(x + 70)
                .arg(y + 70)
                .arg(x + 25)
                .arg(y + 25)
                .arg(x + 40)
                .arg(y + 40)
                .toLatin1(),
            "BRUSH(fc:#5C7F5C,bc:#F0E8D0,s:8px,id:\"ogr-brush-" + QByteArray::number(id)
                + "\");PEN(c:#304030,w:1px)"};
    }
    for (int id = 0; id <= 10; ++id)
        features << Feature{"POINT(" + QByteArray::number(30 + id * 50) + " 300)",
                            "SYMBOL(id:\"ogr-sym-" + QByteArray::number(id)
                                + "\",c:#C8553D,o:#203040,s:22px,a:" + QByteArray::number(id * 5) + ")"};
    features << Feature{"POINT(580 300)", "SYMBOL(id:\"font-sym-9650\",f:\"DejaVu Sans\",c:#204080,s:24px)"};
    const char *modes = "plsmwha";
    for (int at = 0; at < 7; ++at) {
        const int y = 215 - at / 2 * 55;
        const int x = 20 + at % 2 * 290;
        features << Feature{
            QStringLiteral("LINESTRING(%1 %2,%3 %4,%5 %2)")
                .arg(x)
                .arg(y)
                .arg(x + 110)
                .arg(y + 25)
                .arg(x + 250)
                .toLatin1(),
            QByteArray("PEN(c:#B0B8C0,w:1px);LABEL(t:\"Crête du {name}\",s:13px,c:#203040,o:#FFFFFF,p:10,m:")
                + modes[at] + ")"};
    }
    features << Feature{"POINT(310 50)", "LABEL(t:\"שלום עולם\",s:20px,c:#204080,b:#F0E8D0,p:10)"};
    features << Feature{"POINT(430 50)", "LABEL(t:\"Bold\",bo:1,it:1,un:1,s:20px,h:#B0B0B0,p:10,a:20)"};
    features << Feature{"POINT(510 50)", "LABEL(t:\"wide\",w:180,s:14px,st:1,p:10)"};
    const DataSet page = memoryLayer(features);
    const View view{620, 600, {0.0, 1.0, 0.0, 600.0, 0.0, -1.0}, {}};
    const QString base = QStringLiteral(QUVO_TREE "/../pictures");
    QVERIFY(QDir().mkpath(base));
    const auto draw = [&](Surface &surface) {
        Painter painter(surface, {96.0, 1.0});
        painter.fillBackground({255, 255, 255, 255});
        FeatureLayer layer(*page->GetLayer(0), view, painter);
        while (layer.drawNext(5)) { }
        QCOMPARE(layer.skipped(), 0);
    };
    Surface image = Surface::image(view.width, view.height);
    draw(image);
    QVERIFY(image.writePng((base + "/vector_page.png").toStdString()));
    for (const char *suffix : {".svg", ".pdf"}) {
        const QString file = base + "/vector_page" + suffix;
        Surface surface = QByteArray(suffix) == ".svg"
            ? Surface::svg(file.toStdString(), view.width, view.height)
            : Surface::pdf(file.toStdString(), view.width, view.height, 96.0);
        draw(surface);
        QCOMPARE(surface.finish(), std::string());
        QVERIFY(QFile(file).size() > 10000);
    }
    QVERIFY(!Surface::svg("/nowhere/page.svg", 10, 10).finish().empty());
}

QTEST_GUILESS_MAIN(DrawingTest)
#include "drawing_test.moc"
