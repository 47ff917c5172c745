#pragma once

#include "dataset/extremes.h"
#include "dataset/workfolder.h"
#include "panels/options/processoptions.h"

#include <QString>
#include <QStringList>

#include <functional>

// The colour table of a recipe: a file, a table of the library, or a list of colours in the recipe itself.

/// The colour table file for the tool.
struct ToolTable
{
    QString file;             ///< path of the table
    bool isTemporary = false; ///< the file is in the work folder
    QStringList notes;        ///< sentences about what the reading of the table approximated
    QString problem;          ///< why the table cannot be used, in a sentence; empty for a good table
};

/// Path of the table of that name: the name itself where such a file exists, else the table in the folder
/// "libraries/colormap" beside the program, with or without its ".txt". The default table of the options is
/// always that of the library, and so is an empty name. Returns the name itself where no table has it.
QString colorTableFile(const QString &name);

/// Why the table of the options cannot be used, in a sentence; empty for a good table.
QString colorTableProblem(const ColorReliefOptions &options);

/// Whether the table of the options holds elevations and percentages side by side.
bool mixesUnits(const ColorReliefOptions &options);

/// Returns whether the user has asked to stop.
using StopCheck = std::function<bool()>;

/// The extreme elevations of every cell of a band; what was found so far once `isStopped` returns true.
Extremes exactExtremes(const QString &dem, int band, const StopCheck &isStopped);

/// Finds the table of the options. It is written to a file in the work folder where the recipe itself holds its
/// colours, where it is spread over the DEM's elevations, and where the tool would read the original
/// differently. Where the options do not name the elevations to spread over, every cell of the band is read,
/// until `isStopped` returns true; the table then has no meaning. `band` counts from 1.
ToolTable prepareTable(const ColorReliefOptions &options, const QString &dem, int band, WorkFolder &workFolder,
                       const StopCheck &isStopped);

/// Replaces the table of a colour relief by the colours of `file`, the table that the tool reads. They are not
/// spread again, since a later run might find other extreme elevations. Options of another process are not
/// changed.
void holdTableByValue(ProcessOptions &options, const QString &file);
