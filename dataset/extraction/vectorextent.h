#pragma once

#include <QRectF>
#include <QString>

/// The extent of a vector file in the coordinates of a DEM.
struct VectorExtent
{
    QRectF ground;   ///< left is the smallest x, top the smallest y; it may have no width or height
    QString note;    ///< a sentence where the coordinates were taken as they are for want of a CRS; or empty
    QString problem; ///< why there is no extent, in a sentence; empty otherwise
};

/// Reads the extent of all layers of a vector file. Each is transformed from its CRS to that of the DEM, a WKT;
/// the extent then holds the whole of the transformed rectangle, whose edges may be curves. Where the layer or
/// the DEM has no CRS the coordinates are taken for the DEM's own. A format without an index is read whole.
VectorExtent readVectorExtent(const QString &file, const QString &demCrs);
