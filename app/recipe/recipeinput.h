#pragma once

#include "app/recipe/recipe.h"
#include "app/recipe/tablefile.h"
#include "dataset/workfolder.h"
#include "panels/options/processoptions.h"
#include "panels/options/toolinput.h"

#include <QString>
#include <QStringList>

/// The tool's input, made from the options of a recipe.
struct RecipeInput
{
    ToolInput toolInput;
    QStringList sourceFiles; ///< files besides the DEM that the product must not replace
    QStringList warnings;    ///< sentences that do not keep the run from starting
    QString problem;         ///< why the run cannot start, in a sentence; empty when it can
};

/// The request of a recipe, whose input and output are paths, with the tool's input that was prepared for it.
ProcessingRequest requestOf(const Recipe &recipe, const ToolInput &toolInput);

/// Prepares the tool's input for a run without a window: formats the argument fragment and, where the tool
/// needs them, writes the colour table or the observers to a file in the work folder. `band` of the DEM counts
/// from 1. The DEM is read only where the options depend on it.
/// A long read ends early when `isStopped` returns true; the input then has no meaning.
RecipeInput prepareInput(const ProcessOptions &options, const QString &dem, int band, WorkFolder &workFolder,
                         const StopCheck &isStopped);
