#include "runner/timetext.h"

#include <QTest>

class TimeTextTest : public QObject
{
    Q_OBJECT

private slots:
    void durations_data();
    void durations();
    void remaining();
};

void TimeTextTest::durations_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<QString>("text");

    QTest::newRow("null") << QTime() << "0 second(s)";
    QTest::newRow("under a second") << clockTime(900) << "";
    QTest::newRow("all units") << clockTime(3725000) << "1 hour(s), 2 minute(s) and 5 second(s)";
    QTest::newRow("minutes") << clockTime(120999) << "2 minute(s)";
    QTest::newRow("hours and seconds") << clockTime(3605000) << "1 hour(s) and 5 second(s)";
    QTest::newRow("a day and a minute") << clockTime(86460000) << "1 minute(s)";
    QTest::newRow("forty days") << clockTime(40LL * 86400000 + 1000) << "1 second(s)";
    QTest::newRow("before midnight") << clockTime(-1000) << "23 hour(s), 59 minute(s) and 59 second(s)";
}

void TimeTextTest::durations()
{
    QFETCH(QTime, time);
    QTEST(formatTime(time), "text");
}

void TimeTextTest::remaining()
{
    QCOMPARE(remainingTime(10000, 50), 10000);
    QCOMPARE(remainingTime(10000, 100), 0);
    QCOMPARE(remainingTime(10001, 3), 323365);                         // truncated
    QCOMPARE(remainingTime(60LL * 86400000, 1), 60LL * 86400000 * 99); // no 32-bit number of milliseconds
    QVERIFY(remainingTime(1000, 125) < 0);
}

QTEST_APPLESS_MAIN(TimeTextTest)
#include "timetext_test.moc"
