#include "colortable/toolcolors.h"

#include "colortable/colortablefile.h"

ToolColors::ToolColors(const QList<QuvoColorDef> &table, double minimum, double maximum, double noDataValue)
    : m_entries(toolEntries(table))
{
    for (QuvoColorDef &entry : m_entries) {
        if (entry.percent)
            entry.value = minimum + entry.value / 100.0 * (maximum - minimum);
    }
    sortByValue(m_entries);
    const QuvoColorDef *noData = noDataEntry(table);
    m_noData = noData ? noData->color.rgba() : color(noDataValue);
}

QRgb ToolColors::color(double elevation) const
{
    return colorAt(m_entries, elevation).rgba();
}
