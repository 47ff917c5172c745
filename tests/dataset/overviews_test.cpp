#include "dataset/overviews.h"

#include <QTest>

class OverviewsTest : public QObject
{
    Q_OBJECT

private slots:
    void factors();
};

void OverviewsTest::factors()
{
    QCOMPARE(overviewFactors(255, 9000), QVector<int>());
    QCOMPARE(overviewFactors(256, 256), QVector<int>{2});
    QCOMPARE(overviewFactors(9000, 511), QVector<int>{2});
    QCOMPARE(overviewFactors(2048, 3000), (QVector<int>{2, 4, 8, 16}));
}

QTEST_APPLESS_MAIN(OverviewsTest)
#include "overviews_test.moc"
