#pragma once

#include "colortable/QuvoColorDef.h"

#include <QRgb>
#include <QVector>

/// The colours that the DEM tool gives to the cells of a DEM, computed in this program and equal to the tool's
/// in every cell (with "-alpha"): straight lines between the entries in red, green, blue and alpha, the colour
/// of the first and of the last entry beyond the ends.
class ToolColors
{
public:
    /// table: sorted by value, its percentages are those of the range from `minimum` to `maximum`.
    ToolColors(const QList<QuvoColorDef> &table, double minimum, double maximum);

    /// The colour of an elevation; transparent for a table without elevations.
    QRgb color(double elevation) const;

    /// The colour of a cell without data: that of the no-data entry, or transparent black.
    QRgb noDataColor() const { return m_noData; }

private:
    QList<QuvoColorDef> m_entries; ///< in the unit of the DEM
    QRgb m_noData = 0;
};
