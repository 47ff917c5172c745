#pragma once

#include <QString>
#include <QVector>

// What a preview computes of the observers.

/// Most observers of a preview: with a long reach, more would take minutes. Of a longer list, some that are
/// spread evenly stand for all.
constexpr int mostPreviewed = 20000;

/// The areas, in km² and in the order of the observers, in the text of a statistics file of the tool; the row
/// of all observers together is left out. Empty where the text is no such file.
QVector<double> readSeenAreas(const QString &text);
