#pragma once

// Random terrains and sights for the tests of the viewshed.

#include "viewshed/sight.h"
#include "viewshed/terrain.h"

#include <algorithm>
#include <random>

enum class Ground
{
    Smooth,
    Steps,
    Noise,
    Sea,
    Plane
};

using Random = std::minstd_rand;

inline double between(Random &random, double from, double to)
{
    return std::uniform_real_distribution<double>(from, to)(random);
}

inline double heightAt(Ground ground, int column, int row, Random &random)
{
    switch (ground) {
    case Ground::Smooth:
        return 30.0 * std::sin(column * 0.21) * std::cos(row * 0.17) + between(random, 0.0, 1.0);
    case Ground::Steps:
        return std::floor(between(random, 0.0, 4.0));
    case Ground::Noise:
        return between(random, 0.0, 50.0);
    case Ground::Sea:
        return std::max(0.0, 20.0 * std::sin(column * 0.3) * std::sin(row * 0.25));
    case Ground::Plane:
        break;
    }
    return 3.0 * column - 2.0 * row;
}

inline viewshed::Terrain terrainOf(Ground ground, int width, int height, double voids, Random &random)
{
    std::vector<double> heights;
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const bool none = between(random, 0.0, 1.0) < voids;
            const double cell = heightAt(ground, column, row, random);
            heights.push_back(none ? viewshed::noHeight : cell);
        }
    }
    return {width, height, heights};
}

/// A random sight. The eye is in the grid or around it, at a cell's centre, on a line of cell centres or
/// anywhere between, and at, above or below the ground.
inline viewshed::Sight sightOn(const viewshed::Terrain &terrain, Random &random)
{
    viewshed::Sight sight;
    double column = between(random, -0.2, 1.2) * terrain.width();
    double row = between(random, -0.2, 1.2) * terrain.height();
    const int kind = std::uniform_int_distribution<int>(0, 5)(random);
    if (kind != 0)
        column = std::floor(std::clamp(column, 0.0, terrain.width() - 1.0)) + (kind == 1 ? 0.5 : 0.0)
            + (kind == 2 ? 1.0 / viewshed::latticePoints : 0.0);
    if (kind >= 2)
        row = std::floor(std::clamp(row, 0.0, terrain.height() - 1.0));
    const double ground = terrain.at(static_cast<int>(column), static_cast<int>(row));
    const double up[] = {0.0, 1.0, 1.7, 30.0, -2.0};
    sight.eye = viewshed::Eye::at(column, row,
                                  (std::isnan(ground) ? 1.0 : ground)
                                      + up[std::uniform_int_distribution<int>(0, 4)(random)]);
    const double targets[] = {0.0, 0.0, 2.0, -0.5};
    sight.targetHeight = targets[std::uniform_int_distribution<int>(0, 3)(random)];
    if (kind % 2 == 1) {
        sight.ground = {.xx = 900.0, .xy = kind == 3 ? 200.0 : 0.0, .yy = 400.0};
        sight.curvatureDrop = kind == 5 ? -1e-6 : 1e-6;
    }
    if (std::uniform_int_distribution<int>(0, 3)(random) == 0)
        sight.reach = (kind % 2 == 1 ? 25.0 : 1.0) * between(random, 1.0, terrain.width());
    return sight;
}

/// A field of view across north, with a least distance and slopes.
inline void limitField(viewshed::Sight &sight, Random &random)
{
    sight.steps = {.columnEast = 30.0, .columnNorth = 2.0, .rowEast = -1.0, .rowNorth = -20.0};
    sight.ground = sight.steps.form();
    sight.field = {.fromAzimuth = std::floor(between(random, 200.0, 360.0)),
                   .toAzimuth = std::floor(between(random, 0.0, 150.0)),
                   .lowestSlope = -0.5,
                   .highestSlope = 0.05,
                   .nearest = between(random, 0.0, 100.0)};
}
