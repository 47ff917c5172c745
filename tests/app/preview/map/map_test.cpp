#include "app/preview/map/mapfile.h"
#include "app/preview/map/mappicture.h"
#include "app/preview/map/productlook.h"
#include "app/preview/map/relief.h"
#include "app/preview/map/scalebar.h"
#include "panels/options/maprampcolors.h"

#include <QPainter>
#include <QTest>

#include <cmath>

class MapTest : public QObject
{
    Q_OBJECT

private slots:
    void relief();
    void ramps();
    void compassPoints_data();
    void compassPoints();
    void layers();
    void scaleBars_data();
    void scaleBars();
    void legends();
    void zones();
    void classes();
    void sightNumbers();
    void files();
};

namespace
{

const float none = std::nanf("");
const QLocale english(QLocale::English);

QImage plain(const QSize &size, const QColor &color)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(color);
    return picture;
}

QStringList textsOf(const MapLegend &legend)
{
    QStringList texts;
    const auto widthOf = [](const QString &text, bool) { return 6.0 * static_cast<double>(text.size()); };
    for (const auto &text : legendDrawing(legend, 400.0, widthOf, english).texts)
        texts += text.text;
    return texts;
}

} // namespace

/// A ridge from north to south: its western side is lit, its eastern side is not.
void MapTest::relief()
{
    const ElevationGrid ridge{5, 3, {0, 10, 20, 10, 0, 0, 10, 20, 10, 0, 0, 10, none, 10, 0}};
    const QImage picture = softRelief(ridge, {10.0, 10.0});
    const int top = qGray(picture.pixel(2, 0));
    QVERIFY(qGray(picture.pixel(1, 0)) > top && top > qGray(picture.pixel(3, 0)));
    QVERIFY(qGray(picture.pixel(3, 0)) > 90); // no black: colours over it stay readable
    QCOMPARE(qAlpha(picture.pixel(2, 2)), 0);
    const ElevationGrid fall{1, 3, {20, 10, 0}}; // falls to the south
    const ElevationGrid rise{1, 3, {0, 10, 20}};
    QVERIFY(qGray(softRelief(fall, {10, 10}).pixel(0, 1)) < qGray(softRelief(rise, {10, 10}).pixel(0, 1)));

    QImage product = plain({5, 3}, QColor(200, 100, 0));
    product.setPixelColor(0, 0, Qt::transparent);
    const QImage over = overRelief(product, picture);
    QCOMPARE(qAlpha(over.pixel(0, 0)), 0);
    QCOMPARE(over.pixelColor(2, 2), QColor(200, 100, 0)); // no ground under it
    QVERIFY(std::abs(qRed(over.pixel(1, 1)) - 200 * qGray(picture.pixel(1, 1)) / 255) <= 1);
    QCOMPARE(qAlpha(withoutVoids(product, picture).pixel(2, 2)), 0);
    QCOMPARE(qAlpha(withoutVoids(product, picture).pixel(2, 1)), 255);
}

