#include "viewshed/horizon.h"

#include "viewshed/combine.h"
#include "viewshed/jobs.h"
#include "viewshed/leafsweep.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <vector>

namespace viewshed
{

namespace
{

/// The workspaces that no thread uses at the moment.
class IdleWorkspaces
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

/// Sets the bit of the cell at whose very centre the eye stands, if there is one: no leaf contains this cell.
void addOwnCell(const Scene &scene)
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
    const double greatest = boundOfHeights(terrain, maxima, sight);
    constexpr double greatestSupported = 1e200; // its products must stay far above the skyline's gap, -1e290
    const Window whole{.left = 0, .top = 0, .width = terrain.width(), .height = terrain.height()};
    if (!(greatest < greatestSupported)) {
        add(seen, plainViewshed(terrain, sight, threads, progress),
            {.window = whole, .firstRow = 0, .endRow = terrain.height()});
        return;
    }

    const Scene scene{.terrain = terrain,
                      .maxima = maxima,
                      .sight = sight,
                      .window = windowOf(sight, terrain.width(), terrain.height()),
                      .errorPerCell = greatest * horizonRounding,
                      .shortestStepSquared = shortestStepSquared(sight.ground),
                      .kernels = kernelsOf(path),
                      .seen = seen};
    addOwnCell(scene);
    IdleWorkspaces workspaces;
    const auto sweepLeaf = [&](int job) {
        const int sector = job % sectors;
        const Frame frame{.linesAreColumns = sector < 2, .awayStep = sector % 2 == 0 ? 1 : -1};
        std::unique_ptr<Workspace> workspace = workspaces.acquire(scene.kernels);
        LeafSweep(scene, frame, job / sectors, *workspace).run();
        workspaces.release(std::move(workspace));
    };
    if (scene.window.width > 0)
        runJobs(sectors * leavesPerSector, threads, sweepLeaf, progress);
}

} // namespace viewshed
