#pragma once

#include "colortable/colortablefile.h"

#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>

// The parts out of which the readers build a table. An entry list mixes its colours between two values; a range
// of one colour is two entries, and an edge between two ranges two entries of one value, of which a cell of
// exactly that value gets the second. Where a range includes its upper bound, the edge lies one 32-bit number
// above it: the tool reads every cell as a 32-bit number, so no cell lies between.

/// An empty reading of a file in that format. The tool never reads such a file itself.
ColorTableReading foreignReading(const QString &format);

/// Refuses the file: "Line 3: why". Only the first reason is kept.
void refuseLine(ColorTableReading &reading, int line, const QString &why);
/// Refuses the file because of no single line.
void refuse(ColorTableReading &reading, const QString &why);
QString notANumber(const QString &text);
QString notAColor(const QString &text);
QString notSupported(const QString &text);
QString badCount(int announced, int found);
/// The sentence on a line whose fields fit no form of the format.
QString badFields();

/// A number that a 32-bit cell can hold; nothing for any other text.
std::optional<double> finiteNumber(const QString &text);
/// A whole number from 0 to 255.
std::optional<int> levelOf(const QString &text);
/// A colour of three or four whole numbers from 0 to 255; invalid for any other texts.
QColor colorOfLevels(const QStringList &levels);
/// Components from 0 to 1; what lies beyond is cut.
QColor colorOfParts(double red, double green, double blue, double alpha = 1.0);
/// hue in degrees, of any number of turns; saturation, value and alpha from 0 to 1.
QColor colorOfHsv(double hue, double saturation, double value, double alpha = 1.0);

/// The lowest 32-bit number above the value, far enough from 0 to be read again.
double nextAbove(double value);

/// Adds an entry, unless it equals the last one.
void addPoint(QList<QuvoColorDef> &entries, double value, const QColor &color, bool percent = false);

/// Adds points along a curve from 0 to 1 so close that straight lines between them are within one level of it.
void addCurve(QList<QuvoColorDef> &entries, double from, double to, bool percent,
              const std::function<QColor(double)> &curve);

/// The value, or its neighbour where the value itself would mean no-data. For the bounds of ranges.
double boundValue(double value);

/// Adds ranges of one colour each. bounds: ascending; colors: one more than bounds, the last lies above the
/// last bound. boundBelongsBelow: a cell of exactly a bound's value has the colour below it.
void addSteps(QList<QuvoColorDef> &entries, const QVector<double> &bounds, const QVector<QColor> &colors,
              bool boundBelongsBelow);

/// Adds colours of single values: any other cell is transparent. Of two colours of one value the first counts.
void addExactColors(ColorTableReading &reading, const QList<QuvoColorDef> &colors);

/// Adds colours at even distances over the whole range, as percentages, and the note that says so.
void addEvenColors(ColorTableReading &reading, const QVector<QColor> &colors);

/// Gives the cells below the first and above the last entry a colour of their own. Invalid: the colour of that
/// entry. entries: sorted, and not empty.
void addOutside(QList<QuvoColorDef> &entries, const QColor &below, const QColor &above);
