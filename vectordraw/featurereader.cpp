#include "vectordraw/featurereader.h"

#include <cpl_error.h>
#include <gdal.h>
#include <ogrsf_frmts.h>

#include <limits>

namespace vectordraw
{

namespace
{

constexpr long long passes = 16; // of the spread order
constexpr double farthest = 1e9; // pixels: what lies beyond is drawn at the picture's edge all the same

} // namespace

double View::groundPerPixel() const
{
    const double across = std::hypot(geoTransform[1], geoTransform[4]);
    const double down = std::hypot(geoTransform[2], geoTransform[5]);
    return (across + down) / 2.0;
}

std::vector<std::span<const Point>> PixelGeometry::areaAt(std::size_t firstRing) const
{
    std::vector<std::span<const Point>> rings{verticesOf(parts[firstRing])};
    for (std::size_t at = firstRing + 1; at < parts.size() && parts[at].kind == NextRing; ++at)
        rings.push_back(verticesOf(parts[at]));
    return rings;
}

void FeatureReader::Release::operator()(OGRFeature *feature) const
{
    OGRFeature::DestroyFeature(feature);
}

void FeatureReader::Release::operator()(OGRCoordinateTransformation *transformation) const
{
    OGRCoordinateTransformation::DestroyCT(transformation);
}

void FeatureReader::Release::operator()(OGRSpatialReference *reference) const
{
    reference->Release();
}

FeatureReader::FeatureReader(OGRLayer &layer, const View &view, Order order)
    : m_layer(layer)
{
    std::array<double, 6> toGround = view.geoTransform;
    if (!GDALInvGeoTransform(toGround.data(), m_toPixels.data()))
        m_error = "the picture has no area on the ground";
    if (m_error.empty())
        setUpTransformation(view.crs);
    if (!m_error.empty())
        return;
    setUpFilter(view);
    m_layer.ResetReading();
    m_total = m_layer.GetFeatureCount(FALSE);
    m_spread = order == Spread && m_total > passes && m_layer.TestCapability(OLCFastSetNextByIndex);
}

FeatureReader::~FeatureReader()
{
    if (m_hasOwnFilter)
        m_layer.SetSpatialFilter(nullptr);
}

void FeatureReader::setUpTransformation(const std::string &crs)
{
    OGRSpatialReference *source = m_layer.GetSpatialRef();
    if (crs.empty() || !source)
        return;
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    m_viewReference.reset(new OGRSpatialReference);
    m_viewReference->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (m_viewReference->SetFromUserInput(crs.c_str()) != OGRERR_NONE) {
        m_error = CPLGetLastErrorMsg();
        return;
    }
    OGRSpatialReference layerReference(*source);
    layerReference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (layerReference.IsSame(m_viewReference.get()))
        return;
    m_transformation.reset(OGRCreateCoordinateTransformation(&layerReference, m_viewReference.get()));
    if (!m_transformation)
        m_error = CPLGetLastErrorMsg();
}

void FeatureReader::setUpFilter(const View &view)
{
    // Without an index every feature is read all the same, and then none that has no geometry is lost from the
    // counts.
    if (m_layer.GetSpatialFilter() || !m_layer.TestCapability(OLCFastSpatialFilter))
        return;
    OGREnvelope ground;
    for (const double column : {-reach, view.width + reach}) {
        for (const double row : {-reach, view.height + reach})
            ground.Merge(view.geoTransform[0] + column * view.geoTransform[1] + row * view.geoTransform[2],
                         view.geoTransform[3] + column * view.geoTransform[4] + row * view.geoTransform[5]);
    }
    if (m_transformation) {
        constexpr int pointsPerEdge = 21;
        const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
        const std::unique_ptr<OGRCoordinateTransformation, Release> back(m_transformation->GetInverse());
        OGREnvelope there;
        if (!back
            || !back->TransformBounds(ground.MinX, ground.MinY, ground.MaxX, ground.MaxY, &there.MinX,
                                      &there.MinY, &there.MaxX, &there.MaxY, pointsPerEdge)
            || !(there.MinX <= there.MaxX && there.MinY <= there.MaxY))
            return; // every feature is read then
        ground = there;
    }
    m_layer.SetSpatialFilterRect(ground.MinX, ground.MinY, ground.MaxX, ground.MaxY);
    m_hasOwnFilter = true;
}

bool FeatureReader::next()
{
    if (!m_error.empty())
        return false;
    if (m_spread) {
        while (!nextOfPass() && m_pass < passes) { }
    } else {
        m_feature.reset(m_layer.GetNextFeature());
    }
    m_count += m_feature != nullptr;
    return m_feature != nullptr;
}

/// Goes to the next feature of the pass. Where there is none, begins the next pass and returns false.
bool FeatureReader::nextOfPass()
{
    m_feature.reset();
    if (m_index < m_total && m_layer.SetNextByIndex(m_index) == OGRERR_NONE)
        m_feature.reset(m_layer.GetNextFeature());
    m_index = m_feature ? m_index + passes : ++m_pass;
    return m_feature != nullptr;
}

bool FeatureReader::geometry(PixelGeometry &geometry)
{
    geometry.points.clear();
    geometry.parts.clear();
    const OGRGeometry *shape = m_feature ? m_feature->GetGeometryRef() : nullptr;
    if (!shape)
        return false;
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler); // told by the result
    if (!shape->hasCurveGeometry())
        return take(*shape, geometry, 0) && !geometry.parts.empty();
    const std::unique_ptr<OGRGeometry> lines(shape->getLinearGeometry());
    return lines && take(*lines, geometry, 0) && !geometry.parts.empty();
}

