#pragma once

#include "dataset/extremes.h"
#include "panels/options/fragments.h"
#include "panels/options/toolinput.h"

/// What the options of contours contribute to a run: the tool's arguments, and the steps around the tool.
/// extremes: of the DEM, for an interval beside fixed levels; not widened.
ToolInput contourInput(const ContourOptions &options, const Extremes &extremes);

/// The steps of a preview, for a copy of the DEM in cells that are `factor` times as large: there is no file
/// beside it, and areas have their colours.
ContourSteps inLargerCells(ContourSteps steps, double factor);

/// Names of the attributes for elevations that the product has: one of lines, two of areas.
QStringList elevationAttributes(const ContourOptions &options);

/// Why one of these names would stand twice in the product, in a sentence; empty where none does.
QString takenAttributeProblem(const ContourOptions &options);

/// Whether the tool's file is finished by a step of this program.
bool needsFinishing(const ContourOptions &options);