void MapTest::ramps()
{
    ElevationGrid values{10, 10, {}};
    for (int at = 0; at < 100; ++at)
        values.cells += static_cast<float>(at);
    values.cells[50] = none;
    QCOMPARE(rampOver(values, RampKind::Steepness).low, 0.0); // steepness begins at level ground
    QCOMPARE(rampOver(values, RampKind::Steepness).high, 97.0);
    const QImage picture = rampPicture(values, rampOver(values, RampKind::Variation));
    QCOMPARE(qAlpha(picture.pixel(0, 5)), 0);
    QVERIFY(qGray(picture.pixel(0, 0)) > qGray(picture.pixel(9, 9)));
    for (float &cell : values.cells)
        cell -= 90.0f;
    const ValueRamp position = rampOver(values, RampKind::Position);
    QCOMPARE(position.low, -position.high);
    QCOMPARE(QColor(position.color(0.0)), QColor(0xfa, 0xfa, 0xfa));
    const ValueRamp circle = rampOver(values, RampKind::Direction);
    QCOMPARE(circle.color(0.0), circle.color(360.0));
    const ValueRamp turned = rampOver(values, RampKind::Direction, true);
    QCOMPARE(turned.color(90.0), circle.color(0.0)); // both are the north
    QCOMPARE(turned.color(180.0), circle.color(270.0));
    QCOMPARE(heightSteps(0.0), (QVector<double>{0, 2, 5, 10}));
    QCOMPARE(heightSteps(100.5), (QVector<double>{0, 2, 5, 10, 20, 50, 100, 200}));
    QCOMPARE(heightSteps(200.0).last(), 200.0);
    QCOMPARE(heightSteps(8000.0).last(), 1000.0);
    // Low masts have colours of their own beside mountains, and the ground that is seen has one.
    const ElevationGrid heights{4, 1, {0.0f, 0.1f, 5.0f, 180.0f}};
    ValueRamp masts = rampOver(heights, RampKind::Height);
    masts.steps = heightSteps(200.0);
    QCOMPARE(masts.placeOf(5.0), 2.0 / 7.0);
    QCOMPARE(masts.placeOf(35.0), 4.5 / 7.0);
    QCOMPARE(masts.color(900.0), masts.color(200.0));
    const QImage mastPicture = rampPicture(heights, masts);
    QCOMPARE(mastPicture.pixel(0, 0), seenGroundColor);
    QVERIFY(qGreen(mastPicture.pixel(1, 0)) - qGreen(mastPicture.pixel(2, 0)) > 20);
    QVERIFY(mastPicture.pixel(1, 0) != seenGroundColor);
    const ElevationGrid level{2, 1, {7, 7}};
    QVERIFY(rampOver(level, RampKind::Variation).high > rampOver(level, RampKind::Variation).low);
}

void MapTest::compassPoints_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<bool>("trigonometric");
    QTest::addColumn<QString>("text");
    QTest::newRow("south-west") << 214.0 << false << "Orientation 214° SO";
    QTest::newRow("almost north") << 355.0 << false << "Orientation 355° N";
    QTest::newRow("from the east") << 0.0 << true << "Orientation 0° E";
    QTest::newRow("counter-clockwise") << 135.0 << true << "Orientation 135° NO";
    QTest::newRow("void") << static_cast<double>(none) << false << "Orientation sans donnée";
}

void MapTest::compassPoints()
{
    QFETCH(double, angle);
    QFETCH(bool, trigonometric);
    AspectOptions options;
    options.trigonometric = trigonometric;
    QTEST(valueText(lookOf(options, "m"), angle, QLocale(QLocale::French)), "text");
}

/// What is seen in the pixels: opacity, swipe, voids, and layers that do not reach as far as the view.
void MapTest::layers()
{
    const QSize size(40, 40);
    const QRectF view(0, 0, 40, 40);
    MapPicture map;
    map.ground = {{plain(size, QColor(200, 200, 200)), view}};
    QImage product = plain({20, 40}, Qt::red);
    QPainter(&product).fillRect(0, 0, 20, 10, Qt::green);
    for (int y = 30; y < 40; ++y) {
        for (int x = 0; x < 20; ++x)
            product.setPixelColor(x, y, Qt::transparent);
    }
    map.product = {{product, QRectF(20, 0, 20, 40)}};
    QImage picture = map.drawn(view, size);
    QCOMPARE(picture.pixelColor(5, 20), QColor(200, 200, 200)); // the product does not reach there
    QCOMPARE(picture.pixelColor(30, 20), QColor(Qt::red));
    const auto isHatched = [](const QImage &pixels) {
        int paper = 0;
        for (int x = 20; x < 40; ++x)
            paper += pixels.pixelColor(x, 35) == QColor(Qt::white) ? 1 : 0;
        return paper > 4 && paper < 20;
    };
    QVERIFY(isHatched(picture));
    map.opacity = 0.5;
    const QColor half = map.drawn(view, size).pixelColor(30, 20);
    QVERIFY(std::abs(half.red() - 228) <= 2 && std::abs(half.green() - 100) <= 2);
    map.opacity = 1.0;
    map.swipe = 0.75;
    picture = map.drawn(view, size);
    QCOMPARE(picture.pixelColor(28, 20), QColor(200, 200, 200));
    QCOMPARE(picture.pixelColor(32, 20), QColor(Qt::red));
    map.swipe.reset();
    map.transparent = true;
    QCOMPARE(map.drawn(view, size).pixelColor(30, 35), QColor(200, 200, 200)); // lines have no voids
    // A part of the view, enlarged, lies where it belongs.
    QCOMPARE(map.drawn({30, 5, 10, 10}, size).pixelColor(20, 10), QColor(Qt::green));
    QCOMPARE(map.drawn({30, 5, 10, 10}, size).pixelColor(20, 30), QColor(Qt::red));

    MapPicture::add(map.ground, {plain({8, 8}, Qt::blue), QRectF(10, 10, 8, 8)});
    QCOMPARE(map.ground.size(), 2);
    QCOMPARE(map.groundCanvas(view, size, 1.0).pixelColor(12, 12), QColor(Qt::blue));
    MapPicture::add(map.ground, {plain({4, 4}, Qt::cyan), view}); // hides both
    QCOMPARE(map.ground.size(), 1);
}

