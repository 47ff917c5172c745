#include "app/run/outputname.h"

#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <sys/stat.h>

class OutputNameTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void names_data();
    void names();
    void theInputUnderAnyName();
    void linksAreFollowed();
    void space();

private:
    QString make(const QString &name) const { return writeFile(m_folder->filePath(name), {}); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void OutputNameTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/sortie é XXXXXX"));
}

void OutputNameTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("usable"); // empty: refused

    const auto row = [](const char *name, const char *typed, const char *usable) {
        QTest::newRow(name) << QString(typed) << QString(usable);
    };
    row("good", "a.tif", "a.tif");
    row("other extension, other case", "a.TIFF", "a.TIFF");
    row("none: added", "a", "a.tif");
    row("dot at the end", "a.", "a.tif");
    row("hidden file", ".a", ".a.tif");
    row("quotes, blanks, marks", "l'\"été\" %1 <b>.tif", "l'\"été\" %1 <b>.tif");
    row("empty", "", "");
    row("foreign extension", "a.png", "");
    row("missing folder", "no/a.tif", "");
    row("a folder", "sub", "");
    row("a folder that ends like a file", "sub.tif", "");
    row("a folder's name with the extension added", "subby", "");
    row("line feed", "a\nb.tif", "");
    row("backslash", "sub\\b.tif", "");
    row("not UTF-8", "a\uFFFD.tif", "");
    row("pipe", "pipe.tif", "");
    row("link to a device", "null.tif", "");
}

void OutputNameTest::names()
{
    QFETCH(QString, name);
    QFETCH(QString, usable);
    for (const char *folder : {"sub", "sub.tif", "subby.tif"})
        QVERIFY(QDir(m_folder->path()).mkdir(folder));
    QCOMPARE(::mkfifo(QFile::encodeName(m_folder->filePath("pipe.tif")).constData(), 0600), 0);
    QVERIFY(QFile::link("/dev/null", m_folder->filePath("null.tif")));
    const QString given = name.isEmpty() ? name : m_folder->filePath(name);
    const OutputName output = checkOutputName(given, {"tif", "tiff"}, {});
    QCOMPARE(output.problem.isEmpty(), !usable.isEmpty());
    if (!usable.isEmpty())
        QCOMPARE(output.path, m_folder->filePath(usable));
}

void OutputNameTest::theInputUnderAnyName()
{
    const QString dem = make("dem.tif");
    const QString side = make("dem.ovr.tif");
    QVERIFY(QFile::link(dem, m_folder->filePath("link.tif")));
    std::filesystem::create_hard_link(QFile::encodeName(dem).toStdString(),
                                      QFile::encodeName(m_folder->filePath("hard.tif")).toStdString());
    QVERIFY(QFile::link(m_folder->path(), m_folder->filePath("loop")));
    for (const char *name :
         {"dem.tif", "dem", "dem.ovr.tif", "link.tif", "hard.tif", "loop/dem.tif", "loop/../dem.tif"})
        QVERIFY2(!checkOutputName(m_folder->filePath(name), {"tif"}, {dem, side}).problem.isEmpty(), name);
    QCOMPARE(checkOutputName(m_folder->filePath("other.tif"), {"tif"}, {dem, side}).problem, QString());
}

void OutputNameTest::linksAreFollowed()
{
    QVERIFY(QFile::link(m_folder->filePath("new.tif"), m_folder->filePath("dangling.tif")));
    const OutputName output = checkOutputName(m_folder->filePath("dangling.tif"), {"tif"}, {});
    QCOMPARE(output.problem, QString());
    QCOMPARE(output.path, m_folder->filePath("new.tif"));
    QVERIFY(checkOutputName(m_folder->filePath("no.rule"), {}, {}).problem.isEmpty());
}

void OutputNameTest::space()
{
    QCOMPARE(expectedProductSize(processRow(Process::Slope), 100000, 100000), 40000000000LL);
    QCOMPARE(freeSpaceWarnings(m_folder->filePath("a.tif"), 1), QStringList());
    QVERIFY(freeSpaceWarnings(m_folder->filePath("a.tif"), std::numeric_limits<qint64>::max())
                .value(0)
                .contains(QLatin1String("EiB")));
}

QTEST_GUILESS_MAIN(OutputNameTest)
#include "outputname_test.moc"
