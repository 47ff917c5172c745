#include "runner/commandsplit.h"

#include "runner/quoting.h"
#include "tests/fuzz/mutations.h"

#include <QTest>

class CommandSplitTest : public QObject
{
    Q_OBJECT

private slots:
    void shell_data();
    void shell();
    void quotedArgumentsComeBack();
    void emptyProgramStaysEmpty();
    void mutations();
};

void CommandSplitTest::shell_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("arguments");

    const auto row = [](const char *name, const char *command, const char *program, const char *arguments) {
        QTest::newRow(name) << QString(command) << QString(program) << QString(arguments);
    };
    row("explorer", "\"explorer\" /select,%1", "explorer", "/select,%1");
    row("nothing behind the quote", "\"explorer\"", "explorer", "");
    row("no quote at all", "xdg-open a b", "xdg-open a b", "");
    row("quoted argument", "open \"a b\" c", "open", "\"a b\" c");
    row("no closing quote", "\"open a", "\"open a", "");
    row("no blank", "open\"a\"", "open\"a\"", "");
    row("empty", "", "", "");
}

void CommandSplitTest::shell()
{
    QFETCH(QString, command);
    QString program = QStringLiteral("left over");
    QString arguments = QStringLiteral("left over");
    splitCommandLine(command, program, arguments);
    QTEST(program, "program");
    QTEST(arguments, "arguments");
}

void CommandSplitTest::quotedArgumentsComeBack()
{
    const QStringList texts{
        "plain", "with blank", "été/中文.tif", "say \"hello\" now", "\"",           "\"\"", "\" \"", "\"a b",
        "a b\"", "tab\there",  "it's",         "%1 $HOME `x` ; &",  "back\\slash\\"};
    QString command = quotedArgument(QStringLiteral("/opt/my tools/tool.exe"));
    for (const QString &text : texts)
        command += QLatin1Char(' ') + quotedArgument(text);
    const ProcessCommand split = splitProcessCommand(command);
    QCOMPARE(split.program, QStringLiteral("/opt/my tools/tool.exe"));
    QCOMPARE(split.arguments, texts);
}

void CommandSplitTest::emptyProgramStaysEmpty()
{
    for (const QString &command : {QStringLiteral("\"\" hillshade \"a\""), QStringLiteral("\"\""), QString()}) {
        QCOMPARE(splitProcessCommand(command).program, QString());
    }
    QCOMPARE(splitProcessCommand(QStringLiteral("\"\" hillshade")).arguments, QStringList{"hillshade"});
    QCOMPARE(splitProcessCommand(QStringLiteral("\"\"\"odd\"\"\" a")).program, QStringLiteral("\"odd\""));
}

void CommandSplitTest::mutations()
{
    fuzzMutations(fuzzCorpus("commandsplit"), 3000);
}

QTEST_APPLESS_MAIN(CommandSplitTest)
#include "commandsplit_test.moc"
