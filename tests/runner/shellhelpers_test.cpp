#include "runner/shellhelpers.h"

#include <QDir>
#include <QFile>
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

/// A desktop that writes down what it was asked.
struct Desktop
{
    QStringList asked;
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
        asked += what;
        return answer;
    }
};

QString makeFile(const QTemporaryDir &folder, const QString &name)
{
    QFile file(folder.filePath(name));
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

} // namespace

void ShellHelpersTest::documentsAndAddresses()
{
    Desktop desktop;
    const QTemporaryDir folder;
    const QString file = makeFile(folder, QStringLiteral("rélief #1 %20.tif"));
    QVERIFY(openWithShell(file, desktop.services()));
    QVERIFY(openWithShell(QStringLiteral("https://example.org/a?b=c"), desktop.services()));
    QCOMPARE(desktop.asked.at(0), "open " + QUrl::fromLocalFile(file).toString());
    QCOMPARE(desktop.asked.at(1), QStringLiteral("open https://example.org/a?b=c"));

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the desktop did not take"));
    QVERIFY(!openWithShell(folder.filePath("missing.tif"), desktop.services()));
    QVERIFY(!openWithShell(QString(), desktop.services()));
    QCOMPARE(desktop.asked.size(), 2);
}

void ShellHelpersTest::selectShowsTheFile()
{
    Desktop desktop;
    const QTemporaryDir folder;
    const QString file = makeFile(folder, QStringLiteral("a \"b\" c.tif"));
    QVERIFY(
        executeCommandLine(QStringLiteral("\"explorer\" /select,%1").arg(file), QString(), desktop.services()));
    QCOMPARE(desktop.asked, QStringList{"show " + file});
}

void ShellHelpersTest::programsStartWithTheirArguments()
{
    Desktop desktop;
    QVERIFY(executeCommandLine(QStringLiteral("\"/opt/a b\" -x \"c d\" e"), QString(), desktop.services()));
    QCOMPARE(desktop.asked, QStringList{"/opt/a b [-x][c d][e]"});
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
    makeFile(folder, QStringLiteral("there.txt"));
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
