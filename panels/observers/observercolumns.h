#pragma once

#include "panels/options/observerpoints.h"

#include <QVariant>
#include <QVector>

// What the columns of the table of observers show of a point.

/// The columns in the order of their numbers. The view shows the name after EnabledColumn.
enum ObserverColumn
{
    EnabledColumn,
    HeightColumn,
    ModeColumn,
    DistanceColumn,
    NameColumn,
    FirstLimitColumn, ///< the columns of limitFields() follow each other
    SeenColumn = FirstLimitColumn + limitCount,
    ColumnCount
};

/// The limit that the column shows; null for a column that shows none.
const LimitField *limitOf(int column);

/// Whether the column shows numbers.
bool isNumberColumn(int column);

/// The title in the current language.
QString columnTitle(int column);

/// The value of the point in the current language; empty for SeenColumn, which shows no value of the point. The
/// text of a number reads back as the same number.
QString cellText(const ObserverPoint &point, int column);

/// Sets the value of the point from a boolean (EnabledColumn) or from a text. Returns false, and leaves the
/// point as it is, where the text makes no such value or the point would have a pointProblem().
bool setCell(ObserverPoint &point, int column, const QVariant &value);

/// The numbers that a column accepts.
struct NumberRange
{
    double lowest;
    double highest;
    bool mayBeEmpty;
};

NumberRange rangeOf(int column);

/// An observer as it is sorted.
struct SortedObserver
{
    const ObserverPoint *point;
    std::optional<double> seenArea; ///< in km²
};

/// The rows in the order of the column's values: by number, or by text where a number within a text counts as a
/// number. Rows without a value come last; equal ones stay in their order.
QVector<int> sortedRows(const QVector<SortedObserver> &rows, int column, Qt::SortOrder order);
