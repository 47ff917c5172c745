#include "viewshed/horizon.h"

#include "viewshed/combine.h"
#include "viewshed/jobs.h"
#include "viewshed/panel.h"
#include "viewshed/skyline.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>

namespace viewshed
{

namespace
{

constexpr int sectors = 4;
constexpr int leaves = 64; ///< ranges of directions in a sector

/// A sector reaches from m = -1 to 1. The leaves' ends are a trifle off the round numbers: no quotient of the
/// lattice's numbers lies there, so every cell is inside one leaf, and those on a diagonal are inside both
/// sectors.
double leafEnd(int leaf)
{
    constexpr double trifle = 0x1p-40;
    return leaf == 0 ? -1.0 - trifle : -1.0 + 2.0 * leaf / leaves + trifle;
}

/// Beyond so many cells the quotients of two directions may be equal without the directions being so.
constexpr double farthest = 65536.0;

/// What one leaf after the other is computed in: memory is asked for once a thread.
struct Workspace
{
    explicit Workspace(const SkylineKernels &kernels)
        : skyline(kernels)
        , panel(kernels)
    { }

    Skyline skyline;
    Panel panel;
    std::vector<std::uint64_t> above;      ///< 1 for each vertex of a ring that is seen
    std::vector<std::uint64_t> columnBits; ///< one word a place of the panel
};

/// Those that no thread uses just now.
class Workspaces
{
public:
    std::unique_ptr<Workspace> taken(const SkylineKernels &kernels)
    {
        const std::lock_guard lock(m_guard);
        if (m_idle.empty())
            return std::make_unique<Workspace>(kernels);
        std::unique_ptr<Workspace> one = std::move(m_idle.back());
        m_idle.pop_back();
        return one;
    }
    void giveBack(std::unique_ptr<Workspace> one)
    {
        const std::lock_guard lock(m_guard);
        m_idle.push_back(std::move(one));
    }

private:
    std::mutex m_guard;
    std::vector<std::unique_ptr<Workspace>> m_idle;
};

/// What all leaves of one sight share.
struct Scene
{
    const Terrain &terrain;
    const BlockMaxima &maxima;
    const Sight &sight;
    Window window;      ///< the cells that matter
    double error;       ///< of a horizon's height at a distance of one cell
    double leastGround; ///< square metres of the shortest step of one cell, in any direction
    const SkylineKernels &kernels;
    BitGrid &seen;
};

/// The way of one leaf from the eye to the edge of the terrain.
class LeafPass
{
public:
    LeafPass(const Scene &scene, const Frame &frame, int leaf, Workspace &workspace)
        : m_scene(scene)
        , m_frame(frame)
        , m_from(leafEnd(leaf))
        , m_to(leafEnd(leaf + 1))
        , m_eyeLine(frame.overColumns ? scene.sight.eye.column() : scene.sight.eye.row())
        , m_eyePlace(frame.overColumns ? scene.sight.eye.row() : scene.sight.eye.column())
        , m_lines(frame.overColumns ? columnsOf(scene.window) : rowsOf(scene.window))
        , m_places(frame.overColumns ? rowsOf(scene.window) : columnsOf(scene.window))
        , m_skyline(workspace.skyline)
        , m_panel(workspace.panel)
        , m_above(workspace.above)
        , m_columnBits(workspace.columnBits)
    {
        m_skyline.restart(m_from, m_to);
    }

    void run()
    {
        const bool grows = m_frame.direction > 0;
        const double next = grows ? std::floor(m_eyeLine) + 1.0 : std::ceil(m_eyeLine) - 1.0;
        int line = static_cast<int>(grows ? std::max(next, double(m_lines.first))
                                          : std::min(next, double(m_lines.last)));
        constexpr int block = BlockMaxima::side;
        while (line >= m_lines.first && line <= m_lines.last) {
            const int first = line / block * block;
            const int last = grows ? std::min(first + block - 1, m_lines.last) : std::max(first, m_lines.first);
            passGroup(line, last);
            line = last + m_frame.direction;
        }
    }

private:
    static Places columnsOf(const Window &window) { return {window.left, window.left + window.width - 1}; }
    static Places rowsOf(const Window &window) { return {window.top, window.top + window.height - 1}; }

    double ahead(int line) const { return (line - m_eyeLine) * m_frame.direction; }

    /// The cells around the leaf at a distance, one beyond it on either side; not cut at the terrain's edge.
    Places around(double ahead) const
    {
        Places places{static_cast<int>(std::floor(m_from * ahead + m_eyePlace)),
                      static_cast<int>(std::ceil(m_to * ahead + m_eyePlace))};
        // The sums are rounded, and an end may be nearer to a cell than that.
        if ((places.first - m_eyePlace) / ahead > m_from)
            --places.first;
        if ((places.last - m_eyePlace) / ahead < m_to)
            ++places.last;
        return places;
    }

