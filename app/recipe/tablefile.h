#pragma once

#include "dataset/workfolder.h"
#include "panels/options/fragments.h"

#include <QString>

/// The file of the colour table that the tool gets, or why there is none.
struct BatchColorTable
{
    QString file;
    QString problem; ///< in a sentence; empty for a good table
};

/// The file of that name: itself, or a table of the folder "libraries/colormap" beside the program; for an
/// empty name its dtm.txt. The name where there is no such file.
QString colorTableFile(const QString &name);

/// Why the table of the options cannot be used, in a sentence; empty for a good one.
QString colorTableProblem(const ColorReliefOptions &options);

/// Whether that table holds elevations and percentages side by side.
bool mixesUnits(const ColorReliefOptions &options);

/// Finds the table of the options (their colours, or colorTableFile()). Where it is spread over the DEM's
/// elevations, or holds what the tool would read as something else, a file is written to the work folder.
/// Elevations that the options do not name are read from every cell of the band.
BatchColorTable batchColorTable(const ColorReliefOptions &options, const QString &dem, int band,
                                WorkFolder &workFolder);
