#include "panels/options/observerlines.h"

#include <QTest>

class ObserverLinesTest : public QObject
{
    Q_OBJECT

private slots:
    void forms_data();
    void forms();
    void faults_data();
    void faults();
    void copies();
};

namespace
{

const ObserverPoint defaults{.height = 9.0, .maxDistance = 77.0};

/// A line for a point with its values; "-" for what it has of `defaults`.
QString described(const ObserverPoint &point)
{
    QStringList words{QString::number(point.x, 'g', 12),
                      QString::number(point.y, 'g', 12),
                      point.height == defaults.height ? "-" : QString::number(point.height),
                      point.mode == defaults.mode ? "-" : altitudeModeText(point.mode),
                      point.maxDistance == defaults.maxDistance ? "-" : QString::number(point.maxDistance),
                      point.name};
    for (const LimitField &field : limitFields()) {
        if (const auto &value = point.limits.*field.value)
            words += QStringLiteral("%1=%2").arg(field.name).arg(*value);
    }
    return words.join('|');
}

} // namespace

void ObserverLinesTest::forms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("points");
    const QVector<std::tuple<const char *, const char *, const char *>> rows{
        {"blanks", "5005 5.5 1,7", "5005|5.5|1.7|-|-|"},
        {"tabs, decimal commas", "500005,25\t5099995,5\t1,7\tabsolute\t1e9\tPic du Midi",
         "500005.25|5099995.5|1.7|Absolute|1e+09|Pic du Midi"},
        {"empty columns", "1;2;;;;Puy de Dôme", "1|2|-|-|-|Puy de Dôme"},
        {"blanks, name", "1 2 3 Relative 4 Pic du Midi", "1|2|3|-|4|Pic du Midi"},
        {"commas", "1.5,2.5,3", "1.5|2.5|3|-|-|"},
        {"commas and blanks", "1.5, 2.5, 3", "1.5|2.5|3|-|-|"},
        {"mixed separators", "1\t2 3 relative 4", "1|2|3|-|4|"},
        {"ends of lines", "\r\n1 2\r\n\r\n3 4\r\n", "1|2|-|-|-| 3|4|-|-|-|"},
        {"names", "Nom;Y;X;Hauteur;foo\nA b;2,5;1;;x\n", "1|2.5|-|-|-|A b"},
        {"names, commas", "name,lon,lat,z\n\"Mont Blanc\",6.86,45.83,2", "6.86|45.83|2|-|-|Mont Blanc"},
        {"names and blanks", "x, y, name\n1, 2, a b", "1|2|-|-|-|a b"},
        {"limits",
         "x\ty\tAZIMUTH1\tazimuthTo\tVert1\tangleFrom\tRADIUS1\tOFFSETB\tMax_Dist\n1\t2\t3\t4\t5\t-6\t7\t8\t9",
         "1|2|-|-|9||targetHeight=8|azimuthFrom=3|azimuthTo=4|angleFrom=-6|angleTo=5|leastDistance=7"}};
    for (const auto &[name, text, points] : rows)
        QTest::addRow("%s", name) << QString::fromUtf8(text) << QString::fromUtf8(points);
}

void ObserverLinesTest::forms()
{
    QFETCH(QString, text);
    const PointLinesReading reading = readPointLines(text, defaults);
    QStringList found;
    for (const ObserverPoint &point : reading.points)
        found += described(point);
    QTEST(found.join(' '), "points");
    QVERIFY(reading.problems.isEmpty());
}

void ObserverLinesTest::faults_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("problem");
    const QVector<QPair<const char *, const char *>> rows{
        {"nonsense", "« nonsense » n'a pas"}, {"1 two", "« two »"},           {"1\t2\t3\tAbove", "Relative"},
        {"1;2;3;Relative;4;a;b", "colonnes"}, {"1 2 1.234,5", "« 1.234,5 »"}, {"1 2 inf", "height"},
        {"1;2;3;Relative;-4", "distance"}};
    for (const auto &[line, problem] : rows)
        QTest::addRow("%s", line) << QString::fromUtf8(line) << QString::fromUtf8(problem);
}

void ObserverLinesTest::faults()
{
    QFETCH(QString, line);
    QFETCH(QString, problem);
    const PointLinesReading reading = readPointLines("1 2\n\n" + line + "\n3 4", defaults);
    QCOMPARE(reading.points.size(), 2);
    QCOMPARE(reading.problems.size(), 1);
    QCOMPARE(reading.problems.first().line, 3);
    QVERIFY2(reading.problems.first().problem.contains(problem), qPrintable(reading.problems.first().problem));
}

void ObserverLinesTest::copies()
{
    QList<ObserverPoint> points{{.x = 0.1 + 0.2, .y = 5e-324, .height = -1e7, .maxDistance = 0.0},
                                {.x = 1.0, .y = 2.0, .mode = AltitudeMode::Absolute}};
    QVERIFY(readPointLines(pointLines(points), defaults).points == points);
    QCOMPARE(pointLines(points).section('\n', 0, 0), QStringLiteral("x\ty\theight\tmode\tdistance"));
    points[1].enabled = false;
    points[1].name = QStringLiteral("1; 2, \"中\"");
    double number = 1.0 / 3.0;
    for (const LimitField &field : limitFields())
        points[0].limits.*field.value = number *= 2.0;
    QVERIFY(readPointLines(pointLines(points), defaults).points == points);
}

QTEST_MAIN(ObserverLinesTest)
#include "observerlines_test.moc"
