#pragma once

#include <QRgb>
#include <QString>
#include <QVector>

/// Folder of the colour tables that the program ships.
QString tableLibraryFolder();

/// Whether the library can be read and has no table of that name, which is without its ending.
bool isUnknownRamp(const QString &name);

/// Opaque colours of a table of the library, evenly spread from its lowest value to its highest. Empty where
/// there is no such table.
QVector<QRgb> rampColors(const QString &name);
