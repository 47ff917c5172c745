#pragma once

#include <QString>

/// Prints on standard output as it stands, at once.
void printOutput(const QString &text);

/// Prints on standard error, at once, with a line feed at its end; nothing for an empty text.
void printError(const QString &text);
