#pragma once

#include "app/tiles/tileplan.h"

/// The finished tiles of a plan as one product.
struct TileSet
{
    QStringList products; ///< paths, in the order of the tiles
    QStringList missing;  ///< names of the tiles that are not done
};

/// Finds the products of all tiles.
TileSet finishedTiles(const QString &folder, const TilePlan &plan);

/// Extension of the products of the tiles, without a dot.
QString tileExtension(const TilePlan &plan);

/// Path of the product of all tiles: "<folder>/<word of the process>.<extension>".
QString joinedProduct(const QString &folder, const TilePlan &plan, const QString &extension);

/// A sentence that names the first of the missing tiles.
QString missingTilesProblem(const QStringList &missing);
