#include "app/preview/live/LiveTerrain.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/problem.h"

namespace
{

/// A number as the tool finds it in the shapefile of writePointFile(), whose fields have 15 decimals.
double fileNumber(double number)
{
    constexpr int decimals = 15;
    return QString::number(number, 'f', decimals).toDouble();
}

/// The tool takes 0 for no limit.
double reachOf(double maxDistance)
{
    const double distance = fileNumber(maxDistance);
    return distance > 0.0 ? distance : std::numeric_limits<double>::infinity();
}

/// The azimuth as the tool has it: 360 is 0.
double azimuthOf(const std::optional<double> &azimuth)
{
    constexpr double circle = 360.0;
    const double number = fileNumber(azimuth.value_or(0.0));
    return number < circle ? number : 0.0;
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
    const ObserverLimits &limits = observer.limits;
    viewshed::Observer eye{.name = "The observer",
                           .x = observer.x,
                           .y = observer.y,
                           .z = observer.z,
                           .reach = reachOf(observer.maxDistance),
                           .nearest = fileNumber(limits.leastDistance.value_or(0.0)),
                           .ownName = {}};
    if (limits.targetHeight)
        eye.targetHeight = fileNumber(*limits.targetHeight);
    eye.fromAzimuth = azimuthOf(limits.azimuthFrom);
    eye.toAzimuth = azimuthOf(limits.azimuthTo);
    eye.highestAngle = fileNumber(limits.angleTo.value_or(eye.highestAngle));
    eye.lowestAngle = fileNumber(limits.angleFrom.value_or(eye.lowestAngle));
    return viewshed::sightOf(eye, m_georeference, m_metresOfHeight, options);
}
