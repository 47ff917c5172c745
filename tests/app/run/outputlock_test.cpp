#include "app/run/outputlock.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class OutputLockTest : public QObject
{
    Q_OBJECT

private slots:
    void oneRunAtATime();
};

void OutputLockTest::oneRunAtATime()
{
    const QTemporaryDir folder;
    const QString output = folder.filePath("a.tif");
    QVERIFY(QFile::link(folder.path(), folder.filePath("loop")));
    {
        const OutputLock first(output);
        QCOMPARE(first.problem(), QString());
        QVERIFY(OutputLock(folder.filePath("loop/a.tif")).problem().contains("loop/a.tif"));
        QCOMPARE(OutputLock(folder.filePath("b.tif")).problem(), QString());
    }
    QCOMPARE(OutputLock(output).problem(), QString());
}

QTEST_APPLESS_MAIN(OutputLockTest)
#include "outputlock_test.moc"
