#include "app/preview/live/LiveTerrain.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/problem.h"

namespace
{

/// The distance as the tool finds it in the shapefile of writePointFile(), whose field has 15 decimals; the
/// tool takes 0 for no limit.
double reachOf(double maxDistance)
{
    constexpr int decimals = 15;
    const double distance = QString::number(maxDistance, 'f', decimals).toDouble();
    return distance > 0.0 ? distance : std::numeric_limits<double>::infinity();
}

} // namespace

LiveTerrain::LiveTerrain(std::shared_ptr<const LiveGround> ground, viewshed::Georeference georeference,
                         double metresOfHeight)
    : m_ground(std::move(ground))
    , m_georeference(std::move(georeference))
    , m_metresOfHeight(metresOfHeight)
{ }

LiveTerrainReading LiveTerrain::read(const QString &copy, int band)
{
    const GdalMessages messages; // a Problem holds GDAL's words
    try {
        const viewshed::Raster raster(encodePath(copy).toStdString(), band);
        viewshed::Georeference georeference(raster.dataset());
        constexpr int threads = 1; // a second one would cost more than it saves
        viewshed::Terrain terrain = raster.read({0, 0, raster.width(), raster.height()}, threads);
        viewshed::BlockMaxima maxima(terrain, threads);
        viewshed::BitGrid voids(terrain.width(), terrain.height());
        for (int row = 0; row < terrain.height(); ++row)
            terrain.findVoids(row, voids.row(row));
        auto ground = std::make_shared<const LiveGround>(
            LiveGround{std::move(terrain), std::move(maxima), std::move(voids)});
        return {std::shared_ptr<const LiveTerrain>(
                    new LiveTerrain(std::move(ground), std::move(georeference), raster.metresOfHeight())),
                {}};
    } catch (const std::exception &problem) { // Problem or std::bad_alloc
        return {nullptr, QString::fromLocal8Bit(problem.what())};
    }
}

QPointF LiveTerrain::toCells(const QPointF &point) const
{
    const auto [column, row] = m_georeference.positionOf(point.x(), point.y());
    return {column, row};
}

QPointF LiveTerrain::toGround(const QPointF &cell) const
{
    const auto [x, y] = m_georeference.coordinatesOf({cell.x(), cell.y()});
    return {x, y};
}

viewshed::Sight LiveTerrain::sight(const ToolObserver &observer, const viewshed::SightOptions &options) const
{
    if (!isCoordinate(observer.x) || !isCoordinate(observer.y) || !isAltitude(observer.z))
        throw viewshed::Problem("The observer has impossible coordinates or an impossible altitude.");
    return viewshed::sightOf({.name = "The observer",
                              .x = observer.x,
                              .y = observer.y,
                              .z = observer.z,
                              .reach = reachOf(observer.maxDistance)},
                             m_georeference, m_metresOfHeight, options);
}
