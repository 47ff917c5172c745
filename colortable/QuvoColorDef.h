#pragma once

#include <QColor>
#include <QList>
#include <QMetaType>

/// One entry of a colour table.
struct QuvoColorDef
{
    /// Elevation in the unit of the DEM, or percentage (0 to 100) of its range of elevations. noDataValue: the
    /// entry is the colour of the cells without data.
    double value = 0.0;
    QColor color;         ///< red, green, blue and alpha, 0 to 255 each
    bool percent = false; ///< the value is a percentage

    static constexpr double noDataValue = -9999.0;
    bool isNoData() const { return value == noDataValue; }

    bool operator==(const QuvoColorDef &other) const
    {
        return value == other.value && color == other.color && percent == other.percent;
    }
};

Q_DECLARE_METATYPE(QuvoColorDef)

// A colour table is a list of entries sorted by value. Two entries of the same value make a sharp edge. The
// no-data entry has no place of its own: its value sorts it among the others.

/// Sorts a table by value. Entries of one value keep their order, which is that of an edge's colours.
void sortByValue(QList<QuvoColorDef> &table);

/// The entries of a table other than the no-data entry.
QList<QuvoColorDef> elevationEntries(const QList<QuvoColorDef> &table);

/// The no-data entry of a table, owned by the table; null when there is none.
const QuvoColorDef *noDataEntry(const QList<QuvoColorDef> &table);

/// The colour of a value between two entries, rounded as the DEM tool rounds it. Entries of one value: the
/// second colour.
QColor colorBetween(const QuvoColorDef &below, const QuvoColorDef &above, double value);

/// The colour of a value: that of the first or last entry beyond the ends, and the upper one on an edge.
/// Transparent for a table without elevations. entries: as elevationEntries() returns them.
QColor colorAt(const QList<QuvoColorDef> &entries, double value);

/// The colour at a place of the ramp, from 0 (first elevation) to 1 (last), interpolated linearly between two
/// entries as the DEM tool does. Transparent for a table without elevations. entries: as elevationEntries()
/// returns them.
QColor rampColor(const QList<QuvoColorDef> &entries, double place);
