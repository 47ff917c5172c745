#include "app/process/tools.h"
#include "app/startup/environment.h"
#include "app/startup/settings.h"
#include "app/startup/startupoptions.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class StartupTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8()); } // not the user's own settings
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void options_data();
    void options();
    void styleSheets();
    void environmentFiles();
    void precedence();
    void variables();
    void childrenInherit();
    void tools();
    void settings();
    void geometryOnScreens_data();
    void geometryOnScreens();

private:
    QString write(const QString &name, const QByteArray &text) const
    {
        return writeFile(m_folder->filePath(name), text);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_home;
};

void StartupTest::options_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("any");
    QTest::addColumn<bool>("keep");
    QTest::addColumn<QString>("dtm");

    QTest::newRow("none") << QStringList{} << false << false << "";
    QTest::newRow("keep alone") << QStringList{"-keep_startingdir"} << true << true << "";
    QTest::newRow("both") << QStringList{"-startingdtm", "/a b/é=1.tif", "x", "-keep_startingdir"} << true
                          << true << "/a b/é=1.tif";
    QTest::newRow("path missing") << QStringList{"-startingdtm"} << false << false << "";
    QTest::newRow("capitals") << QStringList{"-KEEP_STARTINGDIR", "-StartingDtm", "a"} << false << false << "";
    QTest::newRow("an option as path")
        << QStringList{"-startingdtm", "-keep_startingdir"} << true << false << "-keep_startingdir";
    QTest::newRow("the last path counts")
        << QStringList{"-startingdtm", "a", "-startingdtm", "b"} << true << false << "b";
}

void StartupTest::options()
{
    QFETCH(QStringList, arguments);
    const StartupOptions read = readStartupOptions(QStringList{"-startingdtm"} + arguments);
    QTEST(read.any, "any");
    QTEST(read.keepStartingDir, "keep");
    QTEST(read.startingDtm, "dtm");
    QVERIFY(!asksForStyleSheet(QStringList{"-stylesheet"} + arguments));
    QVERIFY(asksForStyleSheet({"program", "a", "-stylesheet"}));
}

void StartupTest::styleSheets()
{
    Q_INIT_RESOURCE(quvo);
    QVERIFY(!asksForStyleSheet({"-stylesheet", "a"}) && asksForStyleSheet({"program", "a", "-stylesheet"}));
    const QString own = composeStyleSheet({});
    QVERIFY(own.contains("QToolTip") && own.contains("m_pProcessDefLabel") && own.contains("QGroupBox"));
    const QString users = composeStyleSheet("file:///" + write("mine.qss", "QLabel { color: \xE9 }"));
    QVERIFY(users.contains(QString::fromLatin1("QLabel { color: \xE9 }")));
    QVERIFY(users.contains("QToolTip") && !users.contains("m_pProcessDefLabel") && users.contains("QGroupBox"));
    QVERIFY(composeStyleSheet("file:////no/such.qss").contains("\n\n\n\n"));
}

void StartupTest::environmentFiles()
{
    const QString setup = m_folder->filePath("setup_env.ini");
    QCOMPARE(environmentFile(m_folder->filePath("Tool.exe")), setup);
    const QString own = write("Tool_env.ini", "");
    QCOMPARE(environmentFile(m_folder->filePath("Tool.exe")), own);
    QCOMPARE(environmentFile(m_folder->filePath("Tool.EXE")), own);
    QCOMPARE(environmentFile(m_folder->filePath("Tool")), own);
    QCOMPARE(environmentFile(m_folder->filePath("Tool.bin")), setup);
    QCOMPARE(environmentFile(write("Tool.bin_env.ini", "").chopped(8)), m_folder->filePath("Tool.bin_env.ini"));
}

void StartupTest::precedence()
{
    const QString program = m_folder->filePath("Tool");
    const auto read = [&](const QByteArray &text) {
        write("Tool_env.ini", text);
        return readEnvironment(program);
    };
    const Environment bare = readEnvironment(program);
    QCOMPARE(bare.language, systemLanguage());
    QCOMPARE(bare.installDir, m_folder->path());
    QCOMPARE(bare.messagesPath, m_folder->path() + "/MESSAGES");

    QSettings settings("KARVEX", "Riglios");
    settings.setValue("Interface/Language", "GERMAN");
    settings.setValue("dir", "/opt/é");
    settings.sync();
    const QByteArray keys = "[QuvoRegisterKeys]\nQuvoRegKey_Language = Riglios/Interface/Language\n"
                            "QuvoRegKey_InstallDir = Riglios/dir\nQuvoRegKey_MessagesDir = Riglios/dir\n";
    const Environment registered = read(keys);
    QCOMPARE(registered.language, QStringLiteral("GERMAN"));
    QCOMPARE(registered.installDir, QStringLiteral("/opt/é"));
    QCOMPARE(registered.messagesPath, QStringLiteral("/opt/é/MESSAGES"));
    const Environment direct =
        read("[QuvoDirectSettings]\nLANGUAGE = FRENCH\nINSTALL_DIR = /d\nMESSAGES_DIR = m\n" + keys);
    QCOMPARE(direct.language, QStringLiteral("FRENCH"));
    QCOMPARE(direct.messagesPath, QStringLiteral("/d/m"));
    settings.setValue("Interface/Language", "");
    settings.remove("dir");
    settings.sync();
    QCOMPARE(read(keys).language, systemLanguage()); // an empty value is none
    QCOMPARE(read(keys).installDir, m_folder->path());
}

