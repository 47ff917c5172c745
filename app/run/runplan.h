#pragma once

#include "app/process/commandline.h"
#include "dataset/productcheck.h"

#include <QString>
#include <QStringList>

/// What a run's problem lies in.
enum class ProblemKind
{
    None,
    Tool,
    Format,
    Input,
    Output
};

/// A run that is ready to start, or why it cannot start. The window and the batch program plan their runs by
/// planRun().
struct RunPlan
{
    ProcessingRequest request;     ///< the output is the path that the run writes: absolute, links resolved
    QString command;               ///< the tool's whole command line
    QString overviewCommand;       ///< command line that builds the product's overviews; empty: none are built
    QuvoOutputFilesList outputs;   ///< files that a stop or a failure deletes; the product is the first
    ExpectedProduct expected;      ///< properties that the finished product is checked for
    QStringList touchedInputFiles; ///< files of the DEM beside or in which the tool leaves statistics
    QStringList warnings;          ///< sentences that do not keep the run from starting
    ProblemKind problemKind = ProblemKind::None;
    QString problem; ///< why the run cannot start, in a sentence; empty when it can
};

/// Checks tool, format, input and output of a request whose output is a name as it was typed. `otherInputs` are
/// files besides the DEM that the output must not be. Whether an existing output may be overwritten is the
/// caller's decision: existingOutput() is called once the output's lock is held.
RunPlan planRun(const ProcessingRequest &request, const ToolPaths &tools, const QStringList &otherInputs = {});

/// The first file that the run would replace: one of its outputs or, where the format writes side files, a file
/// of the output's base name. Empty when the run replaces nothing.
QString existingOutput(const RunPlan &plan);
