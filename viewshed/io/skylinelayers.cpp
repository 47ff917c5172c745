#include "viewshed/io/skylinelayers.h"

#include "viewshed/io/skylinepoints.h"
#include "viewshed/problem.h"

#include <gdal_alg.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

namespace viewshed
{

namespace
{

Problem notWritten()
{
    return Problem{"The skylines cannot be written: " + std::string(CPLGetLastErrorMsg())};
}

OGRLayer *createLayer(GDALDataset &dataset, const char *name, const OGRSpatialReference *crs,
                      OGRwkbGeometryType type)
{
    // CreateLayer() takes a reference that it may change.
    const std::unique_ptr<OGRSpatialReference> copy(crs != nullptr ? crs->Clone() : nullptr);
    OGRLayer *layer = dataset.CreateLayer(name, copy.get(), type);
    OGRFieldDefn number("observer", OFTInteger64);
    OGRFieldDefn text("name", OFTString);
    if (layer == nullptr || layer->CreateField(&number) != OGRERR_NONE
        || layer->CreateField(&text) != OGRERR_NONE)
        throw notWritten();
    return layer;
}

void addFeature(OGRLayer &layer, const ObserverHorizon &horizon, const OGRGeometry &geometry)
{
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetField("observer", static_cast<GIntBig>(horizon.number));
    feature.SetField("name", horizon.observer.ownName.c_str());
    feature.SetGeometry(&geometry);
    if (layer.CreateFeature(&feature) != OGRERR_NONE)
        throw notWritten();
}

/// The cells of a window as a raster of bytes in memory: 1 where the bit is set.
std::unique_ptr<GDALDataset> rasterOf(const BitGrid &cells, const Window &window,
                                      const Georeference &georeference)
{
    std::unique_ptr<GDALDataset> raster(GetGDALDriverManager()->GetDriverByName("MEM")->Create(
        "", window.width, window.height, 1, GDT_Byte, nullptr));
    if (!raster)
        throw notWritten();
    constexpr double half = 0.5;
    const auto corner = [&](double column, double row) {
        return georeference.coordinatesOf(
            {.column = window.left + column - half, .row = window.top + row - half});
    };
    const auto [x, y] = corner(0.0, 0.0);
    const auto [rightX, rightY] = corner(1.0, 0.0);
    const auto [belowX, belowY] = corner(0.0, 1.0);
    double transform[] = {x, rightX - x, belowX - x, y, rightY - y, belowY - y};
    raster->SetGeoTransform(transform);
    std::vector<GByte> line(static_cast<std::size_t>(window.width));
    for (int row = 0; row < window.height; ++row) {
        for (int column = 0; column < window.width; ++column)
            line[static_cast<std::size_t>(column)] = cells.test(column, row) ? 1 : 0;
        if (raster->GetRasterBand(1)->RasterIO(GF_Write, 0, row, window.width, 1, line.data(), window.width, 1,
                                               GDT_Byte, 0, 0, nullptr)
            != CE_None)
            throw notWritten();
    }
    return raster;
}

} // namespace

SkylineLayers::SkylineLayers(const SkylineOptions &options, GDALDataset &raster,
                             const Georeference &georeference)
    : m_file(options.path)
    , m_step(options.step)
    , m_georeference(georeference)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    if (driver == nullptr)
        throw Problem("GDAL has no driver for GeoPackage.");
    m_dataset.reset(driver->Create(m_file.temporaryPath().c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (!m_dataset)
        throw notWritten();
    const OGRSpatialReference *crs =
        raster.GetGCPCount() > 0 ? raster.GetGCPSpatialRef() : raster.GetSpatialRef();
    m_lines = createLayer(*m_dataset, "skyline", crs, wkbMultiLineString25D);
    m_outlines = createLayer(*m_dataset, "seen", crs, wkbMultiPolygon);
    m_dataset->StartTransaction();
}

SkylineLayers::~SkylineLayers()
{
    m_dataset.reset(); // before its file is deleted
}

void SkylineLayers::write(const ObserverHorizon &horizon)
{
    writeLine(horizon);
    writeOutline(horizon);
}

void SkylineLayers::writeLine(const ObserverHorizon &horizon)
{
    OGRMultiLineString lines;
    OGRLineString line;
    const auto addLine = [&] {
        if (line.getNumPoints() > 1)
            lines.addGeometry(&line);
        line.empty();
    };
    const std::vector<SkylinePoint> points = skylinePoints(horizon, m_step, m_georeference);
    for (const SkylinePoint &point : points) {
        if (point.startsAnew)
            addLine();
        line.addPoint(point.x, point.y, point.z);
    }
    if (!points.empty() && !points.front().startsAnew)
        line.addPoint(points.front().x, points.front().y, points.front().z);
    addLine();
    addFeature(*m_lines, horizon, lines);
}

void SkylineLayers::writeOutline(const ObserverHorizon &horizon)
{
    OGRMultiPolygon outline;
    if (horizon.window.width > 0) {
        const std::unique_ptr<GDALDataset> raster = rasterOf(*horizon.seen, horizon.window, m_georeference);
        const std::unique_ptr<GDALDataset> memory(
            GetGDALDriverManager()->GetDriverByName("Memory")->Create("", 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer *parts = memory ? memory->CreateLayer("parts", nullptr, wkbPolygon) : nullptr;
        if (parts == nullptr
            || GDALPolygonize(raster->GetRasterBand(1), raster->GetRasterBand(1), OGRLayer::ToHandle(parts), -1,
                              nullptr, nullptr, nullptr)
                != CE_None)
            throw notWritten();
        for (const auto &part : *parts)
            outline.addGeometryDirectly(part->StealGeometry());
    }
    addFeature(*m_outlines, horizon, outline);
}

void SkylineLayers::keep()
{
    CPLErrorReset();
    if (m_dataset->CommitTransaction() != OGRERR_NONE)
        throw notWritten();
    m_dataset.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        throw notWritten();
    m_file.keep();
}

} // namespace viewshed
