#pragma once

#include "panels/options/observerpoints.h"

#include <QHash>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// A point of a vector source.
struct VectorSite
{
    QPointF position;              ///< in the DEM's coordinates
    std::optional<double> z;       ///< z coordinate of the geometry; nothing for a point without z
    QHash<QString, double> values; ///< values of the numeric attributes, by attribute name
};

/// The geometries of all layers of a vector source, in the coordinates of a DEM.
struct VectorObservers
{
    QList<VectorSite> sites;
    QList<QVector<QPointF>> lines; ///< lines and rings; a multi-part geometry adds each of its parts
    bool hasZ = false;             ///< at least one site has a z coordinate
    QStringList numericAttributes; ///< sorted names of the sites' numeric attributes
    int skippedFeatures = 0;       ///< number of features without a geometry that the DEM's CRS can express,
                                   ///< or with coordinates that are none
    QStringList files;             ///< paths of the local files of the source
    QString problem; ///< GDAL's message about a source that cannot be opened; empty for a good source
};

/// The most observers that are imported: a run with more would take days.
constexpr double mostObservers = 100000;

/// Reads a vector source and transforms it to `crs`, the DEM's CRS as WKT. Where the DEM or a layer has no CRS,
/// the coordinates are not changed.
VectorObservers readVectorObservers(const QString &path, const QString &crs);

/// Number of observers when the lines are sampled every `step`, in the DEM's unit. The result is a double
/// because a small step makes more observers than an int holds.
double sampledCount(const VectorObservers &source, double step);

/// Where the heights of a source's sites come from. Without a choice they are those of the default point.
struct HeightChoice
{
    bool fromZ = false; ///< use the z coordinates, which are absolute altitudes
    QString attribute;  ///< name of a numeric attribute; empty: no attribute
};

/// Observers that were made of a vector source.
struct SampledObservers
{
    QList<ObserverPoint> points;
    int withoutHeight = 0; ///< number of sites whose chosen height is missing or no altitude
};

/// The observers of a source: its sites, and points on its lines every `step`. `defaults` supplies the height,
/// mode and distance that the source does not have.
SampledObservers observersFrom(const VectorObservers &source, double step, const ObserverPoint &defaults,
                               const HeightChoice &heights = {});

/// Points on a line every `step` along its length, beginning at its first vertex and at most `mostObservers`. A
/// closed line does not repeat its first point at the end.
QVector<QPointF> sampledLine(const QVector<QPointF> &line, double step);
