#include "samples/terrain.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <queue>

namespace
{

constexpr double baseLevel = 380.0; // metres: elevation at which the rivers leave the grid

/// Pseudo-random number from 0 to 1 of a lattice point, by an integer hash.
double latticeValue(std::int32_t x, std::int32_t y, std::uint32_t seed)
{
    std::uint32_t hash =
        static_cast<std::uint32_t>(x) * 0x9E3779B1u ^ static_cast<std::uint32_t>(y) * 0x85EBCA77u ^ seed;
    hash = (hash ^ (hash >> 15)) * 0x2C1B3C6Du;
    hash = (hash ^ (hash >> 12)) * 0x297A2D39u;
    return (hash ^ (hash >> 15)) / 4294967295.0;
}

/// Smooth noise from 0 to 1 that interpolates one random value per unit of length.
double noise(double x, double y, std::uint32_t seed)
{
    const double column = std::floor(x);
    const double row = std::floor(y);
    const auto fade = [](double t) { return t * t * t * (t * (6.0 * t - 15.0) + 10.0); };
    const double u = fade(x - column);
    const double v = fade(y - row);
    const auto i = static_cast<std::int32_t>(column);
    const auto j = static_cast<std::int32_t>(row);
    const double north = (1.0 - u) * latticeValue(i, j, seed) + u * latticeValue(i + 1, j, seed);
    const double south = (1.0 - u) * latticeValue(i, j + 1, seed) + u * latticeValue(i + 1, j + 1, seed);
    return (1.0 - v) * north + v * south;
}

/// Sum of several octaves of noise. Each has half the wavelength and half the amplitude of the one before.
double fractalNoise(double x, double y, int octaves, std::uint32_t seed)
{
    double sum = 0.0;
    double strength = 0.5;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += strength * noise(x, y, seed + static_cast<std::uint32_t>(octave) * 101u);
        x *= 2.0;
        y *= 2.0;
        strength *= 0.5;
    }
    return sum;
}

/// The flow of water from cell to cell.
struct Drainage
{
    std::vector<int> order;    ///< every cell, each after its receiver
    std::vector<int> receiver; ///< the cell that takes the water of each cell; itself at the edge of the grid
};

/// Calls visit(cell, isDiagonal) for a cell and its neighbours inside the grid.
template <class Visit> void forNeighbourhood(int side, int cell, Visit visit)
{
    const int row = cell / side;
    const int column = cell % side;
    for (int r = std::max(row - 1, 0); r <= std::min(row + 1, side - 1); ++r) {
        for (int c = std::max(column - 1, 0); c <= std::min(column + 1, side - 1); ++c)
            visit(r * side + c, r != row && c != column);
    }
}

bool isAtEdge(int side, int cell)
{
    const int row = cell / side;
    const int column = cell % side;
    return row == 0 || column == 0 || row == side - 1 || column == side - 1;
}

/// Water flows along the steepest descent. Out of a pit it flows back along the path by which a flood from the
/// edges of the grid enters the pit (priority flood; Barnes, Lehman and Mulla 2014).
Drainage drain(const Terrain &terrain)
{
    const int side = terrain.side;
    const std::size_t cells = terrain.height.size();
    Drainage drainage;
    drainage.order.reserve(cells);
    drainage.receiver.assign(cells, -1);
    std::vector<bool> visited(cells, false);

    using Entry = std::pair<double, int>;
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open;
    for (int cell = 0; cell < side * side; ++cell) {
        if (isAtEdge(side, cell)) {
            drainage.receiver[static_cast<std::size_t>(cell)] = cell;
            open.emplace(terrain.height[static_cast<std::size_t>(cell)], cell);
        }
    }
    while (!open.empty()) {
        const double level = open.top().first;
        const int cell = open.top().second;
        open.pop();
        const auto at = static_cast<std::size_t>(cell);
        visited[at] = true;
        drainage.order.push_back(cell);
        const double height = terrain.height[at];
        const bool isOutlet = drainage.receiver[at] == cell;
        double steepest = 0.0;
        forNeighbourhood(side, cell, [&](int neighbour, bool isDiagonal) {
            const auto next = static_cast<std::size_t>(neighbour);
            const double slope = (height - terrain.height[next]) / (isDiagonal ? std::sqrt(2.0) : 1.0);
            if (visited[next] && !isOutlet && slope > steepest) {
                steepest = slope;
                drainage.receiver[at] = neighbour;
            } else if (drainage.receiver[next] < 0) {
                drainage.receiver[next] = cell;
                open.emplace(std::max(terrain.height[next], level), neighbour);
            }
        });
    }
    return drainage;
}

