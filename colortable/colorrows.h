#pragma once

#include "colortable/QuvoColorDef.h"

#include <QString>
#include <QVariant>

// A colour table by value, as recipes hold it: a list of rows
//
//     {"value": 1200.5, "color": [200, 180, 90]}, {"percent": 50, "color": [0, 0, 0, 255]},
//     {"value": "nv", "color": [0, 0, 0, 0]}
//
// with red, green, blue and, if it is not 255, alpha; "nv" is the colour of the cells without data.

/// The rows of a table.
QVariantList colorRows(const QList<QuvoColorDef> &table);

/// A table that was read from its rows.
struct ColorRowsReading
{
    QList<QuvoColorDef> entries; ///< sorted by value; empty with a problem
    QString problem;             ///< which row is not valid, in a sentence; empty for a good table
};

/// Reads the rows of a table; a table without rows is a problem.
ColorRowsReading readColorRows(const QVariant &rows);