void MapTest::scaleBars_data()
{
    QTest::addColumn<double>("metresPerPixel");
    QTest::addColumn<bool>("known");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("length");
    QTest::newRow("metres") << 3.0 << true << "200 m" << 200.0 / 3.0;
    QTest::newRow("kilometres") << 90.0 << true << "5 km" << 5000.0 / 90.0;
    QTest::newRow("exactly fits") << 10.0 << true << "1 km" << 100.0;
    QTest::newRow("units") << 30.0 << false << "2,000" << 2000.0 / 30.0;
    QTest::newRow("below a metre") << 0.004 << true << "0.2 m" << 50.0;
    QTest::newRow("no length") << 0.0 << true << "" << 0.0;
}

void MapTest::scaleBars()
{
    QFETCH(double, metresPerPixel);
    QFETCH(bool, known);
    const ScaleBar bar = scaleBar(metresPerPixel, 100.0, known, english);
    QTEST(bar.text, "text");
    QTEST(bar.length, "length");
}

void MapTest::legends()
{
    QStringList ticks;
    for (const auto &tick : roundStripTicks(0.0, 47.3, 132.0, english))
        ticks += tick.text;
    QCOMPARE(ticks, (QStringList{"0", "10", "20", "30", "40"}));
    ticks.clear();
    for (const auto &tick : roundStripTicks(-0.4, 0.4, 132.0, english))
        ticks += tick.text;
    QCOMPARE(ticks, (QStringList{"-0.4", "-0.2", "0.0", "0.2", "0.4"}));

    LegendFacts facts;
    facts.title = "Contours";
    facts.options = ContourOptions{.interval = 100.0, .offset = 30.0};
    facts.look.form = ProductForm::Lines;
    facts.extremes = {true, true, 95.0, 405.0};
    facts.elevationUnit = "m";
    const ElevationGrid sample{4, 1, {95, 100, 405, none}};
    QCOMPARE(histogramOf(sample, {}, 2).shares, (QVector<double>{1.0, 0.5}));
    facts.elevations = histogramOf(sample, facts.extremes, 2);
    QCOMPARE(histogramOf(sample, {true, true, 0.0, 1000.0}, 4).shares, (QVector<double>{1.0, 0.5, 0.0, 0.0}));
    MapLegend legend = legendOf(facts, english);
    QCOMPARE(legend.rows.first().text, QString("Tous les 100 m"));
    QCOMPARE(legend.marks.size(), 3); // 130, 230 and 330 m
    QCOMPARE(legend.marks.first().elevation, 130.0);
    QVERIFY(textsOf(legend).contains("Altitudes (m)") && textsOf(legend).contains("405"));
    facts.options = ContourOptions{.interval = 100.0, .fixedLevels = "120 200"};
    QCOMPARE(legendOf(facts, english).marks.size(), 5); // 200 m once
    facts.options = ContourOptions{.interval = 100.0, .indexEvery = 5};
    QCOMPARE(legendOf(facts, english).rows.at(1).text, QString("Tous les 500 m"));
    facts.options = ContourOptions{.interval = 100.0, .polygons = true, .styled = true};
    legend = legendOf(facts, english);
    QVERIFY(legend.strip.colors.first() != legend.strip.colors.last() && legend.strip.low == 95.0);

    facts.options = ColorReliefOptions();
    facts.look = {};
    facts.product.picture = plain({2, 2}, Qt::red);
    facts.table = {{0.0, Qt::blue, true}, {100.0, Qt::red, true}};
    legend = legendOf(facts, english);
    QCOMPARE(legend.strip.low, 95.0); // percentages stand for the DEM's own elevations
    QCOMPARE(legend.strip.high, 405.0);
    QVERIFY(QColor(legend.strip.colors.first()).blue() > 240 && QColor(legend.strip.colors.last()).red() > 240);
    facts.extremes.known = false;
    QVERIFY(legendOf(facts, english).strip.colors.isEmpty()); // an elevation that nobody knows is not shown
}