    /// Lines of one row of blocks, in the order from the eye.
    void passGroup(int nearest, int farthestLine)
    {
        const Places near = around(ahead(nearest));
        const Places far = around(ahead(farthestLine));
        const Places places{std::max(std::min(near.first, far.first), m_places.first - 1),
                            std::min(std::max(near.last, far.last), m_places.last + 1)};
        if (places.first > m_places.last || places.last < m_places.first)
            return;
        const double greatest = greatestHeight(nearest, places);
        m_level = m_level && greatest <= m_scene.sight.eye.z && m_scene.sight.bend >= 0.0;
        if (isHidden(nearest, farthestLine, greatest))
            return;
        m_panel.load(m_scene.terrain, m_scene.sight, m_frame,
                     {std::min(nearest, farthestLine) - 1, std::max(nearest, farthestLine) + 1}, places);
        m_columnBits.assign(static_cast<std::size_t>(places.last - places.first + 1), 0);
        for (int line = nearest; line != farthestLine + m_frame.direction; line += m_frame.direction)
            passLine(line);
        if (m_frame.overColumns)
            storeColumns(nearest);
    }

    /// Of the blocks around some places of a row of blocks.
    double greatestHeight(int line, Places places) const
    {
        constexpr int block = BlockMaxima::side;
        const int first = std::max(places.first, m_places.first) / block;
        const int last = std::min(places.last, m_places.last) / block;
        const int row = line / block;
        return m_frame.overColumns ? m_scene.maxima.greatest(row, row, first, last)
                                   : m_scene.maxima.greatest(first, last, row, row);
    }

    /// Whether the highest cell of the lines, put where it is best seen, is below all of the horizon.
    bool isHidden(int nearest, int farthestLine, double greatest)
    {
        const Sight &sight = m_scene.sight;
        const double before = ahead(nearest) - 1.0;
        if (sight.bend < 0.0 || before <= 0.0)
            return false;
        const double top = greatest - sight.eye.z + std::max(sight.targetHeight, 0.0)
            - sight.bend * m_scene.leastGround * before * before;
        return top / (top > 0.0 ? before : ahead(farthestLine)) < m_skyline.lowest() - m_scene.error;
    }

    void passLine(int line)
    {
        Ring ring;
        ring.ahead = ahead(line);
        Places vertices = around(ring.ahead);
        vertices = {std::max(vertices.first, m_places.first - 1), std::min(vertices.last, m_places.last + 1)};
        ring.intervals = vertices.last - vertices.first;
        if (ring.intervals < 1)
            return;
        ring.firstSide = vertices.first - m_eyePlace;
        ring.heights = m_panel.line(line, vertices.first);
        ring.nearer = m_panel.line(line - m_frame.direction, vertices.first);
        ring.farther = m_panel.line(line + m_frame.direction, vertices.first);
        const double *limits = m_skyline.limits(ring);
        decide(line, ring, vertices.first, limits);
        m_skyline.raise(ring);
    }

    void decide(int line, const Ring &ring, int first, const double *limits)
    {
        const double error = ring.ahead * m_scene.error;
        const double target = m_scene.sight.targetHeight;
        if (m_above.size() <= static_cast<std::size_t>(ring.intervals))
            m_above.resize(static_cast<std::size_t>(ring.intervals) + 1);
        int doubtful = m_scene.kernels.judge(ring, limits, target, error, m_above.data());
        for (int vertex = 0; doubtful > 0; ++vertex) {
            const double height = ring.heights[vertex] + target;
            if (!(std::abs(height - limits[vertex]) <= error))
                continue;
            --doubtful;
            // Over water as high as the eye every cell is in doubt, and none has to be.
            const bool clear = m_level && height >= 0.0;
            const int place = first + vertex;
            if (clear
                || sees(m_scene.terrain, m_scene.sight, m_frame.column(line, place), m_frame.row(line, place)))
                m_above[static_cast<std::size_t>(vertex)] = 1;
        }
        if (!std::isinf(m_scene.sight.reach))
            dropBeyondReach(line, ring, first);
        if (m_frame.overColumns)
            collectColumn(line, ring, first);
        else
            storeRow(line, ring, first);
    }

    void dropBeyondReach(int line, const Ring &ring, int first)
    {
        for (int vertex = 0; vertex <= ring.intervals; ++vertex) {
            const int place = first + vertex;
            std::uint64_t &above = m_above[static_cast<std::size_t>(vertex)];
            if (above != 0 && !m_scene.sight.reaches(m_frame.column(line, place), m_frame.row(line, place)))
                above = 0;
        }
    }

    /// The bits of the lines of a block, where lines are columns, are collected for each row until the block is
    /// done.
    void collectColumn(int line, const Ring &ring, int first)
    {
        std::uint64_t *bits = m_columnBits.data() + (first - m_panel.firstPlace());
        const int shift = line % BitGrid::bitsPerWord;
        for (int vertex = 0; vertex <= ring.intervals; ++vertex)
            bits[vertex] |= m_above[static_cast<std::size_t>(vertex)] << shift;
    }