void StartupTest::variables()
{
    QCOMPARE(gdalVariables(m_folder->path(), "/bin"),
             (QVector<QByteArray>{"PATH=" + m_folder->path().toUtf8() + ":/bin", "GDAL_FILENAME_IS_UTF8=NO",
                                  "SHAPE_ENCODING="}));
    QVERIFY(QDir(m_folder->path()).mkdir("driver") && QDir(m_folder->path()).mkdir("data"));
    const QByteArray driver = m_folder->path().toUtf8() + "/driver";
    const auto all = gdalVariables(m_folder->path(), "");
    QVERIFY(all.contains("GDAL_DRIVER_PATH=" + driver + ":" + driver + "/qt4"));
    QVERIFY(all.contains("OGR_DRIVER_PATH=" + driver + ":" + driver + "/qt4"));
    QVERIFY(all.contains("GDAL_DATA=" + m_folder->path().toUtf8() + "/data"));
}

void StartupTest::childrenInherit()
{
    // Instead of GDAL's tool, a script that prints the environment that it inherits.
    QVERIFY(QFile::copy(QUVO_TREE "/QuvoDemBatch", m_folder->filePath("QuvoDemBatch")));
    QVERIFY(QDir(m_folder->path()).mkdir("data"));
    writeScript(m_folder->filePath("gdal_dem.exe"), "env >&2\nexit 1\n");
    write("QuvoDemToolBox_env.ini", "[QuvoDirectSettings]\nLANGUAGE = FRENCH\n");
    const Ended ended = runProgram(m_folder->filePath("QuvoDemBatch"),
                                   {"--process", "hillshade", "--input", QUVO_TREE "/samples/sample_dem.tif",
                                    "--output", m_folder->filePath("a.tif")});
    const QStringList lines = ended.error.split('\n');
    const QString folder = m_folder->path();
    for (const QString &line :
         {"QUVO_BIN_HOME=" + folder, "LUMAGRAF_HOME=" + folder, QStringLiteral("GEOLANGUE=FRENCH"),
          "GDAL_DATA=" + folder + "/data", QStringLiteral("SHAPE_ENCODING=")})
        QVERIFY2(lines.contains(line), qPrintable(line));
    QVERIFY(lines.filter(QRegularExpression("^PATH=" + folder + ":")).size() == 1);
    QVERIFY(lines.filter("GDAL_DRIVER_PATH").isEmpty());
}

void StartupTest::tools()
{
    const QStringList names{"gdal_dem.exe", "gdal_contour.exe", "gdal_translate.exe",
                            "gdal_intervisibility.exe"};
    for (const QString &name : names)
        write(name, "");
    QVERIFY(findTools(m_folder->path()).isComplete());
    for (const QString &name : names) {
        QVERIFY(QFile::remove(m_folder->filePath(name)));
        QVERIFY(QFile::link("/no/such/tool", m_folder->filePath(name)));
        QCOMPARE(findTools(m_folder->path()).isComplete(),
                 name == names.last()); // the last alone may be missing
        QVERIFY(QFile::remove(m_folder->filePath(name)));
        write(name, "");
    }
    QCOMPARE(findTools(m_folder->path()).translate, m_folder->filePath("gdal_translate.exe"));
}

void StartupTest::settings()
{
    QSettings("KARVEX", "Riglios").clear();
    QCOMPARE(readLastGeometry().size, QSize(707, 740));
    QCOMPARE(readLastGeometry().position, QPoint(155, 10));
    QVERIFY(readLastGeometry().showPreview);
    writeLastGeometry({{800, 600}, {-5, 7}, false});
    QCOMPARE(readLastGeometry().size, QSize(800, 600));
    QCOMPARE(readLastGeometry().position, QPoint(-5, 7));
    QVERIFY(!readLastGeometry().showPreview);

    writeRecentFiles({"/a", "/b", "/c"});
    writeRecentFiles({"/é", "/a"});
    QCOMPARE(readRecentFiles(), (QStringList{"/é", "/a"}));
    QCOMPARE(QSettings("KARVEX", "Riglios").value("RecentUsedListFile/File_1").toString(),
             QStringLiteral("/a"));
    QSettings("KARVEX", "Riglios").clear();
}

void StartupTest::geometryOnScreens_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QRect>("shown");

    QTest::newRow("inside") << QRect(10, 10, 300, 200) << QRect(10, 10, 300, 200);
    QTest::newRow("on the second screen") << QRect(1100, 50, 300, 200) << QRect(1100, 50, 300, 200);
    QTest::newRow("on both screens") << QRect(900, 50, 300, 200) << QRect(900, 50, 300, 200);
    QTest::newRow("on a screen that is gone") << QRect(5000, 50, 300, 200) << QRect(700, 50, 300, 200);
    QTest::newRow("above") << QRect(10, -500, 300, 200) << QRect(10, 0, 300, 200);
    QTest::newRow("gone and too large") << QRect(10, -3000, 3000, 2000) << QRect(0, 0, 1000, 800);
}

void StartupTest::geometryOnScreens()
{
    QFETCH(QRect, wanted);
    QTEST(visibleGeometry(wanted, {QRect(0, 0, 1000, 800), QRect(1000, 0, 800, 600)}), "shown");
}

QTEST_MAIN(StartupTest)
#include "startup_test.moc"
