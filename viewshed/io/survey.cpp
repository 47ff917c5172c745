#include "viewshed/io/survey.h"

#include "viewshed/jobs.h"

#include <algorithm>
#include <cmath>

namespace viewshed
{

namespace
{

/// Of a larger window, each thread computes a part: the threads then read the same elevations, which are in the
/// processor's cache. The results of smaller windows that wait to be combined take 1 GB at most.
constexpr double mostCellsOfThread = 1 << 21;
/// The most observers that are computed before their results are combined.
constexpr std::size_t mostFindings = 32;
/// The most observers that are computed before their windows are looked at again, if they need no combining.
constexpr std::size_t mostShared = 1024;

/// Computes the area of a cell for each row; it differs from row to row in a geographic coordinate system.
std::vector<double> rowAreas(const Raster &raster, const Georeference &georeference)
{
    std::vector<double> areas;
    for (int row = 0; row < raster.height(); ++row) {
        const auto middle = georeference.coordinatesOf({.column = raster.width() / 2.0, .row = double(row)});
        const GroundSteps steps = georeference.stepsAt(middle.y);
        areas.push_back(std::abs(steps.columnEast * steps.rowNorth - steps.columnNorth * steps.rowEast));
    }
    return areas;
}

Window shifted(Window window, int columns, int rows)
{
    window.left += columns;
    window.top += rows;
    return window;
}

} // namespace

/// What one observer sees, before it is combined with what the others see.
struct Survey::Finding
{
    std::size_t observer;
    Window window; ///< of the raster; holds every cell within reach
    BitGrid seen;  ///< of the window; empty if it is not needed
    std::optional<HeightGrid> heights;
    SeenArea area;
    BitGrid reached; ///< of the window; empty without statistics
    std::optional<HorizonLine> line;
};

Survey::Survey(const SurveyTask &task)
    : m_task(task)
    , m_combination(task.observers.size() > 1 ? task.options.combination : Combination::Or)
    , m_whole{.left = 0, .top = 0, .width = task.raster.width(), .height = task.raster.height()}
    , m_reached(0, 0)
    , m_analysis{.seen = BitGrid(m_whole.width, m_whole.height),
                 .voids = {},
                 .counts = {},
                 .heights = {},
                 .areas = {},
                 .together = {}}
{
    const Options &options = task.options;
    if (options.output == Output::Count) {
        m_analysis.counts.emplace(m_whole.width, m_whole.height);
        m_analysis.counts->makeRoom(task.observers.size());
    }
    if (options.output == Output::Height)
        m_analysis.heights.emplace(m_whole,
                                   m_combination == Combination::And ? 0.0F : static_cast<float>(neverSeen));
    if (!options.statistics.empty()) {
        m_rowAreas = rowAreas(task.raster, task.georeference);
        m_reached = BitGrid(m_whole.width, m_whole.height);
        m_analysis.areas.resize(task.observers.size());
    }
}

/// Makes sure that all of `window` is in memory.
void Survey::load(const Window &window)
{
    if (window.width == 0 || (m_terrain && m_window.holds(window)))
        return;
    m_sweeper.reset();
    m_terrain.reset(); // two windows may not fit into the memory
    m_withData.reset();
    m_maxima.emplace(window.width, window.height);
    m_terrain.emplace(
        m_task.raster.read(window, m_task.threads, [this](const Terrain &terrain, int first, int end) {
            m_maxima->scanRows(terrain, first, end);
        }));
    m_maxima->finish(*m_terrain, m_task.threads);
    m_sweeper.emplace(*m_terrain, *m_maxima);
    m_window = window;
    addVoids();
    if (!m_rowAreas.empty())
        m_withData =
            reachedCells(*m_terrain, {}, {.left = 0, .top = 0, .width = window.width, .height = window.height});
}

/// Collects the voids of the loaded window if it has the raster's full width and follows the rows whose voids
/// are known.
void Survey::addVoids()
{
    if (m_window.width < m_whole.width || m_window.top > m_knownRows)
        return;
    m_knownRows = std::max(m_knownRows, m_window.top + m_window.height);
    const auto doBlockRow = [&](int blockRow) {
        const int first = blockRow * BlockMaxima::side;
        const int end = std::min(first + BlockMaxima::side, m_window.height);
        for (int row = first; row < end && m_maxima->hasVoids(blockRow); ++row)
            m_terrain->findVoids(row, voids().row(m_window.top + row));
    };
    if (!m_maxima->hasVoids())
        return;
    voids(); // before the threads need it
    runJobs((m_window.height + BlockMaxima::side - 1) / BlockMaxima::side, m_task.threads, doBlockRow, {});
}

BitGrid &Survey::voids()
{
    if (!m_analysis.voids)
        m_analysis.voids.emplace(m_whole.width, m_whole.height);
    return *m_analysis.voids;
}

void Survey::add(const Part &part, const std::vector<std::size_t> &observers, const Progress &progress)
{
    load(part.window);
    for (std::size_t first = 0; first < observers.size();) {
        const bool direct = isDirect(part);
        const std::size_t count = observersAtATime(part, observers, first);
        const auto report = [&](double done) {
            progress((static_cast<double>(first) + done * static_cast<double>(count))
                     / static_cast<double>(observers.size()));
        };
        std::vector<std::optional<Finding>> findings(direct ? 0 : count);
        const auto compute = [&](std::size_t index, int threads, const Progress &ofObserver) {
            if (direct)
                addDirectly(part, observers[first + index], threads, count > 1, ofObserver);
            else
                findings[index].emplace(found(part, observers[first + index], threads, ofObserver));
        };
        if (count > 1)
            runJobs(
                static_cast<int>(count), m_task.threads, [&](int job) { compute(std::size_t(job), 1, {}); },
                report);
        else
            compute(0, m_task.threads, report);
        for (std::optional<Finding> &finding : findings) {
            absorb(*finding, part);
            finding.reset();
        }
        m_isFirst = false;
        first += count;
    }
}

/// How many of the observers from number `first` of the list on are computed at a time, each by one thread. 1:
/// the next observer is computed by all threads.
std::size_t Survey::observersAtATime(const Part &part, const std::vector<std::size_t> &observers,
                                     std::size_t first) const
{
    const std::size_t left = observers.size() - first;
    if (isDirect(part) && m_combination != Combination::Or)
        return 1; // the first observer; the results of the others must be combined with its own
    if (left < 2 * static_cast<std::size_t>(m_task.threads) || m_task.threads < 2)
        return 1;
    double cells = 1.0;
    for (std::size_t index = first; index < first + std::min(left, mostFindings); ++index) {
        const Window window =
            windowOf(within(m_task.sights[observers[index]], m_window), m_window.width, m_window.height);
        cells = std::max(cells, static_cast<double>(window.width) * window.height);
    }
    if (cells > mostCellsOfThread)
        return 1;
    return std::min(left, isDirect(part) ? mostShared : mostFindings);
}

/// Whether the next observer's result can be stored in the analysis while it is computed.
bool Survey::isDirect(const Part &part) const
{
    const Options &options = m_task.options;
    if (part.window.width == 0 || m_task.skylines != nullptr || !options.statistics.empty()
        || options.output == Output::Count)
        return false;
    if (options.output == Output::Height)
        return m_combination != Combination::And;
    const bool whole = part.firstRow == part.window.top && part.endRow == part.window.top + part.window.height;
    return whole && (m_isFirst || m_combination == Combination::Or);
}

/// `contended`: other observers are computed at the same time.
void Survey::addDirectly(const Part &part, std::size_t observer, int threads, bool contended,
                         const Progress &progress)
{
    const Sight sight = within(m_task.sights[observer], m_window);
    if (m_task.options.output == Output::Picture) {
        const Window raster = shifted(m_whole, -m_window.left, -m_window.top);
        m_sweeper->addSeen(m_analysis.seen, raster, sight, threads, progress);
        return;
    }
    addHeights(*m_analysis.heights, part, sight, threads, contended, progress);
}

/// Lowers the heights of a grid to those of one sight, whose eye counts from the terrain's first cell.
void Survey::addHeights(HeightGrid &heights, const Part &part, const Sight &sight, int threads, bool contended,
                        const Progress &progress)
{
    const HeightTarget target{.left = m_window.left,
                              .top = m_window.top,
                              .firstRow = part.firstRow,
                              .endRow = part.endRow,
                              .contended = contended};
    m_sweeper->findHeights(
        sight, [&](const RowOfCells &cells, const double *found) { heights.lower(cells, found, target); },
        threads, progress);
}

Survey::Finding Survey::found(const Part &part, std::size_t observer, int threads, const Progress &progress)
{
    const Options &options = m_task.options;
    const Sight sight = within(m_task.sights[observer], m_window);
    // Counts from the terrain's first cell. Without a terrain, the sight reaches no cell.
    const Window window = m_terrain ? windowOf(sight, m_window.width, m_window.height) : Window{};
    const bool needsSeen = options.output != Output::Height || !options.statistics.empty()
        || (m_task.skylines != nullptr && m_task.skylines->wantsSeen());
    Finding finding{.observer = observer,
                    .window = shifted(window, m_window.left, m_window.top),
                    .seen = needsSeen ? BitGrid(window.width, window.height) : BitGrid(0, 0),
                    .heights = {},
                    .area = {},
                    .reached = BitGrid(0, 0),
                    .line = {}};
    if (window.width == 0) {
        finding.line.emplace(sight, 1.0);
        if (options.output == Output::Height)
            finding.heights.emplace(finding.window, static_cast<float>(neverSeen));
        return finding;
    }
    if (needsSeen)
        m_sweeper->addSeen(finding.seen, window, sight, threads, progress);
    if (options.output == Output::Height) {
        finding.heights.emplace(finding.window, static_cast<float>(neverSeen));
        addHeights(*finding.heights, part, sight, threads, false, progress);
    }
    if (m_task.skylines != nullptr)
        finding.line = m_sweeper->horizonLine(sight, m_task.raster.metresOfHeight(), threads, progress);
    if (!options.statistics.empty()) {
        finding.reached = sight.hasBounds() ? reachedCells(*m_terrain, sight, window) : *m_withData;
        measure(finding, m_task.sights[observer]);
    }
    return finding;
}

void Survey::measure(Finding &finding, const Sight &sight) const
{
    finding.area.seen = areaOf(finding.seen, finding.window.top, m_rowAreas);
    finding.area.reach = areaOf(finding.reached, finding.window.top, m_rowAreas);
    addFarthest(finding.area, finding.seen, finding.window, sight);
}

/// Combines an observer's result with those of the observers before it.
void Survey::absorb(Finding &finding, const Part &part)
{
    const Options &options = m_task.options;
    if (m_task.skylines != nullptr)
        m_task.skylines->write({.number = finding.observer + 1,
                                .observer = m_task.observers[finding.observer],
                                .sight = m_task.sights[finding.observer],
                                .line = *finding.line,
                                .left = m_window.left,
                                .top = m_window.top,
                                .seen = &finding.seen,
                                .window = finding.window});
    const Part rows{finding.window, std::max(part.firstRow, finding.window.top),
                    std::min(part.endRow, finding.window.top + finding.window.height)};
    if (!options.statistics.empty())
        absorbAreas(finding, rows);
    if (options.output == Output::Count)
        absorbCount(finding, rows);
    if (options.output == Output::Height)
        m_analysis.heights->combine(*finding.heights,
                                    m_combination == Combination::And ? HeightGrid::Choice::Greater
                                                                      : HeightGrid::Choice::Lower);
    absorbSeen(finding, rows);
    m_isFirst = false;
}

void Survey::absorbAreas(const Finding &finding, const Part &rows)
{
    m_analysis.areas[finding.observer] = finding.area;
    viewshed::add(m_reached, finding.reached, rows);
    SeenArea &together = m_analysis.together;
    if (finding.area.farthest <= together.farthest)
        return;
    together.farthest = finding.area.farthest;
    together.farthestColumn = finding.area.farthestColumn;
    together.farthestRow = finding.area.farthestRow;
}

/// Adds to the counts; those of a large window by all threads.
void Survey::absorbCount(const Finding &finding, const Part &rows)
{
    constexpr int rowsAtATime = 256;
    const int count = rows.endRow - rows.firstRow;
    runJobs((count + rowsAtATime - 1) / rowsAtATime, m_task.threads,
            [&](int job) {
                const int first = rows.firstRow + job * rowsAtATime;
                m_analysis.counts->add(finding.seen, finding.window, first,
                                       std::min(first + rowsAtATime, rows.endRow));
            },
            {});
}

void Survey::absorbSeen(const Finding &finding, const Part &rows)
{
    const bool combines = m_task.options.output == Output::Picture && m_combination != Combination::Or;
    if (combines && !m_isFirst)
        combine(m_analysis.seen, finding.seen, finding.window,
                within(m_task.sights[finding.observer], finding.window), m_combination);
    else if (finding.seen.height() > 0)
        viewshed::add(m_analysis.seen, finding.seen, rows);
}

Analysis Survey::result()
{
    m_sweeper.reset();
    m_terrain.reset();
    if (m_knownRows < m_whole.height)
        m_task.raster.addVoids(m_knownRows, m_task.threads, voids());
    if (!m_rowAreas.empty()) {
        m_analysis.together.seen = areaOf(m_analysis.seen, 0, m_rowAreas);
        m_analysis.together.reach = areaOf(m_reached, 0, m_rowAreas);
    }
    return std::move(m_analysis);
}

} // namespace viewshed
