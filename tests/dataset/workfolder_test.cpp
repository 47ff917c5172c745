#include "dataset/workfolder.h"

#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>

class WorkFolderTest : public QObject
{
    Q_OBJECT

private slots:
    void deadFoldersAreSwept();

private:
    QTemporaryDir m_folder{QDir::tempPath() + QStringLiteral("/essai é中 XXXXXX")};
};

void WorkFolderTest::deadFoldersAreSwept()
{
    qputenv("TMPDIR", m_folder.path().toUtf8());
    const QString dead = m_folder.filePath("quvodemtoolbox-dead");
    QVERIFY(QDir().mkpath(dead) && QDir().mkpath(m_folder.filePath("quvodemtoolbox-begun")));
    writeFile(m_folder.filePath("quvodemtoolbox-dead/.lock"),
              "999999999\nQuvoDemBatch\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    QFile::link(m_folder.path(), m_folder.filePath("quvodemtoolbox-link"));
    const QString lock = writeFile(m_folder.filePath(".lock"), {});
    QString path;
    {
        WorkFolder alive;
        path = alive.path();
        WorkFolder other;
        QVERIFY(QFile::exists(other.path()) && other.path() != path);
        QVERIFY(QFile::exists(path));
    }
    QVERIFY(!QFile::exists(path) && !QFile::exists(dead));
    QVERIFY(QFile::exists(m_folder.filePath("quvodemtoolbox-begun")));
    QVERIFY(QFile::exists(lock)); // the link to its folder is not followed
    qunsetenv("TMPDIR");
}

QTEST_GUILESS_MAIN(WorkFolderTest)
#include "workfolder_test.moc"
