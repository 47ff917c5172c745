#pragma once

#include "panels/options/observerpoints.h"

#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// A point of a vector source, with what its tool fields say: "OFFSETA", "OFFSETB", "AZIMUTH1" and the others,
/// in upper or lower case.
struct VectorSite
{
    QPointF position;        ///< in the DEM's coordinates
    std::optional<double> z; ///< z coordinate of the geometry; nothing for a point without z
    QVector<double>
        values;   ///< of VectorObservers::numericAttributes, by their order; NaN or left out: no value
    QString name; ///< from a text field called name, nom, label or the like; empty: no name
    double addedHeight = 0.0;          ///< OFFSETA
    std::optional<double> maxDistance; ///< the smaller of RADIUS2 and Max_Dist, where 0 is no limit; in metres
    ObserverLimits limits;
};

/// The geometries of a vector source, in the coordinates of a DEM.
struct VectorObservers
{
    QVector<VectorSite> sites;
    QList<QVector<QPointF>> lines; ///< lines and rings; a multi-part geometry adds each of its parts
    bool hasZ = false;             ///< at least one site has a z coordinate
    QStringList
        numericAttributes;   ///< names of the numeric attributes of layers with sites, without the tool fields
    int skippedFeatures = 0; ///< number of features without a geometry that the DEM's CRS can express,
                             ///< or with coordinates that are none
    int unusableValues = 0;  ///< number of values in tool fields that no observer can have
    QStringList crsNotes;    ///< a sentence for each way in which a layer's CRS is not that of the DEM
    QStringList files;       ///< paths of the local files of the source
    QString problem;         ///< why nothing could be read, with GDAL's message; empty for a good source
};

/// The most observers that are imported: a run with more would take weeks.
constexpr double mostObservers = 1000000;

/// Reads a vector source and transforms it to `crs`, the DEM's CRS as WKT. Where the DEM or a layer has no CRS,
/// the coordinates are not changed. `layer` is the name of the only layer that is read; empty: all layers.
VectorObservers readVectorObservers(const QString &path, const QString &crs, const QString &layer = {});

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
/// mode and distance that the source does not have. What the tool fields of a site say takes precedence over
/// `defaults`, and its added height counts on top of the chosen one.
SampledObservers observersFrom(const VectorObservers &source, double step, const ObserverPoint &defaults,
                               const HeightChoice &heights = {});

/// About `most` of these observers, spread evenly: all of them where there are no more.
QList<ObserverPoint> someObserversFrom(const VectorObservers &source, double step,
                                       const ObserverPoint &defaults, const HeightChoice &heights, int most);

/// Points on a line every `step` along its length, beginning at its first vertex and at most `mostObservers`. A
/// closed line does not repeat its first point at the end.
QVector<QPointF> sampledLine(const QVector<QPointF> &line, double step);
