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

/// The table of such rows, sorted by value. problem: why they are none, in a sentence; untouched for good ones.
QList<QuvoColorDef> readColorRows(const QVariant &rows, QString &problem);
