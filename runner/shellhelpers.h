#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

// These helpers pass a document or a command to the operating system's shell and do not wait for it. Each
// returns whether the shell accepted it.

/// What the helpers below need of the desktop. A test passes functions of its own.
struct ShellServices
{
    /// Opens a document or an address with the program that the desktop has set for it.
    std::function<bool(const QUrl &document)> open;
    /// Shows a local file, selected, in the file manager.
    std::function<bool(const QUrl &file)> showInFileManager;
    /// Starts a program that outlives this one. An empty directory means the current one.
    std::function<bool(const QString &program, const QStringList &arguments, const QString &directory)> start;
};

/// The desktop's own services.
const ShellServices &desktopServices();

/// Without parameters: opens `file`, which is a document, a folder or an address such as "https://…".
///
/// With parameters: `file` is a program. "explorer" with "/select,<path>" shows that path in the file manager,
/// on every platform; any other program is started with the parameters.
///
/// `directory` is the current directory during the call; a null text leaves the current directory as it is.
/// Returns false for an empty `file` and for a local document that does not exist.
bool shellExecute(const QString &file, const QString &parameters, const QString &directory,
                  const ShellServices &services = desktopServices());

/// Opens a document, a folder or an address.
bool openWithShell(const QString &file, const ShellServices &services = desktopServices());

/// Splits the command with splitCommandLine() and passes both parts to shellExecute().
bool executeCommandLine(const QString &command, const QString &directory,
                        const ShellServices &services = desktopServices());
