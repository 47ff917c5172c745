#pragma once

#include "app/recipe/recipe.h"
#include "app/run/runplan.h"

#include <QString>
#include <QStringList>

// Commands for people to paste into a shell. The command lines of the runner (runner/quoting) follow other
// rules.

/// The shell that a command is quoted for.
enum class Shell
{
    Posix,
    Windows ///< cmd
};

/// The shell of this platform.
constexpr Shell nativeShell()
{
#ifdef Q_OS_WIN
    return Shell::Windows;
#else
    return Shell::Posix;
#endif
}

/// Quotes a program and its arguments so that the program receives each word unchanged. A word for cmd must not
/// contain a line feed: cmd cannot pass one on, and no path of Windows contains one.
QString shellCommand(const QStringList &words, Shell shell = nativeShell());

/// The command that makes the product of a planned run when it is pasted into a shell: the tool's command,
/// followed by the command that builds the overviews. Where the tool reads a temporary file of this program or
/// would leave statistics beside the DEM, it is the batch program with the run's recipe on its standard input.
/// The command shows no question: the batch program keeps an existing product, a tool replaces it.
QString copiedCommand(const RunPlan &plan, const Recipe &recipe, const ToolPaths &tools,
                      Shell shell = nativeShell());

/// The notice after a command was copied.
QString commandCopiedText();
