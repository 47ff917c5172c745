#include "runner/QuvoUtilityRunner.h"

#include "tests/support/faketool.h"
#include "tests/support/files.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <csignal>

class UtilityRunnerTest : public QObject
{
    Q_OBJECT

private slots:
    void reportsProgressAndSuccess();
    void countsPasses();
    void failsWithTheToolsText();
    void crashIsReportedTwice();
    void closeInsideACrashReportReturns();
    void missingProgramFailsOnce();
    void nextCommandFromTheHandlerStartsAfresh();
    void nextCommandFromACrashReport();
    void floodIsBounded();
    void scriptsEndWithTheirChildren();
    void errorsStayOnStandardError();
};

namespace
{

/// A runner with spies on its three signals.
struct Watched
{
    QuvoUtilityRunner runner{nullptr};
    QSignalSpy progress{&runner, &QuvoUtilityRunner::updateProgress};
    QSignalSpy ended{&runner, &QuvoUtilityRunner::normalTermination};
    QSignalSpy failed{&runner, &QuvoUtilityRunner::error};
};

} // namespace

void UtilityRunnerTest::reportsProgressAndSuccess()
{
    Watched watched;
    watched.runner.runCommand(
        fakeTool({"out",  "0",  "wait", "60",  "out",  ".",  "wait", "60",          "out", "..10...20",
                  "wait", "60", "out",  "\\n", "wait", "60", "out",  "0...10...20", "err", "a warning"}));
    QTRY_COMPARE(watched.ended.count(), 1);
    QCOMPARE(watched.failed.count(), 0);
    QVector<int> seen;
    for (const auto &signal : qAsConst(watched.progress))
        seen += signal.at(0).toInt();
    QCOMPARE(seen, (QVector<int>{2, 20, 0, 20})); // the first "0" changes nothing
    QCOMPARE(watched.runner.lastStandardError(), QStringLiteral("a warning"));
}

void UtilityRunnerTest::countsPasses()
{
    Watched watched;
    watched.runner.setStepCount(2);
    watched.runner.runCommand(fakeTool({"out", "0...100 - done.\\n0...10...20."}));
    QTRY_COMPARE(watched.ended.count(), 1);
    QCOMPARE(watched.progress.last().at(0).toInt(), 61);
}

void UtilityRunnerTest::failsWithTheToolsText()
{
    Watched watched;
    watched.runner.runCommand(fakeTool({"err", "ERROR 4: é: no such file", "exit", "3"}));
    QTRY_COMPARE(watched.failed.count(), 1);
    QCOMPARE(watched.failed.at(0).at(0).toString(), QStringLiteral("ERROR 4: é: no such file"));
    QCOMPARE(watched.runner.exitCode(), 3);
    QCOMPARE(watched.ended.count(), 0);
}

void UtilityRunnerTest::crashIsReportedTwice()
{
    Watched watched;
    watched.runner.runCommand(fakeTool({"err", "last words", "crash"}));
    QTRY_COMPARE(watched.failed.count(), 2);
    QCOMPARE(watched.failed.at(0).at(0).toString(), QStringLiteral("last words"));
    QCOMPARE(watched.ended.count(), 0);
    QCOMPARE(watched.runner.lastStandardError(), QStringLiteral("last words"));
}

void UtilityRunnerTest::closeInsideACrashReportReturns()
{
    Watched watched;
    connect(&watched.runner, &QuvoUtilityRunner::error, &watched.runner, [&] {
        QCOMPARE(watched.runner.state(), QProcess::NotRunning);
        watched.runner.close();
    });
    watched.runner.runCommand(fakeTool({"crash"}));
    QTRY_COMPARE(watched.failed.count(), 2);
}

void UtilityRunnerTest::missingProgramFailsOnce()
{
    for (const QString &command :
         {QStringLiteral("\"/no/such tool\" a"), QStringLiteral("\"\" ls"), QString()}) {
        Watched watched;
        watched.runner.runCommand(command);
        QTRY_COMPARE(watched.failed.count(), 1);
        QTest::qWait(50);
        QCOMPARE(watched.failed.count(), 1);
        QCOMPARE(watched.failed.at(0).at(0).toString(), QString());
        QCOMPARE(watched.ended.count(), 0);
    }
}

void UtilityRunnerTest::nextCommandFromTheHandlerStartsAfresh()
{
    Watched watched;
    bool second = false;
    connect(&watched.runner, &QuvoUtilityRunner::normalTermination, &watched.runner, [&] {
        if (!second) {
            second = true;
            watched.runner.runCommand(fakeTool({"out", "0...10."}));
        }
    });
    watched.runner.runCommand(fakeTool({"out", "0...10...20...30", "err", "first"}));
    QTRY_COMPARE(watched.ended.count(), 2);
    QCOMPARE(watched.progress.last().at(0).toInt(), 12);
    QCOMPARE(watched.runner.lastStandardError(), QString());
}

void UtilityRunnerTest::nextCommandFromACrashReport()
{
    Watched watched;
    connect(&watched.runner, &QuvoUtilityRunner::error, &watched.runner, [&] {
        if (watched.failed.count() <= 1)
            watched.runner.runCommand(fakeTool({"wait", "50"}));
    });
    watched.runner.runCommand(fakeTool({"crash"}));
    QTRY_COMPARE(watched.ended.count(), 1);
    QCOMPARE(watched.failed.count(), 1); // the crash's second report would have hit the next command
}

void UtilityRunnerTest::floodIsBounded()
{
    Watched watched;
    watched.runner.runCommand(fakeTool({"flood", "50000000", "errflood", "1000000", "out", "0...10.\\n"}));
    QTRY_COMPARE_WITH_TIMEOUT(watched.ended.count(), 1, 30000);
    QVERIFY(watched.runner.outputTail().size() <= 64 * 1024);
    QVERIFY(watched.runner.outputTail().endsWith(QLatin1String("0...10.\n")));
}

/// A tool that is a script: closing the runner ends the script and the program that it runs.
void UtilityRunnerTest::scriptsEndWithTheirChildren()
{
#ifndef Q_OS_UNIX
    QSKIP("Process groups are those of Unix.");
#endif
    Watched watched;
    const QTemporaryDir folder;
    const QString script = writeScript(folder.filePath("tool"), "sleep 60 & echo $!; wait\n");
    watched.runner.runCommand(QLatin1Char('"') + script + QLatin1Char('"'));
    QTRY_VERIFY(watched.runner.outputTail().endsWith('\n'));
    const auto child = static_cast<pid_t>(watched.runner.outputTail().toInt());
    QCOMPARE(::kill(child, 0), 0);
    watched.runner.close();
    QTRY_VERIFY(::kill(child, 0) != 0 && errno == ESRCH);
}

void UtilityRunnerTest::errorsStayOnStandardError()
{
    const QTemporaryDir folder;
    const QString script =
        writeScript(folder.filePath("tool"), "echo \"$CPL_LOG$CPL_LOG_ERRORS $CPL_OTHER\"\n");
    for (const char *variable : {"CPL_LOG", "CPL_LOG_ERRORS", "CPL_OTHER"})
        qputenv(variable, "set");
    Watched watched;
    watched.runner.runCommand(QLatin1Char('"') + script + QLatin1Char('"'));
    QTRY_COMPARE(watched.ended.count(), 1);
    QCOMPARE(watched.runner.outputTail(), QStringLiteral(" set\n"));
}

QTEST_GUILESS_MAIN(UtilityRunnerTest)
#include "utilityrunner_test.moc"
