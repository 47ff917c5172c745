#pragma once

#include <QString>

// Rules of the main dialog that need no window.

/// Whether the launch button is enabled. `output` is the text of the output field.
bool canLaunch(bool hasInput, const QString &output, bool panelIsComplete);

/// The notice after a command was copied.
QString commandCopiedText();
