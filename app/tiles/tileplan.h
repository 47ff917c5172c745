#pragma once

#include "app/recipe/recipe.h"
#include "app/tiles/tilegrid.h"

#include <QString>
#include <QStringList>
#include <QVector>

// The plan of a product in tiles, a text file of JSON objects, one a line (UTF-8): first what holds for all,
// then each input, then each tile in the order of the grid. It is read and written line by line, so that a
// million tiles need no more memory than their inputs.
//
//     {"format":1,"process":"slope","tiles":9,"width":12000,"height":12000,"tileSize":4096,"margin":1,
//      "program":"1.0.0","tool":"GDAL 3.6.2, released 2022/09/01","recipe":{...},"recipeHash":"5ba93c9d"}
//     {"input":0,"path":"/data/n45.tif","size":25934402,"time":"2026-05-01T10:00:00.000Z","cells":[0,0,3601,3601]}
//     {"tile":0,"name":"r0000_c0000","window":[0,0,4096,4096],"inputs":[0],"stamp":"90f0a1b2c3d4e5f6"}

/// A raster that the DEM is made of.
struct PlannedInput
{
    QString path;    ///< absolute, or a name in GDAL's virtual file systems
    qint64 size = 0; ///< in bytes; 0 for what is no local file
    QString time;    ///< when the file was last changed: UTC, to the millisecond
    QRect cells;     ///< those of the DEM that it holds

    bool operator==(const PlannedInput &other) const = default;
};

/// Observers of an intervisibility run that one task computes together: those that stand on one tile, and the
/// window of all that is within their reach.
struct SightGroup
{
    qint64 tile = 0; ///< of the grid
    int first = 0;   ///< index in the observers of the recipe
    int count = 0;
    QRect window; ///< cells of the DEM

    bool operator==(const SightGroup &other) const = default;
};

/// What holds for all tiles.
struct TilePlan
{
    Recipe recipe; ///< colours and observers by value, so that each tile is computed as a part of the whole
    TileGrid grid;
    int margin = 0;  ///< cells around a tile that its product depends on
    QString program; ///< version of this program
    QString tool;    ///< version of GDAL
    QVector<PlannedInput> inputs;
    QVector<SightGroup> groups; ///< of an intervisibility run, whose tiles they are; empty for another process

    bool operator==(const TilePlan &other) const;

    /// Number of tiles to make.
    qint64 tileCount() const { return groups.isEmpty() ? grid.count() : groups.size(); }
};

/// A tile of the plan.
struct PlannedTile
{
    qint64 number = 0;
    QString name;        ///< base name of its product
    QRect window;        ///< cells of the DEM
    QVector<int> inputs; ///< indices of those that hold cells of the window and its margin
    QString stamp;       ///< changes with all that the tile's product is made from
};

/// File of the plan in the folder of the tiles.
QString planFile(const QString &folder);

/// The recipe of a tile. That of an intervisibility has the observers of the tile's group, and counts those
/// that see a cell where the product is a picture.
Recipe tileRecipe(const TilePlan &plan, const PlannedTile &tile);

/// Goes through the tiles of a plan in their order.
class PlannedTiles
{
public:
    explicit PlannedTiles(const TilePlan &plan);

    /// The tile with that number. The numbers of successive calls ascend.
    PlannedTile tile(qint64 number);

private:
    void enterRow(int row);
    QVector<int> inputsOf(const QRect &read) const;

    const TilePlan &m_plan;
    QByteArray m_common;  ///< what every stamp depends on
    QVector<int> m_byTop; ///< inputs by their first row
    int m_row = -1;       ///< row of tiles that m_inRow belongs to
    QVector<int> m_inRow; ///< inputs of that row of tiles, by their first column
};

/// Writes the plan, completely or not at all. A file that holds it already is left as it is. Returns why that
/// failed, in a sentence; empty otherwise.
QString writePlan(const QString &file, const TilePlan &plan);

/// Reads a plan from its file, without the lines of its tiles.
struct PlanReading
{
    TilePlan plan;
    QString problem; ///< why there is no plan, in a sentence; empty for a good one
};
PlanReading readPlan(const QString &file);

/// The first input whose file is no longer what the plan says, in a sentence; empty where all of the share are
/// as they were. `inputs`: indices.
QString changedInputProblem(const TilePlan &plan, const QVector<int> &inputs);

/// Size and time of an input's file as it is now.
PlannedInput inputNow(const QString &path);
