#include "app/batch/terminalprogress.h"

#include <QTest>

class TerminalProgressTest : public QObject
{
    Q_OBJECT

private slots:
    void ticks();
};

void TerminalProgressTest::ticks()
{
    TerminalProgress progress;
    QCOMPARE(progress.abandon(), QString());
    QCOMPARE(progress.advance(0), QStringLiteral("0"));
    QCOMPARE(progress.advance(2), QStringLiteral(".")); // a tool's 2.5
    QCOMPARE(progress.advance(2), QString());
    QCOMPARE(progress.advance(22), QStringLiteral("..10...20."));
    QCOMPARE(progress.advance(10), QString());
    QCOMPARE(progress.abandon(), QStringLiteral("\n"));
    QCOMPARE(progress.finish(), QStringLiteral("..30...40...50...60...70...80...90...100 - done.\n"));
    QCOMPARE(TerminalProgress().finish(),
             QStringLiteral("0...10...20...30...40...50...60...70...80...90...100 - done.\n"));
}

QTEST_APPLESS_MAIN(TerminalProgressTest)
#include "terminalprogress_test.moc"
