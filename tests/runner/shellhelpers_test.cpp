#include "runner/shellhelpers.h"

#include "tests/support/files.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

class ShellHelpersTest : public QObject
{
    Q_OBJECT

private slots:
    void documentsAndAddresses();
    void selectShowsTheFile();
    void programsStartWithTheirArguments();
    void refusalIsReported();
    void directoryIsCurrentDuringTheCall();
};

namespace
{

/// A desktop that records its calls.
struct Desktop
{
    QStringList calls;
    bool answer = true;

    ShellServices services()
    {
        return {[this](const QUrl &url) { return note("open " + url.toString()); },
                [this](const QUrl &file) { return note("show " + file.toLocalFile()); },
                [this](const QString &program, const QStringList &arguments, const QString &) {
                    return note(program + " [" + arguments.join("][") + "]");
                }};
    }

    bool note(const QString &what)
    {
        calls += what;
        return answer;
    }
};

} // namespace

void ShellHelpersTest::documentsAndAddresses()
{
    Desktop desktop;
    const QTemporaryDir folder;
    const QString file = writeFile(folder.filePath("rélief #1 %20.tif"), {});
    QVERIFY(openWithShell(file, desktop.services()));
    QVERIFY(openWithShell(QStringLiteral("https://example.org/a?b=c"), desktop.services()));
    QCOMPARE(desktop.calls.at(0), "open " + QUrl::fromLocalFile(file).toString());
    QCOMPARE(desktop.calls.at(1), QStringLiteral("open https://example.org/a?b=c"));

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the desktop did not take"));
    QVERIFY(!openWithShell(folder.filePath("missing.tif"), desktop.services()));
    QVERIFY(!openWithShell(QString(), desktop.services()));
    QCOMPARE(desktop.calls.size(), 2);
}

void ShellHelpersTest::selectShowsTheFile()
{
    Desktop desktop;
    const QTemporaryDir folder;
    const QString file = writeFile(folder.filePath("a \"b\" c.tif"), {});
    QVERIFY(
        executeCommandLine(QStringLiteral("\"explorer\" /select,%1").arg(file), QString(), desktop.services()));
    QCOMPARE(desktop.calls, QStringList{"show " + file});
}

void ShellHelpersTest::programsStartWithTheirArguments()
{
    Desktop desktop;
    QVERIFY(executeCommandLine(QStringLiteral("\"/opt/a b\" -x \"c d\" e"), QString(), desktop.services()));
    QCOMPARE(desktop.calls, QStringList{"/opt/a b [-x][c d][e]"});
}

void ShellHelpersTest::refusalIsReported()
{
    Desktop desktop;
    desktop.answer = false;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the desktop did not take"));
    QVERIFY(!openWithShell(QStringLiteral("mailto:a@example.org"), desktop.services()));
}

void ShellHelpersTest::directoryIsCurrentDuringTheCall()
{
    const QTemporaryDir folder;
    writeFile(folder.filePath("there.txt"), {});
    const QString before = QDir::currentPath();
    QString during;
    ShellServices services;
    services.open = [&](const QUrl &) {
        during = QDir::currentPath();
        return true;
    };
    QVERIFY(shellExecute(QStringLiteral("there.txt"), QString(), folder.path(), services));
    QCOMPARE(during, QDir(folder.path()).canonicalPath());
    QCOMPARE(QDir::currentPath(), before);
}

QTEST_GUILESS_MAIN(ShellHelpersTest)
#include "shellhelpers_test.moc"
