#include "colortable/editor/editedtable.h"

#include "colortable/editor/colorplaces.h"
#include "colortable/oklab.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

constexpr double step = 0.1; // of the values in files

QuvoColorDef entryOf(const ColorCursor &cursor, bool percent)
{
    return {cursor.value, cursor.color, percent};
}

void sortCursors(EditedTable &table)
{
    std::stable_sort(table.cursors.begin(), table.cursors.end(),
                     [](const ColorCursor &one, const ColorCursor &other) { return one.value < other.value; });
}

/// The table with each value replaced; `change` is increasing.
template <class Change> EditedTable withValues(EditedTable table, const Change &change)
{
    for (ColorCursor &cursor : table.cursors)
        cursor.value = roundedValue(change(cursor.value), table.percent);
    return table;
}

bool isCursor(const EditedTable &table, int at)
{
    return at >= 0 && at < table.cursors.size();
}

double lightnessAt(const EditedTable &table, double value)
{
    return toOkLab(colorOf(table, value)).lightness;
}

} // namespace

double roundedValue(double value, bool percent)
{
    const double rounded = std::round(value / step) / (1.0 / step);
    if (percent)
        return std::clamp(rounded, 0.0, 100.0);
    return rounded == QuvoColorDef::noDataValue ? QuvoColorDef::noDataValue + step : rounded;
}

EditedTable editedTable(const QList<QuvoColorDef> &entries)
{
    EditedTable table;
    const QList<QuvoColorDef> elevations = elevationEntries(entries);
    table.percent = !elevations.isEmpty() && elevations.first().percent;
    for (const QuvoColorDef &entry : elevations)
        table.cursors += ColorCursor{roundedValue(entry.value, table.percent), entry.color};
    if (const QuvoColorDef *noData = noDataEntry(entries))
        table.noData = noData->color;
    sortCursors(table);
    return table;
}

QList<QuvoColorDef> plainEntries(const EditedTable &table)
{
    QList<QuvoColorDef> entries;
    for (int at = 0; at < table.cursors.size(); ++at) {
        const ColorCursor &cursor = table.cursors.at(at);
        entries += entryOf(cursor, table.percent);
        if (cursor.even && at + 1 < table.cursors.size())
            entries += evenEntries(entries.last(), entryOf(table.cursors.at(at + 1), table.percent), step);
    }
    if (table.noData) {
        const auto above = std::find_if(entries.begin(), entries.end(), [](const QuvoColorDef &entry) {
            return entry.value > QuvoColorDef::noDataValue;
        });
        entries.insert(above, QuvoColorDef{QuvoColorDef::noDataValue, *table.noData});
    }
    return entries;
}

QColor colorOf(const EditedTable &table, double value)
{
    const QVector<ColorCursor> &cursors = table.cursors;
    if (cursors.isEmpty())
        return Qt::transparent;
    const auto above =
        std::upper_bound(cursors.begin(), cursors.end(), value,
                         [](double wanted, const ColorCursor &cursor) { return wanted < cursor.value; });
    if (above == cursors.begin())
        return cursors.first().color;
    const ColorCursor &below = *(above - 1);
    if (above == cursors.end() || below.value == value)
        return below.color;
    if (below.even)
        return evenMixture(below.color, above->color, (value - below.value) / (above->value - below.value));
    return colorBetween(entryOf(below, table.percent), entryOf(*above, table.percent), value);
}

CursorChange withCursor(const EditedTable &table, double value)
{
    CursorChange change{table, 0};
    ColorCursor cursor{roundedValue(value, table.percent), QColor(Qt::gray)};
    if (!table.cursors.isEmpty())
        cursor.color = colorOf(table, cursor.value);
    auto &cursors = change.table.cursors;
    const auto place =
        std::upper_bound(cursors.begin(), cursors.end(), cursor.value,
                         [](double wanted, const ColorCursor &other) { return wanted < other.value; });
    change.at = static_cast<int>(place - cursors.begin());
    cursor.even = change.at > 0 && cursors.at(change.at - 1).even;
    cursors.insert(change.at, cursor);
    return change;
}

