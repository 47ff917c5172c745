#include "runner/desktopnotice.h"
#include "runner/shellhelpers.h"

#include <QDBusConnection>
#include <QTemporaryFile>
#include <QTest>
#include <QWindow>

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

/// A notification area on the same bus.
class NoticeArea : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public slots:
    uint Notify(const QString &, uint, const QString &, const QString &title, const QString &text,
                const QStringList &, const QVariantMap &, int)
    {
        shown += title + '|' + text;
        return 1;
    }

public:
    QStringList shown;
};

class DesktopTest : public QObject
{
    Q_OBJECT

private slots:
    void selectedFileReachesTheFileManager();
    void noticeOfTheEndOnlyInTheBackground();
};

void DesktopTest::selectedFileReachesTheFileManager()
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

void DesktopTest::noticeOfTheEndOnlyInTheBackground()
{
    NoticeArea area;
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerObject("/org/freedesktop/Notifications", &area, QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService("org.freedesktop.Notifications"));

    QVERIFY(QGuiApplication::applicationState() != Qt::ApplicationActive);
    announceEnd(nullptr, "Terminé", "l'été <b> & co.tif");
    const QStringList shown{"Terminé|l'été &lt;b&gt; &amp; co.tif"};
    QTRY_COMPARE(area.shown, shown);

    QWindow window;
    window.show();
    window.requestActivate();
    QTRY_COMPARE(QGuiApplication::applicationState(), Qt::ApplicationActive);
    announceEnd(&window, "Active", "not shown");
    QVERIFY(showDesktopNotice("Last", {})); // messages arrive in their order
    QTRY_COMPARE(area.shown, shown + QStringList{"Last|"});
}

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
