#pragma once

#include <QString>
#include <QStringList>

// Command lines for people to paste into a shell. The runner's own (runner/quoting) are split by other rules.

/// Which shell the text is for.
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

/// Program and arguments as one command; each arrives as it is, whatever it holds. (cmd has no way to pass a
/// line feed on, and no path of Windows holds one.)
QString shellCommand(const QStringList &words, Shell shell = nativeShell());

/// A command with lines of text on its standard input. The lines are JSON: none of them is a lone word.
QString shellCommandWithInput(const QStringList &words, const QByteArray &json, Shell shell = nativeShell());
