#include "app/startup/environment.h"

#include "tests/fuzz/mutations.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class EnvironmentTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8()); } // not the user's own settings
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void environmentFiles();
    void precedence();
    void variables();
    void childrenInherit();
    void mutations();

private:
    QString write(const QString &name, const QByteArray &text) const
    {
        return writeFile(m_folder->filePath(name), text);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_home;
};

void EnvironmentTest::environmentFiles()
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

void EnvironmentTest::precedence()
{
    const QString program = m_folder->filePath("Tool");
    const auto read = [&](const QByteArray &text) {
        write("Tool_env.ini", text);
        return readEnvironment(program);
    };
    const Environment bare = readEnvironment(program);
    QCOMPARE(bare.language, systemLanguage(bare.messagesPath));
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
    QCOMPARE(read(keys).language, systemLanguage(bare.messagesPath)); // an empty value counts as missing
    QCOMPARE(read(keys).installDir, m_folder->path());
}

void EnvironmentTest::variables()
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

void EnvironmentTest::childrenInherit()
{
    // A script in place of GDAL's tool prints the environment that it inherits.
    QVERIFY(QFile::copy(QUVO_TREE "/QuvoDemBatch", m_folder->filePath("QuvoDemBatch")));
    QVERIFY(QDir(m_folder->path()).mkdir("data"));
    writeScript(m_folder->filePath("gdal_dem.exe"), "env >&2\nexit 1\n");
    write("QuvoDemToolBox_env.ini", "[QuvoDirectSettings]\nLANGUAGE = FRENCH\n");
    const auto inherited = [&](const QString &locale) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANGUAGE", "GEOLANGUE"})
            environment.remove(variable);
        environment.insert("LANG", locale);
        const QStringList arguments{"--process", "hillshade",
                                    "--input",   QUVO_TREE "/samples/sample_dem.tif",
                                    "--output",  m_folder->filePath("a.tif")};
        return runProgram(m_folder->filePath("QuvoDemBatch"), arguments, environment).error.split('\n');
    };
    const QStringList lines = inherited("en_GB.UTF-8");
    const QString folder = m_folder->path();
    for (const QString &line :
         {"QUVO_BIN_HOME=" + folder, "LUMAGRAF_HOME=" + folder, QStringLiteral("GEOLANGUE=FRENCH"),
          "GDAL_DATA=" + folder + "/data", QStringLiteral("SHAPE_ENCODING=")})
        QVERIFY2(lines.contains(line), qPrintable(line));
    QVERIFY(lines.filter(QRegularExpression("^PATH=" + folder + ":")).size() == 1);
    QVERIFY(lines.filter("GDAL_DRIVER_PATH").isEmpty());
    QVERIFY(QFile::remove(m_folder->filePath("QuvoDemToolBox_env.ini")));
    QVERIFY(inherited("fr_CA.UTF-8").contains("GEOLANGUE=FRENCH")); // the system's language
    QVERIFY(inherited("de_DE.UTF-8").contains("GEOLANGUE=ENGLISH"));
    QVERIFY(QDir(m_folder->path()).mkdir("MESSAGES"));
    write("MESSAGES/geodico.al", "");
    QVERIFY(inherited("de_DE.UTF-8").contains("GEOLANGUE=ENGLISH")); // half a dictionary
    write("MESSAGES/geodico.al.idx", "");
    QVERIFY(inherited("de_AT.UTF-8").contains("GEOLANGUE=ALLEMAND"));
    QVERIFY(inherited("fr_CA.UTF-8").contains("GEOLANGUE=FRENCH"));
    QSettings("KARVEX", "Riglios").setValue("Interface/ChosenLanguage", "ALLEMAND");
    QVERIFY(inherited("fr_CA.UTF-8").contains("GEOLANGUE=ALLEMAND"));
    QVERIFY(QFile::remove(m_folder->filePath("MESSAGES/geodico.al")));
    QVERIFY(inherited("fr_CA.UTF-8").contains("GEOLANGUE=FRENCH"));
}

void EnvironmentTest::mutations()
{
    fuzzMutations(fuzzCorpus("environment"), 1000);
}

QTEST_GUILESS_MAIN(EnvironmentTest)
#include "environment_test.moc"
