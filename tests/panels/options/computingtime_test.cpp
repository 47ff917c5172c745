#include "dataset/gdalmessages.h"
#include "panels/options/computingtime.h"
#include "tests/support/rasters.h"

#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

class ComputingTimeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void reach();
    void timedOnes();
    void scaling();
    void texts_data();
    void texts();
};

void ComputingTimeTest::reach()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("dem.tif");
    QVERIFY(writeRaster(file, 40, 20, QVector<float>(800, 5.0f))); // 10 m, from (500000, 5100000)
    const DemGround dem(file, 1);
    const auto cells = [&](double column, double row, double distance) {
        const QPointF place = dem.toGround({column, row});
        return cellsWithinReach({place.x(), place.y(), 5.0, distance, {}, {}}, dem);
    };
    QCOMPARE(cells(20, 10, 0), 800.0); // without limit
    QCOMPARE(cells(20, 10, 1e9), 800.0);
    QVERIFY(std::abs(cells(20, 10, 50) - 3.14159 * 25) < 1e-3);
    QCOMPARE(cells(0, 10, 40), 32.0);    // half of it lies in the DEM
    QCOMPARE(cells(-500, 10, 100), 1.0); // nothing does
    QCOMPARE(cells(20, 10, 0.01), 1.0);
}

void ComputingTimeTest::timedOnes()
{
    constexpr double wholeCopy = 86000; // work of an observer without limit
    constexpr double smallCircle = 200;
    QCOMPARE(timedObservers(3, wholeCopy), 3);
    QCOMPARE(timedObservers(60, wholeCopy), 10);
    QCOMPARE(timedObservers(900, wholeCopy), 90);
    QCOMPARE(timedObservers(1e6, wholeCopy), 116); // about half a second
    QCOMPARE(timedObservers(1e4, smallCircle), 1000);
    QCOMPARE(timedObservers(1e6, smallCircle), 2000);

    QList<ToolObserver> all;
    for (int at = 0; at < 100; ++at)
        all += {static_cast<double>(at), 0.0, 0.0, 0.0, {}, {}};
    QCOMPARE(spread(all, 200).size(), 100);
    const QList<ToolObserver> some = spread(all, 4);
    QCOMPARE(some.size(), 4);
    QVERIFY(some.at(0).x == 0.0 && some.at(1).x == 25.0 && some.at(3).x == 75.0);
}

void ComputingTimeTest::scaling()
{
    QCOMPARE(secondsHere({0.05, 0.25}, 100, 5000), 10.05); // the start is paid once
    QCOMPARE(secondsHere({0.05, 0.04}, 100, 5000), 0.05);
}

void ComputingTimeTest::texts_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    const QVector<QPair<double, QString>> rows{{0.99, "ici moins de 1 s"},
                                               {1.4, "ici environ 1\u00A0s"},
                                               {9.6, "ici environ 10\u00A0s"},
                                               {14, "ici environ 15\u00A0s"},
                                               {99.9, "ici environ 100\u00A0s"},
                                               {100, "ici environ 2\u00A0min"},
                                               {5900, "ici environ 100\u00A0min"},
                                               {6100, "ici environ 2\u00A0h"},
                                               {3.6e6 * 4, "ici environ 4000\u00A0h"}};
    for (const auto &[seconds, text] : rows)
        QTest::addRow("%g", seconds) << seconds << text;
}

void ComputingTimeTest::texts()
{
    QLocale::setDefault(QLocale::c());
    QFETCH(double, seconds);
    QTEST(hereText(seconds), "text");
}

QTEST_APPLESS_MAIN(ComputingTimeTest)
#include "computingtime_test.moc"
