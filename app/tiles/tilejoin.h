#pragma once

#include "app/tiles/tileplan.h"
#include "dataset/join/contourjoin.h"
#include "dataset/join/sightjoin.h"

/// The finished tiles of a plan as one product.
struct TileSet
{
    QStringList products; ///< paths, in the order of the tiles
    QStringList missing;  ///< names of the tiles that are not done
};

/// Finds the products of all tiles.
TileSet finishedTiles(const QString &folder, const TilePlan &plan);

/// Whether the tiles are files of contour lines.
bool isContourPlan(const TilePlan &plan);

/// Extension of the products of the tiles, without a dot. Contour lines are kept in GeoPackages until they are
/// joined, since these keep every coordinate.
QString tileExtension(const TilePlan &plan);

/// Extension of the file of contour lines that is made of all tiles, in the format of the recipe.
QString joinedExtension(const TilePlan &plan);

/// The files of contour lines, with what is kept of each, in the order of the tiles.
QVector<ContourTile> contourTiles(const QString &folder, const TilePlan &plan);

/// What the groups of observers see, in the order of the tiles.
QVector<SightShare> sightShares(const QString &folder, const TilePlan &plan);

/// How it is added up; the path is left to the caller.
SightJoin sightJoinOf(const TilePlan &plan);

/// Arguments of the translation tool that writes the tiles as one cloud optimised GeoTIFF, with the compression
/// and the statistics of the plan's recipe. They end in a blank.
QString cogArguments(const TilePlan &plan);

/// How the contour lines are joined; the path is left to the caller.
ContourJoin contourJoinOf(const TilePlan &plan);

/// Path of the product of all tiles: "<folder>/<word of the process>.<extension>".
QString joinedProduct(const QString &folder, const TilePlan &plan, const QString &extension);

/// A sentence that names the first of the missing tiles.
QString missingTilesProblem(const QStringList &missing);