void MapTest::zones()
{
    IntervisibilityOptions options;
    LegendFacts facts;
    facts.options = options;
    facts.product.picture = plain({10, 10}, QColor(options.hiddenColor));
    QPainter(&facts.product.picture).fillRect(0, 0, 10, 2, QColor(options.visibleColor));
    facts.cellArea = [](int row) { return row < 2 ? 2e5 : 1e5; }; // cells of a DEM in degrees differ by row
    const MapLegend legend = legendOf(facts, english);
    QCOMPARE(legend.rows.size(), 2); // no cell is without data
    QCOMPARE(legend.rows.at(0).detail, QString("4.0 km² (20.0 %)"));
    QCOMPARE(legend.rows.at(1).detail, QString("8.0 km² (80.0 %)"));
    facts.product.picture.setPixelColor(9, 9, QColor(options.noDataColor));
    QVERIFY(legendOf(facts, english).rows.at(2).hatched && !legendOf(facts, english).rows.at(1).hatched);
    facts.product.picture.setPixelColor(9, 9, QColor(options.hiddenColor));
    facts.cellArea = {};
    QCOMPARE(legendOf(facts, english).rows.at(0).detail, QString("20.0 %"));
    QCOMPARE(shareText(1234.0, 0.5, english), QString("1,234 m² (50.0 %)"));
}

/// A product in classes has their colours, without mixtures, and a box for each in the legend.
void MapTest::classes()
{
    const SlopeOptions options{.classes = "avalanche"};
    LegendFacts facts;
    facts.options = options;
    facts.look = lookOf(options, {});
    const ElevationGrid slopes{4, 1, {26.999998f, 27.0f, 80.0f, none}};
    facts.product.ramp = rampOf(facts.look, slopes);
    facts.product.picture = rampPicture(slopes, facts.product.ramp);
    const auto color = [&](int column) { return facts.product.picture.pixel(column, 0); };
    const auto &table = facts.look.classes.classes;
    QCOMPARE(color(0), table.at(0).color);
    QCOMPARE(color(1), table.at(1).color);
    QCOMPARE(color(2), table.last().color);
    QCOMPARE(qAlpha(color(3)), 0);
    const MapLegend legend = legendOf(facts, english);
    QVERIFY(legend.strip.colors.isEmpty());
    QCOMPARE(legend.rows.size(), table.size() + 1);
    QVERIFY(legend.rows.last().hatched);
}

