#pragma once

#include "colortable/colortablefile.h"

#include <QStringList>

// GMT's colour palette tables (.cpt) of the versions 4 to 6. Each line colours one range of values,
//
//     z0 colour z1 colour [L|U|B] [;label]
//
// or one value (`key colour [;label]`); "B", "F" and "N" lines colour what lies below, above, and has no data.

/// Whether the lines are such a table. Tables without a mark in a comment are recognised by their ranges.
bool isCptFile(const QStringList &lines);

/// Reads the table. Values from 0 to 1, and from -1 to 1, which GMT stretches, are stretched over the file's
/// RANGE or become percentages. Ranges that are mixed in hue, saturation and value get more entries.
ColorTableReading readCptFile(const QStringList &lines);
