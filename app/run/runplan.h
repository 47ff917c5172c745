#pragma once

#include "app/process/commandline.h"
#include "app/process/tools.h"
#include "dataset/productcheck.h"

#include <QString>
#include <QStringList>

/// What keeps a run from starting.
enum class ProblemKind
{
    None,
    Tool,
    Format,
    Input,
    Output
};

/// A run that is ready to start, or why it cannot start. Window and batch program plan their runs by the same
/// function.
struct RunPlan
{
    ProcessingRequest request; ///< with the output under the name that the run writes: absolute, links resolved
    QString overviewCommand;   ///< that builds the product's overviews; empty: there are none to build
    QString command;           ///< the tool's whole command line
    QuvoOutputFilesList outputs;   ///< what a stop or a failure deletes
    ExpectedProduct expected;      ///< what the product is compared with
    QStringList touchedInputFiles; ///< files of the DEM in which the tool leaves statistics
    QStringList warnings;          ///< sentences that do not keep the run from starting
    ProblemKind problemKind = ProblemKind::None;
    QString problem; ///< the fault in a sentence; empty when the run can start
};

/// Looks at tool, format, input and output of a request whose output is a name as it was typed. Whether an
/// existing output may be overwritten is left to the caller, who asks existingOutput() when it holds the
/// output's lock. otherInputs: files that the output must not be either.
RunPlan planRun(const ProcessingRequest &request, const ToolPaths &tools, const QStringList &otherInputs = {});

/// The first file that the run would replace: one of its outputs, or, where the format writes side files, one
/// that bears the output's name; empty when there is none.
QString existingOutput(const RunPlan &plan);

/// The whole command line of a request.
QString runCommand(const ProcessingRequest &request, const ToolPaths &tools);
