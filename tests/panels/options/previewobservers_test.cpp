#include "panels/options/previewobservers.h"

#include <QObject>
#include <QTest>

class PreviewObserversTest : public QObject
{
    Q_OBJECT

private slots:
    void areas_data();
    void areas();
};

void PreviewObserversTest::areas_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<double>>("expected");
    const QString head = "observer,name,x,y,z,seen_km2,reach_percent,farthest_m,farthest_x,farthest_y\n";
    QTest::newRow("usual") << head + "1,,1,2,3,4.5,50,70,1,2\n2,P,1,2,3,0,,0,,\nall,,,,,4.5,50,70,1,2\n"
                           << QVector<double>{4.5, 0.0};
    QTest::newRow("names") << head + "1,\"a, \"\"b\"\"\n2,\",1,2,3,7e-3,1,70,1,2\nall,,,,,9,5,7,1,2\n"
                           << QVector<double>{0.007};
    QTest::newRow("no number") << head + "1,,1,2,3,4,5,7,1,2\n2,,1,2,3,,5,7,1,2\n" << QVector<double>();
    QTest::newRow("another file") << QString("1,,1,2,3,4,5,7,1,2\n") << QVector<double>();
    QTest::newRow("empty") << QString() << QVector<double>();
}

void PreviewObserversTest::areas()
{
    QFETCH(QString, text);
    QTEST(readSeenAreas(text), "expected");
}

QTEST_GUILESS_MAIN(PreviewObserversTest)
#include "previewobservers_test.moc"
