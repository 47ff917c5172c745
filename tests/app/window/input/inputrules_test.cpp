#include "app/window/input/inputrules.h"

#include <QTest>

class InputRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void startDirectories();
    void recentList();
};

void InputRulesTest::startDirectories()
{
    StartDirectory choices{.lastChosenFolder = "/last",
                           .keepCurrent = true,
                           .currentDirectory = "/here",
                           .inputText = "/text",
                           .secondRecent = "/second"};
    QCOMPARE(startDirectory(choices), QStringLiteral("/last"));
    choices.lastChosenFolder.clear();
    QCOMPARE(startDirectory(choices), QStringLiteral("/here"));
    choices.keepCurrent = false;
    QCOMPARE(startDirectory(choices), QStringLiteral("/text"));
    choices.inputText.clear();
    QCOMPARE(startDirectory(choices), QStringLiteral("/second"));
    choices.secondRecent.clear();
    QCOMPARE(startDirectory(choices), QString());
}

void InputRulesTest::recentList()
{
    QStringList recent;
    for (int index = 0; index < 12; ++index)
        recent = withRecent(recent, QString::number(index));
    recent = withRecent(recent, "5");
    QCOMPARE(recent, (QStringList{"5", "11", "10", "9", "8", "7", "6", "4", "3", "2"}));
}

QTEST_APPLESS_MAIN(InputRulesTest)

#include "inputrules_test.moc"
