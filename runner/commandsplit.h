#pragma once

#include <QString>
#include <QStringList>

/// Splits a command line for the desktop's shell into its program and the rest, in one piece.
///
/// In a command that begins with a double quote the program stands between it and the next one; the one
/// character after the closing quote is dropped. Any other command that holds a double quote ends its program
/// at the first blank. A command without any double quote, or without that closing quote or blank, is all
/// program.
void splitCommandLine(const QString &command, QString &program, QString &arguments);

/// A command line that was split for a child process.
struct ProcessCommand
{
    QString program; ///< empty when the command names none: such a command must fail to start
    QStringList arguments;
};

/// Splits a command line at its blanks; double quotes keep blanks together, and three in a row stand for one.
/// An empty quoted argument is dropped, as by QProcess::splitCommand; but an empty quoted program stays an
/// empty program, or the first argument would be run in its place.
ProcessCommand splitProcessCommand(const QString &command);
