#pragma once

#include "app/batch/arguments.h"
#include "app/process/commandline.h"
#include "app/process/tools.h"

#include "dataset/workfolder.h"

#include <QString>
#include <QStringList>

/// How the batch program ends.
enum class BatchExit
{
    Done = 0,
    Failed = 1, ///< the run failed or was stopped
    BadArguments = 2,
};

/// What the batch program's arguments and the recipe that they name ask for.
struct BatchRequest
{
    ProcessingRequest request; ///< the output as it was typed, or as the recipe's folder makes it
    QStringList otherInputs;   ///< files besides the DEM that the output must not be: the recipe
    QStringList warnings;      ///< sentences that do not keep the run from starting
    QString problem;           ///< why it cannot start, in a sentence; empty when it may
};

/// Puts arguments and recipe together. Reads the recipe file and, for a colour relief, the colour table; the
/// input need not exist unless a table is spread over its elevations. A table that is written goes to the work
/// folder.
BatchRequest assembleBatch(const BatchArguments &arguments, WorkFolder &workFolder);

/// The runs that a command line asks for.
struct BatchRuns
{
    QVector<BatchArguments> runs; ///< each with one input and one output
    QString problem;              ///< why there are none, in a sentence; empty otherwise
};

/// Splits a command line that names several DEMs into one run a DEM. The product of each stands beside its DEM
/// and is named by the process and the format: "base_suffix.ext". A DEM that is the product of another one is
/// left out, so that the list of all files of a folder can be given twice.
BatchRuns splitBatch(const BatchArguments &arguments);

/// The command line that a run would use, for whoever wants to see it; the input need not exist.
QString printedCommand(const ProcessingRequest &request, const ToolPaths &tools);
