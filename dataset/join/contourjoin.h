#pragma once

#include "dataset/join/contourcut.h"

#include <QString>
#include <QVector>

#include <functional>

/// A file of contour lines that the contour tool made of a part of a DEM. Its format must keep the coordinates
/// as they are: KML and GeoJSONSeq convert them to longitudes and latitudes, and FlatGeobuf keeps them. The
/// joined file may have another format.
struct ContourTile
{
    QString path;  ///< as GDAL opens it; one layer
    CutSides keep; ///< see contourWindow()
};

/// The file that is made of the tiles.
struct ContourJoin
{
    QString path;   ///< must not exist; its folder must
    QString driver; ///< GDAL's short name
    QString layer;
    QString attribute; ///< name of the field for the elevation; empty: there is none
    /// Ground units within which places are the same; greater than 0. A thousandth of a cell is far more than
    /// coordinates lose by rounding in a file, and far less than the half cell by which the tool continues the
    /// lines of a tile.
    double tolerance = 0.0;
};

/// What became of it.
struct ContourJoinResult
{
    long long lines = 0; ///< number of lines in the file
    /// Ends of lines on the seams that continue in no neighbour; 0 if the tiles are a whole DEM.
    int unmatched = 0;
    bool isStopped = false;
    QString problem; ///< why there is no file, in a sentence; empty otherwise, also after a stop
};

/// Cuts the lines of every tile (at least one) at its sides and joins them over the seams by their elevation,
/// as one run of the contour tool over the whole DEM would draw them. The file has the fields "ID", counted
/// from 0, and `attribute`; the CRS is that of the first tile, and the vertices have elevations if those of the
/// tiles have. Lines of tiles that have neither the attribute nor elevations are joined by their places alone.
/// The order of the lines is not that of the tool.
///
/// Memory holds the lines that are open at a seam, not all lines. `progress` receives the finished share, from
/// 0 to 1, and stops the joining when it returns false. After a stop or a problem no part of the file is left.
ContourJoinResult joinContours(const QVector<ContourTile> &tiles, const ContourJoin &join,
                               const std::function<bool(double)> &progress);
