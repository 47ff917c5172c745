#include "viewshed/io/analysis.h"

#include "viewshed/io/observersight.h"
#include "viewshed/io/survey.h"
#include "viewshed/observergroups.h"
#include "viewshed/problem.h"

#include <algorithm>
#include <cmath>

namespace viewshed
{

namespace
{

/// The parts that are computed one after the other for an observer. `alone`: there is no other observer.
/// Several observers share the elevations in memory, so their windows are not cut: each would have to be read
/// again.
std::vector<Part> partsFor(const Sight &sight, const Raster &raster, bool alone)
{
    const Window window = windowOf(sight, raster.width(), raster.height());
    return alone ? partsOf(sight, window) : std::vector<Part>{{window, window.top, window.top + window.height}};
}

/// The memory in bytes that is left for elevations. Throws Problem if there is none.
double memoryForHeights(const Raster &raster, const Options &options, std::size_t observers, int threads)
{
    constexpr double share = 0.9; // the rest of the available memory is left to GDAL
    constexpr double bitsPerByte = 8.0;
    // Of the raster: bits for the seen cells, the voids and one observer's result.
    double bytesPerCell = 3.0 / bitsPerByte;
    if (options.output == Output::Count)
        bytesPerCell += SightCounter::bitsPerCell(observers) / bitsPerByte;
    if (options.output == Output::Height) // of all observers, and of one of several
        bytesPerCell += (options.combination == Combination::And && observers > 1 ? 2.0 : 1.0) * sizeof(float);
    if (!options.statistics.empty())
        bytesPerCell += 3.0 / bitsPerByte; // the cells within reach, and those with data
    const double available =
        share * availableMemory() - bytesPerCell * raster.width() * static_cast<double>(raster.height());
    if (available <= 0.0)
        throw Problem("The raster has more cells than fit into the available memory.");
    // A block is decoded by GDAL and held by the reader.
    const double blocks = 2.0 * raster.blockBytes(threads);
    if (available <= blocks)
        throw Problem(
            "The raster's blocks are larger than the available memory; copy the raster into a tiled file.");
    return available - blocks;
}

/// Throws Problem if the elevations of the observer's largest part do not fit into the available memory.
void checkMemory(const Observer &observer, const Sight &sight, const Raster &raster, bool alone,
                 double available)
{
    const auto bytesPerHeight = static_cast<double>(Terrain::bytesPerCell(raster.storage()));
    double needed = 0.0;
    for (const Part &part : partsFor(sight, raster, alone))
        needed = std::max(needed, bytesPerHeight * part.window.width * part.window.height);
    if (needed <= available)
        return;
    const double determinant = sight.ground.xx * sight.ground.yy - sight.ground.xy * sight.ground.xy;
    // The square around a disc has 4 · distance² / (area of a cell) cells, and each of its two parts half of
    // them.
    const double discSquare = alone ? 2.0 : 4.0;
    const double distance =
        std::sqrt(available / bytesPerHeight * std::sqrt(std::max(determinant, 0.0)) / discSquare);
    throw Problem(observer.name + " sees more cells than fit into the available memory; a Max_Dist of "
                  + std::to_string(static_cast<long long>(distance)) + " m would fit.");
}

/// The order in which the observers may be computed: that of their places, unless each replaces those before
/// it, or their horizons are written in their own order.
GroupOrder orderFor(const Options &options, const SkylineFile *skylines)
{
    const bool replaces = options.output == Output::Picture && options.combination == Combination::Overwrite;
    return replaces || skylines != nullptr ? GroupOrder::Fixed : GroupOrder::ByPlace;
}

} // namespace

Analysis analysed(const Raster &raster, const Georeference &georeference,
                  const std::vector<Observer> &observers, const Options &options, SkylineFile *skylines,
                  int threads, const Progress &progress)
{
    const bool alone = observers.size() == 1 && skylines == nullptr && options.statistics.empty();
    const double available = memoryForHeights(raster, options, observers.size(), threads);
    std::vector<Sight> sights;
    std::vector<Window> windows;
    for (const Observer &observer : observers) {
        sights.push_back(sightOf(observer, georeference, raster.metresOfHeight(),
                                 {.targetHeight = options.targetHeight, .curvature = options.curvature}));
        checkMemory(observer, sights.back(), raster, alone, available);
        windows.push_back(windowOf(sights.back(), raster.width(), raster.height()));
    }
    Survey survey({.raster = raster,
                   .georeference = georeference,
                   .observers = observers,
                   .sights = sights,
                   .options = options,
                   .skylines = skylines,
                   .threads = threads});
    if (alone) {
        const std::vector<Part> parts = partsOf(sights.front(), windows.front());
        for (std::size_t part = 0; part < parts.size(); ++part)
            survey.add(parts[part], {0}, [&](double done) {
                progress((static_cast<double>(part) + done) / static_cast<double>(parts.size()));
            });
        return survey.result();
    }
    const double mostCells = available / static_cast<double>(Terrain::bytesPerCell(raster.storage()));
    std::size_t before = 0;
    for (const ObserverGroup &group : observerGroups(windows, orderFor(options, skylines), mostCells)) {
        const Window &window = group.window;
        const auto share = static_cast<double>(group.observers.size());
        survey.add({window, window.top, window.top + window.height}, group.observers, [&](double done) {
            progress((static_cast<double>(before) + done * share) / static_cast<double>(observers.size()));
        });
        before += group.observers.size();
    }
    return survey.result();
}

} // namespace viewshed
