#pragma once

#include <QColor>
#include <QList>

/// One entry of a colour table.
struct QuvoColorDef
{
    /// Elevation in the DEM's unit, or a percentage of its range of elevations, 0 to 100; noDataValue marks the
    /// colour of the cells without data.
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

// A colour table is a list of entries, sorted by value. Two entries of one value mark a sharp edge. The no-data
// entry stands wherever its value sorts it.

/// The entries of a table other than the no-data entry.
QList<QuvoColorDef> elevationEntries(const QList<QuvoColorDef> &table);

/// The no-data entry of a table; null when it has none. It belongs to the table.
const QuvoColorDef *noDataEntry(const QList<QuvoColorDef> &table);

/// The colour at a place of the ramp, 0 its first elevation and 1 its last, between two entries by linear
/// interpolation as the tool does it; transparent for a table without elevations. entries: elevationEntries().
QColor rampColor(const QList<QuvoColorDef> &entries, double place);
