#pragma once

#include "app/preview/map/mapfile.h"
#include "app/preview/map/maplegend.h"

#include <QString>

class MapView;
class QWidget;

/// Asks for a file and writes the page into it, as its name's ending says: PNG, SVG or PDF. An existing file is
/// replaced only after a question, and stays as it is where the new one cannot be written. `proposal`: name of
/// the file without its ending, with its folder.
void saveMap(QWidget *parent, const MapPage &page, const QString &proposal);

/// The page of what a map shows: the visible cells with the marks over them, below them a scale bar and a line
/// of text, beside them the legend. metresPerCell, known: as MapView::setScale().
MapPage mapPage(MapView &map, const QRectF &view, double metresPerCell, bool known, const QString &text,
                const MapLegend &legend);
