#include "runner/desktopnotice.h"

#include <QGuiApplication>
#include <QWindow>
#ifdef QT_DBUS_LIB
#include <QDBusConnection>
#include <QDBusMessage>
#endif

bool showDesktopNotice(const QString &title, const QString &text)
{
#ifdef QT_DBUS_LIB
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    // The desktop may read the body as markup (org.freedesktop.Notifications 1.2).
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/Notifications"), service, QStringLiteral("Notify"));
    constexpr uint replacesNone = 0;
    constexpr int usualDuration = -1;
    QVariantMap hints;
    if (const QString file = QGuiApplication::desktopFileName(); !file.isEmpty())
        hints.insert(QStringLiteral("desktop-entry"), file);
    message << QGuiApplication::applicationDisplayName() << replacesNone << QString() << title
            << text.toHtmlEscaped() << QStringList() << hints << usualDuration;
    return bus.send(message); // without waiting for the answer
#else
    Q_UNUSED(title)
    Q_UNUSED(text)
    return false;
#endif
}

void announceEnd(QWindow *window, const QString &title, const QString &text)
{
    if (QGuiApplication::applicationState() == Qt::ApplicationActive)
        return;
    constexpr int untilActive = 0;
    if (window)
        window->alert(untilActive);
    showDesktopNotice(title, text);
}
