#pragma once

#include "colortable/QuvoColorDef.h"

#include <QRgb>
#include <QString>
#include <QVector>

/// Folder of the colour tables that the program ships.
QString tableLibraryFolder();

/// Whether the library can be read and has no table of that name, which is without its ending.
bool isUnknownRamp(const QString &name);

/// Opaque colours of a table's elevations or percentages, evenly spread from the lowest value to the highest.
QVector<QRgb> evenColors(const QList<QuvoColorDef> &entries);

/// Those of a table of the library; empty where there is no such table.
QVector<QRgb> rampColors(const QString &name);
