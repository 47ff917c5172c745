#include "viewshed/analysis.h"

#include "viewshed/georeference.h"
#include "viewshed/horizon.h"
#include "viewshed/jobs.h"

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

/// What the observer looks at, in parts that are computed one after the other. Several observers share the
/// heights: cutting them would mean to read them over and over.
std::vector<Part> partsFor(const Sight &sight, const Raster &raster, bool alone)
{
    const Window window = windowOf(sight, raster.width(), raster.height());
    return alone ? partsOf(sight, window) : std::vector<Part>{{window, window.top, window.top + window.height}};
}

void checkMemory(const Observer &observer, const Sight &sight, const Raster &raster, bool alone)
{
    constexpr double share = 0.9;  // of what is free, the rest of it being for GDAL
    constexpr double bits = 0.375; // bytes a cell of the raster
    const double available =
        share * availableMemory() - bits * raster.width() * static_cast<double>(raster.height());
    const double each = static_cast<double>(Terrain::bytesPerCell(raster.storage()));
    double needed = 0.0;
    for (const Part &part : partsFor(sight, raster, alone))
        needed = std::max(needed, each * part.window.width * part.window.height);
    if (needed <= available)
        return;
    const double determinant = sight.ground.xx * sight.ground.yy - sight.ground.xy * sight.ground.xy;
    // A disc's frame has 4 · distance² / (area of a cell) cells if the cells are square.
    const double frame = alone ? 2.0 : 4.0;
    const double distance =
        std::sqrt(std::max(available, 0.0) / each * std::sqrt(std::max(determinant, 0.0)) / frame);
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

    /// Whether it had to be read.
    bool load(const Window &window)
    {
        if (m_terrain && m_window.holds(window))
            return false;
        m_terrain.reset(); // two do not fit
        m_maxima.emplace(window.width, window.height);
        m_terrain.emplace(m_raster.read(window, m_threads, [this](const Terrain &terrain, int first, int end) {
            m_maxima->take(terrain, first, end);
        }));
        m_maxima->finish(*m_terrain, m_threads);
        m_window = window;
        return true;
    }

private:
    const Raster &m_raster;
    int m_threads;
    Window m_window;
    std::optional<Terrain> m_terrain;
    std::optional<BlockMaxima> m_maxima;
};

/// Adds the loaded cells without data; the window is as wide as the raster.
void addVoids(std::optional<BitGrid> &voids, const LoadedWindow &loaded, const Raster &raster, int threads)
{
    std::vector<int> blockRows;
    for (int row = 0; row * BlockMaxima::side < loaded.window().height; ++row) {
        if (loaded.maxima().hasVoids(row))
            blockRows.push_back(row);
    }
    if (blockRows.empty())
        return;
    if (!voids)
        voids.emplace(raster.width(), raster.height());
    const auto doBlockRow = [&](int index) {
        const int first = blockRows[static_cast<std::size_t>(index)] * BlockMaxima::side;
        const int end = std::min(first + BlockMaxima::side, loaded.window().height);
        for (int row = first; row < end; ++row)
            loaded.terrain().findVoids(row, voids->row(loaded.window().top + row));
    };
    runJobs(static_cast<int>(blockRows.size()), threads, doBlockRow, {});
}

} // namespace

Analysis analysed(const Raster &raster, const std::vector<Observer> &observers, const Options &options,
                  int threads, const Progress &progress)
{
    const Georeference georeference(raster.dataset());
    const bool alone = observers.size() == 1;
    std::vector<Sight> sights;
    for (const Observer &observer : observers) {
        sights.push_back(sightOf(observer, georeference, raster, options));
        checkMemory(observer, sights.back(), raster, alone);
    }

    const Window whole{0, 0, raster.width(), raster.height()};
    Analysis analysis{BitGrid(raster.width(), raster.height()), false, {}};
    LoadedWindow loaded(raster, threads);
    for (std::size_t index = 0; index < sights.size(); ++index) {
        const std::vector<Part> parts = partsFor(sights[index], raster, alone);
        const bool isWhole = windowOf(sights[index], raster.width(), raster.height()) == whole;
        for (std::size_t part = 0; part < parts.size(); ++part) {
            if (loaded.load(parts[part].window) && isWhole)
                addVoids(analysis.voids, loaded, raster, threads);
            const Sight sight = within(sights[index], loaded.window());
            const auto steps = static_cast<double>(sights.size() * parts.size());
            const auto tell = [&](double done) {
                progress((static_cast<double>(index * parts.size() + part) + done) / steps);
            };
            const bool first = index == 0;
            if (loaded.window() == whole && (first || options.combination == Combination::Or)) {
                addHorizonViewshed(analysis.seen, loaded.terrain(), loaded.maxima(), sight, threads, tell);
                continue;
            }
            const BitGrid seen = horizonViewshed(loaded.terrain(), loaded.maxima(), sight, threads, tell);
            if (parts.size() > 1)
                add(analysis.seen, seen, parts[part]);
            else
                combine(analysis.seen, seen, loaded.window(), sight, options.combination, first);
        }
        analysis.knowsVoids = analysis.knowsVoids || isWhole;
    }
    return analysis;
}

} // namespace viewshed
