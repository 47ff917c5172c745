#include "viewshed/sweep/horizon.h"

#include "viewshed/combine.h"
#include "viewshed/jobs.h"
#include "viewshed/sweep/leafsweep.h"
#include "viewshed/sweep/seencells.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace viewshed
{

namespace
{

/// A bound of every height above or below the eye, after the Earth's curvature and with the target height, in
/// the DEM's vertical unit.
double boundOfHeights(const Terrain &terrain, const BlockMaxima &maxima, const Sight &sight)
{
    double farthestSquare = 0.0;
    for (const int column : {0, terrain.width() - 1}) {
        for (const int row : {0, terrain.height() - 1})
            farthestSquare = std::max(farthestSquare, sight.squaredMetres(column, row));
    }
    return std::max(std::abs(maxima.highestHeight() - sight.eye.z),
                    std::abs(maxima.lowestHeight() - sight.eye.z))
        + std::abs(sight.targetHeight) + std::abs(sight.curvatureDrop) * farthestSquare;
}

/// A lower bound of GroundForm::squaredMetres() for a step of length 1 in any direction: the smaller eigenvalue
/// of the form, less a millionth for the rounding.
double shortestStepSquared(const GroundForm &ground)
{
    const double eigenvalue =
        (ground.xx + ground.yy) / 2.0 - std::hypot((ground.xx - ground.yy) / 2.0, ground.xy);
    constexpr double roundedDown = 1.0 - 1e-6;
    return std::max(eigenvalue * roundedDown, 0.0);
}

/// The number of leaves of a sector: their rings should be about a hundred cells wide at the window's edge,
/// since each ring costs as much as some dozen cells, but enough leaves to occupy the threads.
int leavesFor(const Sight &sight, const Window &window)
{
    const double cells = std::max(
        {std::abs(sight.eye.column() - window.left), std::abs(sight.eye.column() - window.left - window.width),
         std::abs(sight.eye.row() - window.top), std::abs(sight.eye.row() - window.top - window.height)});
    // Of a ring at the window's edge, in cells, as measured.
    constexpr double smallWindow = 512.0;
    const double widest = cells <= smallWindow ? 200.0 : 96.0;
    int leaves = 1;
    while (leaves < mostLeaves && 2.0 * cells / leaves > widest)
        leaves *= 2;
    return leaves;
}

/// Sets a bit, while other threads set bits in the same words.
void setBit(BitGrid &grid, int column, int row)
{
    std::uint64_t &word = grid.row(row)[column / BitGrid::bitsPerWord];
    std::atomic_ref(word).fetch_or(std::uint64_t(1) << (column % BitGrid::bitsPerWord),
                                   std::memory_order_relaxed);
}

/// Sets the bits of the seen cells by the plain definition, for heights that a sweep cannot take.
void addPlain(BitGrid &seen, const Window &window, const Terrain &terrain, const Sight &sight, int threads,
              const Progress &progress)
{
    const Window cells = windowOf(sight, terrain.width(), terrain.height());
    const auto addRow = [&](int index) {
        const int row = cells.top + index;
        for (int column = cells.left; column < cells.left + cells.width; ++column) {
            if (sight.reaches(column, row) && sees(terrain, sight, column, row))
                setBit(seen, column - window.left, row - window.top);
        }
    };
    runJobs(cells.height, threads, addRow, progress);
}

/// Reports the heights by the plain definition, for heights that a sweep cannot take.
void findPlainHeights(const Scene &scene, const HeightsFound &found, int threads, const Progress &progress)
{
    const auto findRow = [&](int index) {
        std::vector<double> heights;
        heights.reserve(static_cast<std::size_t>(scene.window.width));
        for (int column = 0; column < scene.window.width; ++column)
            heights.push_back(plainTargetHeight(scene.terrain, scene.sight, scene.window.left + column,
                                                scene.window.top + index));
        found({.column = scene.window.left, .row = scene.window.top + index, .count = scene.window.width},
              heights.data());
    };
    runJobs(scene.window.height, threads, findRow, progress);
}

/// Takes nothing from the rings.
class NoSink : public RingSink
{
public:
    void ring(const SweptRing & /*swept*/) override { }
};

/// The factor of `Rounding` in leafsweep.h.
double roundingFor(const Terrain &terrain, const Eye &eye)
{
    constexpr double outside = 4.0;
    const double columns = std::max(-eye.column(), eye.column() - (terrain.width() - 1));
    const double rows = std::max(-eye.row(), eye.row() - (terrain.height() - 1));
    return std::max(columns, rows) >= outside ? outsideRounding : horizonRounding;
}

/// Products with heights above this would come near to the skyline's gap, -1e290.
constexpr double greatestSupported = 1e200;

/// The cell at whose very centre the eye stands, which no leaf contains: its column and row; nothing if there
/// is no such cell with data.
std::optional<std::pair<int, int>> ownCell(const Terrain &terrain, const Eye &eye)
{
    const double column = eye.column();
    const double row = eye.row();
    const int x = static_cast<int>(column);
    const int y = static_cast<int>(row);
    if (x != column || y != row || std::isnan(terrain.at(x, y)))
        return {};
    return std::pair{x, y};
}

bool isSupported(const Scene &scene)
{
    return scene.errorPerCell < greatestSupported * outsideRounding;
}

} // namespace

/// The buffers of one thread's sweeps, passed from one leaf to the next so that memory is allocated only a few
/// times.
struct Sweeper::Workspace
{
    explicit Workspace(const SkylineKernels &kernels)
        : skyline(kernels)
        , traced(kernels)
        , panel(kernels)
    { }

    Skyline skyline;
    TracedSkyline traced;
    Panel panel;
    SeenBuffers seen;
    HeightBuffers heights;
};

/// The workspaces that no thread uses at the moment.
class Sweeper::Idle
{
public:
    /// Returns an idle workspace, or a new one.
    std::unique_ptr<Workspace> acquire(const SkylineKernels &kernels)
    {
        const std::lock_guard lock(m_guard);
        if (m_idle.empty())
            return std::make_unique<Workspace>(kernels);
        std::unique_ptr<Workspace> workspace = std::move(m_idle.back());
        m_idle.pop_back();
        return workspace;
    }
    void release(std::unique_ptr<Workspace> workspace)
    {
        const std::lock_guard lock(m_guard);
        m_idle.push_back(std::move(workspace));
    }

private:
    std::mutex m_guard;
    std::vector<std::unique_ptr<Workspace>> m_idle;
};

Sweeper::Sweeper(const Terrain &terrain, const BlockMaxima &maxima, VectorPath path)
    : m_terrain(terrain)
    , m_maxima(maxima)
    , m_path(path)
    , m_idle(std::make_unique<Idle>())
{ }

Sweeper::~Sweeper() = default;

Scene Sweeper::sceneOf(const Sight &sight) const
{
    const Window window = windowOf(sight, m_terrain.width(), m_terrain.height());
    return {.terrain = m_terrain,
            .maxima = m_maxima,
            .sight = sight,
            .window = window,
            .leavesPerSector = leavesFor(sight, window),
            .errorPerCell = boundOfHeights(m_terrain, m_maxima, sight) * roundingFor(m_terrain, sight.eye),
            .shortestStepSquared = shortestStepSquared(sight.ground),
            .kernels = kernelsOf(m_path)};
}

/// Calls sweep(frame, leaf, workspace) for each leaf.
template <class Sweep>
void Sweeper::sweepLeaves(const Scene &scene, int threads, const Progress &progress, Sweep sweep)
{
    if (scene.window.width == 0)
        return;
    const auto sweepLeaf = [&](int job) {
        const int sector = job % sectors;
        const Frame frame{.linesAreColumns = sector < 2, .awayStep = sector % 2 == 0 ? 1 : -1};
        std::unique_ptr<Workspace> workspace = m_idle->acquire(scene.kernels);
        sweep(frame, job / sectors, *workspace);
        m_idle->release(std::move(workspace));
    };
    runJobs(sectors * scene.leavesPerSector, threads, sweepLeaf, progress);
}

void Sweeper::addSeen(BitGrid &seen, const Window &window, const Sight &sight, int threads,
                      const Progress &progress)
{
    const Scene scene = sceneOf(sight);
    if (!isSupported(scene)) {
        addPlain(seen, window, m_terrain, sight, threads, progress);
        return;
    }
    if (const auto own = ownCell(m_terrain, sight.eye);
        own && sight.reaches(own->first, own->second) && sees(m_terrain, sight, own->first, own->second))
        setBit(seen, own->first - window.left, own->second - window.top);
    sweepLeaves(scene, threads, progress, [&](const Frame &frame, int leaf, Workspace &workspace) {
        SeenCells sink(scene, frame, seen, window, workspace.seen);
        LeafSweep(scene, frame, leaf, workspace.skyline, workspace.panel).run(sink);
    });
}

void Sweeper::findHeights(const Sight &sight, const HeightsFound &found, int threads, const Progress &progress)
{
    Sight toGround = sight;
    toGround.targetHeight = 0.0;
    const Scene scene = sceneOf(toGround);
    if (!isSupported(scene)) {
        findPlainHeights(scene, found, threads, progress);
        return;
    }
    if (const auto own = ownCell(m_terrain, sight.eye)) {
        const double height = plainTargetHeight(m_terrain, toGround, own->first, own->second);
        found({.column = own->first, .row = own->second, .count = 1}, &height);
    }
    sweepLeaves(scene, threads, progress, [&](const Frame &frame, int leaf, Workspace &workspace) {
        TargetHeights sink(scene, frame, found, workspace.heights);
        LeafSweep(scene, frame, leaf, workspace.skyline, workspace.panel).run(sink);
    });
}

HorizonLine Sweeper::horizonLine(const Sight &sight, double metresOfHeight, int threads,
                                 const Progress &progress)
{
    Scene scene = sceneOf(sight);
    scene.endsAtReach = true;
    HorizonLine line(sight, metresOfHeight);
    std::mutex guard; // of `line`
    sweepLeaves(scene, threads, progress, [&](const Frame &frame, int leaf, Workspace &workspace) {
        NoSink sink;
        LeafSweep(scene, frame, leaf, workspace.traced, workspace.panel).run(sink);
        const std::lock_guard lock(guard);
        line.add(frame, leaf, workspace.traced.horizon());
    });
    line.finish();
    return line;
}

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
    const Window whole{.left = 0, .top = 0, .width = terrain.width(), .height = terrain.height()};
    Sweeper(terrain, maxima, path).addSeen(seen, whole, sight, threads, progress);
}

} // namespace viewshed
