#pragma once

#include "colortable/QuvoColorDef.h"

#include <QByteArray>
#include <QString>

/// The legend of a colour relief, as a picture for a map's margin.
struct Legend
{
    QList<QuvoColorDef> entries; ///< as the tool gets them, sorted by value
    /// Extreme elevations of the DEM, for percentages and as the ends of the legend; both 0: not known.
    double minimum = 0.0;
    double maximum = 0.0;
    QString title;        ///< one line above the colours; may be empty
    QString noDataText;   ///< what stands beside the colour of the cells without data
    bool classes = false; ///< a box for each segment in place of a strip
};

enum class LegendFormat
{
    Png,
    Svg,
    Pdf
};

/// Elevation of the table's first or last entry in the unit of the ticks: percentages become elevations where
/// the DEM's extremes are known.
double legendValue(const Legend &legend, const QuvoColorDef &entry);

/// The texts beside the colours, from the top: round values along a strip, "500 – 1000" beside a box.
QStringList legendTexts(const Legend &legend);

/// The picture as the bytes of a file. Lengths are points for SVG and PDF; a PNG has two pixels a point. Empty
/// for a table without elevations, or where cairo fails.
QByteArray legendPicture(const Legend &legend, LegendFormat format);
