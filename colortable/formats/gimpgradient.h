#pragma once

#include "colortable/colortablefile.h"

#include <QStringList>

/// Whether the lines are a gradient of GIMP (.ggr): "GIMP Gradient", "Name: …", the number of segments, and one
/// segment a line.
bool isGimpGradient(const QStringList &lines);

/// Reads the gradient; its places become percentages. Curved and hue segments get more entries.
ColorTableReading readGimpGradient(const QStringList &lines);
