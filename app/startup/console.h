#pragma once

#include <QByteArray>
#include <QString>

/// Prints the text on standard output in the encoding of the locale and flushes it. Returns whether all output
/// so far could be written.
bool printOutput(const QString &text);

/// Reads standard input to its end, at most `most` bytes; empty when it cannot be read.
QByteArray readInput(qint64 most);

/// Prints the text on standard error, with a line feed at its end, and flushes it. Prints nothing for an empty
/// text.
void printError(const QString &text);
