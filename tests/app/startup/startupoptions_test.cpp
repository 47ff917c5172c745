#include "app/startup/startupoptions.h"

#include "tests/support/files.h"

#include <QTemporaryDir>
#include <QTest>

class StartupOptionsTest : public QObject
{
    Q_OBJECT

private slots:
    void options_data();
    void options();
    void styleSheets();
};

void StartupOptionsTest::options_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("any");
    QTest::addColumn<bool>("keep");
    QTest::addColumn<QString>("dtm");

    const auto row = [](const char *name, const QStringList &arguments, bool any, bool keep, const char *dtm) {
        QTest::newRow(name) << arguments << any << keep << QString(dtm);
    };
    row("none", {}, false, false, "");
    row("keep alone", {"-keep_startingdir"}, true, true, "");
    row("both", {"-startingdtm", "/a b/é=1.tif", "x", "-keep_startingdir"}, true, true, "/a b/é=1.tif");
    row("path missing", {"-startingdtm"}, false, false, "");
    row("capitals", {"-KEEP_STARTINGDIR", "-StartingDtm"}, false, false, "");
    row("an option as path", {"-startingdtm", "-keep_startingdir"}, true, false, "-keep_startingdir");
    row("a file alone", {"-unknown", "/a b/é=1.tif", "c.tif"}, true, false, "/a b/é=1.tif");
    row("a file before the option", {"a", "-startingdtm", "b"}, true, false, "b");
    row("an empty argument", {""}, false, false, "");
    row("the last path counts", {"-startingdtm", "a", "-startingdtm", "b"}, true, false, "b");
}

void StartupOptionsTest::options()
{
    QFETCH(QStringList, arguments);
    const StartupOptions read = readStartupOptions(QStringList{"-startingdtm"} + arguments);
    QTEST(read.any, "any");
    QTEST(read.keepStartingDir, "keep");
    QTEST(read.startingDtm, "dtm");
    QVERIFY(!asksForStyleSheet(QStringList{"-stylesheet"} + arguments));
    QVERIFY(asksForStyleSheet({"program", "a", "-stylesheet"}));
}

void StartupOptionsTest::styleSheets()
{
    const QTemporaryDir folder;
    Q_INIT_RESOURCE(quvo);
    const QString own = composeStyleSheet({});
    const auto order = [](const QString &sheet, const char *middle) {
        const auto first = sheet.indexOf("QToolTip"), second = sheet.indexOf(QString::fromLatin1(middle));
        return first >= 0 && first < second && second < sheet.indexOf("QGroupBox");
    };
    QVERIFY(order(own, "m_pProcessDefLabel"));
    const QString users =
        composeStyleSheet("file:///" + writeFile(folder.filePath("mine.qss"), "QLabel { color: \xE9 }"));
    QVERIFY(order(users, "QLabel { color: \xE9 }") && !users.contains("m_pProcessDefLabel"));
    QVERIFY(composeStyleSheet("file:////no/such.qss").contains("\n\n\n\n"));
}

QTEST_APPLESS_MAIN(StartupOptionsTest)
#include "startupoptions_test.moc"