/// Number of cells upstream of each cell, itself included.
std::vector<double> catchment(const Drainage &drainage)
{
    std::vector<double> cells(drainage.receiver.size(), 1.0);
    for (auto cell = drainage.order.rbegin(); cell != drainage.order.rend(); ++cell) {
        const int receiver = drainage.receiver[static_cast<std::size_t>(*cell)];
        if (receiver != *cell)
            cells[static_cast<std::size_t>(receiver)] += cells[static_cast<std::size_t>(*cell)];
    }
    return cells;
}

/// One step of uplift and river incision: dh/dt = U - K √A S, with A in cells and S in metres per cell, solved
/// implicitly from the mouths upwards (Braun and Willett 2013).
void erode(Terrain &terrain, const std::vector<double> &uplift, double erodibility)
{
    const Drainage drainage = drain(terrain);
    const std::vector<double> cells = catchment(drainage);
    for (const int cell : drainage.order) {
        const auto at = static_cast<std::size_t>(cell);
        const int receiver = drainage.receiver[at];
        if (receiver == cell)
            continue;
        double &height = terrain.height[at];
        height += uplift[at];
        const double below = terrain.height[static_cast<std::size_t>(receiver)];
        if (height > below) {
            const double incision = erodibility * std::sqrt(cells[at]);
            height = (height + incision * below) / (1.0 + incision);
        }
    }
}

/// Soil creep: moves each inner cell by `share` (0 to 1) towards the mean of its four neighbours.
void creep(Terrain &terrain, double share)
{
    const int side = terrain.side;
    const std::vector<double> before = terrain.height;
    for (int row = 1; row < side - 1; ++row) {
        for (int column = 1; column < side - 1; ++column) {
            const auto at = static_cast<std::size_t>(row * side + column);
            const auto step = static_cast<std::size_t>(side);
            const double mean =
                0.25 * (before[at - 1] + before[at + 1] + before[at - step] + before[at + step]);
            terrain.height[at] += share * (mean - before[at]);
        }
    }
}

/// Uplift of one step in metres: a bent range, strongest along its axis and 0 at the edges of the grid.
std::vector<double> upliftField(int side, double perStep)
{
    std::vector<double> uplift(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const double x = static_cast<double>(column) / side;
            const double y = static_cast<double>(row) / side;
            const double bend = 0.22 * (fractalNoise(3.0 * x, 3.0 * y, 3, 7u) - 0.45);
            const double across = (y - 0.62 + 0.35 * x + bend) / 0.34;
            const double range = std::exp(-across * across);
            const double edge = std::min({x, y, 1.0 - x, 1.0 - y});
            const double fadeIn = std::clamp(edge / 0.12, 0.0, 1.0);
            const double roughness = 0.55 + 0.9 * fractalNoise(9.0 * x, 9.0 * y, 4, 23u);
            uplift[static_cast<std::size_t>(row * side + column)] =
                perStep * (0.12 + range) * fadeIn * roughness;
        }
    }
    return uplift;
}

/// Catmull-Rom weights for a place t between the second and the third of four samples.
std::array<double, 4> cubicWeights(double t)
{
    return {0.5 * (-t + 2.0 * t * t - t * t * t), 0.5 * (2.0 - 5.0 * t * t + 3.0 * t * t * t),
            0.5 * (t + 4.0 * t * t - 3.0 * t * t * t), 0.5 * (-t * t + t * t * t)};
}

