#pragma once

#include "dataset/contours/indexlevels.h"
#include "dataset/contours/voidrule.h"

#include <QString>

#include <functional>

/// What the contour tool wrote, and the product that is made of it. Elevations are in the DEM's unit.
struct ContourFinish
{
    /// The tool's file, whose format keeps coordinates, directions and field names (a GeoPackage). A line has
    /// its elevation in the field `attribute`; where there is no such field, in the only one besides "ID", or
    /// else in its vertices. An area has two fields besides "ID" with its lowest and its highest elevation.
    QString lines;
    QString layer;  ///< name of the layer in both files
    QString dem;    ///< the DEM that the tool read, as GDAL opens it
    int band = 1;   ///< the DEM's band, counted from 1
    VoidRule voids; ///< as the tool was given it

    QString product; ///< must not exist; its folder must
    QString driver;  ///< GDAL's short name of the product's format
    bool areas = false;
    QString attribute;        ///< the product's field for the elevation of a line; empty: none
    QString lowestAttribute;  ///< the product's field for the lowest elevation of an area
    QString highestAttribute; ///< and for the highest one
    IndexLevels index;        ///< lines get an attribute "INDEX_LINE" while there are index levels
    /// Closed lines that are shorter are left out: a length in the unit of the DEM's coordinates, or in metres
    /// on the ground where those are degrees.
    double shortestRing = 0.0;
    bool styled = false;    ///< each feature bears its drawing, as far as the format keeps it (contourstyles.h)
    bool qgisStyle = false; ///< "<product's base name>.qml" is written beside the product
};

/// What became of it.
struct ContourFinishResult
{
    long long features = 0; ///< number of lines or areas in the product
    long long leftOut = 0;  ///< number of short closed lines that it lacks
    QString warning;        ///< a sentence: the areas do not fill the DEM's valid cells; empty otherwise
    bool isStopped = false;
    QString problem; ///< why there is no product, in a sentence; empty otherwise, also after a stop
};

/// Reads the tool's file feature by feature and writes the product; the CRS, the order and vertices with
/// elevations stay.
///
/// The tool draws a line with the lower ground on its left, so that a text along it would have its head
/// downhill. Where the product is styled or gets a QGIS style, every line is reversed, with or without a label.
/// A format that keeps labels on points alone gets a point at the middle of each index line, besides the lines.
///
/// `progress` receives the finished share, from 0 to 1, and stops the work when it returns false. After a stop
/// or a problem nothing of the product is left.
ContourFinishResult finishContours(const ContourFinish &finish, const std::function<bool(double)> &progress);
