#include "panels/options/vectorobservers.h"

#include "dataset/gdalmessages.h"
#include "dataset/layercrs.h"
#include "dataset/pathencoding.h"
#include "dataset/references.h"
#include "messages/label.h"
#include "panels/options/layerfields.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <limits>
#include <memory>

namespace
{

struct Release
{
    void operator()(OGRCoordinateTransformation *transformation) const
    {
        OGRCoordinateTransformation::DestroyCT(transformation);
    }
};
using Transformation = std::unique_ptr<OGRCoordinateTransformation, Release>;

/// The transformation from the layer's coordinates to the DEM's, both of which must be known; null when PROJ
/// has no transformation between them.
Transformation transformationTo(const QString &crs, const OGRSpatialReference *layer)
{
    OGRSpatialReference source(*layer);
    OGRSpatialReference target;
    source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    target.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    target.SetFromUserInput(crs.toUtf8().constData());
    return Transformation(OGRCreateCoordinateTransformation(&source, &target));
}

/// "EPSG:4326" or the like, otherwise the name of the CRS.
QString shortName(const OGRSpatialReference &crs)
{
    const char *authority = crs.GetAuthorityName(nullptr);
    const char *code = crs.GetAuthorityCode(nullptr);
    return authority && code ? QStringLiteral("%1:%2").arg(QLatin1String(authority), QLatin1String(code))
                             : QString::fromUtf8(crs.GetName());
}

/// A sentence about the CRS of a layer; empty where it is that of the DEM.
QString crsNote(const QString &crs, const OGRSpatialReference *layer)
{
    OGRSpatialReference dem;
    if (!crs.isEmpty())
        dem.SetFromUserInput(crs.toUtf8().constData());
    if (crs.isEmpty())
        return layer ? labelText({"MESS_OBS_SCR_MNT_SANS",
                                  "Le MNT n'a pas de système de coordonnées : les coordonnées de la source "
                                  "(%1) sont reprises telles quelles."})
                           .arg(shortName(*layer))
                     : QString();
    if (!layer)
        return labelText({"MESS_OBS_SCR_SANS",
                          "La source n'a pas de système de coordonnées : celui du MNT (%1) est supposé."})
            .arg(shortName(dem));
    const char *const anyAxes[]{"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", nullptr};
    return dem.IsSame(layer, anyAxes)
        ? QString()
        : labelText({"MESS_OBS_SCR_AUTRE", "%1 → %2 : les coordonnées sont reprojetées."})
              .arg(shortName(*layer), shortName(dem));
}

// The functions add…() add a part of a feature to `found`. They return false when a piece of the part has
// numbers that are no coordinates, or is of a kind that makes no observers; its other pieces are added.

bool addLine(const OGRSimpleCurve &line, VectorObservers &found)
{
    QVector<QPointF> vertices;
    for (const OGRPoint &point : line) {
        if (!isCoordinate(point.getX()) || !isCoordinate(point.getY()))
            return false;
        vertices += QPointF(point.getX(), point.getY());
    }
    if (!vertices.isEmpty())
        found.lines += vertices;
    return !vertices.isEmpty();
}

/// `site` holds what the feature of the point says.
bool addSite(const OGRPoint &point, VectorSite site, VectorObservers &found)
{
    if (point.IsEmpty() || !isCoordinate(point.getX()) || !isCoordinate(point.getY()))
        return false;
    site.position = {point.getX(), point.getY()};
    if (point.Is3D() && std::isfinite(point.getZ()))
        site.z = point.getZ();
    found.hasZ = found.hasZ || site.z;
    found.sites += site;
    return true;
}

bool addGeometry(const OGRGeometry &geometry, const VectorSite &site, VectorObservers &found)
{
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint:
        return addSite(*geometry.toPoint(), site, found);
    case wkbLineString:
    case wkbLinearRing:
        return addLine(*geometry.toSimpleCurve(), found);
    case wkbPolygon:
    case wkbTriangle: {
        bool added = !geometry.IsEmpty();
        for (const OGRLinearRing *ring : *geometry.toPolygon())
            added = addLine(*ring, found) && added;
        return added;
    }
    case wkbMultiPoint:
    case wkbMultiLineString:
    case wkbMultiPolygon:
    case wkbGeometryCollection: {
        bool added = !geometry.IsEmpty();
        for (const OGRGeometry *part : *geometry.toGeometryCollection())
            added = addGeometry(*part, site, found) && added;
        return added;
    }
    default:
        return false;
    }
}

bool holdsPoints(const OGRGeometry &geometry)
{
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint:
    case wkbMultiPoint:
    case wkbGeometryCollection:
        return true;
    default:
        return false;
    }
}

void addLayer(OGRLayer &layer, const QString &crs, VectorObservers &found)
{
    const bool sameCoordinates = crs.isEmpty() || !layerCrs(layer); // as far as the files say
    const Transformation transformation = sameCoordinates ? nullptr : transformationTo(crs, layerCrs(layer));
    const bool possible = sameCoordinates || transformation;
    LayerFields fields(*layer.GetLayerDefn());
    bool any = false;
    for (auto &feature : layer) {
        const OGRGeometry *geometry = feature->GetGeometryRef();
        const std::unique_ptr<OGRGeometry> own(geometry && possible ? geometry->getLinearGeometry() : nullptr);
        const bool placed = own && (!transformation || own->transform(transformation.get()) == OGRERR_NONE);
        const VectorSite site = placed && holdsPoints(*own) ? fields.read(*feature, found) : VectorSite();
        if (!placed || !addGeometry(*own, site, found))
            ++found.skippedFeatures;
        any = true;
    }
    const QString note = any ? crsNote(crs, layerCrs(layer)) : QString();
    if (!note.isEmpty() && !found.crsNotes.contains(note))
        found.crsNotes += note;
}

