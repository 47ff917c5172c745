#include "app/window/dialogrules.h"

#include <QTest>

class DialogRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void startDirectories();
    void recentList();
};

void DialogRulesTest::startDirectories()
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

void DialogRulesTest::recentList()
{
    QStringList recent;
    for (int index = 0; index < 12; ++index)
        recent = withRecent(recent, QString::number(index));
    recent = withRecent(recent, "5");
    QCOMPARE(recent, (QStringList{"5", "11", "10", "9", "8", "7", "6", "4", "3", "2"}));
}

QTEST_APPLESS_MAIN(DialogRulesTest)

#include "dialogrules_test.moc"
