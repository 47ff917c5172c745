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
    /// noDataValue: the elevation that marks the DEM's cells without data.
    ToolColors(const QList<QuvoColorDef> &table, double minimum, double maximum,
               double noDataValue = QuvoColorDef::noDataValue);

    /// The colour of an elevation; transparent for a table without elevations.
    QRgb color(double elevation) const;

    /// The colour of a cell without data. Without a no-data entry the tool takes it for one of the elevation
    /// that marks it.
    QRgb noDataColor() const { return m_noData; }

private:
    QList<QuvoColorDef> m_entries; ///< in the unit of the DEM
    QRgb m_noData = 0;
};
