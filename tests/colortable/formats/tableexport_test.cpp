#include "colortable/formats/tableexport.h"

#include "colortable/colortablefile.h"
#include "colortable/toolcolors.h"

#include <QTest>

/// A table that is written and read again paints the same picture.
class TableExportTest : public QObject
{
    Q_OBJECT

private slots:
    void samePicture_data();
    void samePicture();
    void grammar();
    void losses();
};

namespace
{

constexpr TableFormat formats[] = {TableFormat::GmtCpt, TableFormat::QgisText, TableFormat::QgisStyle,
                                   TableFormat::Sld, TableFormat::GrassRules};

bool isNear(QRgb one, QRgb other)
{
    const auto near = [](int first, int second) { return std::abs(first - second) <= 1; };
    return near(qRed(one), qRed(other)) && near(qGreen(one), qGreen(other)) && near(qBlue(one), qBlue(other))
        && near(qAlpha(one), qAlpha(other));
}

} // namespace

void TableExportTest::samePicture_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("elevations") << QByteArray("-12.345678901 0 0 0\n0.1 10 200 30\n8848.86 255 255 255\n");
    QTest::newRow("edges") << QByteArray(
        "0 1 1 1\n10 50 50 50\n10 90 0 0\n10 0 0 90\n33.3 0 0 0\n33.3 9 9 9\n");
    QTest::newRow("no-data and alpha") << QByteArray("nv 1 2 3 4\n0 1 2 3 40\n50 200 100 0 255\n90 7 7 7 0\n");
    QTest::newRow("percentages") << QByteArray("nv 1 2 3\n10% 1 2 3\n50% 200 100 0\n50% 0 0 9\n90% 7 7 7\n");
    QTest::newRow("one entry") << QByteArray("5 1 2 3\n");
}

void TableExportTest::samePicture()
{
    QFETCH(QByteArray, table);
    const QList<QuvoColorDef> entries = parseColorTable(table).entries;
    const ToolColors wanted(entries, 0.0, 100.0);
    for (const TableFormat format : formats) {
        const QByteArray text = exportedTable(entries, format);
        const ColorTableReading reading = parseColorTable(text);
        QVERIFY2(reading.problem.isEmpty() && !reading.invalidValues && !reading.format.isEmpty(),
                 text.constData());
        const ToolColors colors(reading.entries, 0.0, 100.0);
        const bool losesAlpha = format == TableFormat::GmtCpt || format == TableFormat::GrassRules;
        const QRgb opaque = losesAlpha ? 0xff000000U : 0U;
        for (int step = -300; step < 1300; ++step) {
            const auto elevation = static_cast<double>(static_cast<float>(step / 10.0));
            QVERIFY2(isNear(colors.color(elevation), wanted.color(elevation) | opaque),
                     (text + QByteArray::number(elevation)).constData());
        }
        const bool losesNoData = format == TableFormat::QgisText || format == TableFormat::Sld;
        const QuvoColorDef *noData = noDataEntry(reading.entries);
        QCOMPARE(noData != nullptr, noDataEntry(entries) && !losesNoData);
        QVERIFY(!noData || noData->color.rgba() == (noDataEntry(entries)->color.rgba() | opaque));
    }
}

void TableExportTest::grammar()
{
    const QList<QuvoColorDef> entries = parseColorTable("nv 9 8 7 6\n-5 0 0 0\n0 0 0 10\n0 1 2 3 51\n").entries;
    QCOMPARE(exportedTable(entries, TableFormat::GmtCpt),
             QByteArray("# COLOR_MODEL = RGB\n-5\t0/0/0\t0\t0/0/10\n0\t1/2/3\t1.0000000031710769e-30\t1/2/3\n"
                        "B\t0/0/0\nF\t1/2/3\nN\t9/8/7\n"));
    QCOMPARE(exportedTable(entries, TableFormat::GrassRules),
             QByteArray("-5 0:0:0\n0 0:0:10\n0 1:2:3\nnv 9:8:7\nend\n"));
    QCOMPARE(exportedTable(entries, TableFormat::QgisText),
             QByteArray("# QGIS Generated Color Map Export File\nINTERPOLATION:INTERPOLATED\n-5,0,0,0,255,-5\n"
                        "-1.0000000031710769e-30,0,0,10,255,-1.0000000031710769e-30\n0,1,2,3,51,0\n"));
    const QByteArray style = exportedTable(entries, TableFormat::QgisStyle);
    QVERIFY2(style.contains("<item value=\"0\" color=\"#010203\" alpha=\"51\" label=\"0\"/>")
                 && style.contains("nodataColor=\"9,8,7,6\""),
             style.constData());
    const QByteArray sld = exportedTable(entries, TableFormat::Sld);
    QVERIFY2(sld.contains("<ColorMapEntry color=\"#010203\" quantity=\"0\" opacity=\"0.2\"/>"),
             sld.constData());
    QVERIFY(exportedTable({}, TableFormat::Sld).isEmpty());
}

void TableExportTest::losses()
{
    // One digit a format, in the order of the enumeration: how many sentences.
    const auto counts = [](const char *table) {
        QString text;
        for (const TableFormat format : formats)
            text += QString::number(exportLosses(parseColorTable(table).entries, format).size());
        return text;
    };
    QCOMPARE(counts("0 1 2 3\n5 1 2 3\n"), QString("00000"));
    QCOMPARE(counts("0 1 2 3 9\n"), QString("10001"));
    QCOMPARE(counts("nv 0 0 0 0\n0 1 2 3\n"), QString("01011"));
    QCOMPARE(counts("0% 1 2 3\n"), QString("01110"));
    QCOMPARE(counts("0% 1 2 3\n500 1 2 3\n"), QString("12220"));
    QCOMPARE(counts(""), QString("00000"));
}

QTEST_APPLESS_MAIN(TableExportTest)
#include "tableexport_test.moc"
