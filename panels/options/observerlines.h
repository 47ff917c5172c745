#pragma once

#include "panels/options/observerpoints.h"

#include <QVector>

// Observers as lines of text: what a spreadsheet copies and pastes.

/// A line that makes no point.
struct LineProblem
{
    int line = 0;    ///< counted from 1
    QString problem; ///< a sentence without the line's number
};

/// Points that were read from lines of text.
struct PointLinesReading
{
    QList<ObserverPoint> points;
    QVector<LineProblem> problems; ///< of the lines that were skipped
};

/// Reads a point from each line that is not empty. Columns are separated by tabs, or else semicolons, or else
/// blanks, or else commas; a number has a decimal point or, where commas do not separate, a decimal comma.
///
/// The first line may name the columns, in any order and in upper or lower case: the names of members of
/// recipes, those of the tool's fields, and the usual ones such as "nom", "hauteur", "lat". x and y are
/// required, and columns of other names are skipped. Without such a line the columns are "x y [height [mode
/// [distance [name]]]]". `defaults` supplies what a line leaves out.
PointLinesReading readPointLines(const QString &text, const ObserverPoint &defaults);

/// The points as readPointLines() reads them, exactly: a line of names, then a line for each point, with tabs
/// between the columns. Columns of which all points have the default value are left out, but for x, y, height,
/// mode and distance.
QString pointLines(const QList<ObserverPoint> &points);
