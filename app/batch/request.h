#pragma once

#include "app/batch/arguments.h"
#include "app/batch/exitcode.h"
#include "app/process/commandline.h"
#include "app/recipe/recipe.h"
#include "dataset/workfolder.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// A run as the batch program's arguments and their recipe describe it.
struct BatchRequest
{
    ProcessingRequest request; ///< the output is the name on the command line or a path from the recipe
    QStringList otherInputs;   ///< files besides the DEM that the output must not replace, such as the recipe
    QStringList warnings;      ///< sentences that do not prevent the run
    QString problem;           ///< why the run cannot start, in a sentence; empty when it can
    BatchExit exit = BatchExit::Done; ///< the code that goes with the problem
};

/// Reads the recipe, combines it with the arguments and prepares the tool's input, whose files it writes to the
/// work folder. The DEM is read only where the options depend on it.
BatchRequest assembleBatch(const BatchArguments &arguments, WorkFolder &workFolder);

/// The recipe with the options of the command line, for DEMs that take the place of the recipe's own input.
RecipeReading recipeForDems(const BatchArguments &arguments);

/// The runs that a command line describes.
struct BatchRuns
{
    QVector<BatchArguments> runs; ///< each with one input and one output
    QString problem;              ///< why the command line cannot be split, in a sentence; empty otherwise
};

/// Splits a command line that names several DEMs into one run for each. The product of each run is named
/// "<base>_<suffix>.<extension>" and stands beside its DEM. A DEM that has the name of another DEM's product is
/// left out, so that a second call with all files of a folder does not process the products of the first. With
/// --mosaic the DEMs that remain are the tiles of a single run, and its product has the name given, if any.
BatchRuns splitBatch(const BatchArguments &arguments);

/// The command line that a run of the request would use. The input need not exist.
QString printedCommand(const ProcessingRequest &request, const ToolPaths &tools);
