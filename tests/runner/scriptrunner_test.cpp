#include "runner/QuvoScriptRunner.h"

#include "tests/support/faketool.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// Records the signals of a runner that end a list, in order.
class Journal : public QObject
{
    Q_OBJECT

public:
    explicit Journal(QuvoScriptRunner &runner)
    {
        connect(&runner, &QuvoScriptRunner::done, this, [this] { entries += QStringLiteral("done"); });
        connect(&runner, &QuvoScriptRunner::aborted, this, [this] { entries += QStringLiteral("aborted"); });
        connect(&runner, &QuvoScriptRunner::error, this,
                [this](const QString &text) { entries += "error " + text; });
    }

    QStringList entries;
};

class ScriptRunnerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void stepsRunInOrderUnderTheirTitles();
    void overall_data();
    void overall();
    void sharesOfSteps();
    void windowKinds();
    void emptyCollectionIsDone();
    void failureDeletesEveryOutput();
    void crashAndMissingToolEndOnce();
    void stopIsSilentAndDeletes();
    void stopAfterTheChildEndedStartsNoStep();
    void cancelWhileIdleDeletesAndEmits();
    void runOverARunningList();
    void runOverAListWhoseChildEndedWell();
    void nextListFromAHandler();
    void destructionWhileRunningDeletes();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QuvoOutputFile plain(const QString &name) const { return {.path = path(name), .driver = {}}; }
    bool exists(const QString &name) const { return QFile::exists(path(name)); }
    QString writing(const QString &name, const QStringList &then = {}) const
    {
        return fakeTool(QStringList{"file", path(name), "out", "0...10.", "wait", "20"} + then);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

QuvoProgressDialog *progressWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto dialog = qobject_cast<QuvoProgressDialog *>(window))
            return dialog;
    }
    return nullptr;
}

} // namespace

void ScriptRunnerTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX"));
}

void ScriptRunnerTest::stepsRunInOrderUnderTheirTitles()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    QStringList titles;
    connect(&runner, &QuvoScriptRunner::updateProgress, this, [&](int percent) {
        titles += progressWindow()->findChild<QLabel *>("m_pTitleLabel")->text();
        QCOMPARE(percent, 12);
    });
    runner.run({{writing("a"), "first"}, {writing("b"), "second"}}, {{plain("a")}, {plain("b")}},
               ProgressWindowWithStop);
    QVERIFY(progressWindow()->isVisible());
    QTRY_COMPARE(journal.entries, QStringList{"done"});
    QCOMPARE(titles, (QStringList{"first", "second"}));
    QVERIFY(!progressWindow()->isVisible());
    QVERIFY(exists("a") && exists("b"));
}

void ScriptRunnerTest::overall_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("steps");
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("overall");

    QTest::newRow("second of four") << 1 << 4 << 50 << 37;
    QTest::newRow("truncated twice") << 1 << 3 << 50 << 49;
    QTest::newRow("one step") << 0 << 1 << 61 << 61;
    QTest::newRow("end of the last") << 2 << 3 << 100 << 99;
}

void ScriptRunnerTest::overall()
{
    QFETCH(int, current);
    QFETCH(int, steps);
    QFETCH(int, percent);
    QTEST(overallProgress(current, steps, percent), "overall");
}

void ScriptRunnerTest::sharesOfSteps()
{
    const QVector<double> shares{1.0, 2.0, 1.0};
    QCOMPARE(overallProgress(0, shares, 40), 10);
    QCOMPARE(overallProgress(1, shares, 50), 50);
    QCOMPARE(overallProgress(2, shares, 100), 100);
    QCOMPARE(overallProgress(0, QVector<double>{0.0}, 50), 0);

    QuvoScriptRunner runner(nullptr);
    Journal journal(runner);
    QVector<int> percents;
    connect(&runner, &QuvoScriptRunner::updateProgress, this,
            [&](int percent) { percents += runner.listProgress(percent); });
    const QuvoProcessingCollection steps{
        {fakeTool({"err", "one", "out", "0...10...20...30...40...50"}), "first"},
        {fakeTool({"err", "two", "out", "0...10...20...30...40...50"}), "second"}};
    runner.setShares({3.0, 1.0});
    runner.run(steps, {}, NoProgressWindow);
    QTRY_COMPARE(journal.entries, QStringList{"done"});
    QVERIFY2(percents.contains(37) && percents.contains(87), qPrintable(QString::number(percents.value(0))));
    QCOMPARE(runner.standardErrorOfList(), QStringLiteral("onetwo"));
    // A list that continues another one shares its bar and its window.
    percents.clear();
    runner.setPartOfBar(0, 80);
    runner.run({steps.first()}, {}, ProgressWindowWithStop);
    QTRY_COMPARE(journal.entries.size(), 2);
    QVERIFY(percents.contains(40) && progressWindow()->isVisible());
    runner.setPartOfBar(80, 100);
    runner.run({steps.last()}, {}, ProgressWindowWithStop);
    QTRY_COMPARE(journal.entries.size(), 3);
    QVERIFY(percents.contains(90) && !progressWindow()->isVisible());
    percents.clear();
    runner.run(steps, {}, NoProgressWindow); // the shares were those of one list
    QTRY_COMPARE(journal.entries.size(), 4);
    QVERIFY(percents.contains(25) && percents.contains(75));
    QCOMPARE(runner.standardErrorOfList(), QStringLiteral("onetwo"));
}

