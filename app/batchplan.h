#pragma once

#include "app/batcharguments.h"
#include "app/commandline.h"
#include "dataset/productcheck.h"

#include <QString>
#include <QStringList>

/// How the batch program ends.
enum class BatchExit
{
    Done = 0,
    Failed = 1, ///< the run failed or was stopped
    BadArguments = 2,
};

/// A run of the batch program, ready to start, or why it cannot start.
struct BatchPlan
{
    ProcessingRequest request;
    QString command; ///< the tool's whole command line
    ExpectedProduct expected;
    QStringList warnings; ///< sentences that do not keep the run from starting
    bool outputExists = false;
    QString problem;                  ///< why it cannot start, in a sentence; empty when it can
    BatchExit exit = BatchExit::Done; ///< how the program ends for that problem
};

/// Puts arguments and recipe together and assembles the tool's command. Reads the recipe file and no other; the
/// input need not exist. programFolder: where the tools stand.
BatchPlan assembleBatch(const BatchArguments &arguments, const QString &programFolder);

/// Looks at tool, format, input and output of an assembled plan. Whether an existing output may be overwritten
/// is left to the caller.
BatchPlan checkBatch(BatchPlan plan, const QString &programFolder);
