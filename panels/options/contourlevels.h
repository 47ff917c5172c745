#pragma once

#include "dataset/extremes.h"
#include "panels/options/fragments.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

// How many contour lines the options make.

/// Number of levels offset + n · interval from the minimum to the maximum; 0 when the extremes are not known or
/// the interval is not positive. The result is a double because a mistyped interval makes more levels than an
/// int holds.
double levelCount(const Extremes &extremes, double interval, double offset);

/// The interval of the series 1, 2, 5, 10, 20 … that makes about 20 levels, at least 0.001; nothing when the
/// extremes are not known or are equal.
std::optional<double> roundInterval(const Extremes &extremes);

/// The levels in a text of numbers in the C locale, separated by blanks; nothing when one of them is not a
/// finite number.
std::optional<QVector<double>> readLevels(const QString &text);

/// Whether each level is higher than the level before it. From levels in another order the tool loses lines.
bool levelsAscend(const QVector<double> &levels);

/// The words of a text of levels in ascending order, each level once; the text as it is when one of them is not
/// a number.
QString sortedLevels(const QString &text);

/// Why the levels of a text cannot be used, in a sentence: they are not numbers, too many, or do not ascend.
/// Empty for good levels.
QString levelsProblem(const QString &text);

/// Reports the numbers that the tool receives with fewer digits than the options hold, as it receives them: one
/// sentence a number, or an empty list.
QStringList roundedNumberWarnings(const ContourOptions &options);

/// Why the value to ignore cannot be passed to the tool, in a sentence: with fewer digits it would match no
/// cell. Empty where it can, and where no value is to be ignored.
QString ignoredValueProblem(const ContourOptions &options);

/// Warns of an interval that makes more than 2,000 levels of the DEM: one sentence, or an empty list.
QStringList manyLevelsWarnings(const ContourOptions &options, const Extremes &extremes);
