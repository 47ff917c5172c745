#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

// A document or a command is handed to the operating system's shell without waiting for it. Each helper returns
// whether the shell took it.

/// What the desktop does for the helpers below; a test puts its own in place.
struct ShellServices
{
    /// Opens a document or an address with the program that is set for it.
    std::function<bool(const QUrl &document)> open;
    /// Shows a local file, marked, in the file manager.
    std::function<bool(const QUrl &file)> showInFileManager;
    /// Starts a program that goes on by itself. An empty directory: the current one.
    std::function<bool(const QString &program, const QStringList &arguments, const QString &directory)> start;
};

/// The desktop's own services.
const ShellServices &desktopServices();

/// Opens `file` (a document, a folder, an address such as "https://…") when there are no parameters. With
/// parameters `file` is a program: "explorer" with "/select,<path>" shows the file in the file manager, on
/// every platform; any other program is started with them. A null `directory` leaves the current directory as
/// it is; otherwise it is the current one during the call. False for an empty `file` and for a local document
/// that does not exist.
bool shellExecute(const QString &file, const QString &parameters, const QString &directory,
                  const ShellServices &services = desktopServices());

/// Opens a document, a folder or an address.
bool openWithShell(const QString &file, const ShellServices &services = desktopServices());

/// Splits the command with splitCommandLine() and executes it.
bool executeCommandLine(const QString &command, const QString &directory,
                        const ShellServices &services = desktopServices());
