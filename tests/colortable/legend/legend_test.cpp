#include "colortable/legend/legend.h"

#include "colortable/colortablefile.h"
#include "colortable/roundticks.h"

#include <QImage>
#include <QLocale>
#include <QTest>

class LegendTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void ticks_data();
    void ticks();
    void texts_data();
    void texts();
    void pictures();
};

void LegendTest::ticks_data()
{
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("last");
    QTest::addColumn<QVector<double>>("expected");
    QTest::newRow("hundreds") << 0.0 << 1000.0 << QVector<double>{0, 200, 400, 600, 800, 1000};
    QTest::newRow("below 0") << -30.0 << 12.0 << QVector<double>{-30, -20, -10, 0, 10};
    QTest::newRow("fractions") << 0.0 << 0.1 << QVector<double>{0, 0.02, 0.04, 0.06, 0.08, 0.1};
    QTest::newRow("nothing between") << 5.0 << 5.0 << QVector<double>{};
}

void LegendTest::ticks()
{
    QFETCH(double, first);
    QFETCH(double, last);
    QFETCH(QVector<double>, expected);
    const QVector<double> ticks = roundTicks(first, last, 5);
    QCOMPARE(ticks.size(), expected.size());
    for (int at = 0; at < ticks.size(); ++at)
        QVERIFY(qAbs(ticks.at(at) - expected.at(at)) < 1e-9);
}

void LegendTest::texts_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<bool>("classes");
    QTest::addColumn<double>("maximum"); // of the DEM, from 0
    QTest::addColumn<QStringList>("expected");
    const QByteArray plain = "0 0 0 0\n500 1 1 1\n500 9 9 9\n1000 255 255 255\n";
    QTest::newRow("strip") << plain << false << 0.0 << QStringList{"1000", "900", "800", "700", "600", "500",
                                                                   "400",  "300", "200", "100", "0"};
    QTest::newRow("classes") << plain << true << 0.0 << QStringList{"500 – 1000", "0 – 500"};
    const QByteArray percent = "0% 0 0 0\n50% 1 1 1\n100% 255 255 255\n";
    QTest::newRow("percent of a DEM") << percent << true << 3000.0 << QStringList{"1500 – 3000", "0 – 1500"};
    QTest::newRow("percent") << percent << true << 0.0 << QStringList{"50 % – 100 %", "0 % – 50 %"};
    QTest::newRow("part of a table") << plain << true << 750.0 << QStringList{"500 – 750", "0 – 500"};
    QTest::newRow("an edge in a file") << QByteArray("0 0 0 0\n499.9 1 1 1\n500 9 9 9\n800 255 255 255\n")
                                       << true << 0.0 << QStringList{"500 – 800", "0 – 500"};
    QTest::newRow("decimals") << QByteArray("0% 0 0 0\n50% 1 1 1\n100% 2 2 2\n") << true << 33.0
                              << QStringList{"16.5 – 33", "0 – 16.5"};
    QTest::newRow("one entry") << QByteArray("7 0 0 0\n") << true << 0.0 << QStringList{"7"};
}

void LegendTest::texts()
{
    QFETCH(QByteArray, table);
    QFETCH(bool, classes);
    QFETCH(double, maximum);
    Legend legend;
    legend.entries = parseColorTable(table).entries;
    legend.classes = classes;
    legend.maximum = maximum;
    QTEST(legendTexts(legend), "expected");
}

void LegendTest::pictures()
{
    Legend legend;
    legend.entries = parseColorTable("0 0 0 255\n100 0 255 0\n100 255 0 0\n200 255 0 0\nnv 1 2 3\n").entries;
    legend.title = QStringLiteral("Élévation");
    legend.noDataText = QStringLiteral("Sans donnée");
    const QImage strip = QImage::fromData(legendPicture(legend, LegendFormat::Png), "PNG");
    // Down the middle of the strip: red for the upper half, then green to blue, then the colour of no data.
    const int middle = 2 * (8 + 13);
    QVector<QRgb> column;
    for (int y = 0; y < strip.height(); ++y) {
        const QRgb color = strip.pixel(middle, y);
        if (qRed(color) + qGreen(color) + qBlue(color) < 600 && (column.isEmpty() || column.last() != color))
            column += color;
    }
    QVERIFY(column.contains(qRgb(255, 0, 0)) && column.contains(qRgb(1, 2, 3)));
    QVERIFY(column.indexOf(qRgb(255, 0, 0)) < column.indexOf(qRgb(1, 2, 3)));
    QVERIFY(column.size() > 100); // a ramp
    legend.classes = true;
    QVERIFY(QImage::fromData(legendPicture(legend, LegendFormat::Png), "PNG").height() < strip.height());
    QVERIFY(legendPicture(legend, LegendFormat::Svg).contains("<svg"));
    QVERIFY(legendPicture(legend, LegendFormat::Pdf).startsWith("%PDF"));
    legend.entries.clear();
    QVERIFY(legendPicture(legend, LegendFormat::Png).isEmpty());
}

QTEST_GUILESS_MAIN(LegendTest)
#include "legend_test.moc"
