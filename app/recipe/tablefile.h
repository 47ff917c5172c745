#pragma once

#include "dataset/workfolder.h"
#include "panels/options/processoptions.h"

#include <QString>

// The colour table of a recipe: a file, a table of the library, or colours by value.

/// The colour table file for the tool.
struct ToolTable
{
    QString file;
    bool isTemporary = false; ///< the file lies in the work folder
    QString problem;          ///< why the table cannot be used, in a sentence; empty for a good table
};

/// Path of the table of that name: the name itself where such a file exists, else a table of the folder
/// "libraries/colormap" beside the program. The default table is always that of the library; an empty name
/// means it, too. The name is returned where there is no such file.
QString colorTableFile(const QString &name);

/// Why the table of the options cannot be used, in a sentence; empty for a good table.
QString colorTableProblem(const ColorReliefOptions &options);

/// Whether the table of the options holds elevations and percentages side by side.
bool mixesUnits(const ColorReliefOptions &options);

/// Finds the table of the options. A table by value, a table that is spread over the DEM's elevations, and one
/// that the tool would read differently are written to a file of the work folder. Where the options do not name
/// the elevations to spread over, every cell of the band is read. `band` counts from 1.
ToolTable prepareTable(const ColorReliefOptions &options, const QString &dem, int band, WorkFolder &workFolder);

/// Replaces the table of a colour relief by the colours of `file`, which is the table that the tool reads.
/// Spread again, the table might meet other extreme elevations. Options of another process are not changed.
void holdTableByValue(ProcessOptions &options, const QString &file);