void ScriptRunnerTest::windowKinds()
{
    const QTemporaryDir folder;
    const QString icon = folder.filePath("icon.png");
    QVERIFY(QImage(8, 8, QImage::Format_RGB32).save(icon));
    QuvoScriptRunner runner(nullptr);
    for (const auto kind : {NoProgressWindow, ProgressWindowWithoutStop, ProgressWindowWithStop}) {
        for (const QString &picture : {icon, QString()}) {
            runner.run({{fakeTool({"wait", "60000"}), ""}}, {}, kind, picture);
            QuvoProgressDialog *window = progressWindow();
            QCOMPARE(window->isVisible(), kind != NoProgressWindow);
            QCOMPARE(window->findChild<QWidget *>("m_pPBStop")->isVisible(), kind == ProgressWindowWithStop);
            QCOMPARE(window->findChild<QLabel *>("m_pPixmaplLabel")->isVisible(),
                     kind != NoProgressWindow && !picture.isEmpty());
            runner.processUserCancel();
        }
    }
}

void ScriptRunnerTest::emptyCollectionIsDone()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({}, {}, ProgressWindowWithStop);
    QCOMPARE(journal.entries, QStringList{"done"});
    QVERIFY(!progressWindow()->isVisible());
}

void ScriptRunnerTest::failureDeletesEveryOutput()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({{writing("a"), ""}, {writing("b", {"err", "no", "exit", "2"}), ""}, {writing("c"), ""}},
               {{plain("a")}, {plain("b")}, {plain("c")}}, NoProgressWindow);
    QTRY_COMPARE(journal.entries, QStringList{"error no"});
    QTest::qWait(80);
    QVERIFY(!exists("a") && !exists("b") && !exists("c"));
    QCOMPARE(runner.lastExitCode(), 2);
}

void ScriptRunnerTest::crashAndMissingToolEndOnce()
{
    for (const QString &command : {writing("a", {"crash"}), QStringLiteral("\"/no/such\" x")}) {
        QuvoScriptRunner runner(nullptr);
        const Journal journal(runner);
        runner.run({{command, ""}}, {{plain("a")}}, ProgressWindowWithStop);
        QTRY_COMPARE(journal.entries.size(), 1);
        QTest::qWait(50);
        QCOMPARE(journal.entries, QStringList{"error "});
        QVERIFY(!exists("a"));
        QVERIFY(!progressWindow()->isVisible());
    }
}

void ScriptRunnerTest::stopIsSilentAndDeletes()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({{writing("a", {"deaf", "wait", "60000"}), ""}}, {{plain("a")}}, NoProgressWindow);
    QTRY_VERIFY(exists("a"));
    runner.stop();
    QTest::qWait(50);
    QCOMPARE(journal.entries, QStringList());
    QVERIFY(!exists("a"));
}

void ScriptRunnerTest::stopAfterTheChildEndedStartsNoStep()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({{fakeTool({"file", path("a")}), ""}, {writing("b"), ""}}, {{plain("a")}, {plain("b")}},
               NoProgressWindow);
    // The child ends while no event loop runs, so stop() notices the end first.
    while (!exists("a"))
        QThread::msleep(5);
    QThread::msleep(200);
    runner.processUserCancel();
    QTest::qWait(150);
    QCOMPARE(journal.entries, QStringList{"aborted"});
    QVERIFY(!exists("a") && !exists("b"));
}

void ScriptRunnerTest::cancelWhileIdleDeletesAndEmits()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({{writing("a"), ""}}, {{plain("a")}}, NoProgressWindow);
    QTRY_COMPARE(journal.entries, QStringList{"done"});
    runner.processUserCancel();
    QCOMPARE(journal.entries, (QStringList{"done", "aborted"}));
    QVERIFY(!exists("a"));
}

void ScriptRunnerTest::runOverARunningList()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({{writing("a", {"wait", "60000"}), ""}}, {{plain("a")}}, NoProgressWindow);
    QTRY_VERIFY(exists("a"));
    runner.run({{writing("b"), ""}}, {{plain("b")}}, NoProgressWindow);
    QTRY_COMPARE(journal.entries.size(), 2);
    QCOMPARE(journal.entries, (QStringList{"error ", "done"}));
    QVERIFY(!exists("a") && exists("b"));
}

void ScriptRunnerTest::runOverAListWhoseChildEndedWell()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    runner.run({{fakeTool({"file", path("a")}), ""}, {writing("never"), ""}}, {{plain("a")}, {plain("never")}},
               NoProgressWindow);
    while (!exists("a"))
        QThread::msleep(5);
    QThread::msleep(200);
    runner.run({{writing("b"), ""}}, {{plain("b")}}, NoProgressWindow);
    QTRY_COMPARE(journal.entries, (QStringList{"aborted", "done"}));
    QVERIFY(!exists("a") && !exists("never") && exists("b"));
}

void ScriptRunnerTest::nextListFromAHandler()
{
    QuvoScriptRunner runner(nullptr);
    const Journal journal(runner);
    connect(&runner, &QuvoScriptRunner::error, this, [&] {
        runner.run({{writing("b"), ""}}, {{plain("b")}}, NoProgressWindow);
    });
    runner.run({{writing("a", {"crash"}), ""}}, {{plain("a")}}, NoProgressWindow);
    QTRY_COMPARE(journal.entries, (QStringList{"error ", "done"}));
    QVERIFY(!exists("a") && exists("b"));
}

void ScriptRunnerTest::destructionWhileRunningDeletes()
{
    {
        QuvoScriptRunner runner(nullptr);
        runner.run({{writing("a", {"wait", "60000"}), ""}}, {{plain("a")}}, NoProgressWindow);
        QTRY_VERIFY(exists("a"));
    }
    QVERIFY(!exists("a"));
}

QTEST_MAIN(ScriptRunnerTest)
#include "scriptrunner_test.moc"
