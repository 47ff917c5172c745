#include "runner/shellhelpers.h"

#include "messages/logging.h"
#include "runner/commandsplit.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#include <shellapi.h>
#else
#include <QDesktopServices>
#endif
#ifdef QT_DBUS_LIB
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#endif

#ifdef Q_OS_WIN

namespace
{

const wchar_t *wide(const QString &text)
{
    return text.isNull() ? nullptr : reinterpret_cast<const wchar_t *>(text.utf16());
}

} // namespace

const ShellServices &desktopServices()
{
    static const ShellServices services;
    return services;
}

bool shellExecute(const QString &file, const QString &parameters, const QString &directory,
                  const ShellServices &)
{
    if (file.isEmpty())
        return false;
    const QString previous = QDir::currentPath();
    if (!directory.isNull())
        QDir::setCurrent(directory);
    const auto result = reinterpret_cast<INT_PTR>(
        ShellExecuteW(nullptr, nullptr, wide(file), wide(parameters), wide(directory), SW_SHOWNORMAL));
    if (!directory.isNull())
        QDir::setCurrent(previous);
    return result > 32;
}

#else

namespace
{

bool showThroughDBus(const QUrl &file)
{
#ifdef QT_DBUS_LIB
    const QString service = QStringLiteral("org.freedesktop.FileManager1");
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const bool known = bus.interface()->isServiceRegistered(service)
        || bus.interface()->activatableServiceNames().value().contains(service);
    if (!known)
        return false;
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/FileManager1"), service, QStringLiteral("ShowItems"));
    message << QStringList{file.toString(QUrl::FullyEncoded)} << QString();
    return bus.send(message); // without waiting for the answer: the file manager may start slowly
#else
    Q_UNUSED(file)
    return false;
#endif
}

bool showFile(const QUrl &file)
{
    if (showThroughDBus(file))
        return true;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file.toLocalFile()).absolutePath()));
}

bool startDetached(const QString &program, const QStringList &arguments, const QString &directory)
{
    return QProcess::startDetached(program, arguments, directory);
}

/// "https://…" is an address, "C:/…" and "a:b" are not.
bool isAddress(const QString &file)
{
    return QUrl(file).scheme().size() > 1
        && (file.contains(QLatin1String("://")) || file.startsWith(QLatin1String("mailto:")));
}

bool execute(const QString &file, const QString &parameters, const QString &directory,
             const ShellServices &services)
{
    if (parameters.isEmpty()) {
        if (isAddress(file))
            return services.open(QUrl(file));
        const QFileInfo document(file);
        return document.exists() && services.open(QUrl::fromLocalFile(document.absoluteFilePath()));
    }

    const QLatin1String select("/select,");
    if (file.compare(QLatin1String("explorer"), Qt::CaseInsensitive) == 0 && parameters.startsWith(select)) {
        const QFileInfo shown(parameters.mid(select.size()));
        return shown.exists() && services.showInFileManager(QUrl::fromLocalFile(shown.absoluteFilePath()));
    }
    return services.start(file, QProcess::splitCommand(parameters), directory);
}

} // namespace

const ShellServices &desktopServices()
{
    static const ShellServices services{QDesktopServices::openUrl, showFile, startDetached};
    return services;
}

bool shellExecute(const QString &file, const QString &parameters, const QString &directory,
                  const ShellServices &services)
{
    if (file.isEmpty())
        return false;
    const QString previous = QDir::currentPath();
    if (!directory.isNull())
        QDir::setCurrent(directory);
    const bool taken = execute(file, parameters, directory, services);
    if (!directory.isNull())
        QDir::setCurrent(previous);
    if (!taken)
        qCWarning(lcRunner, "the desktop did not take %s %s", qUtf8Printable(file), qUtf8Printable(parameters));
    return taken;
}

#endif

bool openWithShell(const QString &file, const ShellServices &services)
{
    return shellExecute(file, QString(), QString(), services);
}

bool executeCommandLine(const QString &command, const QString &directory, const ShellServices &services)
{
    QString program;
    QString arguments;
    splitCommandLine(command, program, arguments);
    return shellExecute(program, arguments, directory, services);
}
