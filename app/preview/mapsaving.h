#pragma once

#include "app/preview/map/mapfile.h"

#include <QString>

class QWidget;

/// Asks for a file and writes the page into it, as its name's ending says: PNG, SVG or PDF. An existing file is
/// replaced only after a question, and stays as it is where the new one cannot be written. `proposal`: name of
/// the file without its ending, with its folder.
void saveMap(QWidget *parent, const MapPage &page, const QString &proposal);

/// The line below a map: a scale bar of `metresPerPoint` over at most a third of `width`, and a text beside it.
/// known: whether the length of a unit is known.
MapDrawing mapFooter(double metresPerPoint, bool known, double width, const QString &text);
