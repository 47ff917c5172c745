#include "app/run/PartFolder.h"

#include "app/run/outputlock.h"
#include "tests/support/files.h"

#include <QDir>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

class PartFolderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void replacesWholeProducts();
    void aFailedMoveChangesNothing();
    void sweepPutsOldFilesBack();
    void longNames();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QMap<QString, QByteArray> &files) const
    {
        for (auto file = files.begin(); file != files.end(); ++file) {
            QVERIFY(QDir().mkpath(QFileInfo(path(file.key())).path()));
            writeFile(path(file.key()), file.value());
        }
    }
    /// Contents of all files of the folder; that of a folder is "folder".
    QMap<QString, QByteArray> found() const
    {
        QMap<QString, QByteArray> files;
        for (const QFileInfo &entry :
             QDir(m_folder->path()).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            files[entry.fileName()] = entry.isDir() ? QByteArray("folder") : bytesOf(entry.filePath());
        return files;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void PartFolderTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/partie é XXXXXX"));
}

void PartFolderTest::replacesWholeProducts()
{
    write({{"a.img", "old"}, {"a.hdr", "old"}, {"a.img.ovr", "old"}, {"a.txt", "mine"}});
    {
        PartFolder part(path("a.img"));
        const QString inPart = QFileInfo(part.product()).path();
        QCOMPARE(part.withFinalPaths("no " + inPart + "/a.hdr"), "no " + path("a.hdr"));
        for (const char *name : {"/a.img", "/a.hdr", "/a.prj"})
            writeFile(inPart + name, "new");
        QCOMPARE(part.place({path("a.img"), path("a.img.ovr")}), QString());
    }
    QCOMPARE(
        found(),
        (QMap<QString, QByteArray>{{"a.img", "new"}, {"a.hdr", "new"}, {"a.prj", "new"}, {"a.txt", "mine"}}));
}

void PartFolderTest::aFailedMoveChangesNothing()
{
    write({{"a.img", "old"}, {"a.hdr", "old"}, {"a.img.ovr", "old"}, {"a.prj/file", "in the way of a.prj"}});
    const auto before = found();
    for (const QStringList &names : {QStringList{"a.hdr", "a.stx"}, QStringList{"a.hdr", "a.prj", "a.img"}}) {
        {
            PartFolder part(path("a.img")); // the product is missing, or a folder has the name of a side file
            for (const QString &name : names)
                writeFile(QFileInfo(part.product()).path() + '/' + name, "new");
            QVERIFY(!part.place({path("a.img"), path("a.img.ovr")}).isEmpty());
        }
        QCOMPARE(found(), before);
    }
}

void PartFolderTest::sweepPutsOldFilesBack()
{
    const QMap<QString, QByteArray> kept{{"a.img", "old"}, {"a.hdr", "old"}, {"a.img.ovr", "old"}};
    const QString dead = ".a.img.part-a1B2c3/";
    // The run died while its product replaced the old one: a.hdr and a.prj are new, a.img is not.
    write({{"a.img", "old"},
           {"a.hdr", "new"},
           {"a.prj", "new"},
           {dead + "names", "a.hdr\na.prj\na.img"},
           {dead + "new/a.img", "new"},
           {dead + "old/a.img", "old"},
           {dead + "old/a.hdr", "old"},
           {dead + "old/a.img.ovr", "old"}});
    QCOMPARE(OutputLock(path("a.img")).problem(), QString());
    QCOMPARE(found(), kept);

    // It died after that, or before: what stands there stays. Other folders are none of ours.
    write({{dead + "names", "a.img"}, {dead + "new/rest", {}}, {dead + "old/a.img", "older"}});
    write({{".a.img.part-d1B2c3/new/a.img", "half"},
           {".b.img.part-a1B2c3/new/b.img", {}},
           {".a.img.part-x/y", {}},
           {".a.img.part-foreig/y", {}}});
    QVERIFY(QFile::link(m_folder->path(), path(".a.img.part-abcdef")));
    QCOMPARE(OutputLock(path("a.img")).problem(), QString());
    auto now = found();
    for (const char *foreign :
         {".b.img.part-a1B2c3", ".a.img.part-x", ".a.img.part-foreig", ".a.img.part-abcdef"})
        QCOMPARE(now.take(foreign), QByteArray("folder"));
    QCOMPARE(now, kept);
}

void PartFolderTest::longNames()
{
    const QString output = path(QString(251, 'a') + ".tif");
    const OutputLock lock(output);
    QCOMPARE(lock.problem(), QString());
    PartFolder part(output);
    QVERIFY(part.isValid());
    writeFile(part.product(), "new");
    QCOMPARE(part.place({}), QString());
    QCOMPARE(bytesOf(output), QByteArray("new"));
}

QTEST_GUILESS_MAIN(PartFolderTest)
#include "partfolder_test.moc"
