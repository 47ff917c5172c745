#pragma once

#include "app/recipe/recipeinput.h"
#include "app/tiles/tileplan.h"

/// What is to be made in tiles.
struct TileOrder
{
    Recipe recipe;    ///< its input, tiles and output do not count
    QStringList dems; ///< rasters that are one DEM together: absolute paths, or names for GDAL
    QString folder;   ///< absolute path of the folder of the tiles; it exists
    int side = 4096;  ///< cells of a tile's side
};

/// A plan that was made, and what the user should know of it.
struct TilePlanning
{
    TilePlan plan;
    QStringList warnings;
    QString problem;             ///< why there is no plan, in a sentence; empty otherwise
    bool isInputProblem = false; ///< an input cannot be read, or inputs are not one DEM
};

/// Makes the plan of a product in tiles. Several DEMs become a virtual raster in the folder. Whatever the whole
/// DEM decides is found here, once: the elevations over which a colour table is spread or of which it has
/// percentages. That may read every cell; `isStopped` ends it, and the plan then has no meaning.
TilePlanning makePlan(const TileOrder &order, WorkFolder &workFolder, const StopCheck &isStopped);

/// Why the process or an option does not go with tiles, in a sentence; empty where it does.
QString tilesProblem(const Recipe &recipe);

/// The request that makes a tile, without its output.
ProcessingRequest tileRequest(const TilePlan &plan, const PlannedTile &tile, const ToolInput &toolInput);

/// What the tiles take, in a sentence for the user: how many there are, and the room for one and for all.
QString tileSizesText(const TilePlan &plan);
