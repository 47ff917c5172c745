#pragma once

#include "app/recipe/recipe.h"

#include <QString>
#include <QStringList>

// What people type to have the tiles of a plan made, on their machine or on a cluster (docs/scale.md).

enum class TileWay
{
    OneProcess, ///< this program makes one tile after another
    Snakemake,
    SlurmArray
};

/// Where the plan and the programs are.
struct TilePlace
{
    QString folder;   ///< absolute path of the folder that holds the plan and the tiles
    QString programs; ///< absolute path of the folder that holds QuvoDemBatch and the folder "scale"
    int cores = 1;    ///< number of processors for Snakemake
};

/// The command for a POSIX shell.
QString tileCommand(TileWay way, const TilePlace &place);

/// The recipe in the folder of the plan, and the values that the Snakefile reads from there.
QString tileRecipeFile(const QString &folder);
QString snakemakeFile(const QString &folder);

/// Text of the latter file (JSON, UTF-8). `dems`: the rasters that are one DEM.
QByteArray snakemakeValues(const TilePlace &place, const QStringList &dems, int side);

/// The arguments with which QuvoDemBatch plans the tiles and prints the commands of at most `mostTasks` tasks.
QStringList planArguments(const QString &folder, const QStringList &dems, int side, int mostTasks);
