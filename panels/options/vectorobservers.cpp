#include "panels/options/vectorobservers.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/references.h"

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

QHash<QString, double> numericValues(const OGRFeature &feature)
{
    QHash<QString, double> values;
    for (int at = 0; at < feature.GetFieldCount(); ++at) {
        const OGRFieldDefn &field = *feature.GetFieldDefnRef(at);
        const bool isNumber =
            field.GetType() == OFTReal || field.GetType() == OFTInteger || field.GetType() == OFTInteger64;
        if (isNumber && feature.IsFieldSetAndNotNull(at))
            values.insert(QString::fromUtf8(field.GetNameRef()), feature.GetFieldAsDouble(at));
    }
    return values;
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

bool addSite(const OGRPoint &point, const QHash<QString, double> &values, VectorObservers &found)
{
    if (point.IsEmpty() || !isCoordinate(point.getX()) || !isCoordinate(point.getY()))
        return false;
    VectorSite site{{point.getX(), point.getY()}, std::nullopt, values};
    if (point.Is3D() && std::isfinite(point.getZ()))
        site.z = point.getZ();
    found.hasZ = found.hasZ || site.z;
    found.sites += site;
    return true;
}

bool addGeometry(const OGRGeometry &geometry, const QHash<QString, double> &values, VectorObservers &found)
{
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint:
        return addSite(*geometry.toPoint(), values, found);
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
            added = addGeometry(*part, values, found) && added;
        return added;
    }
    default:
        return false;
    }
}

void addLayer(OGRLayer &layer, const QString &crs, VectorObservers &found)
{
    const bool sameCoordinates = crs.isEmpty() || !layer.GetSpatialRef(); // as far as the files say
    const Transformation transformation =
        sameCoordinates ? nullptr : transformationTo(crs, layer.GetSpatialRef());
    const bool possible = sameCoordinates || transformation;
    for (auto &feature : layer) {
        const OGRGeometry *geometry = feature->GetGeometryRef();
        const std::unique_ptr<OGRGeometry> own(geometry && possible ? geometry->getLinearGeometry() : nullptr);
        const bool placed = own && (!transformation || own->transform(transformation.get()) == OGRERR_NONE);
        const QHash<QString, double> values = numericValues(*feature);
        const auto sitesBefore = found.sites.size();
        if (!placed || !addGeometry(*own, values, found)) {
            ++found.skippedFeatures;
            continue;
        }
        if (found.sites.size() == sitesBefore)
            continue;
        for (auto value = values.begin(); value != values.end(); ++value) {
            if (!found.numericAttributes.contains(value.key()))
                found.numericAttributes += value.key();
        }
    }
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

VectorObservers readVectorObservers(const QString &path, const QString &crs)
{
    VectorObservers found;
    found.problem = endlessSourceProblem(path);
    if (!found.problem.isEmpty())
        return found;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> source(
        GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    if (!source) {
        found.problem = messages.lastError().isEmpty() ? path : messages.lastError();
        return found;
    }
    char **files = source->GetFileList();
    for (char **file = files; file && *file; ++file)
        found.files += decodePath(*file);
    CSLDestroy(files);
    const QStringList names = QStringList{path} + found.files;
    for (const QString &name : names)
        found.files += referencedFiles(name);
    for (OGRLayer *layer : source->GetLayers())
        addLayer(*layer, crs, found);
    found.numericAttributes.sort();
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
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const VectorSite &site : source.sites) {
        ObserverPoint &point = add(site.position);
        if (!heights.fromZ && heights.attribute.isEmpty())
            continue;
        const double height =
            heights.fromZ ? site.z.value_or(none) : site.values.value(heights.attribute, none);
        if (!isAltitude(height)) {
            ++observers.withoutHeight;
            continue;
        }
        point.height = height;
        if (heights.fromZ)
            point.mode = AltitudeMode::Absolute;
    }
    for (const QVector<QPointF> &line : source.lines) {
        for (const QPointF &sample : sampledLine(line, step))
            add(sample);
    }
    return observers;
}