bool FeatureReader::take(const OGRGeometry &geometry, PixelGeometry &result, int depth)
{
    constexpr int deepest = 32; // collections in collections
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint: {
        const OGRPoint &point = *geometry.toPoint();
        if (point.IsEmpty())
            return true;
        result.points.push_back({point.getX(), point.getY()});
        result.parts.push_back({PixelGeometry::Position, result.points.size() - 1, result.points.size()});
        return toPixels(result, result.points.size() - 1);
    }
    case wkbLineString:
    case wkbLinearRing:
        return takeVertices(*geometry.toLineString(), PixelGeometry::Line, result);
    case wkbPolygon:
    case wkbTriangle: {
        PixelGeometry::Kind kind = PixelGeometry::FirstRing;
        for (const OGRLinearRing *ring : *geometry.toPolygon()) {
            if (!takeVertices(*ring, kind, result))
                return false;
            kind = PixelGeometry::NextRing;
        }
        return true;
    }
    case wkbPolyhedralSurface:
    case wkbTIN:
        for (const OGRPolygon *polygon : *geometry.toPolyhedralSurface()) {
            if (!take(*polygon, result, depth))
                return false;
        }
        return true;
    case wkbMultiPoint:
    case wkbMultiLineString:
    case wkbMultiPolygon:
    case wkbGeometryCollection:
        for (const OGRGeometry *part : *geometry.toGeometryCollection()) {
            if (depth >= deepest || !take(*part, result, depth + 1))
                return false;
        }
        return true;
    default:
        return false;
    }
}

template <class Curve>
bool FeatureReader::takeVertices(const Curve &curve, PixelGeometry::Kind kind, PixelGeometry &result)
{
    const int count = curve.getNumPoints();
    if (count == 0)
        return true;
    const std::size_t begin = result.points.size();
    result.points.resize(begin + static_cast<std::size_t>(count));
    for (int at = 0; at < count; ++at)
        result.points[begin + static_cast<std::size_t>(at)] = {curve.getX(at), curve.getY(at)};
    result.parts.push_back({kind, begin, result.points.size()});
    return toPixels(result, begin);
}

bool FeatureReader::toPixels(PixelGeometry &result, std::size_t begin)
{
    if (m_transformation) {
        const std::size_t count = result.points.size() - begin;
        m_x.resize(count);
        m_y.resize(count);
        for (std::size_t at = 0; at < count; ++at) {
            m_x[at] = result.points[begin + at].x;
            m_y[at] = result.points[begin + at].y;
        }
        if (!m_transformation->Transform(static_cast<int>(count), m_x.data(), m_y.data()))
            return false;
        for (std::size_t at = 0; at < count; ++at)
            result.points[begin + at] = {m_x[at], m_y[at]};
    }
    // Plain enough for the compiler to take several vertices at a time.
    const auto [x0, xx, xy, y0, yx, yy] = m_toPixels;
    constexpr double largest = std::numeric_limits<double>::max();
    int faults = 0;
    int far = 0;
    for (std::size_t at = begin; at < result.points.size(); ++at) {
        const Point ground = result.points[at];
        const double x = x0 + ground.x * xx + ground.y * xy;
        const double y = y0 + ground.x * yx + ground.y * yy;
        far |= static_cast<int>(!(std::abs(x) <= farthest)) | static_cast<int>(!(std::abs(y) <= farthest));
        faults |= static_cast<int>(!(std::abs(x) <= largest)) | static_cast<int>(!(std::abs(y) <= largest));
        result.points[at] = {x, y};
    }
    for (std::size_t at = begin; far != 0 && at < result.points.size(); ++at) {
        Point &point = result.points[at];
        point = {std::clamp(point.x, -farthest, farthest), std::clamp(point.y, -farthest, farthest)};
    }
    return faults == 0;
}

} // namespace vectordraw
