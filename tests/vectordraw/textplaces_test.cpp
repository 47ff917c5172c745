#include "vectordraw/textplaces.h"

#include <QTest>

using namespace vectordraw;

/// Where heights stand on contour lines.
class TextPlacesTest : public QObject
{
    Q_OBJECT

private slots:
    void places();
};

void TextPlacesTest::places()
{
    const Rect all{-1e6, -1e6, 1e6, 1e6};
    QVERIFY(placesOnLine({}, 20.0, all).empty());
    QVERIFY(placesOnLine({{0, 0}, {0, 0}}, 0.0, all).empty());

    const auto shortLine = placesOnLine({{0, 0}, {-100, 0}}, 20.0, all);
    QCOMPARE(shortLine.size(), std::size_t(1));
    QCOMPARE(shortLine.front().middle.x, -50.0);
    QVERIFY(std::abs(std::abs(shortLine.front().angle) - 3.14159265) < 1e-6); // to the left: upside down

    std::vector<Point> zigzag; // with one straight piece of 60 pixels behind its middle
    for (int at = 0; at < 20; ++at)
        zigzag.push_back({at * 8.0, at % 2 == 0 ? 0.0 : 8.0});
    zigzag.push_back({152.0 + 60.0, 8.0});
    for (int at = 1; at < 12; ++at)
        zigzag.push_back({212.0 + at * 8.0, at % 2 == 0 ? 8.0 : 0.0});
    const auto straight = placesOnLine(zigzag, 40.0, all);
    QCOMPARE(straight.size(), std::size_t(1));
    QVERIFY2(std::abs(straight.front().middle.y - 8.0) < 1e-9 && std::abs(straight.front().angle) < 0.1,
             qPrintable(QString::number(straight.front().middle.x)));

    const std::vector<Point> longLine{{0, 5}, {4000, 5}};
    QCOMPARE(placesOnLine(longLine, 20.0, all).size(), std::size_t(12)); // 4000 / (16 · 20)
    const auto seen = placesOnLine(longLine, 20.0, {1000, 0, 1400, 10});
    QVERIFY(!seen.empty() && seen.size() < 4);
    for (const TextPlace &place : seen)
        QVERIFY(place.middle.x > 970 && place.middle.x < 1430);
}

QTEST_APPLESS_MAIN(TextPlacesTest)
#include "textplaces_test.moc"
