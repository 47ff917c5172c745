#pragma once

#include "app/batcharguments.h"
#include "app/commandline.h"
#include "app/tools.h"

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
    QString warning;           ///< a sentence that does not keep the run from starting; mostly empty
    QString problem;           ///< why it cannot start, in a sentence; empty when it may
};

/// Puts arguments and recipe together. Reads the recipe file and no other; the input need not exist.
BatchRequest assembleBatch(const BatchArguments &arguments);

/// The command line that a run would use, for whoever wants to see it; the input need not exist.
QString printedCommand(const ProcessingRequest &request, const ToolPaths &tools);
