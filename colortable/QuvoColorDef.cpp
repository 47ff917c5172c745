#include "colortable/QuvoColorDef.h"

#include <algorithm>

void sortByValue(QList<QuvoColorDef> &table)
{
    std::stable_sort(table.begin(), table.end(), [](const QuvoColorDef &one, const QuvoColorDef &other) {
        return one.value < other.value;
    });
}

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

QColor colorBetween(const QuvoColorDef &below, const QuvoColorDef &above, double value)
{
    if (below.value == above.value)
        return above.color;
    const double part = (value - below.value) / (above.value - below.value);
    // The tool adds 0.45, not 0.5, before it cuts the decimals.
    const auto mix = [&](int from, int to) {
        return qBound(0, static_cast<int>(0.45 + from + part * (to - from)), 255);
    };
    return {mix(below.color.red(), above.color.red()), mix(below.color.green(), above.color.green()),
            mix(below.color.blue(), above.color.blue()), mix(below.color.alpha(), above.color.alpha())};
}

QColor colorAt(const QList<QuvoColorDef> &entries, double value)
{
    if (entries.isEmpty())
        return Qt::transparent;
    const auto above =
        std::upper_bound(entries.begin(), entries.end(), value,
                         [](double wanted, const QuvoColorDef &entry) { return wanted < entry.value; });
    if (above == entries.begin())
        return entries.first().color;
    const QuvoColorDef &below = *(above - 1);
    return above == entries.end() || below.value == value ? below.color : colorBetween(below, *above, value);
}

QColor rampColor(const QList<QuvoColorDef> &entries, double place)
{
    if (entries.isEmpty())
        return Qt::transparent;
    const double first = entries.first().value;
    return colorAt(entries, first + place * (entries.last().value - first));
}
