#pragma once

#include "vectordraw/geometry.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

class OGRCoordinateTransformation;
class OGRFeature;
class OGRGeometry;
class OGRLayer;
class OGRSpatialReference;

namespace vectordraw
{

/// The ground that a picture shows.
struct View
{
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    /// GDAL's affine transformation from pixels (from the upper left corner) to the picture's coordinates;
    /// north need not be up.
    std::array<double, 6> geoTransform{0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    /// CRS of the picture's coordinates, in any form that GDAL understands; empty: the layer's.
    std::string crs;

    /// Length of a pixel in the picture's coordinates, the mean of both directions.
    double groundPerPixel() const;
};

/// A feature's geometry in pixels.
struct PixelGeometry
{
    enum Kind
    {
        Position,
        Line,
        FirstRing, ///< of an area
        NextRing
    };
    struct Part
    {
        Kind kind;
        std::size_t begin; ///< of its vertices in `points`
        std::size_t end;
    };

    std::vector<Point> points;
    std::vector<Part> parts;

    std::span<const Point> verticesOf(const Part &part) const
    {
        return std::span(points).subspan(part.begin, part.end - part.begin);
    }

    /// The rings of the area whose first ring is the part of that index.
    std::vector<std::span<const Point>> areaAt(std::size_t firstRing) const;
};

/// Reads a layer's features that may be seen in a view, one after another, and turns their geometries into
/// pixels: multi-parts and collections taken apart, curves made lines, heights left out. Nothing is kept of one
/// feature when the next is read.
class FeatureReader
{
public:
    /// The order in which features are read.
    enum Order
    {
        AsStored,
        /// In several passes over the layer, so that a part of the features is spread over the whole, where the
        /// layer goes to a feature by its index at once. For features that may cover each other in any order.
        Spread
    };

    /// The layer is read from its start. It gets a spatial filter where it has an index for one, unless it has
    /// a filter of its own; it goes with the reader. The layer outlives the reader.
    FeatureReader(OGRLayer &layer, const View &view, Order order = AsStored);
    ~FeatureReader();
    FeatureReader(const FeatureReader &) = delete;
    FeatureReader &operator=(const FeatureReader &) = delete;

    /// How far beside its vertices a feature may be drawn, in pixels: wide lines, symbols, labels.
    static constexpr double reach = 512.0;

    /// Why nothing can be read, in GDAL's words; empty when it can.
    const std::string &error() const { return m_error; }

    /// Goes to the next feature; false when there is none.
    bool next();

    /// The feature that next() went to; null before the first and behind the last.
    OGRFeature *feature() const { return m_feature.get(); }

    /// Its geometry in pixels; false when it has none, or one that does not lie in the view's CRS.
    bool geometry(PixelGeometry &geometry);

    /// Features read so far, and how many there may be; -1 where the layer does not know at once.
    long long count() const { return m_count; }
    long long total() const { return m_total; }

private:
    struct Release
    {
        void operator()(OGRFeature *feature) const;
        void operator()(OGRCoordinateTransformation *transformation) const;
        void operator()(OGRSpatialReference *reference) const;
    };

    void setUpTransformation(const std::string &crs);
    void setUpFilter(const View &view);
    bool nextOfPass();
    bool take(const OGRGeometry &geometry, PixelGeometry &result, int depth);
    template <class Curve>
    bool takeVertices(const Curve &curve, PixelGeometry::Kind kind, PixelGeometry &result);
    bool toPixels(PixelGeometry &result, std::size_t begin);

    OGRLayer &m_layer;
    std::unique_ptr<OGRSpatialReference, Release> m_viewReference;
    std::unique_ptr<OGRCoordinateTransformation, Release> m_transformation; ///< null: none is needed
    std::unique_ptr<OGRFeature, Release> m_feature;
    std::array<double, 6> m_toPixels{};
    std::vector<double> m_x; ///< of one part, for the transformation
    std::vector<double> m_y;
    std::string m_error;
    bool m_hasOwnFilter = false;
    bool m_spread = false;
    long long m_pass = 0;  ///< of the spread order, from 0
    long long m_index = 0; ///< of the next feature of that pass
    long long m_count = 0;
    long long m_total = -1;
};

} // namespace vectordraw
