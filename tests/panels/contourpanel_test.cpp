#include "messages/Prompt.h"
#include "panels/contourOptionsWidget.h"
#include "panels/controls/QEditableComboBox.h"
#include "panels/options/contours/contourlevels.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

Q_DECLARE_METATYPE(Extremes)

class ContourPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void levels_data();
    void levels();
    void typedByKeys();
    void attributes();
    void notes();
    void levelsAscend();
};

namespace
{

struct Panel
{
    contourOptionsWidget widget;
    QEditableComboBox *noData = widget.findChild<QEditableComboBox *>();

    QLineEdit *field(const char *name) const { return widget.findChild<QLineEdit *>(name); }
    QCheckBox *box(const char *name) const { return widget.findChild<QCheckBox *>(name); }
    QString note(const char *name) const
    {
        const auto label = widget.findChild<QLabel *>(name);
        return label->isHidden() ? QString() : label->text();
    }
    QString arguments() { return widget.getCommandArguments(); }
};

/// Extremes of a whole band.
Extremes exactly(double minimum, double maximum)
{
    return {.known = true, .exact = true, .minimum = minimum, .maximum = maximum};
}

const Extremes alps{.known = true, .minimum = 387.2, .maximum = 2349.6};

} // namespace

void ContourPanelTest::levels_data()
{
    QTest::addColumn<Extremes>("extremes");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("offset");
    QTest::addColumn<double>("count");
    QTest::addColumn<double>("offered"); // 0: none

    QTest::newRow("alps") << alps << 100.0 << 0.0 << 20.0 << 100.0;
    QTest::newRow("offset") << alps << 100.0 << 60.0 << 19.0 << 100.0;
    QTest::newRow("below zero") << exactly(-12.0, 12.0) << 5.0 << 0.0 << 5.0 << 1.0;
    QTest::newRow("ends count") << exactly(0.0, 10.0) << 5.0 << 0.0 << 3.0 << 0.5;
    QTest::newRow("no level") << exactly(1.0, 2.0) << 5.0 << 0.0 << 0.0 << 0.05;
    QTest::newRow("tiny range") << exactly(1.0, 1.0001) << 5.0 << 0.0 << 0.0 << 0.001;
    QTest::newRow("flat") << exactly(7.0, 7.0) << 7.0 << 0.0 << 1.0 << 0.0;
    QTest::newRow("unknown") << Extremes{} << 5.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("interval of 0") << alps << 0.0 << 0.0 << 0.0 << 100.0;
    QTest::newRow("slip of the pen") << exactly(0.0, 1e9) << 0.001 << 0.0 << 1e12 + 1 << 5e7;
}

void ContourPanelTest::levels()
{
    QFETCH(Extremes, extremes);
    QFETCH(double, interval);
    QFETCH(double, offset);
    QTEST(levelCount(extremes, interval, offset), "count");
    QTEST(roundInterval(extremes).value_or(0.0), "offered");
}

void ContourPanelTest::typedByKeys()
{
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    Panel panel;
    QTest::keyClicks(panel.field("m_pLEElevationInterval"), "10,000x5");
    QCOMPARE(panel.field("m_pLEElevationInterval")->text(), QStringLiteral("10.000"));
    QTest::keyClicks(panel.field("m_pLEOffset"), "2.5");
    QTest::keyClicks(panel.noData->lineEdit(), "105,5");
    QCOMPARE(panel.noData->currentText(), QStringLiteral("105.5")); // the tool reads a point
    panel.field("m_pLEElevationAttribute")->setText("a\" b%1");
    panel.box("m_pChB3D")->click();
    QCOMPARE(panel.arguments(),
             QStringLiteral("-a \"a\"\"\" b%1\" -3d -snodata \"105.5\" -i \"10\" -off \"2.5\" "));
    QLocale::setDefault(QLocale::c());

    panel.field("m_pLEElevationInterval")->clear();
    panel.field("m_pLEElevationAttribute")->clear();
    QTest::keyClicks(panel.field("m_pLEFixedLevels"), "10 20 40 100");
    QCOMPARE(panel.arguments(), QStringLiteral("-3d -snodata \"105.5\" -off \"2.5\" -fl 10 20 40 100 "));
}

void ContourPanelTest::levelsAscend()
{
    Panel panel;
    for (const char *text : {"10", "10 20 40", "-3 0 1e3", "10 10.5"}) {
        panel.field("m_pLEFixedLevels")->setText(text);
        QVERIFY2(panel.note("m_pLevelsNote").isEmpty() && levelsProblem(text).isEmpty(), text);
    }
    for (const auto &[typed, sorted] : {std::pair("40 20 10", "10 20 40"), std::pair("10 10 5", "5 10"),
                                        std::pair("1 1.0 0.5", "0.5 1"), std::pair("-1 -2", "-2 -1")}) {
        panel.field("m_pLEFixedLevels")->setText(typed);
        QVERIFY2(panel.note("m_pLevelsNote").contains("href"), typed);
        QVERIFY(!optionsProblem(panel.widget.processOptions()).isEmpty());
        QVERIFY(panel.arguments().contains(QString("-fl %1 ").arg(typed))); // as it was typed
        emit panel.widget.findChild<QLabel *>("m_pLevelsNote")->linkActivated("sort");
        QCOMPARE(panel.field("m_pLEFixedLevels")->text(), QString(sorted));
    }
    panel.field("m_pLEFixedLevels")->setText("2 1 x");
    QVERIFY(!panel.note("m_pLevelsNote").contains("href"));
    QStringList levels;
    for (int level = 0; level < 1000; ++level)
        levels += QString::number(level);
    QVERIFY(levelsProblem(levels.join(' ')).isEmpty());
    QVERIFY(levelsProblem(levels.join(' ') + " 1000").contains("1000")); // the tool's own limit
}

