#pragma once

#include "colortable/colortablefile.h"

#include <QStringList>

// Palettes, which have no values: their colours are spread evenly. Surfer's colour levels have percentages.

/// Surfer's levels (.clr): "ColorMap 1 1" or "ColorMap 2 1", then "percent r g b [a]". Values above 100 make
/// all values elevations.
bool isSurferLevels(const QStringList &lines);
ColorTableReading readSurferLevels(const QStringList &lines);

/// GIMP's palette (.gpl).
bool isGimpPalette(const QStringList &lines);
ColorTableReading readGimpPalette(const QStringList &lines);

/// SAGA's palette as text: a mark, the number of colours, one colour a line.
bool isSagaText(const QStringList &lines);
ColorTableReading readSagaText(const QStringList &lines);

/// Whether the bytes are a palette of no text: SAGA's with a mark, SAGA's first form (a 16-bit count, then all
/// reds, greens and blues), or Adobe's .act (256 colours, in the longer form with their number and the
/// transparent one). Without a mark only the exact size and bytes that are no text make a palette.
bool isBinaryPalette(const QByteArray &bytes);
ColorTableReading readBinaryPalette(const QByteArray &bytes);
