#pragma once

#include "app/tiles/tileplan.h"

// Finished tiles. A mark is a small file in the hidden folder ".done" of the tiles' folder. It holds the stamp
// that the tile was made with, and size and time of its product, so that it counts no longer once one of them
// has changed.

/// Folder of the products of the tiles.
QString tileFolder(const QString &folder);

/// Path of a tile's product. `extension`: without a dot.
QString tileProduct(const QString &folder, const QString &name, const QString &extension);

/// Makes the folders of the products and of the marks. Returns why that failed, in a sentence; empty otherwise.
QString makeTileFolders(const QString &folder);

/// Whether the product is there and was made with this stamp.
bool isTileDone(const QString &folder, const PlannedTile &tile, const QString &product);

/// Marks the tile, whose product is in its place. Returns why that failed, in a sentence; empty otherwise.
QString markTile(const QString &folder, const PlannedTile &tile, const QString &product);
