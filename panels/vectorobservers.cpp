#include "panels/vectorobservers.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
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

/// From the layer's CRS to the DEM's; null where one of them is not known.
Transformation transformationTo(const QString &crs, const OGRSpatialReference *layer, bool &possible)
{
    possible = true;
    if (crs.isEmpty() || !layer)
        return nullptr;
    OGRSpatialReference source(*layer);
    OGRSpatialReference target;
    source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    target.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    target.SetFromUserInput(crs.toUtf8().constData());
    Transformation transformation(OGRCreateCoordinateTransformation(&source, &target));
    possible = transformation != nullptr;
    return transformation;
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

bool takeLine(const OGRSimpleCurve &line, VectorObservers &found)
{
    QVector<QPointF> vertices;
    for (const OGRPoint &point : line) {
        if (!std::isfinite(point.getX()) || !std::isfinite(point.getY()))
            return false;
        vertices += QPointF(point.getX(), point.getY());
    }
    if (!vertices.isEmpty())
        found.lines += vertices;
    return !vertices.isEmpty();
}

bool takeSite(const OGRPoint &point, const QHash<QString, double> &values, VectorObservers &found)
{
    if (point.IsEmpty() || !std::isfinite(point.getX()) || !std::isfinite(point.getY()))
        return false;
    VectorSite site{{point.getX(), point.getY()}, std::nullopt, values};
    if (point.Is3D() && std::isfinite(point.getZ()))
        site.z = point.getZ();
    found.hasZ = found.hasZ || site.z;
    found.sites += site;
    return true;
}

bool takeGeometry(const OGRGeometry &geometry, const QHash<QString, double> &values, VectorObservers &found)
{
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint:
        return takeSite(*geometry.toPoint(), values, found);
    case wkbLineString:
    case wkbLinearRing:
        return takeLine(*geometry.toSimpleCurve(), found);
    case wkbPolygon:
    case wkbTriangle: {
        bool taken = !geometry.IsEmpty();
        for (const OGRLinearRing *ring : *geometry.toPolygon())
            taken = takeLine(*ring, found) && taken;
        return taken;
    }
    case wkbMultiPoint:
    case wkbMultiLineString:
    case wkbMultiPolygon:
    case wkbGeometryCollection: {
        bool taken = !geometry.IsEmpty();
        for (const OGRGeometry *part : *geometry.toGeometryCollection())
            taken = takeGeometry(*part, values, found) && taken;
        return taken;
    }
    default:
        return false;
    }
}

void takeLayer(OGRLayer &layer, const QString &crs, VectorObservers &found)
{
    bool possible = true;
    const Transformation transformation = transformationTo(crs, layer.GetSpatialRef(), possible);
    for (auto &feature : layer) {
        const OGRGeometry *geometry = feature->GetGeometryRef();
        const std::unique_ptr<OGRGeometry> own(geometry && possible ? geometry->getLinearGeometry() : nullptr);
        const bool placed = own && (!transformation || own->transform(transformation.get()) == OGRERR_NONE);
        const QHash<QString, double> values = numericValues(*feature);
        if (!placed || !takeGeometry(*own, values, found)) {
            ++found.notTaken;
            continue;
        }
        for (auto value = values.begin(); value != values.end(); ++value) {
            if (wkbFlatten(own->getGeometryType()) == wkbPoint
                && !found.numericAttributes.contains(value.key()))
                found.numericAttributes += value.key();
        }
    }
}

double lengthOf(const QVector<QPointF> &line)
{
    double length = 0.0;
    for (int at = 1; at < line.size(); ++at)
        length += std::hypot(line[at].x() - line[at - 1].x(), line[at].y() - line[at - 1].y());
    return length;
}

} // namespace

VectorObservers readVectorObservers(const QString &path, const QString &crs)
{
    VectorObservers found;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> source(
        GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    if (!source) {
        found.error = messages.lastError().isEmpty() ? path : messages.lastError();
        return found;
    }
    for (OGRLayer *layer : source->GetLayers())
        takeLayer(*layer, crs, found);
    found.numericAttributes.sort();
    return found;
}

double sampledCount(const VectorObservers &source, double step)
{
    double count = source.sites.size();
    for (const QVector<QPointF> &line : source.lines) {
        const double samples = std::floor(lengthOf(line) / step) + 1.0;
        const bool endsOnStart = line.first() == line.last() && samples > 1.0
            && std::floor(lengthOf(line) / step) * step == lengthOf(line);
        count += endsOnStart ? samples - 1.0 : samples;
    }
    return count;
}

QVector<QPointF> sampledLine(const QVector<QPointF> &line, double step)
{
    QVector<QPointF> points;
    if (line.isEmpty() || !(step > 0.0))
        return points;
    const double length = lengthOf(line);
    const bool closed = line.first() == line.last();
    int segment = 1;
    double before = 0.0; // length up to the segment
    for (int at = 0; at * step <= length; ++at) {
        const double along = at * step;
        if (at > 0 && closed && along == length)
            break;
        while (segment + 1 < line.size() && before + lengthOf({line[segment - 1], line[segment]}) < along) {
            before += lengthOf({line[segment - 1], line[segment]});
            ++segment;
        }
        const double span = segment < line.size() ? lengthOf({line[segment - 1], line[segment]}) : 0.0;
        points += span > 0.0
            ? line[segment - 1] + (line[segment] - line[segment - 1]) * qMin(1.0, (along - before) / span)
            : line[segment - 1];
    }
    return points;
}
