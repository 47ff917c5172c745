#pragma once

#include "app/tiles/tilegrid.h"

#include <QString>

#include <optional>

class QCommandLineParser;

/// What is made of the finished tiles.
enum class TileJoin
{
    None,
    Vrt, ///< a virtual raster over them
    Cog  ///< one cloud optimised GeoTIFF
};

/// The part of the command line that is about tiles.
struct TileArguments
{
    bool tiles = false;
    QString folder; ///< folder of the tiles, as typed
    int side = 4096;
    bool onlyPlan = false;          ///< write the plan and print the commands of the tasks
    std::optional<int> tasks;       ///< how many commands are printed; one for each tile where it is not given
    std::optional<TaskNumber> task; ///< make this share of the tiles; all of them where it is not given
    bool skipDone = false;
    bool jsonLog = false;
    std::optional<TileJoin> join;
    bool onlyJoin = false; ///< make no tile
    QString problem;       ///< why the arguments are not valid, in a sentence; empty for good ones
};

/// Declares the options that are about tiles.
void declareTileOptions(QCommandLineParser &parser);

/// Reads them. `hasInputs`: the command line names a recipe and rasters.
TileArguments readTileArguments(const QCommandLineParser &parser, bool hasInputs);
