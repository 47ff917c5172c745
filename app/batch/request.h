#pragma once

#include "app/batch/arguments.h"
#include "app/process/commandline.h"
#include "dataset/workfolder.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Exit codes of the batch program.
enum class BatchExit
{
    Done = 0,
    Failed = 1, ///< the run failed or was stopped
    BadArguments = 2,
};

/// The run that the arguments of the batch program and their recipe describe.
struct BatchRequest
{
    ProcessingRequest request; ///< the output is the name as it was typed, or relative to the recipe's folder
    QStringList otherInputs;   ///< files besides the DEM that the output must not replace, such as the recipe
    QStringList warnings;      ///< sentences that do not keep the run from starting
    QString problem;           ///< why the run cannot start, in a sentence; empty when it can
};

/// Combines the arguments and the recipe. Reads the recipe file and prepares the tool's input; the files that
/// this needs are written to the work folder. The DEM is read only where the options depend on it.
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

/// The command line that the run of a request would use. The input need not exist.
QString printedCommand(const ProcessingRequest &request, const ToolPaths &tools);
