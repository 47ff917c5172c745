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

/// The next smaller interval of the series 1, 2, 5, 10, 20 …, at least 0.001, for an interval of it.
double finerInterval(double interval);

/// The levels in a text of numbers in the C locale, separated by blanks; nothing when one of them is not a
/// finite number.
std::optional<QVector<double>> readLevels(const QString &text);

/// Whether each level is higher than the level before it. From levels in another order the tool loses lines.
bool levelsAscend(const QVector<double> &levels);

/// The words of a text of levels in ascending order, each level once; the text as it is when one of them is not
/// a number.
QString sortedLevels(const QString &text);

/// Whether the options have an interval and fixed levels together.
bool hasBothLevels(const ContourOptions &options);

/// The levels of the interval from the minimum to the maximum, and the fixed ones, as an ascending text of
/// levels, each once: what the tool receives in place of both. Empty where there is an interval or fixed levels
/// alone, where the extremes are not known, and where the levels are more than mostLevels.
QString mergedLevels(const ContourOptions &options, const Extremes &extremes);

/// Number of the fixed levels between the minimum and the maximum that are none of the interval's; 0 where one
/// of the two is missing.
int newLevels(const ContourOptions &options, const Extremes &extremes);

/// The extremes widened by half of their range where they are an estimate, so that no level is missed.
Extremes widened(Extremes extremes);

/// The most levels that the tool takes one by one.
constexpr int mostLevels = 1000;

/// Why the interval and the fixed levels together cannot be used, in a sentence; empty where they can.
QString mergedLevelsProblem(const ContourOptions &options, const Extremes &extremes);

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
