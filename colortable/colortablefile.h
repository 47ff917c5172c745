#pragma once

#include "colortable/QuvoColorDef.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// The file format of colour tables. Each line is one entry: its value, then red, green, blue and optionally
// alpha as whole numbers from 0 to 255, or the name of a colour, as the DEM tool paints it where the tool knows
// it
// ("green" is 0 255 0), else as Qt does. Tabs, blanks, commas, colons and semicolons
// separate these fields. The value is an elevation, a percentage ("50%"), or "nv" (also -9999) for the cells
// without data. Lines that begin with '#' or '/' are comments.

/// A table that was read, and what was found in it. The caller decides what to do about the findings.
struct ColorTableReading
{
    QList<QuvoColorDef> entries; ///< sorted by value; empty when no valid entry was found
    bool mixedUnits = false;     ///< elevations and percentages in one table
    bool invalidValues = false;  ///< lines were skipped: not a number, out of range, or not a colour
    int invalidLine = 0;         ///< number of the first skipped line, from 1; 0 for none
    bool relative = false;       ///< the first entry of the file other than the no-data entry is a percentage
    bool plain = true;           ///< the DEM tool reads the same entries from the file
    bool categories = false;     ///< each colour stands for one value alone, not for the values between
    QString format;              ///< the other program whose format the file has; empty: the format above
    QStringList notes;           ///< sentences about what was approximated or left out
    QString problem;             ///< why the file could not be read, in a sentence; empty otherwise
};

/// Reads a table file of at most 4 MiB and 10,000 entries. The formats of other programs (colortable/formats)
/// are recognised by what the file holds; of those, one invalid line makes the whole file a problem.
ColorTableReading readColorTable(const QString &path);

/// Reads a table from the bytes of such a file; text is UTF-8.
ColorTableReading parseColorTable(const QByteArray &text);

/// Reduces a table of mixed units to its percentages (`relative`) or its elevations. The no-data entry stays.
QList<QuvoColorDef> entriesOfKind(const QList<QuvoColorDef> &entries, bool relative);

/// Formats a table as the editor writes it: values with one decimal, separated by tabs.
QByteArray colorTableText(const QList<QuvoColorDef> &entries);

/// The entries other than the no-data entry as the DEM tool gets them. Where several have one value, an edge,
/// the tool would paint a cell of exactly that value in a mixture of two of them: the first is moved to the
/// next lower 32-bit number, so that the cell has the last one's colour, and the entries between them are left
/// out, as are all but the last at 0 %.
QList<QuvoColorDef> toolEntries(const QList<QuvoColorDef> &entries);

/// Formats a table as a file that is read again as exactly these entries: values in full precision, the no-data
/// entry first.
QByteArray exactTableText(const QList<QuvoColorDef> &entries);

/// Formats a table for the DEM tool, with edges as toolEntries() makes them: values in full precision, the
/// no-data entry first.
QByteArray toolTableText(const QList<QuvoColorDef> &entries);

/// Why a table that was read from the file cannot be spread over a DEM's elevations, in a sentence: it mixes
/// units, or its colours stand for single values. Empty for any other table.
QString spreadProblem(const QString &file, const ColorTableReading &reading);

/// A table that was mapped onto the elevations of a DEM.
struct SpreadTable
{
    QByteArray text; ///< for the DEM tool; elevations are whole numbers, kept so on purpose
    int merged = 0;  ///< entries that differed from the one before and now have the same elevation
};

/// Maps the table's range of values linearly onto the elevations of a DEM. If all values of the table are
/// equal, they become the minimum.
SpreadTable spreadTable(const QList<QuvoColorDef> &entries, double demMinimum, double demMaximum);

/// Path of a file in the folder that does not exist yet: "base.txt", else "base_1.txt", "base_2.txt" and so on.
QString freeTableName(const QString &folder, const QString &base);

/// Writes a table file, completely or not at all. Returns an empty text, or why it failed, in the words of the
/// system.
QString writeTableFile(const QString &path, const QByteArray &text);
