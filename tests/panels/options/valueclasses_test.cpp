#include "panels/options/valueclasses.h"

#include "tests/support/files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

class ValueClassesTest : public QObject
{
    Q_OBJECT

private slots:
    void slopes_data();
    void slopes();
    void ownTable();
    void directions_data();
    void directions();
};

void ValueClassesTest::slopes_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("percent");
    QTest::addColumn<double>("slope");
    QTest::addColumn<int>("number");
    const auto percentOf = [](double degrees) { return 100.0 * std::tan(degrees * std::acos(-1.0) / 180.0); };
    QTest::newRow("below all") << "avalanche" << false << 0.0 << 0;
    QTest::newRow("just below a bound") << "avalanche" << false << 29.9999 << 1;
    QTest::newRow("on a bound") << "avalanche" << false << 30.0 << 2;
    QTest::newRow("above all") << "avalanche" << false << 90.0 << 5;
    QTest::newRow("the same ground in percent, below") << "avalanche" << true << percentOf(34.99) << 2;
    QTest::newRow("the same ground in percent, above") << "avalanche" << true << percentOf(35.01) << 3;
    QTest::newRow("percent") << "farming" << true << 15.0 << 4;
    QTest::newRow("percent in degrees") << "building" << false << 14.04 << 4; // 25 % are 14.036°
    QTest::newRow("percent in degrees, below") << "building" << false << 14.03 << 3;
}

void ValueClassesTest::slopes()
{
    QFETCH(QString, word);
    QFETCH(bool, percent);
    QFETCH(double, slope);
    const ClassTable table = slopeClasses({.percent = percent, .classes = word});
    QCOMPARE(table.problem, QString());
    QTEST(classOf(table, slope), "number");
    QVERIFY(!table.classes.last().text.isEmpty());
}

void ValueClassesTest::ownTable()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("mes classes é.txt");
    writeFile(file, "10 1 2 3\n20 4 5 6\n20 7 8 9\n30 10 11 12\nnv 0 0 0\n");
    const ClassTable table = slopeClasses({.classes = file});
    QCOMPARE(table.problem, QString());
    QCOMPARE(table.classes.size(), 3);
    QCOMPARE(table.classes.at(classOf(table, -5.0)).color, qRgb(1, 2, 3));
    QCOMPARE(table.classes.at(classOf(table, 20.0)).color, qRgb(7, 8, 9));
    QCOMPARE(table.classes.at(classOf(table, 1e6)).color, qRgb(10, 11, 12));

    writeFile(file, "0% 1 2 3\n100% 4 5 6\n");
    QVERIFY(slopeClasses({.classes = file}).problem.contains("é.txt"));
    QVERIFY(!slopeClasses({.classes = folder.filePath("none.txt")}).problem.isEmpty());
}

void ValueClassesTest::directions_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("trigonometric");
    QTest::addColumn<double>("angle");
    QTest::addColumn<QString>("point");
    QTest::newRow("north from the west") << 8 << false << 359.9 << "N";
    QTest::newRow("north") << 8 << false << 0.0 << "N";
    QTest::newRow("end of north") << 8 << false << 22.4 << "N";
    QTest::newRow("north-east") << 8 << false << 22.5 << "NE";
    QTest::newRow("begin of north") << 8 << false << 337.5 << "N";
    QTest::newRow("sixteen") << 16 << false << 30.0 << "NNE";
    QTest::newRow("trigonometric east") << 8 << true << 359.0 << "E";
    QTest::newRow("trigonometric north") << 8 << true << 90.0 << "N";
    QTest::newRow("trigonometric south") << 16 << true << 270.0 << "S";
}

void ValueClassesTest::directions()
{
    QFETCH(int, count);
    QFETCH(bool, trigonometric);
    QFETCH(double, angle);
    const ClassTable table = directionClasses({.trigonometric = trigonometric, .directions = count});
    QTEST(table.classes.at(classOf(table, angle)).text.section(' ', 0, 0), "point");
    QCOMPARE(table.classes.first().color, table.classes.last().color);
    QCOMPARE(classRows(table).size(), count);
}

QTEST_GUILESS_MAIN(ValueClassesTest)
#include "valueclasses_test.moc"
