#include "viewshed/analysis.h"

#include "viewshed/georeference.h"
#include "viewshed/horizon.h"

#include <gdal_priv.h>

#include <cmath>

namespace viewshed
{

namespace
{

/// What an observer looks with, counted from the raster's first cell.
Sight sightOf(const Observer &observer, const Georeference &georeference, const Raster &raster,
              const Options &options)
{
    const auto [column, row] = georeference.positionOf(observer.x, observer.y);
    if (!(std::abs(column) < largestSide && std::abs(row) < largestSide))
        throw Failure(observer.name + " is too far from the raster.");
    Sight sight;
    sight.eye = Eye::at(column, row, observer.z);
    sight.targetHeight = options.targetHeight;
    sight.ground = georeference.groundAt(observer.y);
    sight.bend = options.curvature / (2.0 * georeference.semiMajorAxis()) / raster.metresOfHeight();
    sight.reach = observer.reach;
    return sight;
}

/// The same sight, counted from the window's first cell.
Sight within(Sight sight, const Window &window)
{
    sight.eye.x -= std::int64_t(window.left) * latticePoints;
    sight.eye.y -= std::int64_t(window.top) * latticePoints;
    return sight;
}

void checkMemory(const Observer &observer, const Sight &sight, const Window &window, const Raster &raster)
{
    constexpr double share = 0.9; // of what is free, the rest of it being for GDAL
    constexpr double bits = 0.25; // bytes a cell of the raster
    const double available =
        share * availableMemory() - bits * raster.width() * static_cast<double>(raster.height());
    const double each = static_cast<double>(Terrain::bytesPerCell(raster.storage()));
    if (each * window.width * window.height <= available)
        return;
    const double determinant = sight.ground.xx * sight.ground.yy - sight.ground.xy * sight.ground.xy;
    // A disc's frame has 4 · distance² / (area of a cell) cells if the cells are square.
    const double distance =
        std::sqrt(std::max(available, 0.0) / each * std::sqrt(std::max(determinant, 0.0))) / 2.0;
    throw Failure(observer.name + " sees more cells than fit into the available memory; a Max_Dist of "
                  + std::to_string(static_cast<long long>(distance)) + " m would.");
}

/// The part of the raster that is at hand.
class LoadedWindow
{
public:
    LoadedWindow(const Raster &raster, int threads)
        : m_raster(raster)
        , m_threads(threads)
    { }

    const Window &window() const { return m_window; }
    const Terrain &terrain() const { return *m_terrain; }
    const BlockMaxima &maxima() const { return *m_maxima; }

    void load(const Window &window)
    {
        if (m_terrain && m_window.holds(window))
            return;
        m_terrain.reset(); // two do not fit
        m_maxima.emplace(window.width, window.height);
        m_terrain.emplace(m_raster.read(window, m_threads, [this](const Terrain &terrain, int first, int end) {
            m_maxima->take(terrain, first, end);
        }));
        m_maxima->finish(*m_terrain, m_threads);
        m_window = window;
    }
    std::optional<Terrain> whole()
    {
        if (m_window != Window{0, 0, m_raster.width(), m_raster.height()})
            m_terrain.reset();
        return std::move(m_terrain);
    }

private:
    const Raster &m_raster;
    int m_threads;
    Window m_window;
    std::optional<Terrain> m_terrain;
    std::optional<BlockMaxima> m_maxima;
};

} // namespace

Analysis analysed(const Raster &raster, const std::vector<Observer> &observers, const Options &options,
                  int threads, const Progress &progress)
{
    const Georeference georeference(raster.dataset());
    std::vector<Sight> sights;
    for (const Observer &observer : observers) {
        sights.push_back(sightOf(observer, georeference, raster, options));
        checkMemory(observer, sights.back(), windowOf(sights.back(), raster.width(), raster.height()), raster);
    }

    BitGrid picture(raster.width(), raster.height());
    LoadedWindow loaded(raster, threads);
    for (std::size_t index = 0; index < sights.size(); ++index) {
        const Window needed = windowOf(sights[index], raster.width(), raster.height());
        loaded.load(needed);
        const Sight sight = within(sights[index], loaded.window());
        const auto tell = [&](double done) {
            progress((static_cast<double>(index) + done) / static_cast<double>(sights.size()));
        };
        const BitGrid seen = horizonViewshed(loaded.terrain(), loaded.maxima(), sight, threads, tell);
        combine(picture, seen, loaded.window(), sight, options.combination, index == 0);
    }
    return {std::move(picture), loaded.whole()};
}

} // namespace viewshed