void ContourPanelTest::attributes()
{
    // Names that the product would have twice, or that its format does not keep.
    for (const auto &[field, box, name] : {std::tuple("m_pLEElevationAttribute", "m_pChBStyled", "ogr_style"),
                                           std::tuple("m_pLEHighest", "m_pChBAreas", "altitude_max")}) {
        Panel panel;
        const auto isNoted = [&panel] { return !panel.note("m_pAttributeNote").isEmpty(); };
        panel.field(field)->setText(name);
        QVERIFY2(!isNoted(), name);
        panel.box(box)->setChecked(true);
        QVERIFY2(isNoted(), name);
    }
    const auto problem = [](const ContourOptions &options) { return optionsProblem(options); };
    QVERIFY(!problem({.interval = 1.0, .attribute = "index_line", .indexEvery = 5}).isEmpty());
    QVERIFY(!problem({.interval = 1.0, .attribute = "OGR_STYLE", .styled = true}).isEmpty());
    QVERIFY(!problem({.interval = 1.0, .polygons = true, .lowestAttribute = "OGR_STYLE", .styled = true})
                 .isEmpty());
    QCOMPARE(problem({.interval = 1.0, .attribute = "INDEX_LINE", .styled = true}), QString());
    QCOMPARE(problem({.interval = 1.0, .attribute = "OGR_STYLE", .indexEvery = 5}), QString());
}

void ContourPanelTest::notes()
{
    Panel panel;
    QVERIFY(panel.note("m_pForecastLabel").isEmpty());
    panel.widget.setDem({"/dem.tif", 1, alps});
    QVERIFY(panel.note("m_pForecastLabel").contains("href=\"100.000\""));
    QVERIFY(
        panel.note("m_pForecastLabel").contains(">100</a>, <a href=\"50.000\">50</a>, <a href=\"20.000\">"));
    QCOMPARE(finerInterval(0.02), 0.01);
    QCOMPARE(finerInterval(0.001), 0.001);
    panel.field("m_pLEElevationInterval")->setText("0.000");
    QVERIFY(panel.note("m_pForecastLabel").contains("intervalle de 0"));
    panel.field("m_pLEElevationInterval")->setText("0.010");
    QVERIFY2(panel.note("m_pForecastLabel").contains("Niveaux"), qPrintable(panel.note("m_pForecastLabel")));
    QCOMPARE(panel.widget.launchWarnings().size(), 1);
    panel.field("m_pLEFixedLevels")->setText("10 x");
    QVERIFY(!panel.note("m_pLevelsNote").isEmpty());
    QVERIFY(panel.widget.launchWarnings().isEmpty());
    panel.field("m_pLEFixedLevels")->setText("10 20");
    QVERIFY(panel.note("m_pForecastLabel").contains("ensemble")); // more than the tool takes
    Prompt::answerBeforehand({});
    QVERIFY(!panel.widget.launchInput() && Prompt::takeShown().value(0).contains("ensemble"));
    panel.field("m_pLEElevationInterval")->setText("1000.000");
    QVERIFY(panel.note("m_pForecastLabel").contains("Niveaux"));
    panel.field("m_pLEElevationAttribute")->setText("élévation_m");
    QVERIFY(panel.note("m_pAttributeNote").contains("13")); // bytes, where a shapefile allows 10
    panel.widget.setOutputFormat("GPKG");
    QVERIFY(panel.note("m_pAttributeNote").isEmpty());
    panel.field("m_pLEElevationAttribute")->setText("id");
    QVERIFY(panel.note("m_pAttributeNote").contains("« id »"));
    panel.field("m_pLEOffset")->setText("1234567.000");
    QVERIFY(panel.note("m_pOffsetNote").contains("1.23457e+06"));
    panel.noData->setEditText("-2147483648");
    emit panel.noData->lineEdit()->textEdited("-2147483648");
    QVERIFY(panel.note("m_pNoDataNote").contains("-2.14748e+09"));
    panel.noData->setEditText("-");
    emit panel.noData->lineEdit()->textEdited("-");
    QVERIFY(panel.note("m_pNoDataNote").contains("« - »"));
    panel.box("m_pChBTreatNoDataValue")->click();
    QVERIFY(panel.note("m_pNoDataNote").isEmpty() && !panel.noData->isEnabled());
}

QTEST_MAIN(ContourPanelTest)
#include "contourpanel_test.moc"
