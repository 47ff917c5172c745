#pragma once

#include "colortable/colortablefile.h"

#include <QStringList>

// GRASS's two colour files. Rules (of r.colors) are points, one a line: "value colour", with "nv" or "*" for no
// data, "default" for what lies outside, and "end". A file of a map's own colours (colr) begins with "% min
// max" and holds ranges, "v1:r:g:b v2:r:g:b".

/// Whether the lines are rules. Rules without "default" or "end" read like the program's own tables.
bool isGrassRules(const QStringList &lines);
ColorTableReading readGrassRules(const QStringList &lines);

bool isGrassColors(const QStringList &lines);
ColorTableReading readGrassColors(const QStringList &lines);
