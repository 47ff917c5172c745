#pragma once

#include "colortable/QuvoColorDef.h"

#include <QVector>

#include <optional>

/// A colour on the ramp of a table under edit.
struct ColorCursor
{
    double value = 0.0; ///< elevation or percentage, with one decimal, as files keep it
    QColor color;
    bool even = false; ///< the segment from here to the next cursor runs evenly to the eye (colortable/oklab.h)

    bool operator==(const ColorCursor &other) const = default;
};

/// A colour table under edit: what the editor's window shows and its operations change. Cursors are sorted by
/// value; two cursors of one value make a sharp edge.
struct EditedTable
{
    QVector<ColorCursor> cursors;
    bool percent = false; ///< the values are percentages of the DEM's range of elevations
    std::optional<QColor> noData;

    bool operator==(const EditedTable &other) const = default;
};

/// A value as files keep it: with one decimal. -9999 is none, because it marks the no-data entry: it becomes
/// -9998.9. A percentage is 0 to 100.
double roundedValue(double value, bool percent);

/// The table of entries of one unit.
EditedTable editedTable(const QList<QuvoColorDef> &entries);

/// The entries that files and the tool get: even segments are written as plain entries.
QList<QuvoColorDef> plainEntries(const EditedTable &table);

/// The colour of a value, along even segments, too.
QColor colorOf(const EditedTable &table, double value);

// The operations below return a changed table. `at` is the index of a cursor.

/// A table and the cursor that an operation worked on.
struct CursorChange
{
    EditedTable table;
    int at = -1; ///< -1: the operation was not possible, and the table is unchanged
};

/// Adds a cursor that does not change the ramp.
CursorChange withCursor(const EditedTable &table, double value);

/// Removes a cursor; the last one stays.
CursorChange withoutCursor(const EditedTable &table, int at);

/// Moves a cursor as far as its neighbours.
CursorChange moved(const EditedTable &table, int at, double value);

/// Gives a cursor a value, which may lie beyond its neighbours.
CursorChange withValue(const EditedTable &table, int at, double value);

EditedTable withColor(const EditedTable &table, int at, const QColor &color);
EditedTable withEvenSegment(const EditedTable &table, int at, bool even);
EditedTable withNoData(const EditedTable &table, const std::optional<QColor> &color);

/// The ramp from its other end; the range of values stays.
EditedTable inverted(const EditedTable &table);

/// Each colour's complement in red, green and blue.
EditedTable negative(const EditedTable &table);

/// Colours by chance, the same for the same seed on every computer. Alpha and values stay.
EditedTable randomized(const EditedTable &table, quint32 seed);

/// Equal distances between the first and the last cursor. Edges become segments.
EditedTable spreadEvenly(const EditedTable &table);

/// The same share of the cells in each segment. sample: elevations of the DEM's cells, sorted, in the table's
/// unit. An empty sample changes nothing.
EditedTable spreadByArea(const EditedTable &table, const QVector<double> &sample);

/// Between elevations and percentages of the range from minimum to maximum, which are the DEM's extremes. A
/// percentage outside 0 to 100 becomes the nearer end. Changes nothing if minimum is not below maximum.
EditedTable toPercent(const EditedTable &table, double minimum, double maximum);
EditedTable toAbsolute(const EditedTable &table, double minimum, double maximum);

/// Each value times `factor` plus `shift`; factor: above 0.
EditedTable scaledAndShifted(const EditedTable &table, double factor, double shift);

/// Stretches the ramp over minimum to maximum. With `hinge`, the parts below and above the elevation 0 are
/// stretched on their own, and 0 keeps its colours. A part that has no values on its side of 0 stays without.
EditedTable fitted(const EditedTable &table, double minimum, double maximum, bool hinge);

/// Percent of the sample's cells below the first cursor, in each segment, and from the last cursor on. A cell
/// at a cursor's value counts to the segment above it. Empty for an empty sample.
QVector<double> segmentShares(const EditedTable &table, const QVector<double> &sample);

/// The values at which the table's lightness turns back, from rising to falling or the other way. Changes of
/// less than 0.02 of the lightness do not count. Elevations of equal distance look unequal where it turns.
QVector<double> lightnessTurns(const EditedTable &table);
