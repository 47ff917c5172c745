#pragma once

#include "colortable/QuvoColorDef.h"

#include <QByteArray>
#include <QStringList>

/// The formats of other programs that can be written.
enum class TableFormat
{
    GmtCpt,     ///< .cpt: ranges, and the colours below, above and without data
    QgisText,   ///< QGIS's export of a colour map
    QgisStyle,  ///< .qml: the style of a layer
    Sld,        ///< Styled Layer Descriptor 1.0
    GrassRules, ///< rules for r.colors
};

/// The table as the text of a file of that format (UTF-8). entries: sorted by value. Of a table of mixed units
/// the kind of its first entry is written. Empty for a table without elevations.
///
/// An edge becomes two values one 32-bit number apart where the format has no ranges. A CPT table of
/// percentages goes from 0 to 1.
QByteArray exportedTable(const QList<QuvoColorDef> &entries, TableFormat format);

/// What the format cannot hold of the table, in sentences; empty when nothing is lost.
QStringList exportLosses(const QList<QuvoColorDef> &entries, TableFormat format);