    void storeRow(int line, const Ring &ring, int first)
    {
        constexpr int bitsPerWord = BitGrid::bitsPerWord;
        int vertex = std::max(-first, 0); // the others are outside the terrain
        while (vertex <= ring.intervals) {
            const int place = first + vertex;
            const int end = std::min(vertex + bitsPerWord - place % bitsPerWord, ring.intervals + 1);
            std::uint64_t bits = 0;
            for (int shift = place % bitsPerWord; vertex < end; ++vertex, ++shift)
                bits |= m_above[static_cast<std::size_t>(vertex)] << shift;
            store(place, line, bits);
        }
    }

    void storeColumns(int line)
    {
        for (std::size_t index = 0; index < m_columnBits.size(); ++index)
            store(line, m_panel.firstPlace() + static_cast<int>(index), m_columnBits[index]);
    }

    /// Other threads write into the same words.
    void store(int column, int row, std::uint64_t bits)
    {
        if (bits == 0)
            return;
        std::uint64_t &word = m_scene.seen.row(row)[column / BitGrid::bitsPerWord];
        std::atomic_ref(word).fetch_or(bits, std::memory_order_relaxed);
    }

    const Scene &m_scene;
    Frame m_frame;
    double m_from;
    double m_to;
    double m_eyeLine;
    double m_eyePlace;
    Places m_lines;      ///< of the window
    Places m_places;     ///< of the window
    bool m_level = true; ///< nothing so far was above the eye
    Skyline &m_skyline;
    Panel &m_panel;
    std::vector<std::uint64_t> &m_above;
    std::vector<std::uint64_t> &m_columnBits;
};

/// A bound of every height above or below the eye, with what is added to it.
double greatestHeight(const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight)
{
    double farthestSquare = 0.0;
    for (const int column : {0, terrain.width() - 1}) {
        for (const int row : {0, terrain.height() - 1})
            farthestSquare = std::max(farthestSquare, sight.squaredMetres(column, row));
    }
    return std::max(std::abs(maxima.highestHeight() - sight.eye.z),
                    std::abs(maxima.lowestHeight() - sight.eye.z))
        + std::abs(sight.targetHeight) + std::abs(sight.bend) * farthestSquare;
}

/// The least that squaredMetres() gives for a step of one cell, but for the rounding.
double leastGround(const GroundForm &ground)
{
    const double least = (ground.xx + ground.yy) / 2.0 - std::hypot((ground.xx - ground.yy) / 2.0, ground.xy);
    constexpr double less = 1.0 - 1e-6;
    return std::max(least * less, 0.0);
}

bool isNear(const Terrain &terrain, const Eye &eye)
{
    return std::max(std::abs(eye.column()), std::abs(eye.column() - terrain.width())) < farthest
        && std::max(std::abs(eye.row()), std::abs(eye.row() - terrain.height())) < farthest;
}

/// The eye's own cell is on no line ahead.
void storeOwnCell(const Scene &scene)
{
    const Eye &eye = scene.sight.eye;
    const double column = eye.column();
    const double row = eye.row();
    const int x = static_cast<int>(column);
    const int y = static_cast<int>(row);
    if (x == column && y == row && !std::isnan(scene.terrain.at(x, y)) && scene.sight.reaches(x, y))
        scene.seen.set(x, y, true);
}

} // namespace

BitGrid horizonViewshed(const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight, int threads,
                        const Progress &progress, VectorPath path)
{
    BitGrid seen(terrain.width(), terrain.height());
    addHorizonViewshed(seen, terrain, maxima, sight, threads, progress, path);
    return seen;
}

void addHorizonViewshed(BitGrid &seen, const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight,
                        int threads, const Progress &progress, VectorPath path)
{
    const double greatest = greatestHeight(terrain, maxima, sight);
    constexpr double greatestUsed = 1e200; // far from the horizon's gap
    const Window whole{0, 0, terrain.width(), terrain.height()};
    if (!isNear(terrain, sight.eye) || !(greatest < greatestUsed)) {
        add(seen, plainViewshed(terrain, sight, threads, progress), {whole, 0, terrain.height()});
        return;
    }

    // Some roundings of heights as great, each 2^-53 of it, 2^10 times as much where the eye is near to a line.
    constexpr double rounding = 0x1p-36;
    const Scene scene{terrain,
                      maxima,
                      sight,
                      windowOf(sight, terrain.width(), terrain.height()),
                      greatest * rounding,
                      leastGround(sight.ground),
                      kernelsOf(path),
                      seen};
    storeOwnCell(scene);
    Workspaces workspaces;
    const auto doLeaf = [&](int job) {
        const int sector = job % sectors;
        std::unique_ptr<Workspace> workspace = workspaces.taken(scene.kernels);
        LeafPass(scene, {sector < 2, sector % 2 == 0 ? 1 : -1}, job / sectors, *workspace).run();
        workspaces.giveBack(std::move(workspace));
    };
    if (scene.window.width > 0)
        runJobs(sectors * leaves, threads, doLeaf, progress);
}

} // namespace viewshed
