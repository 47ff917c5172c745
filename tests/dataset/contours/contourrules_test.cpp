#include "dataset/contours/areaclasses.h"
#include "dataset/contours/contourstyles.h"
#include "dataset/contours/indexlevels.h"
#include "dataset/contours/qgisstyle.h"

#include <QTest>
#include <QXmlStreamReader>

Q_DECLARE_METATYPE(IndexLevels)

namespace
{

constexpr double endOfFixedLevels = 4294967295.0;

} // namespace

/// The rules of contours for maps that need no files.
class ContourRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void indexLevels_data();
    void indexLevels();
    void levelTexts();
    void trueBounds();
    void stylesFitAShapefile();
    void qgisStyleIsWellFormed();
};

void ContourRulesTest::indexLevels_data()
{
    QTest::addColumn<IndexLevels>("levels");
    QTest::addColumn<double>("level");
    QTest::addColumn<bool>("isIndex");
    const auto row = [](const char *name, IndexLevels levels, double level, bool isIndex) {
        QTest::newRow(name) << levels << level << isIndex;
    };
    row("fifth", {10.0, 0.0, 5}, 50.0, true);
    row("fourth", {10.0, 0.0, 5}, 40.0, false);
    row("zero", {10.0, 0.0, 5}, 0.0, true);
    row("below zero", {10.0, 0.0, 5}, -50.0, true);
    row("below zero, no index", {10.0, 0.0, 5}, -40.0, false);
    row("offset", {10.0, 3.0, 5}, 53.0, true);
    row("offset, zero", {10.0, 3.0, 5}, 0.0, false);
    row("offset, negative", {10.0, 3.0, 4}, -37.0, true);
    row("single level beside the grid", {10.0, 0.0, 5}, 51.0, false);
    row("single level close to the grid", {10.0, 0.0, 5}, 50.001, false);
    row("rounded by a file", {10.0, 0.0, 5}, 50.000001, true);
    row("every line", {0.1, 0.0, 1}, 0.1 * 3, true);
    row("many steps", {0.1, 0.1, 5}, 87654.0 * 5 * 0.1 + 0.1, true);
    row("many steps, next", {0.1, 0.1, 5}, (87654.0 * 5 + 1) * 0.1 + 0.1, false);
    row("fine steps on high ground", {0.001, 0.1, 10}, 8000000.0 * 0.001 + 0.1, true);
    row("small number", {1e-9, 0.1, 10}, 123450.0 * 1e-9 + 0.1, true);
    row("none asked", {10.0, 0.0, 0}, 50.0, false);
    row("no interval", {0.0, 0.0, 5}, 50.0, false);
}

void ContourRulesTest::indexLevels()
{
    QFETCH(const IndexLevels, levels);
    QFETCH(const double, level);
    QTEST(levels.hold(level), "isIndex");
}

void ContourRulesTest::levelTexts()
{
    QCOMPARE(levelText(22 * 0.1), QString("2.2")); // the product is 2.2000000000000002
    QCOMPARE(levelText(-0.0), QString("0"));
    QCOMPARE(levelText(1200000.0), QString("1200000"));
    QCOMPARE(levelText(-0.00002), QString("-0.00002"));
}

void ContourRulesTest::trueBounds()
{
    const auto bounds = [](const QVector<AreaBounds> &written, double lowest, double highest) {
        QVector<AreaBounds> mended;
        for (const AreaClass &area : areaClasses(written, {lowest, highest}))
            mended += area.bounds;
        return mended;
    };
    using Bounds = QVector<AreaBounds>;
    QCOMPARE(bounds({{0, -20}, {-20, -10}, {-10, 0}}, -24.3, -1.5),
             (Bounds{{-24.3, -20}, {-20, -10}, {-10, -1.5}}));
    QCOMPARE(bounds({{0, 0}, {0, 1000}}, -24, 28), (Bounds{{-24, 0}, {0, 28}}));
    QCOMPARE(bounds({{0, endOfFixedLevels}}, 475, 528), (Bounds{{475, 528}}));
    QCOMPARE(bounds({{12, endOfFixedLevels}, {0, 5}, {5, 12}}, 1, 30), (Bounds{{12, 30}, {1, 5}, {5, 12}}));
    QCOMPARE(areaClasses({{12, endOfFixedLevels}, {0, 5}, {5, 12}}, {1, 30})[0].rank, 2);
    QCOMPARE(bounds({}, 1, 30), Bounds());
}

/// A longer text would lose its end there.
void ContourRulesTest::stylesFitAShapefile()
{
    QVERIFY(lineStyle("ESRI Shapefile", "-123456.789012").size() < 254);
    QVERIFY(areaStyle(hypsometricTint(3, 4)).size() < 254);
    QVERIFY(hypsometricTint(0, 1).isValid() && hypsometricTint(0, 5) != hypsometricTint(1, 5));
    QVERIFY(keepsStyles("gpkg") && keepsStyles("DXF") && !keepsStyles("GPX"));
}

void ContourRulesTest::qgisStyleIsWellFormed()
{
    QgisContours lines;
    lines.indexField = "index_line";
    lines.levelField = "H <\"m\"> & é";
    QgisContours areas;
    areas.lowestField = "ZMIN";
    areas.highestField = "ZMAX";
    areas.classes = areaClasses({{0, 5}, {5, 12}}, {1, 9});
    for (const QgisContours &contours : {lines, areas, QgisContours()}) {
        QXmlStreamReader xml(qgisStyle(contours));
        int symbols = 0;
        QStringList expressions;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            symbols += xml.name() == QLatin1String("symbol") ? 1 : 0;
            for (const char *key : {"attr", "fieldName", "filter"})
                if (xml.attributes().hasAttribute(key))
                    expressions += xml.attributes().value(key).toString();
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(symbols, contours == QgisContours() ? 1 : 2);
        if (!contours.indexField.isEmpty())
            QCOMPARE(expressions,
                     (QStringList{"\"index_line\"", "\"index_line\" = 1",
                                  "to_string(round(\"H <\"\"m\"\"> & é\", 6))"}));
    }
}

QTEST_GUILESS_MAIN(ContourRulesTest)
#include "contourrules_test.moc"
