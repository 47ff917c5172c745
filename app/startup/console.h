#pragma once

#include <QByteArray>
#include <QString>

/// Prints on standard output as it stands, at once.
void printOutput(const QString &text);

/// All that comes on standard input, up to that many bytes.
QByteArray readInput(qint64 most);

/// Prints on standard error, at once, with a line feed at its end; nothing for an empty text.
void printError(const QString &text);
