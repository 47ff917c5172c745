#include "viewshed/io/analysis.h"

#include "viewshed/horizon.h"
#include "viewshed/io/georeference.h"
#include "viewshed/io/observersight.h"
#include "viewshed/jobs.h"
#include "viewshed/problem.h"

#include <gdal_priv.h>

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
double memoryForHeights(const Raster &raster, int threads)
{
    constexpr double share = 0.9; // the rest of the available memory is left to GDAL
    constexpr double bytesPerCell =
        0.375; // of the raster: bits for the seen cells, the voids and one observer's result
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

/// The one window of the raster that is in memory.
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

    /// Frees the memory; there is no terrain until the next load().
    void release() { m_terrain.reset(); }

    /// Makes sure that all of `window` is in memory, and returns whether it had to be read. Until the first
    /// call there is no terrain.
    bool load(const Window &window)
    {
        if (m_terrain && m_window.holds(window))
            return false;
        release(); // two windows may not fit into the memory
        m_maxima.emplace(window.width, window.height);
        m_terrain.emplace(m_raster.read(window, m_threads, [this](const Terrain &terrain, int first, int end) {
            m_maxima->scanRows(terrain, first, end);
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

/// Computes the parts of all observers in turn, and collects the results.
class Survey
{
public:
    Survey(const Raster &raster, const Options &options, int threads)
        : m_raster(raster)
        , m_options(options)
        , m_threads(threads)
        , m_whole{.left = 0, .top = 0, .width = raster.width(), .height = raster.height()}
        , m_loaded(raster, threads)
        , m_analysis{.seen = BitGrid(raster.width(), raster.height()), .voids = {}}
    { }

    /// Combines what one observer sees in one part with the results so far. `first`: it is the first observer.
    void addPart(const Sight &sight, const Part &part, bool first, const Progress &progress)
    {
        if (m_loaded.load(part.window))
            addVoids();
        const Window &window = m_loaded.window();
        const Sight sightInWindow = within(sight, window);
        if (window == m_whole && (first || m_options.combination == Combination::Or)) {
            addHorizonViewshed(m_analysis.seen, m_loaded.terrain(), m_loaded.maxima(), sightInWindow, m_threads,
                               progress);
            return;
        }
        const BitGrid seen =
            horizonViewshed(m_loaded.terrain(), m_loaded.maxima(), sightInWindow, m_threads, progress);
        if (first)
            add(m_analysis.seen, seen,
                window == part.window ? part : Part{window, window.top, window.top + window.height});
        else
            combine(m_analysis.seen, seen, window, sightInWindow, m_options.combination);
    }
    /// To be called once, at the end.
    Analysis result()
    {
        if (m_knownRows < m_whole.height) {
            m_loaded.release();
            m_raster.addVoids(m_knownRows, m_threads, voids());
        }
        return std::move(m_analysis);
    }

private:
    /// Collects the voids of the loaded window if it has the raster's full width and follows the rows whose
    /// voids are known.
    void addVoids()
    {
        const Window &window = m_loaded.window();
        if (window.width < m_whole.width || window.top > m_knownRows)
            return;
        m_knownRows = std::max(m_knownRows, window.top + window.height);
        const auto doBlockRow = [&](int blockRow) {
            const int first = blockRow * BlockMaxima::side;
            const int end = std::min(first + BlockMaxima::side, window.height);
            for (int row = first; row < end && m_loaded.maxima().hasVoids(blockRow); ++row)
                m_loaded.terrain().findVoids(row, voids().row(window.top + row));
        };
        if (!m_loaded.maxima().hasVoids())
            return;
        voids(); // before the threads need it
        runJobs((window.height + BlockMaxima::side - 1) / BlockMaxima::side, m_threads, doBlockRow, {});
    }

    BitGrid &voids()
    {
        if (!m_analysis.voids)
            m_analysis.voids.emplace(m_whole.width, m_whole.height);
        return *m_analysis.voids;
    }

    const Raster &m_raster;
    const Options &m_options;
    int m_threads;
    Window m_whole;
    LoadedWindow m_loaded;
    int m_knownRows = 0; ///< the voids of the rows above this one are known
    Analysis m_analysis;
};

} // namespace

Analysis analysed(const Raster &raster, const std::vector<Observer> &observers, const Options &options,
                  int threads, const Progress &progress)
{
    const Georeference georeference(raster.dataset());
    const bool alone = observers.size() == 1;
    const double available = memoryForHeights(raster, threads);
    std::vector<Sight> sights;
    for (const Observer &observer : observers) {
        sights.push_back(sightOf(observer, georeference, raster.metresOfHeight(),
                                 {.targetHeight = options.targetHeight, .curvature = options.curvature}));
        checkMemory(observer, sights.back(), raster, alone, available);
    }
    Survey survey(raster, options, threads);
    for (std::size_t index = 0; index < sights.size(); ++index) {
        const std::vector<Part> parts = partsFor(sights[index], raster, alone);
        for (std::size_t part = 0; part < parts.size(); ++part) {
            const auto reportPart = [&](double done) {
                progress((static_cast<double>(index * parts.size() + part) + done)
                         / static_cast<double>(sights.size() * parts.size()));
            };
            survey.addPart(sights[index], parts[part], index == 0, reportPart);
        }
    }
    return survey.result();
}

} // namespace viewshed
