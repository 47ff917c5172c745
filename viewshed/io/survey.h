#pragma once

#include "viewshed/io/analysis.h"
#include "viewshed/sweep/horizon.h"

#include <memory>

namespace viewshed
{

/// What a survey is about. The references must outlive it.
struct SurveyTask
{
    const Raster &raster;
    const Georeference &georeference;
    const std::vector<Observer> &observers;
    const std::vector<Sight>
        &sights; ///< of the observers; the eyes' positions count from the raster's first cell
    const Options &options;
    SkylineFile *skylines; ///< may be null
    int threads;
};

/// Computes what observers see, from one window of the raster after the other, and combines their results.
class Survey
{
public:
    explicit Survey(const SurveyTask &task);

    /// Computes the observers with these numbers, in this order. `part.window` holds the window of each; of
    /// their results the part's rows count.
    void add(const Part &part, const std::vector<std::size_t> &observers, const Progress &progress);
    /// To be called once, at the end.
    Analysis result();

private:
    struct Finding;

    void load(const Window &window);
    void addVoids();
    BitGrid &voids();
    bool isDirect(const Part &part) const;
    void addDirectly(const Part &part, std::size_t observer, int threads, bool contended,
                     const Progress &progress);
    void addHeights(HeightGrid &heights, const Part &part, const Sight &sight, int threads, bool contended,
                    const Progress &progress);
    Finding found(const Part &part, std::size_t observer, int threads, const Progress &progress);
    void measure(Finding &finding, const Sight &sight) const;
    void absorb(Finding &finding, const Part &part);
    void absorbAreas(const Finding &finding, const Part &rows);
    void absorbCount(const Finding &finding, const Part &rows);
    void absorbSeen(const Finding &finding, const Part &rows);
    std::size_t observersAtATime(const Part &part, const std::vector<std::size_t> &observers,
                                 std::size_t first) const;

    const SurveyTask m_task;
    Combination m_combination; ///< Or for a single observer
    Window m_whole;
    std::vector<double> m_rowAreas; ///< square metres of a cell in each row; only with statistics
    Window m_window;                ///< of the raster, in memory
    std::optional<Terrain> m_terrain;
    std::optional<BlockMaxima> m_maxima;
    std::optional<Sweeper> m_sweeper;
    std::optional<BitGrid> m_withData; ///< of m_window, the cells with data; only with statistics
    int m_knownRows = 0;               ///< the voids of the rows above this one are known
    bool m_isFirst = true;             ///< nothing has been combined yet
    BitGrid m_reached; ///< of the raster, the cells that some observer reaches; only with statistics
    Analysis m_analysis;
};

} // namespace viewshed
