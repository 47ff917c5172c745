#include "messages/inifile.h"

#include "tests/support/files.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

class IniFileTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesAndDefaults();
    void rejectedFileIsLogged();
};

void IniFileTest::valuesAndDefaults()
{
    const QTemporaryDir folder;
    const IniFile file(
        writeFile(folder.filePath("a.ini"), "# comment\n[Quvo Section]\nKey = /a b/é ; comment\nEMPTY =\n"));
    QCOMPARE(file.get("QUVO SECTION", "KEY", "d"), QByteArray("/a b/é"));
    QCOMPARE(file.get("Quvo Section", "empty", "d"), QByteArray());
    QCOMPARE(file.get("Quvo Section", "other", "d"), QByteArray("d"));
}

void IniFileTest::rejectedFileIsLogged()
{
    const QTemporaryDir folder;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("iniparser: syntax error"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("gives no setting"));
    const IniFile garbage(writeFile(folder.filePath("a.ini"), "[section]\nno equals sign\n"));
    QCOMPARE(garbage.get("section", "key", "d"), QByteArray("d"));
}

QTEST_APPLESS_MAIN(IniFileTest)
#include "inifile_test.moc"
