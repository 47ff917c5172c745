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

/// Why the tool would refuse the levels of a text, in a sentence: they are not numbers, or too many. Empty for
/// good levels.
QString levelsProblem(const QString &text);

/// Warns of an interval that makes more than 2,000 levels of the DEM: one sentence, or an empty list.
QStringList manyLevelsWarnings(const ContourOptions &options, const Extremes &extremes);
