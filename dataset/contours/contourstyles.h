#pragma once

#include <QColor>
#include <QString>

// How contours are drawn, as OGR style strings. All texts are shorter than the 254 characters of a shapefile's
// field. Drivers are named by GDAL's short names.

/// Where a format keeps the style string of a feature.
enum class StylePlace
{
    Nowhere,
    Feature,  ///< the driver writes it in its own way
    Attribute ///< in the attribute styleAttribute, where OGR looks for it
};

StylePlace stylePlace(const QString &driver);

/// Whether a file of the driver keeps how its features are drawn.
bool keepsStyles(const QString &driver);

/// Whether the format keeps a label on points alone, so that the labels of lines are points of their own.
bool labelsArePoints(const QString &driver);

/// Name of the attribute that is the label of a feature in the format; empty where there is none.
QString nameAttribute(const QString &driver);

/// The style of a line. `label`: the elevation of an index line, which is drawn thick with the text at its
/// middle, the head to the left of the line; empty: a thin line without text.
QString lineStyle(const QString &driver, const QString &label);

/// The same without text, and its thickness in millimetres on paper.
QString lineStyle(const QString &driver, bool isIndexLine);
double lineWidth(bool isIndexLine);

/// The style of a point that bears a label, above the middle of the text's foot. angle: in degrees,
/// counter-clockwise; height: of the text, in units of the coordinates.
QString labelStyle(const QString &label, double angle, double height);

/// The style of an area of the colour, with a thin outline.
QString areaStyle(const QColor &tint);

/// Colour of contour lines.
inline const QColor contourColor(0x8A, 0x5A, 0x32);

/// The colour of a class of elevations: from the green of the lowest over yellow and brown to almost white.
/// rank: 0 to count - 1.
QColor hypsometricTint(int rank, int count);
