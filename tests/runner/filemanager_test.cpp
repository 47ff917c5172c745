#include "runner/shellhelpers.h"

#include <QDBusConnection>
#include <QTemporaryFile>
#include <QTest>

/// A file manager on the session bus, which dbus-run-session makes for this test.
class FileManager : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public slots:
    void ShowItems(const QStringList &addresses, const QString &) { shown += addresses; }

public:
    QStringList shown;
};

class FileManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void selectedFileReachesTheFileManager();
};

void FileManagerTest::selectedFileReachesTheFileManager()
{
    FileManager manager;
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerObject("/org/freedesktop/FileManager1", &manager, QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService("org.freedesktop.FileManager1"));

    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/rélief \"a\" XXXXXX.tif"));
    QVERIFY(file.open());
    QVERIFY(executeCommandLine(QStringLiteral("\"explorer\" /select,%1").arg(file.fileName()), QString()));
    QTRY_COMPARE(manager.shown, QStringList{QUrl::fromLocalFile(file.fileName()).toString(QUrl::FullyEncoded)});
}

QTEST_GUILESS_MAIN(FileManagerTest)
#include "filemanager_test.moc"
