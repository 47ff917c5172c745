#include "app/run/copiedcommand.h"

#include <QProcess>
#include <QTest>

class CopiedCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void shellWords_data();
    void shellWords();
};

void CopiedCommandTest::shellWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("windows");
    const auto row = [](const char *name, const char *word, const char *windows) {
        QTest::newRow(name) << QString(word) << QString(windows);
    };
    row("plain", "C:\\dem-1.tif", "C:\\dem-1.tif");
    row("empty", "", "^\"^\"");
    row("blank and percent", "a b%PATH%", "^\"a b^%PATH^%^\"");
    row("quotes", "it's \"so\"", "^\"it's \\^\"so\\^\"^\"");
    row("backslashes", "a \\\" b\\", "^\"a \\\\\\^\" b\\\\^\"");
    row("everything", "é中 $HOME `x` !! ~ * ? # ; & | < > ( ) [ ] { } \\n",
        "^\"é中 $HOME `x` ^!^! ~ * ? # ; ^& ^| ^< ^> ^( ^) [ ] { } \\n^\"");
}

void CopiedCommandTest::shellWords()
{
    QFETCH(QString, word);
    QTEST(shellCommand({word}, Shell::Windows), "windows");
    for (const QString &text : {word, word + "\n\t" + word, word + "\n"}) {
        QProcess shell;
        shell.start("sh", {"-c", shellCommand({"printf", "%s|", text, "-x"}, Shell::Posix)});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()), text + "|-x|");
    }
}

QTEST_APPLESS_MAIN(CopiedCommandTest)
#include "copiedcommand_test.moc"
