#pragma once

#include "colortable/QuvoColorDef.h"

#include <QString>
#include <QVariant>

// A colour table as recipes store it: a list of rows
//
//     {"value": 1200.5, "color": [200, 180, 90]}, {"percent": 50, "color": [0, 0, 0, 255]},
//     {"value": "nv", "color": [0, 0, 0, 0]}
//
// where "color" is red, green, blue and, if it is not 255, alpha, and "nv" stands for the cells without data.

/// The rows of a table.
QVariantList colorRows(const QList<QuvoColorDef> &table);

/// The result of readColorRows().
struct ColorRowsReading
{
    QList<QuvoColorDef> entries; ///< sorted by value; empty when there is a problem
    QString problem;             ///< which row is not valid, in a sentence; empty for a good table
};

/// Reads the rows of a table. A table without rows is reported as a problem.
ColorRowsReading readColorRows(const QVariant &rows);
