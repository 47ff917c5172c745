#include "panels/observers/observercolumns.h"

#include "messages/label.h"
#include "panels/controls/numberfield.h"

#include <QCollator>

#include <algorithm>
#include <limits>
#include <numeric>

const LimitField *limitOf(int column)
{
    const bool isLimit = column >= FirstLimitColumn && column < FirstLimitColumn + limitCount;
    return isLimit ? &limitFields().at(column - FirstLimitColumn) : nullptr;
}

bool isNumberColumn(int column)
{
    return column == HeightColumn || column == DistanceColumn || column == SeenColumn || limitOf(column);
}

QString columnTitle(int column)
{
    if (const LimitField *limit = limitOf(column))
        return labelText(limit->title);
    switch (column) {
    case EnabledColumn:
        return labelText({"MESS_ON_OFF", "On/Off"});
    case HeightColumn:
        return labelText({"MESS_ALTI_HAUTEUR", "Altitude"});
    case ModeColumn:
        return labelText({"MESS_MODE_ALTI", "Mode altitude"});
    case DistanceColumn:
        return labelText({"MESS_DIST_MAX_OBS_ABR", "Dist. max."});
    case NameColumn:
        return labelText({"MESS_OBS_NOM", "Nom"});
    default:
        return labelText({"MESS_OBS_VOIT", "Voit (km²)"});
    }
}

QString cellText(const ObserverPoint &point, int column)
{
    if (const LimitField *limit = limitOf(column))
        return numberText(point.limits.*limit->value);
    switch (column) {
    case EnabledColumn:
        return point.enabled ? labelText({"MESS_OBS_ACTIF", "Oui"}) : labelText({"MESS_OBS_INACTIF", "Non"});
    case HeightColumn:
        return numberText(point.height);
    case ModeColumn:
        return altitudeModeText(point.mode);
    case DistanceColumn:
        return numberText(point.maxDistance);
    case NameColumn:
        return point.name;
    default:
        return {};
    }
}

bool setCell(ObserverPoint &point, int column, const QVariant &value)
{
    ObserverPoint changed = point;
    bool good = true;
    const QString text = value.toString();
    if (column == EnabledColumn) {
        changed.enabled = value.toBool();
    } else if (column == ModeColumn) {
        const auto mode = readAltitudeMode(text);
        good = mode.has_value();
        changed.mode = mode.value_or(point.mode);
    } else if (column == NameColumn) {
        changed.name = text.simplified();
    } else if (const LimitField *limit = limitOf(column); limit && text.isEmpty()) {
        changed.limits.*limit->value = std::nullopt;
    } else {
        const double number = text.toDouble(&good);
        if (limit)
            changed.limits.*limit->value = number;
        else
            (column == HeightColumn ? changed.height : changed.maxDistance) = number;
    }
    good = good && pointProblem(changed).isEmpty();
    if (good)
        point = changed;
    return good;
}

NumberRange rangeOf(int column)
{
    if (const LimitField *limit = limitOf(column))
        return {limit->lowest, limit->highest, true};
    return {column == HeightColumn ? -highestAltitude : 0.0,
            column == HeightColumn ? highestAltitude : longestDistance, false};
}

namespace
{

/// The number by which the row is sorted; nothing for a row without a value.
std::optional<double> sortNumber(const SortedObserver &row, int column)
{
    if (const LimitField *limit = limitOf(column))
        return row.point->limits.*limit->value;
    switch (column) {
    case EnabledColumn:
        return row.point->enabled ? 0.0 : 1.0;
    case HeightColumn:
        return row.point->height;
    case ModeColumn:
        return row.point->mode == AltitudeMode::Relative ? 0.0 : 1.0;
    case DistanceColumn: // 0 is no limit
        return row.point->maxDistance > 0.0 ? row.point->maxDistance : std::numeric_limits<double>::infinity();
    default:
        return row.seenArea;
    }
}

/// Sorts the rows that have a value, which come first in `rows` up to `end`.
template <class Less>
void sortPart(QVector<int> &rows, QVector<int>::iterator end, Qt::SortOrder order, const Less &less)
{
    std::stable_sort(rows.begin(), end, [&](int one, int other) {
        return order == Qt::AscendingOrder ? less(one, other) : less(other, one);
    });
}

} // namespace

QVector<int> sortedRows(const QVector<SortedObserver> &rows, int column, Qt::SortOrder order)
{
    QVector<int> sorted(rows.size());
    std::iota(sorted.begin(), sorted.end(), 0);
    const auto hasValue = [&](int row) {
        return column == NameColumn ? !rows.at(row).point->name.isEmpty()
                                    : sortNumber(rows.at(row), column).has_value();
    };
    const auto end = std::stable_partition(sorted.begin(), sorted.end(), hasValue);
    if (column != NameColumn) {
        sortPart(sorted, end, order, [&](int one, int other) {
            return *sortNumber(rows.at(one), column) < *sortNumber(rows.at(other), column);
        });
        return sorted;
    }
    // The C locale would sort by code points.
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true); // "P2" before "P10"
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::optional<QCollatorSortKey>> keys(rows.size());
    std::for_each(sorted.begin(), end,
                  [&](int row) { keys[row] = collator.sortKey(rows.at(row).point->name); });
    sortPart(sorted, end, order, [&](int one, int other) { return keys[one]->compare(*keys[other]) < 0; });
    return sorted;
}
