#pragma once

#include "dataset/workfolder.h"
#include "panels/fragments.h"

#include <QString>

/// The file of the colour table that the tool gets, or why there is none.
struct BatchColorTable
{
    QString file;
    QString problem; ///< in a sentence; empty for a good table
};

/// Finds the table of the options (a file, or the name of a table of the folder "libraries/colormap" beside the
/// program; none: its dtm.txt). Where it is spread over the DEM's elevations, or holds what the tool would read
/// as something else, a file is written to the work folder. Elevations that the options do not name are read
/// from every cell of the band.
BatchColorTable batchColorTable(const ColorReliefOptions &options, const QString &dem, int band,
                                WorkFolder &workFolder);