void MapTest::sightNumbers()
{
    const QLocale french(QLocale::French);
    const ProductLook count = lookOf(IntervisibilityOptions{.result = "count"}, "m");
    const ProductLook height = lookOf(IntervisibilityOptions{.result = "height"}, "m");
    QCOMPARE(valueText(count, 1.0, french), QString("1 observateur"));
    QCOMPARE(valueText(count, 3.0, french), QString("3 observateurs"));
    QCOMPARE(valueText(height, 12.5, french), QString("visible à partir de 12.5 m au-dessus du sol"));
    QCOMPARE(valueText(height, static_cast<double>(none), french), QString("visible à aucune hauteur"));
    QCOMPARE(valueText(lookOf(IntervisibilityOptions(), "m"), 3.0, french),
             QString()); // colours are no numbers

    // Few counts are listed with their areas, up to the one that a single cell has.
    LegendFacts facts;
    facts.options = IntervisibilityOptions{.result = "count"};
    facts.look = count;
    facts.product.values = {10, 10, QVector<float>(100, 0.0f)};
    facts.product.values.cells[99] = 3.0f;
    facts.product.values.cells[98] = none;
    facts.product.ramp = rampOf(count, facts.product.values);
    facts.product.picture = rampPicture(facts.product.values, facts.product.ramp);
    facts.cellArea = [](int) { return 1e6; };
    MapLegend legend = legendOf(facts, english);
    QCOMPARE(legend.title, QString("Observateurs"));
    QCOMPARE(legend.rows.size(), 3); // 3, 0 and without data
    QCOMPARE(legend.rows.at(0).text + ' ' + legend.rows.at(0).detail,
             QString("3 observateurs 1.0 km² (1.0 %)"));
    QVERIFY(legend.strip.colors.isEmpty() && legend.rows.at(2).hatched);
    // Many counts, and heights, have a strip with whole texts.
    facts.product.ramp.high = 40.0;
    QCOMPARE(legendOf(facts, english).strip.ticks.at(1).text, QString("10 observateurs"));
    facts.look = height;
    facts.product.ramp = rampOf(height, facts.product.values);
    legend = legendOf(facts, english);
    QCOMPARE(legend.strip.ticks.at(2).text, QString("5 m"));
    QCOMPARE(legend.strip.ticks.at(2).value, 2.0 / 3.0); // of 0, 2, 5 and 10
    QCOMPARE(legend.rows.first().text, QString("Sol visible"));
    QCOMPARE(legend.rows.last().text, QString("Jamais visible"));
    facts.product.values.cells.fill(none);
    facts.product.ramp = rampOf(height, facts.product.values);
    QCOMPARE(legendOf(facts, english).strip.ticks.size(), 4);

    const QList<QuvoColorDef> table{
        {QuvoColorDef::noDataValue, Qt::green, false}, {0.0, QColor(0, 0, 0, 9), true}, {100.0, Qt::red, true}};
    ValueRamp ramp{RampKind::Count, 0.0, 4.0};
    ramp.stops = evenColors(table);
    QCOMPARE(QColor::fromRgba(ramp.color(0.0)), QColor(0, 0, 0));
    QVERIFY(std::abs(qRed(ramp.color(2.0)) - 128) <= 1);
    QCOMPARE(QColor(ramp.color(9.0)), QColor(Qt::red));
}

void MapTest::files()
{
    MapPage page{.picture = plain({100, 50}, Qt::red), .size = {200.0, 100.0}};
    page.legend.size = {60.0, 40.0};
    page.legend.texts = {{{0.0, 12.0}, QString::fromUtf8("Légende <&>")}};
    page.legend.boxes = {{{0.0, 20.0, 20.0, 12.0}, Qt::blue}};
    const QImage picture = QImage::fromData(mapFile(page, MapFileFormat::Png), "PNG");
    QCOMPARE(picture.size(), QSize(2 * (200 + 60 + 36), 2 * (100 + 12 + 24)));
    QCOMPARE(picture.pixelColor(2 * (12 + 100), 2 * (12 + 50)), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(2 * (24 + 200 + 10), 2 * (12 + 26)), QColor(Qt::blue));
    QVERIFY(mapFile(page, MapFileFormat::Svg).contains("<svg"));
    QVERIFY(mapFile(page, MapFileFormat::Pdf).startsWith("%PDF"));
    QVERIFY(mapFile({}, MapFileFormat::Png).isEmpty());
}

QTEST_MAIN(MapTest)
#include "map_test.moc"
