#pragma once

#include "colortable/QuvoColorDef.h"

#include <QByteArray>
#include <QString>

// The file format of colour tables. A line is one entry: its value, then red, green, blue and, if it likes,
// alpha as whole numbers from 0 to 255, or the name of a colour; tabs, blanks, commas, colons and semicolons
// separate them. The value is an elevation, a percentage ("50%"), or "nv" (-9999, too) for the cells without
// data. Lines that begin with
// '#' or '/' are comments.

/// A table that was read. Whoever reads it asks about what was found.
struct ColorTableReading
{
    QList<QuvoColorDef> entries; ///< sorted by value; empty when no valid entry was found
    bool mixedUnits = false;     ///< elevations and percentages side by side
    bool invalidValues = false;  ///< lines were left out: no number, out of range, or no colour
    int invalidLine = 0;         ///< the first of them, from 1
    bool relative = false;       ///< the first entry of the file other than the no-data entry is a percentage
    bool plain = true;           ///< the DEM tool reads the same entries in the file
    QString problem;             ///< why the file could not be read, in a sentence; empty otherwise
};

/// Reads a table file of at most 4 MiB and 10,000 entries.
ColorTableReading readColorTable(const QString &path);

/// The table in the text of such a file.
ColorTableReading parseColorTable(const QByteArray &text);

/// The entries of one kind, and the no-data entry: what is left of a table of mixed units.
QList<QuvoColorDef> entriesOfKind(const QList<QuvoColorDef> &entries, bool relative);

/// The text of a table file as the editor writes it: one decimal, tabs.
QByteArray colorTableText(const QList<QuvoColorDef> &entries);

/// The text of a table file for the DEM tool: values as exact as they are, the no-data entry first.
QByteArray toolTableText(const QList<QuvoColorDef> &entries);

/// A table spread over a DEM's elevations.
struct SpreadTable
{
    QByteArray text; ///< for the DEM tool; elevations are whole numbers, on purpose
    int merged =
        0; ///< entries that fell on the elevation of the one before, and were apart from it in the table
};

/// Maps the table's own range of values onto the DEM's elevations. A table whose values are all one goes to the
/// minimum.
SpreadTable spreadTable(const QList<QuvoColorDef> &entries, double demMinimum, double demMaximum);

/// A name in the folder that no file has: "base.txt", or "base_1.txt" and so on.
QString freeTableName(const QString &folder, const QString &base);

/// Writes a table file whole or not at all. Returns why it could not, in the system's words; empty when the
/// file is written.
QString writeTableFile(const QString &path, const QByteArray &text);
