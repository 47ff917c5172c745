#pragma once

#include "colortable/colortablefile.h"

#include <QStringList>

// QGIS's colour tables: its text export ("value,r,g,b,a,label" after a line INTERPOLATION:…), a layer's style
// (.qml) and a collection of colour ramps (.xml). INTERPOLATED mixes between the values; DISCRETE colours the
// values up to and including each bound, the last of which may be "inf"; EXACT colours single values.

bool isQgisText(const QStringList &lines);
ColorTableReading readQgisText(const QStringList &lines);

/// Reads a layer's style, of which the renderer must be "singlebandpseudocolor". Its ramp counts only where
/// there are no items.
ColorTableReading readQgisStyle(const QByteArray &xml);

/// Reads the first gradient of a collection; its positions become percentages.
ColorTableReading readQgisRamps(const QByteArray &xml);
