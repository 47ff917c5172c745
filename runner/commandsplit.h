#pragma once

#include <QString>
#include <QStringList>

/// Splits a command line for the desktop's shell into its program and its arguments, which stay one text.
///
/// In a command that begins with a double quote the program ends at the next one, and the character after that
/// closing quote is dropped. In any other command that holds a double quote the program ends at the first
/// blank. A command without any double quote, or without that closing quote or blank, is a program without
/// arguments.
void splitCommandLine(const QString &command, QString &program, QString &arguments);

/// A command line that was split for a child process.
struct ProcessCommand
{
    QString program; ///< empty when the command names no program: such a command must fail to start
    QStringList arguments;
};

/// Splits a command line at its blanks. Blanks between double quotes do not split; three double quotes in a row
/// stand for one. An empty quoted argument is dropped, as by QProcess::splitCommand(). An empty quoted program
/// stays an empty program: otherwise the first argument would be run in its place.
ProcessCommand splitProcessCommand(const QString &command);