CursorChange withoutCursor(const EditedTable &table, int at)
{
    CursorChange change{table, -1};
    if (!isCursor(table, at) || table.cursors.size() < 2)
        return change;
    change.table.cursors.removeAt(at);
    change.at = std::min(at, static_cast<int>(change.table.cursors.size()) - 1);
    return change;
}

CursorChange moved(const EditedTable &table, int at, double value)
{
    CursorChange change{table, -1};
    if (!isCursor(table, at))
        return change;
    auto &cursors = change.table.cursors;
    double wanted = roundedValue(value, table.percent);
    if (at > 0)
        wanted = std::max(wanted, cursors.at(at - 1).value);
    if (at + 1 < cursors.size())
        wanted = std::min(wanted, cursors.at(at + 1).value);
    cursors[at].value = wanted;
    change.at = at;
    return change;
}

CursorChange withValue(const EditedTable &table, int at, double value)
{
    CursorChange change{table, -1};
    if (!isCursor(table, at))
        return change;
    auto &cursors = change.table.cursors;
    ColorCursor cursor = cursors.takeAt(at);
    cursor.value = roundedValue(value, table.percent);
    // Beside an equal value the cursor stays on the side from which it comes.
    const bool rises = cursor.value > table.cursors.at(at).value;
    const auto place = std::find_if(cursors.begin(), cursors.end(), [&](const ColorCursor &other) {
        return rises ? other.value >= cursor.value : other.value > cursor.value;
    });
    change.at = static_cast<int>(place - cursors.begin());
    if (cursor.value == table.cursors.at(at).value)
        change.at = at;
    cursors.insert(change.at, cursor);
    return change;
}

EditedTable withColor(const EditedTable &table, int at, const QColor &color)
{
    EditedTable changed = table;
    if (isCursor(table, at))
        changed.cursors[at].color = color;
    return changed;
}

EditedTable withEvenSegment(const EditedTable &table, int at, bool even)
{
    EditedTable changed = table;
    if (isCursor(table, at))
        changed.cursors[at].even = even;
    return changed;
}

EditedTable withNoData(const EditedTable &table, const std::optional<QColor> &color)
{
    EditedTable changed = table;
    changed.noData = color;
    return changed;
}

EditedTable inverted(const EditedTable &table)
{
    EditedTable changed = table;
    const auto count = table.cursors.size();
    for (int at = 0; at < count; ++at) {
        const ColorCursor &mirror = table.cursors.at(count - 1 - at);
        changed.cursors[at].color = mirror.color;
        changed.cursors[at].value = roundedValue(
            table.cursors.first().value + table.cursors.last().value - mirror.value, table.percent);
        changed.cursors[at].even = at + 1 < count && table.cursors.at(count - 2 - at).even;
    }
    return changed;
}

EditedTable negative(const EditedTable &table)
{
    EditedTable changed = table;
    for (ColorCursor &cursor : changed.cursors) {
        const QColor &color = cursor.color;
        cursor.color = QColor(255 - color.red(), 255 - color.green(), 255 - color.blue(), color.alpha());
    }
    return changed;
}

EditedTable randomized(const EditedTable &table, quint32 seed)
{
    EditedTable changed = table;
    std::mt19937 numbers(seed); // its numbers are the same on every computer, a distribution's are not
    const auto part = [&] { return static_cast<double>(numbers()) / 4294967296.0; };
    for (ColorCursor &cursor : changed.cursors) {
        const double hue = part();
        const double saturation = 0.35 + 0.6 * part();
        const double value = 0.45 + 0.55 * part();
        const int alpha = cursor.color.alpha();
        cursor.color = HueColor{hue, saturation, value}.color();
        cursor.color.setAlpha(alpha);
    }
    return changed;
}

EditedTable spreadEvenly(const EditedTable &table)
{
    EditedTable changed = table;
    const int last = static_cast<int>(table.cursors.size()) - 1;
    for (int at = 1; at < last; ++at) {
        const double first = table.cursors.first().value;
        changed.cursors[at].value =
            roundedValue(first + (table.cursors.last().value - first) * at / last, table.percent);
    }
    return changed;
}

