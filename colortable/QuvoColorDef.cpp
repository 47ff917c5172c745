#include "colortable/QuvoColorDef.h"

#include <algorithm>
#include <cmath>

QList<QuvoColorDef> elevationEntries(const QList<QuvoColorDef> &table)
{
    QList<QuvoColorDef> entries;
    std::copy_if(table.begin(), table.end(), std::back_inserter(entries),
                 [](const QuvoColorDef &entry) { return !entry.isNoData(); });
    return entries;
}

const QuvoColorDef *noDataEntry(const QList<QuvoColorDef> &table)
{
    const auto found =
        std::find_if(table.begin(), table.end(), [](const auto &entry) { return entry.isNoData(); });
    return found == table.end() ? nullptr : &*found;
}

QColor rampColor(const QList<QuvoColorDef> &entries, double place)
{
    if (entries.isEmpty())
        return Qt::transparent;
    const double first = entries.first().value;
    const double value = first + place * (entries.last().value - first);
    const auto above = std::find_if(entries.begin(), entries.end(),
                                    [&](const QuvoColorDef &entry) { return entry.value > value; });
    if (above == entries.begin())
        return entries.first().color;
    const QuvoColorDef &below = *(above - 1);
    if (above == entries.end())
        return below.color;
    const double part = (value - below.value) / (above->value - below.value);
    const auto mix = [&](int from, int to) { return static_cast<int>(std::lround(from + part * (to - from))); };
    return {mix(below.color.red(), above->color.red()), mix(below.color.green(), above->color.green()),
            mix(below.color.blue(), above->color.blue()), mix(below.color.alpha(), above->color.alpha())};
}