/// Value of a grid at a place between its cells, by bicubic interpolation. row, column: in cells, from the
/// centre of the first.
double interpolate(const std::vector<double> &grid, int side, double row, double column)
{
    const int r = static_cast<int>(std::floor(row));
    const int c = static_cast<int>(std::floor(column));
    const auto rowWeights = cubicWeights(row - r);
    const auto columnWeights = cubicWeights(column - c);
    double sum = 0.0;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            const int y = std::clamp(r - 1 + i, 0, side - 1);
            const int x = std::clamp(c - 1 + j, 0, side - 1);
            sum += rowWeights[static_cast<std::size_t>(i)] * columnWeights[static_cast<std::size_t>(j)]
                * grid[static_cast<std::size_t>(y * side + x)];
        }
    }
    return sum;
}

/// A lake behind a dam in one of the large valleys.
struct Lake
{
    double level = 0.0;           ///< elevation of the water, in metres
    std::vector<double> upstream; ///< 1 in the dam's catchment, 0 elsewhere
};

Lake damValley(const Terrain &terrain)
{
    const Drainage drainage = drain(terrain);
    const std::vector<double> cells = catchment(drainage);
    // The dam stands where the largest catchment lies that is well inside the grid.
    int dam = 0;
    double best = 0.0;
    for (const int cell : drainage.order) {
        const int row = cell / terrain.side;
        const int column = cell % terrain.side;
        const int edge = std::min({row, column, terrain.side - 1 - row, terrain.side - 1 - column});
        const double size = cells[static_cast<std::size_t>(cell)];
        if (edge > terrain.side / 6 && size > best) {
            best = size;
            dam = cell;
        }
    }

    Lake lake;
    lake.level = terrain.height[static_cast<std::size_t>(dam)] + 230.0;
    lake.upstream.assign(terrain.height.size(), 0.0);
    lake.upstream[static_cast<std::size_t>(dam)] = 1.0;
    for (const int cell : drainage.order) {
        const auto at = static_cast<std::size_t>(cell);
        if (lake.upstream[static_cast<std::size_t>(drainage.receiver[at])] > 0.0)
            lake.upstream[at] = 1.0;
    }
    return lake;
}

/// The terrain before the details are added: a noisy plain, lifted and eroded in `steps` steps.
Terrain erodedRange(int side)
{
    constexpr int steps = 160;
    constexpr double upliftPerStep = 10.0; // metres
    constexpr double erodibility = 0.05;   // share of the drop that a step removes, for a catchment of one cell
    Terrain terrain;
    terrain.side = side;
    terrain.height.resize(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column)
            terrain.height[static_cast<std::size_t>(row * side + column)] =
                baseLevel + 60.0 * fractalNoise(column / 20.0, row / 20.0, 5, 1u);
    }
    const std::vector<double> uplift = upliftField(side, upliftPerStep);
    for (int step = 0; step < steps; ++step) {
        erode(terrain, uplift, erodibility);
        creep(terrain, 0.2);
    }
    return terrain;
}

} // namespace

Terrain makeTerrain(int side)
{
    constexpr int refinement = 3; // rivers are cut on a grid of cells this many times wider
    const Terrain coarse = erodedRange(side / refinement);
    const Lake lake = damValley(coarse);

    Terrain fine;
    fine.side = side;
    fine.height.resize(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const double y = (row + 0.5) / refinement - 0.5;
            const double x = (column + 0.5) / refinement - 0.5;
            const double smooth = interpolate(coarse.height, coarse.side, y, x);
            const double steepness = std::abs(interpolate(coarse.height, coarse.side, y, x + 0.5) - smooth)
                + std::abs(interpolate(coarse.height, coarse.side, y + 0.5, x) - smooth);
            const double detail = fractalNoise(column / 7.0, row / 7.0, 3, 57u) - 0.44;
            double height = smooth + detail * (1.5 + 0.9 * steepness);
            if (height < lake.level && interpolate(lake.upstream, coarse.side, y, x) > 0.5)
                height = lake.level;
            fine.height[static_cast<std::size_t>(row * side + column)] = height;
        }
    }
    return fine;
}
