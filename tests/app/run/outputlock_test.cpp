#include "app/run/outputlock.h"

#include "tests/support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

class OutputLockTest : public QObject
{
    Q_OBJECT

private slots:
    void oneRunAtATime();
    void namelessLocksDoNotCount();
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

void OutputLockTest::namelessLocksDoNotCount()
{
    const QTemporaryDir folder;
    const QString output = folder.filePath("a.tif");
    const QString name = folder.filePath(".a.tif.lock");
    writeFile(name, "");
    const int living = ::open(name.toUtf8().constData(), O_RDWR);
    QCOMPARE(::flock(living, LOCK_EX), 0);
    QVERIFY(!OutputLock(output).problem().isEmpty());
    ::close(living);
    QCOMPARE(OutputLock(output).problem(), QString());
}

QTEST_APPLESS_MAIN(OutputLockTest)
#include "outputlock_test.moc"
