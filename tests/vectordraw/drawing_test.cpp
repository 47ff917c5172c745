#include "vectordraw/featurelayer.h"
#include "vectordraw/featuremask.h"
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
    void driverStyles_data();
    void driverStyles();
    void penWidths();
    void clippedAndDenseLines();
    void dashesGoOn();
    void hatches_data();
    void hatches();
    void turnedHatches();
    void symbolsAndLabels();
    void symbolsAlongLines();
    void labelAnchors();
    void wordsOnSegments();
    void placesOnLinesAndInAreas();
    void geometries();
    void transformedAndFiltered();
    void styleSources();
    void fieldsInStyles();
    void portions();
    void spreadOrder();
    void areasAtTheEdge();
    void hostileFeatures();
    void maskAgainstPointInPolygon();
    void maskOfSeveralAreas();
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

/// The text with the numbers in place of %1, %2 and so on.
QByteArray filled(QByteArray text, std::initializer_list<double> numbers)
{
    int place = 0;
    for (const double number : numbers)
        text.replace("%" + QByteArray::number(++place), QByteArray::number(number));
    return text;
}

QByteArray box(double left, double bottom, double right, double top)
{
    return filled("POLYGON((%1 %2,%3 %2,%3 %4,%1 %4,%1 %2))", {left, bottom, right, top});
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

// The strings are as GDAL's drivers write them for files of their formats.
void DrawingTest::driverStyles_data()
{
    QTest::addColumn<QByteArray>("wkt");
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<QStringList>("pixels"); // x and y from the lower left, and the colour there

    const QByteArray point = "POINT(50.5 50.5)";
    const QByteArray line = "LINESTRING(0 50.5,100 50.5)";
    const QByteArray wide = "LINESTRING(0 50,100 50)";
    const QByteArray area = box(20, 20, 80, 80);
    const QByteArray angle = "POLYGON((10 10,90 10,90 30,30 30,30 90,10 90,10 10))";
    const QString none = "#c0e0ff"; // the picture's ground
    const auto row = [](const char *name, const QByteArray &wkt, const char *style, const QStringList &pixels) {
        QTest::newRow(name) << wkt << QByteArray(style) << pixels;
    };
    row("MapInfo: a region without a fill", area,
        "BRUSH(fc:#000000,bc:#ffffff,id:\"mapinfo-brush-1,ogr-brush-1\");"
        "PEN(w:2px,c:#00ff00,id:\"mapinfo-pen-2,ogr-pen-0\",cap:r,j:r)",
        {"50 50 " + none, "30 70 " + none, "20 50 #00ff00", "50 80 #00ff00"});
    row("MapInfo: a hatch and no outline", area,
        "BRUSH(fc:#0000ff,bc:#ffff00,id:\"mapinfo-brush-3,ogr-brush-2\");"
        "PEN(w:1px,c:#00ff00,id:\"mapinfo-pen-1,ogr-pen-1\",cap:r,j:r)",
        {"50 52 #ffff00", "50 55 #80807f", "20 52 #ffff00"});
    row("MapInfo: a hatch without a ground", area, "BRUSH(fc:#0000ff,id:\"mapinfo-brush-4,ogr-brush-3\")",
        {"55 50 " + none, "52 50 #6070ff"});
    row("MapInfo: long dashes", line,
        "PEN(w:1px,c:#ff0000,id:\"mapinfo-pen-8,ogr-pen-4\",p:\"24 4px\",cap:r,j:r)",
        {"12 50 #ff0000", "25 50 " + none, "26 50 " + none, "40 50 #ff0000", "54 50 " + none});
    row("MapInfo: dashes and dots", line,
        "PEN(w:1px,c:#ff0000,id:\"mapinfo-pen-14,ogr-pen-6\",p:\"24 6 4 6px\",cap:r,j:r)",
        {"12 50 #ff0000", "27 50 " + none, "32 50 #ff0000", "37 50 " + none, "50 50 #ff0000"});
    row("MapInfo: dashes narrower than the pen", wide,
        "PEN(w:4px,c:#ff0000,id:\"mapinfo-pen-4,ogr-pen-3\",p:\"2 1px\",cap:r,j:r)",
        {"31 50 #ff0000", "32 50 " + none, "33 50 #ff0000", "33 51 #ff0000", "35 48 " + none});
    row("MapInfo: a circle", point, "SYMBOL(a:0,c:#ff00ff,s:12pt,id:\"mapinfo-sym-34,ogr-sym-3\")",
        {"50 50 #ff00ff", "56 50 #ff00ff", "57 57 " + none, "60 50 " + none});
    row("MapInfo: a character of a font that is missing", point,
        "SYMBOL(a:0,c:#112233,s:36pt,id:\"font-sym-65,ogr-sym-9\",f:\"No Such Symbols\")", // a star
        {"50 50 #112233", "50 68 #112233", "33 55 #112233", "67 55 #112233", "33 45 " + none});
    row("a character of a font that is there", point,
        "SYMBOL(c:#112233,s:36pt,id:\"font-sym-73,ogr-sym-9\",f:\"No Such Symbols, Sans\")", // I
        {"50 50 #112233", "33 55 " + none, "67 55 " + none});
    row("DXF: a point", point, "PEN(c:#000000)", {"50 50 #000000", "54 50 " + none, "50 54 " + none});
    row("DXF: a line", line, "PEN(c:#ff0000)", {"50 50 #ff0000", "50 52 " + none});
    row("DXF: a narrow line", line, "PEN(c:#ff0000,w:0.002g)", {"50 50 #ff0000", "50 52 " + none});
    row("DXF: dashes in ground units", line, "PEN(c:#0000ff,p:\"4g 5g\")",
        {"1 50 #0000ff", "6 50 " + none, "10 50 #0000ff", "15 50 " + none});
    row("DXF: an area", area, "BRUSH(fc:#ff0000)", {"50 50 #ff0000", "21 21 #ff0000", "18 50 " + none});
    row("DGN: a line", line, "PEN(id:\"ogr-pen-0\",c:#ffffff)", {"50 50 #ffffff"});
    row("DGN: a text", "POINT(20 40)", "LABEL(t:\"III\",c:#ffffff,s:60.000g,f:WORKING)",
        {"20 38 " + none, "20 30 " + none, "28 50 #ffffff"});
    row("KML: a line without a width", line, "PEN(c:#FF0000FF,w:0.000000px)",
        {"50 50 #ff0000", "50 52 " + none});
    row("KML: a translucent line", wide, "PEN(c:#0000FF80,w:4.000000px)", {"50 50 #6070ff"});
    row("KML: an area and its outline", area, "PEN(c:#00FF00FF,w:6.000000px);BRUSH(fc:#0000FFFF)",
        {"18 50 #00ff00", "22 50 #0000ff", "50 50 #0000ff"});
    row("KML: a scaled symbol", point, "SYMBOL(id:\"ogr-sym-3\",a:30.000000,c:#FF00FFFF,s:3.527785)",
        {"62 50 #ff00ff", "66 50 " + none});
    row("a symbol goes before a point's pen", point, "PEN(c:#ff0000,w:9px);SYMBOL(id:ogr-sym-4,s:24px)",
        {"50 50 " + none});
    row("a pen that is not drawn", point, "PEN(c:#ff0000,w:9px,id:\"ogr-pen-1\")", {"50 50 " + none});
    row("a brush shows no line", line, "BRUSH(fc:#ff0000)", {"50 50 #37434f"}); // by default
    row("a symbol in an area", angle, "SYMBOL(id:\"ogr-sym-5\",c:#ff0000,s:12px)",
        {"20 50 #ff0000", "50 50 " + none});
    row("a label in an area", angle, "LABEL(t:\"I\",c:#ff0000,s:18px,p:5,bo:1)",
        {"19 50 #ff0000", "50 50 " + none});
}

void DrawingTest::driverStyles()
{
    QFETCH(QByteArray, wkt);
    QFETCH(QByteArray, style);
    QFETCH(QStringList, pixels);
    Picture picture;
    picture.painter.fillBackground({0xC0, 0xE0, 0xFF, 255});
    const Counts counts = drawn(picture, *memoryLayer({{wkt, style}}));
    QCOMPARE(counts.drawn, 1);
    const QImage image = picture.image();
    for (const QString &pixel : pixels) {
        const QStringList parts = pixel.split(' ');
        const QColor found(image.pixel(parts[0].toInt(), 99 - parts[1].toInt()));
        const QColor expected(parts[2]);
        QVERIFY2(near(found.red(), expected.red()) && near(found.green(), expected.green())
                     && near(found.blue(), expected.blue()),
                 qPrintable(pixel + ": " + found.name()));
    }
}

void DrawingTest::penWidths()
{
    for (const double dotsPerInch : {96.0, 300.0}) {
        for (const char *width : {"3px", "9pt", "2mm", "0.3cm", "0.1in", "4g", "0", "0px", "0.1px", "0pt"}) {
            Surface surface = Surface::image(100, 100);
            Painter painter(surface, {dotsPerInch, 0.5});
            const Pen pen = std::get<Pen>(parseStyle(std::string("PEN(w:") + width + ")").style.at(0));
            painter.drawLine(std::vector<Point>{{-10.0, 50.0}, {110.0, 50.0}}, pen);
            painter.finishLines();
            surface.flush();
            double ink = 0.0;
            for (int row = 0; row < 100; ++row)
                ink += surface.pixels()[row * surface.bytesPerRow() + 4 * 50 + 3] / 255.0;
            const double expected = std::max(1.0, pixels(pen.width, {dotsPerInch, 0.5})); // or a hairline
            QVERIFY2(std::abs(ink - expected) < 0.2, width);
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
        memoryLayer({{box(0, 0, 100, 100),
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
                     {"MULTIPOINT(50 20,80 20)", "SYMBOL(id:\"ogr-sym-2\",c:#000000,s:12px)"}});
    drawn(picture, *points);
    QVERIFY(picture.ink(20, 20) > 200 && picture.ink(24, 24) > 200 && picture.ink(27, 20) == 0);
    QVERIFY(picture.ink(50, 20) == 0 && picture.ink(56, 20) > 60 && picture.ink(86, 20) > 60);
    // Right-to-left and broken texts leave ink, too.
    for (const char *text : {"שלום עולם", "\xff\xfe broken", "العربية"}) {
        Picture strange;
        LabelText label;
        drawLabel(strange.surface, {}, label, text, {{20.0, 50.0}});
        QVERIFY(strange.total() > 1000);
    }
}

void DrawingTest::turnedHatches()
{
    for (const auto &[angle, lines] :
         {std::pair{0, 20}, {90, 0}, {60, 10}, {-30, 17}}) { // cos(angle) * 200 / 10
        Picture picture(200);
        const DataSet area =
            memoryLayer({{box(0, 0, 200, 200),
                          "BRUSH(fc:#000000,s:10px,id:ogr-brush-3,a:" + QByteArray::number(angle) + ")"}});
        drawn(picture, *area);
        const QImage image = picture.image();
        for (const int row : {30, 100, 170}) {
            int found = 0;
            bool dark = false;
            for (int x = 0; x < 200; ++x) {
                const int ink = 255 - qGray(image.pixel(x, row));
                found += !dark && ink > 60 && angle != 90;
                dark = ink > 60 || (dark && ink > 30);
            }
            QVERIFY2(std::abs(found - lines) <= 1, qPrintable(QStringLiteral("%1: %2").arg(angle).arg(found)));
        }
        if (angle == 60) { // counter-clockwise: the lines rise to the left, by a pixel on 1.73
            const int first = qGray(image.pixel(100, 100));
            QVERIFY(std::abs(qGray(image.pixel(100 - 52, 100 - 30)) - first) < 60);
            int darkest = 255;
            int palest = 0;
            for (int at = 0; at < 20; ++at) {
                const int along = qGray(image.pixel(100 + at * 26 / 15, 100 + at));
                const int across = qGray(image.pixel(100 + at, 100 - at * 26 / 15));
                QVERIFY(std::abs(along - first) < 130);
                darkest = std::min(darkest, across);
                palest = std::max(palest, across);
            }
            QVERIFY(palest - darkest > 130);
        }
        // As much ink at any angle: 20 lines of 200 pixels.
        QVERIFY2(std::abs(picture.total() / 255 - 4000) < 200,
                 qPrintable(QString::number(picture.total() / 255)));
    }
    Picture sparse(200); // two lines, 100 pixels apart
    drawn(sparse, *memoryLayer({{box(0, 0, 200, 200), "BRUSH(fc:#000000,s:100px,id:ogr-brush-3)"}}));
    for (int x = 0; x < 200; x += 10)
        QCOMPARE(sparse.ink(x, 77) > 200, x == 50 || x == 150);
}

void DrawingTest::symbolsAlongLines()
{
    Picture picture;
    drawn(picture,
          *memoryLayer({{"LINESTRING(10 80,40 80,90 80)", "SYMBOL(id:ogr-sym-3,s:4px,ds:20px,di:10px)"},
                        {"LINESTRING(10 50,90 50)", "SYMBOL(id:ogr-sym-3,s:4px,ds:20px,dp:10px)"},
                        {"LINESTRING(10 20,90 20)", "SYMBOL(id:ogr-sym-3,s:4px,di:30px,dp:-5px)"}}));
    for (int x = 5; x < 100; x += 5) {
        QCOMPARE(picture.ink(x, 80) > 200, x == 20 || x == 40 || x == 60 || x == 80);
        QCOMPARE(picture.ink(x, 40) > 200, x == 10 || x == 30 || x == 50 || x == 70 || x == 90);
        QCOMPARE(picture.ink(x, 25) > 200, x == 40);
    }
}

/// Where the ink of a picture begins and ends, in rows and columns from the lower left.
static QRect inkOf(Picture &picture)
{
    const QImage image = picture.image();
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128)
                bounds |= QRect(x, image.height() - 1 - y, 1, 1);
        }
    }
    return bounds;
}

void DrawingTest::labelAnchors()
{
    for (int anchor = 1; anchor <= 12; ++anchor) {
        const auto inked = [&](const char *text) {
            Picture picture;
            drawn(picture,
                  *memoryLayer(
                      {{"POINT(50 50)",
                        QByteArray("LABEL(s:20px,t:") + text + ",p:" + QByteArray::number(anchor) + ")"}}));
            return inkOf(picture);
        };
        const QRect capital = inked("EE"); // stands on the base line
        const QRect hanging = inked("pp"); // reaches below it
        const int column = (anchor - 1) % 3;
        QVERIFY2(capital.width() > 15 && capital.height() > 10, qPrintable(QString::number(anchor)));
        QVERIFY(column != 0 || (capital.left() >= 50 && capital.left() < 55));
        QVERIFY(column != 1 || std::abs(capital.center().x() - 50) < 3);
        QVERIFY(column != 2 || (capital.right() <= 50 && capital.right() > 45));
        const QByteArray name = QByteArray::number(anchor);
        switch ((anchor - 1) / 3) {
        case 0: // base line; QRect's top is the lowest row
            QVERIFY2(std::abs(capital.top() - 50) <= 1 && hanging.top() < 48, name.constData());
            break;
        case 1:
            QVERIFY2(capital.top() < 48 && capital.bottom() > 52, name.constData());
            break;
        case 2:
            QVERIFY2(capital.bottom() < 50 && capital.bottom() > 40, name.constData());
            break;
        default:
            QVERIFY2(hanging.top() >= 49 && capital.top() > 52, name.constData());
        }
    }
}

void DrawingTest::wordsOnSegments()
{
    for (const char mode : QByteArray("wha")) {
        for (const char *line :
             {"LINESTRING(10 50,100 50,190 50)", "LINESTRING(10 50,10 50,100 50,100 50,190 50)",
              "LINESTRING(190 50,100 50,10 50)"}) {
            Picture picture(200);
            drawn(picture,
                  *memoryLayer({{line, QByteArray("LABEL(t:\"II II II II\",s:16px,m:") + mode + ")"}}));
            const QImage image = picture.image();
            int letters = 0;
            for (int x = 1; x < 200; ++x)
                letters += qGray(image.pixel(x, 143)) < 160 && qGray(image.pixel(x - 1, 143)) >= 160;
            QVERIFY2(letters == 8, qPrintable(QStringLiteral("%1 %2: %3").arg(mode).arg(line).arg(letters)));
        }
    }
}

void DrawingTest::placesOnLinesAndInAreas()
{
    const std::vector<Point> line{{0.0, 0.0}, {0.0, 0.0}, {10.0, 0.0}, {10.0, 20.0}, {10.0, 20.0}};
    LineWalk walk(line);
    for (const auto &[along, place] : {std::pair{-5.0, Place{{0.0, 0.0}, 0.0}},
                                       {0.0, Place{{0.0, 0.0}, 0.0}},
                                       {4.0, Place{{4.0, 0.0}, 0.0}},
                                       {4.0, Place{{4.0, 0.0}, 0.0}},
                                       {15.0, Place{{10.0, 5.0}, M_PI / 2.0}},
                                       {30.0, Place{{10.0, 20.0}, M_PI / 2.0}},
                                       {99.0, Place{{10.0, 20.0}, M_PI / 2.0}},
                                       {100.0, Place{{10.0, 20.0}, M_PI / 2.0}}}) {
        const Place found = walk.placeAt(along);
        QVERIFY2(distance(found.point, place.point) < 1e-9 && std::abs(found.angle - place.angle) < 1e-9,
                 qPrintable(QString::number(along)));
        QVERIFY(distance(placeAt(line, along).point, place.point) < 1e-9);
    }
    QRandomGenerator random(5);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::vector<Point>> rings(2);
        std::vector<QPolygonF> polygons(2);
        for (int ring = 0; ring < 2; ++ring) {
            for (int at = 0; at < 12; ++at) {
                const double reach = (0.3 + 0.7 * random.generateDouble()) * (ring == 0 ? 60.0 : 15.0);
                rings[ring].push_back({reach * std::cos(at * M_PI / 6.0), reach * std::sin(at * M_PI / 6.0)});
                polygons[ring] += QPointF(rings[ring].back().x, rings[ring].back().y);
            }
        }
        const Point inside = pointInside(std::vector<std::span<const Point>>(rings.begin(), rings.end()));
        QVERIFY(polygons[0].containsPoint({inside.x, inside.y}, Qt::OddEvenFill)
                && !polygons[1].containsPoint({inside.x, inside.y}, Qt::OddEvenFill));
    }
    const std::vector<Point> flat{{3.0, 4.0}, {9.0, 4.0}, {3.0, 4.0}};
    QCOMPARE(pointInside(std::vector<std::span<const Point>>{flat}), (Point{3.0, 4.0}));
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

void DrawingTest::fieldsInStyles()
{
    const QByteArray style = "SYMBOL(id:ogr-sym-5,s:20px,c:{name},a:{absent})";
    const DataSet points =
        memoryLayer({{"POINT(20 50)", style}, {"POINT(80 50)", style}, {"POINT(50 80)", style}});
    const char *values[] = {"#FF0000", "#0000FF", "),PEN("};
    for (auto &feature : points->GetLayer(0)) {
        feature->SetField("name", values[feature->GetFID()]);
        QCOMPARE(points->GetLayer(0)->SetFeature(feature.get()), OGRERR_NONE);
    }
    Picture picture;
    QCOMPARE(drawn(picture, *points).drawn, 3);
    QCOMPARE(QColor(picture.image().pixel(20, 50)), QColor(Qt::red));
    QCOMPARE(QColor(picture.image().pixel(80, 50)), QColor(Qt::blue));
    QCOMPARE(QColor(picture.image().pixel(50, 20)), QColor(Qt::black));
}

void DrawingTest::portions()
{
    // A portion ends by what was drawn, however many features that are.
    QByteArray line = "LINESTRING(0 0";
    for (int at = 1; at < 1000; ++at)
        line += "," + QByteArray::number(at % 100) + " " + QByteArray::number(at % 70);
    const Feature heavy{line + ")", "PEN(w:1px)"};
    const Feature label{"LINESTRING(0 50,100 50)", "LABEL(m:s,t:\"a stretched text of many letters\")"};
    QList<Feature> features{heavy, heavy, heavy, heavy, label, label};
    for (int at = 0; at < 1000; ++at)
        features << Feature{"POINT(50 50)", "PEN()"};
    Picture picture;
    const DataSet dataset = memoryLayer(features);
    FeatureLayer layer(*dataset->GetLayer(0), picture.view, picture.painter);
    for (const auto &[vertices, count] :
         {std::pair{1LL, 1}, {2000LL, 3}, {1LL, 4}, {10000LL, 5}, {10000LL, 6}}) {
        QVERIFY(layer.drawNext(vertices));
        QCOMPARE(layer.count(), count);
    }
    QVERIFY(layer.drawNext(1000));
    QVERIFY(layer.count() > 20 && layer.count() < 200);
    FeatureMask mask(*dataset->GetLayer(0), picture.view);
    QVERIFY(mask.addNext(2000) && mask.addNext(1000) && !mask.addNext(1000000));
}

void DrawingTest::spreadOrder()
{
    QList<Feature> features;
    for (int at = 0; at < 100; ++at)
        features << Feature{"POINT(50 50)", ""};
    const DataSet dataset = memoryLayer(features);
    const Picture picture;
    FeatureReader reader(*dataset->GetLayer(0), picture.view, FeatureReader::Spread);
    QVector<int> read;
    while (reader.next())
        read += static_cast<int>(reader.feature()->GetFID());
    QVERIFY(std::is_sorted(read.begin(), read.begin() + 5) && read.at(4) - read.at(0) > 50);
    std::sort(read.begin(), read.end());
    for (int at = 0; at < 100; ++at) // each feature once
        QCOMPARE(read.value(at), at);
    QCOMPARE(read.size(), 100);
    QCOMPARE(reader.count(), 100LL);
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
    const DataSet thin =
        memoryLayer({{box(1, 1.1, 9, 1.9), ""}, {box(2, 3, 2.5, 4), ""}, {box(2.5, 3, 4, 4), ""}});
    FeatureMask mask(*thin->GetLayer(0), view);
    while (mask.addNext(1)) { }
    QVERIFY(mask.pixels());
    for (int column = 2; column < 8; ++column)
        QVERIFY(std::abs(mask.coverage(column, 2) - 204) < 20);
    QVERIFY(mask.coverage(2, 0) > 245); // two halves of one cell
    // The corner where an outline closes is as full as the others.
    Picture square;
    drawn(square, *memoryLayer({{box(20, 20, 80, 80), "PEN(w:12px,c:#000000)"}}));
    for (const QPoint corner : {QPoint(16, 16), QPoint(83, 16), QPoint(83, 83), QPoint(16, 83)})
        QVERIFY(square.ink(corner.x(), corner.y()) > 200);
    // Hatches of any size keep their distance: 80 lines of 2.5 px in 200 px.
    Picture hatched(200);
    drawn(hatched, *memoryLayer({{box(0, 0, 200, 200), "BRUSH(fc:#000000,s:2.5px,id:ogr-brush-3)"}}));
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
                                *memoryLayer({{longLine, "SYMBOL(id:ogr-sym-3,s:2px,ds:1px)"},
                                              {"LINESTRING(-1e300 50,1e300 50)", "SYMBOL(id:ogr-sym-3,ds:5px)"},
                                              {"LINESTRING(10 50,500010 50)", "LABEL(t:\"a\",m:a)"},
                                              {"POINT(50 50)", "LABEL(t:\"{name}\",w:1e9,s:1e9px)"},
                                              {"LINESTRING(0 0,9 9)", "LABEL(t:\"" + text + "\",m:s)"},
                                              {"POINT(20 20)", "SYMBOL(id:ogr-sym-5,s:10px,c:#000000)"}}));
    QCOMPARE(counts.drawn, 6);
    QCOMPARE(picture.surface.error(), std::string());
    QVERIFY(picture.ink(20, 20) > 200); // what comes after them is drawn
    QVERIFY(picture.ink(50, 50) > 0);
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

void DrawingTest::maskOfSeveralAreas()
{
    const View view{40, 4, {0.0, 1.0, 0.0, 4.0, 0.0, -1.0}, {}};
    const DataSet areas = memoryLayer({{box(0, 0, 1.5, 1), ""},
                                       {box(0, 0, 1.5, 1), ""}, // the same again
                                       {box(4, 0, 4.5, 1), ""},
                                       {box(4.5, 0, 5, 1), ""}, // the other half
                                       {box(8, 0, 8.75, 1), ""},
                                       {box(8.25, 0, 9, 1), ""}, // overlaps in the middle
                                       {box(12, 0, 12.5, 1), ""},
                                       {box(12, 0, 13, 0.5), ""}, // crosses it
                                       {"POLYGON((20 0,30 0,30 4,20 4,20 0),(22 1,28 1,28 3,22 3,22 1))", ""},
                                       {box(23, 1, 25, 3), ""}}); // in the hole
    FeatureMask mask(*areas->GetLayer(0), view);
    while (mask.addNext(1)) { }
    for (const auto &[column, cover] :
         {std::pair{0, 255}, {1, 127}, {2, 0}, {4, 255}, {8, 255}, {12, 191}, {13, 0}})
        QVERIFY2(std::abs(mask.coverage(column, 3) - cover) <= 1, qPrintable(QString::number(column)));
    for (const auto &[column, cover] : {std::pair{21, 255}, {22, 0}, {23, 255}, {24, 255}, {25, 0}, {28, 255}})
        QCOMPARE(int(mask.coverage(column, 1)), cover);

    // Beyond the size of any picture, either way.
    for (const bool wide : {true, false}) {
        const int side = 70000;
        const DataSet far = memoryLayer({{wide ? box(1, 1, side - 0.5, 3) : box(1, 0.5, 3, side - 1), ""}});
        const View large{wide ? side : 4, wide ? 4 : side, {0.0, 1.0, 0.0, wide ? 4.0 : side, 0.0, -1.0}, {}};
        FeatureMask huge(*far->GetLayer(0), large);
        while (huge.addNext(1)) { }
        QCOMPARE(huge.error(), std::string());
        for (int at = 1; at < side - 1; ++at) {
            if (huge.coverage(wide ? at : 2, wide ? 2 : at) != 255
                || huge.coverage(wide ? at : 0, wide ? 0 : at) != 0)
                QFAIL(qPrintable(QString::number(at)));
        }
        QVERIFY(std::abs(huge.coverage(wide ? side - 1 : 2, wide ? 2 : side - 1) - 127) <= 1);
    }
    FeatureMask empty(*areas->GetLayer(0), {0, 10, {0.0, 1.0, 0.0, 10.0, 0.0, -1.0}, {}});
    QVERIFY(!empty.error().empty() && !empty.addNext(1) && empty.coverage(0, 5) == 0 && !empty.pixels());
}

void DrawingTest::pageOfEverything()
{
    QList<Feature> features;
    for (int id = 0; id <= 8; ++id)
        features << Feature{filled("LINESTRING(20 %1,180 %1)", {570.0 - id * 18}),
                            "PEN(c:#204080,w:3px,id:\"ogr-pen-" + QByteArray::number(id) + "\")"};
    const char *joins[] = {"cap:b,j:m", "cap:r,j:r", "cap:p,j:b", "dp:6px"};
    for (int at = 0; at < 4; ++at)
        features << Feature{
            filled("LINESTRING(%1 390,%2 350,%3 390)", {20.0 + at * 45, 35.0 + at * 45, 50.0 + at * 45}),
            QByteArray("PEN(c:#80808080,w:8px,") + joins[at] + ");PEN(c:#000000,w:1px)"};
    for (int id = 0; id <= 7; ++id) {
        const double x = 220.0 + id % 4 * 90;
        const double y = 500.0 - id / 4 * 90;
        features << Feature{filled("POLYGON((%1 %2,%3 %2,%3 %4,%1 %4,%1 %2),(%5 %6,%7 %6,%7 %8,%5 %8,%5 %6))",
                                   {x, y, x + 70, y + 70, x + 25, y + 25, x + 40, y + 40}),
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
        const double y = 215.0 - at / 2 * 55;
        const double x = 20.0 + at % 2 * 290;
        features << Feature{
            filled("LINESTRING(%1 %2,%3 %4,%5 %2)", {x, y, x + 110, y + 25, x + 250}),
            QByteArray("PEN(c:#B0B8C0,w:1px);LABEL(t:\"Crête du {name}\",s:13px,c:#203040,o:#FFFFFF,p:1,m:")
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
