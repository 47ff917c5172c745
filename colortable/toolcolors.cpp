#include "colortable/toolcolors.h"

#include "colortable/colortablefile.h"

#include <algorithm>

ToolColors::ToolColors(const QList<QuvoColorDef> &table, double minimum, double maximum, double noDataValue)
    : m_entries(toolEntries(table))
{
    for (QuvoColorDef &entry : m_entries) {
        if (entry.percent)
            entry.value = minimum + entry.value / 100.0 * (maximum - minimum);
    }
    std::stable_sort(
        m_entries.begin(), m_entries.end(),
        [](const QuvoColorDef &one, const QuvoColorDef &other) { return one.value < other.value; });
    const QuvoColorDef *noData = noDataEntry(table);
    m_noData = noData ? noData->color.rgba() : color(noDataValue);
}

QRgb ToolColors::color(double elevation) const
{
    return colorAt(m_entries, elevation).rgba();
}
