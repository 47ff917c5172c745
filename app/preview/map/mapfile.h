#pragma once

#include "app/preview/map/mapdrawing.h"

#include <QByteArray>
#include <QImage>

enum class MapFileFormat
{
    Png,
    Svg,
    Pdf
};

/// A map as a page: the picture, its scale bar in a line below it, and the legend beside it.
struct MapPage
{
    QImage picture;
    QSizeF size;         ///< of the picture on the page, in points
    MapDrawing footer;   ///< below the picture
    MapDrawing legend;   ///< beside the picture; a legend higher than the picture makes the page higher
    double pixels = 2.0; ///< of a PNG in a point
};

/// The width of a text on such a page, in points.
double pageTextWidth(const QString &text, bool bold);

/// The page as the bytes of a file, drawn with cairo on white. Empty for an empty picture, or where cairo
/// fails.
QByteArray mapFile(const MapPage &page, MapFileFormat format);
