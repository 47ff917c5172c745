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
    QPointF position;
    std::optional<double> z;
    QHash<QString, double> values; ///< of its numeric attributes
};

/// The geometries of a vector source, every layer of it, in the coordinates of a DEM.
struct VectorObservers
{
    QList<VectorSite> sites;
    QList<QVector<QPointF>> lines; ///< lines and rings, multi-parts taken apart
    bool hasZ = false;             ///< of a site at least
    QStringList numericAttributes; ///< of the sites
    int skippedFeatures = 0; ///< features without a geometry, or with one that has no place in the DEM's CRS
    QStringList files;       ///< the local files of the source
    QString problem;         ///< why the source could not be opened, in GDAL's words
};

/// More observers than this are not imported: their runs would take days.
constexpr double mostObservers = 100000;

/// Reads a vector source. crs: the DEM's, as WKT; empty: coordinates are taken as they are.
VectorObservers readVectorObservers(const QString &path, const QString &crs);

/// Number of points that the source gives where its lines are sampled every `step`, in the DEM's unit. A
/// number, not a count: a small step makes billions.
double sampledCount(const VectorObservers &source, double step);

/// Where the heights of a source's sites come from; the default point's where neither is chosen.
struct HeightChoice
{
    bool fromZ = false; ///< the z coordinate, which is an absolute altitude
    QString attribute;  ///< a numeric attribute; empty: none
};

/// The observers of a source: its sites, and its lines sampled every `step`. What the source does not say is
/// the default point's.
QList<ObserverPoint> observersFrom(const VectorObservers &source, double step, const ObserverPoint &defaults,
                                   const HeightChoice &heights = {});

/// The points of a line every `step` along its length, from its first vertex on; a closed line's last is its
/// first and is left out.
QVector<QPointF> sampledLine(const QVector<QPointF> &line, double step);
