#pragma once

#include "app/recipe/tablefile.h"
#include "app/tiles/tileplan.h"
#include "dataset/demground.h"

/// The cells of the DEM within an observer's reach, with a margin for rounding; all of them where the reach has
/// no limit, and none where nothing of the DEM is within it.
QRect reachedCells(const ObserverPoint &observer, const DemGround &dem);

/// Puts the observers of an intervisibility plan in groups: those that stand on one tile of the grid, and
/// beyond the DEM on the nearest one. Sorts the observers of the recipe by group; those that reach no cell are
/// left out.
void groupObservers(TilePlan &plan, const DemGround &dem);

/// Reads the observers of a vector source into the options, and leaves out those without ground or position.
struct ObserverReading
{
    QStringList warnings;
    QString problem; ///< in a sentence; empty where there is an observer
};
ObserverReading holdObserversByValue(IntervisibilityOptions &options, const DemGround &dem);
