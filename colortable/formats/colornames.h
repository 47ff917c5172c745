#pragma once

#include <QColor>
#include <QString>

// The names of colours. One name is another colour to another program: "green" is 0 128 0 on the web and 0 255
// 0 to the DEM tool. Each function returns an invalid colour for a name that it does not know; case does not
// matter.

/// The colour that the DEM tool paints for a name; names that only Qt knows and "#rrggbb" are read by Qt.
QColor toolNamedColor(const QString &name);

/// The colour of a name in GRASS; GRASS knows no other names.
QColor grassNamedColor(const QString &name);

/// The colour of an X11 name, as GMT uses them: "gray42", "red3", "maroon" as 176 48 96; also "#rrggbb".
QColor x11NamedColor(const QString &name);