/// A vector source that was opened.
struct OpenedSource
{
    std::unique_ptr<GDALDataset> dataset; ///< null after a failure
    QString problem;                      ///< why, for the user; empty otherwise
};

OpenedSource openSource(const QString &path)
{
    const QString unusable = labelText({"MESS_ERR_FORMAT", "Format non reconnu"}) + QLatin1Char('\n');
    const QString endless = endlessSourceProblem(path);
    if (!endless.isEmpty())
        return {nullptr, unusable + endless};
    const GdalMessages messages;
    std::unique_ptr<GDALDataset> source(
        GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    if (!source)
        return {nullptr, unusable + (messages.lastError().isEmpty() ? path : messages.lastError())};
    return {std::move(source), {}};
}

/// All local files of the source, which is at `path`.
QStringList filesOf(GDALDataset &source, const QString &path)
{
    QStringList files;
    char **names = source.GetFileList();
    for (char **name = names; name && *name; ++name)
        files += decodePath(*name);
    CSLDestroy(names);
    const QStringList all = QStringList{path} + files;
    for (const QString &name : all)
        files += referencedFiles(name);
    return files;
}

double distance(const QPointF &one, const QPointF &other)
{
    return std::hypot(other.x() - one.x(), other.y() - one.y());
}

/// Number of samples on a line. A sample at the end of a closed line does not count: it is the first one.
double sampleCount(const QVector<QPointF> &line, double step)
{
    double length = 0.0;
    for (int at = 1; at < line.size(); ++at)
        length += distance(line[at - 1], line[at]);
    const double steps = std::floor(length / step);
    const bool endsOnStart = line.first() == line.last() && steps > 0.0 && steps * step == length;
    return endsOnStart ? steps : steps + 1.0;
}

} // namespace

VectorObservers readVectorObservers(const QString &path, const QString &crs, const QString &layer)
{
    VectorObservers found;
    const OpenedSource source = openSource(path);
    found.problem = source.problem;
    if (!source.dataset)
        return found;
    found.files = filesOf(*source.dataset, path);
    const GdalMessages messages; // features that cannot be transformed are counted
    if (!layer.isEmpty()) {
        if (OGRLayer *one = source.dataset->GetLayerByName(layer.toUtf8().constData()))
            addLayer(*one, crs, found);
        else
            found.problem =
                labelText({"MESS_OBS_SANS_COUCHE", "« %1 » n'a pas de couche « %2 »."}).arg(path, layer);
        return found;
    }
    for (OGRLayer *one : source.dataset->GetLayers())
        addLayer(*one, crs, found);
    return found;
}

double sampledCount(const VectorObservers &source, double step)
{
    auto count = static_cast<double>(source.sites.size());
    for (const QVector<QPointF> &line : source.lines)
        count += sampleCount(line, step);
    return count;
}

QVector<QPointF> sampledLine(const QVector<QPointF> &line, double step)
{
    QVector<QPointF> points;
    if (line.isEmpty() || !(step > 0.0))
        return points;
    const double count = std::min(sampleCount(line, step), mostObservers);
    int segment = 1;
    double before = 0.0; // length of the line up to the segment
    for (int at = 0; at < count; ++at) {
        const double along = at * step;
        while (segment + 1 < line.size() && before + distance(line[segment - 1], line[segment]) < along) {
            before += distance(line[segment - 1], line[segment]);
            ++segment;
        }
        const double span = segment < line.size() ? distance(line[segment - 1], line[segment]) : 0.0;
        points += span > 0.0
            ? line[segment - 1] + (line[segment] - line[segment - 1]) * qMin(1.0, (along - before) / span)
            : line[segment - 1];
    }
    return points;
}

SampledObservers observersFrom(const VectorObservers &source, double step, const ObserverPoint &defaults,
                               const HeightChoice &heights)
{
    SampledObservers observers;
    const auto add = [&](const QPointF &position) -> ObserverPoint & {
        observers.points += defaults;
        observers.points.last().x = position.x();
        observers.points.last().y = position.y();
        return observers.points.last();
    };
    const auto attribute = source.numericAttributes.indexOf(heights.attribute);
    const bool chosen = heights.fromZ || !heights.attribute.isEmpty();
    const double none = std::numeric_limits<double>::quiet_NaN();
    observers.points.reserve(source.sites.size());
    for (const VectorSite &site : source.sites) {
        ObserverPoint &point = add(site.position);
        point.name = site.name;
        point.limits = site.limits;
        point.maxDistance = site.maxDistance.value_or(point.maxDistance);
        const double height = heights.fromZ ? site.z.value_or(none)
            : attribute >= 0                ? site.values.value(attribute, none)
                                            : none;
        observers.withoutHeight += chosen && !isAltitude(height);
        if (isAltitude(height)) {
            point.height = height;
            if (heights.fromZ)
                point.mode = AltitudeMode::Absolute;
        }
        if (isAltitude(point.height + site.addedHeight))
            point.height += site.addedHeight;
    }
    for (const QVector<QPointF> &line : source.lines) {
        for (const QPointF &sample : sampledLine(line, step))
            add(sample);
    }
    return observers;
}

QList<ObserverPoint> someObserversFrom(const VectorObservers &source, double step,
                                       const ObserverPoint &defaults, const HeightChoice &heights, int most)
{
    const double every = std::max(1.0, std::ceil(sampledCount(source, step) / most));
    VectorObservers some = source;
    some.sites.clear();
    const auto count = static_cast<double>(source.sites.size());
    for (double at = 0.0; at < count; at += every)
        some.sites += source.sites.at(static_cast<int>(at));
    return observersFrom(some, step * every, defaults, heights).points;
}