EditedTable spreadByArea(const EditedTable &table, const QVector<double> &sample)
{
    EditedTable changed = table;
    const auto last = table.cursors.size() - 1;
    for (int at = 0; at <= last && !sample.isEmpty(); ++at) {
        const double place = last > 0 ? static_cast<double>(at) / static_cast<double>(last) : 0.0;
        const auto cell = std::lround(place * static_cast<double>(sample.size() - 1));
        changed.cursors[at].value = roundedValue(sample.at(static_cast<int>(cell)), table.percent);
    }
    return changed;
}

EditedTable toPercent(const EditedTable &table, double minimum, double maximum)
{
    if (table.percent || !(minimum < maximum))
        return table;
    EditedTable changed = table;
    changed.percent = true;
    return withValues(changed, [&](double value) { return (value - minimum) / (maximum - minimum) * 100.0; });
}

EditedTable toAbsolute(const EditedTable &table, double minimum, double maximum)
{
    if (!table.percent || !(minimum < maximum))
        return table;
    EditedTable changed = table;
    changed.percent = false;
    return withValues(changed, [&](double value) { return minimum + value / 100.0 * (maximum - minimum); });
}

EditedTable scaledAndShifted(const EditedTable &table, double factor, double shift)
{
    return factor > 0.0 ? withValues(table, [&](double value) { return value * factor + shift; }) : table;
}

EditedTable fitted(const EditedTable &table, double minimum, double maximum, bool hinge)
{
    if (table.cursors.isEmpty() || !(minimum < maximum))
        return table;
    const double first = table.cursors.first().value;
    const double last = table.cursors.last().value;
    const auto stretch = [](double value, double from, double to, double newFrom, double newTo) {
        return to > from ? newFrom + (value - from) / (to - from) * (newTo - newFrom) : newFrom;
    };
    const bool hasHinge = hinge && !table.percent && first < 0.0 && last > 0.0;
    if (!hasHinge)
        return withValues(table, [&](double value) { return stretch(value, first, last, minimum, maximum); });
    EditedTable hinged = table;
    const bool isAtHinge = std::any_of(table.cursors.begin(), table.cursors.end(),
                                       [](const ColorCursor &cursor) { return cursor.value == 0.0; });
    if (!isAtHinge)
        hinged = withCursor(table, 0.0).table;
    return withValues(hinged, [&](double value) {
        if (value < 0.0)
            return minimum < 0.0 ? stretch(value, first, 0.0, minimum, 0.0) : value;
        return maximum > 0.0 ? stretch(value, 0.0, last, 0.0, maximum) : value;
    });
}

QVector<double> segmentShares(const EditedTable &table, const QVector<double> &sample)
{
    QVector<double> shares;
    if (sample.isEmpty())
        return shares;
    auto begin = sample.begin();
    const auto add = [&](QVector<double>::const_iterator end) {
        shares += 100.0 * static_cast<double>(end - begin) / static_cast<double>(sample.size());
        begin = end;
    };
    for (const ColorCursor &cursor : table.cursors)
        add(std::lower_bound(begin, sample.end(), cursor.value));
    add(sample.end());
    return shares;
}

QVector<double> lightnessTurns(const EditedTable &table)
{
    constexpr int probes = 400;
    constexpr double noticeable = 0.02;
    QVector<double> turns;
    if (table.cursors.size() < 2)
        return turns;
    const double first = table.cursors.first().value;
    const double range = table.cursors.last().value - first;
    double extreme = lightnessAt(table, first); // the last turn's lightness so far, and its value
    double extremeAt = first;
    int direction = 0; // 1 rising, -1 falling, 0 not yet known
    for (int probe = 1; probe <= probes && range > 0.0; ++probe) {
        const double value = first + range * probe / probes;
        const double lightness = lightnessAt(table, value);
        const double change = lightness - extreme;
        if (change * direction > 0.0) {
            extreme = lightness;
            extremeAt = value;
        } else if (std::abs(change) >= noticeable) {
            if (direction != 0)
                turns += roundedValue(extremeAt, table.percent);
            direction = change > 0.0 ? 1 : -1;
            extreme = lightness;
            extremeAt = value;
        }
    }
    return turns;
}
