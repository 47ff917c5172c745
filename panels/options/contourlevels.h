#pragma once

#include "dataset/extremes.h"
#include "panels/options/fragments.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

// How many contour lines options ask for.

/// Number of levels offset + n · interval from the minimum to the maximum; 0 where the extremes are not known
/// or the interval is not above 0. A number, not a count: a slip of the pen asks for billions.
double levelCount(const Extremes &extremes, double interval, double offset);

/// The interval of the series 1, 2, 5, 10, 20 … that gives about 20 levels, 0.001 at least; none where the
/// extremes are not known or are one value.
std::optional<double> roundInterval(const Extremes &extremes);

/// The levels in a text of numbers separated by blanks (C locale); none when something in it is no number.
std::optional<QVector<double>> readLevels(const QString &text);

/// Why the tool would not take the levels of a text, in a sentence: no numbers, or more than it can; empty when
/// it would.
QString levelsProblem(const QString &text);

/// Warns of options that make more than 2,000 levels of the DEM: an empty list, or one sentence.
QStringList manyLevelsWarnings(const ContourOptions &options, const Extremes &extremes);
