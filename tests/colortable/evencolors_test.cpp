#include "colortable/colorvision.h"
#include "colortable/oklab.h"

#include <QTest>

#include <cmath>

class EvenColorsTest : public QObject
{
    Q_OBJECT

private slots:
    void oklab();
    void evenSegments_data();
    void evenSegments();
    void vision();
};

/// The published values of the primary colours.
void EvenColorsTest::oklab()
{
    const struct
    {
        QColor color;
        OkLab lab;
    } rows[] = {{Qt::white, {1.0, 0.0, 0.0}},
                {Qt::black, {0.0, 0.0, 0.0}},
                {Qt::red, {0.62796, 0.22486, 0.12585}},
                {Qt::green, {0.86644, -0.23389, 0.17950}},
                {Qt::blue, {0.45201, -0.03246, -0.31153}}};
    for (const auto &row : rows) {
        const OkLab lab = toOkLab(row.color);
        QVERIFY(std::abs(lab.lightness - row.lab.lightness) < 1e-4 && std::abs(lab.a - row.lab.a) < 1e-4
                && std::abs(lab.b - row.lab.b) < 1e-4);
    }
    for (int level = 0; level < 256; level += 5) {
        const QColor color(level, 255 - level, (level * 7) % 256, level);
        QCOMPARE(fromOkLab(toOkLab(color), color.alpha()), color);
    }
}

void EvenColorsTest::evenSegments_data()
{
    QTest::addColumn<QColor>("from");
    QTest::addColumn<QColor>("to");
    QTest::newRow("blue to yellow") << QColor(Qt::blue) << QColor(Qt::yellow);
    QTest::newRow("black to white") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("red to cyan") << QColor(Qt::red) << QColor(Qt::cyan);
    QTest::newRow("close") << QColor(200, 180, 90) << QColor(190, 170, 100);
    QTest::newRow("alpha") << QColor(0, 0, 255, 0) << QColor(255, 255, 0, 255);
}

/// The tool's straight lines between the entries follow the even colours.
void EvenColorsTest::evenSegments()
{
    QFETCH(QColor, from);
    QFETCH(QColor, to);
    const QuvoColorDef first{0.0, from};
    const QuvoColorDef last{4000.0, to};
    const QList<QuvoColorDef> entries =
        QList<QuvoColorDef>{first} + evenEntries(first, last, 0.1) + QList{last};
    QVERIFY2(entries.size() <= 28, qPrintable(QString::number(entries.size())));
    for (int value = 0; value <= 4000; ++value) {
        const QColor straight = colorAt(entries, value);
        const QColor even = evenMixture(from, to, value / 4000.0);
        for (const int difference :
             {straight.red() - even.red(), straight.green() - even.green(), straight.blue() - even.blue()})
            QVERIFY2(std::abs(difference) <= 2, qPrintable(QString::number(value)));
    }
    QVERIFY(evenEntries({0.0, from}, {0.1, to}, 0.1).isEmpty()); // no value of a file lies between
    for (const QuvoColorDef &entry : evenEntries({0.0, from}, {1.0, to}, 0.1))
        QCOMPARE(QString::number(entry.value, 'f', 1).toDouble(), entry.value);
}

void EvenColorsTest::vision()
{
    const QColor red(200, 60, 40, 77);
    QCOMPARE(seenWith(red, ColorVision::Normal), red);
    for (const ColorVision vision :
         {ColorVision::Protanopia, ColorVision::Deuteranopia, ColorVision::Tritanopia}) {
        QCOMPARE(seenWith(red, vision).alpha(), 77);
        for (const QColor &grey : {QColor(Qt::black), QColor(128, 128, 128), QColor(Qt::white)}) {
            const QColor seen = seenWith(grey, vision); // greys stay
            QVERIFY(std::abs(seen.red() - grey.red()) <= 1 && std::abs(seen.green() - grey.green()) <= 1
                    && std::abs(seen.blue() - grey.blue()) <= 1);
        }
    }
    // Red and green differ for a normal eye in hue, for these two hardly.
    const auto distance = [](ColorVision vision) {
        const OkLab one = toOkLab(seenWith({200, 80, 40}, vision));
        const OkLab other = toOkLab(seenWith({110, 130, 30}, vision));
        return std::hypot(one.a - other.a, one.b - other.b);
    };
    QVERIFY(distance(ColorVision::Deuteranopia) < 0.4 * distance(ColorVision::Normal));
    QVERIFY(distance(ColorVision::Protanopia) < 0.4 * distance(ColorVision::Normal));
}

QTEST_GUILESS_MAIN(EvenColorsTest)
#include "evencolors_test.moc"
