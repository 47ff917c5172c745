#pragma once

#include "app/process/productsteps.h"
#include "dataset/productcheck.h"

#include <QString>
#include <QStringList>

/// The part of a request that a run's problem concerns.
enum class ProblemKind
{
    None,
    Tool,
    Format,
    Input,
    Output,
    Replacement, ///< the run would replace one of its inputs, or a file that is not only a product
    SideFile
};

/// A run that is ready to start, or the problem that prevents it. The window and the batch program plan their
/// runs with planRun().
struct RunPlan
{
    ProcessingRequest request;   ///< the output is the path that the run writes: absolute, links resolved
    ToolPaths tools;             ///< the programs of the command lines
    DemFacts dem;                ///< what the file of the input DEM says of its grid and its elevations
    DemTreatment treatment;      ///< what is done so that the tool understands the DEM
    QString treatmentNote;       ///< what the treatment does, in one line; empty where there is none
    QString command;             ///< the tool's whole command line for a DEM that needs no treatment
    QString workingFolder;       ///< folder that the tools are called in; empty: the current one
    QString toolOutput;          ///< the product's name for the tools, in that folder
    QString overviewCommand;     ///< command line that builds the product's overviews; empty: none are built
    QuvoOutputFilesList outputs; ///< files that the run creates; the product is the first
    /// Files that the tool writes besides the product, in any folder: one for each of
    /// request.toolInput.sideFiles.
    QuvoOutputFilesList sideOutputs;
    ExpectedProduct expected;      ///< properties that the finished product is checked for
    QStringList touchedInputFiles; ///< files of the DEM in or beside which the tool leaves statistics
    QStringList warnings;          ///< sentences that do not prevent the run
    ProblemKind problemKind = ProblemKind::None;
    QString problem; ///< why the run cannot start, in a sentence; empty when it can
};

/// Checks tool, format, input and output of a request, whose output is a name as the user typed it.
/// `otherInputs` are files besides the DEM that the output must not replace. Whether an existing output may be
/// replaced is the caller's decision, which calls existingOutput() once it holds the output's lock.
RunPlan planRun(const ProcessingRequest &request, const ToolPaths &tools, const QStringList &otherInputs = {});

/// The same run with its product at another path. Its tools are called in the folder of that path and receive
/// the name of the file alone, which some formats store in it.
RunPlan planAt(RunPlan plan, const QString &path);

/// The steps of the plan. Views of the DEM and intermediate products are written to `folder`, an existing
/// folder for this run alone.
ProductSteps stepsOf(const RunPlan &plan, const QString &folder);

/// Paths that the run writes and that an OutputLock keeps other runs from: the product, and the files that the
/// tool writes besides it.
QStringList writtenFiles(const RunPlan &plan);

/// The existing ones of the files that the tool writes besides the product. The run would replace them.
QStringList existingSideOutputs(const RunPlan &plan);

/// Path of the first existing file that the run would replace: one of its outputs, where the format writes side
/// files a file with the output's base name, or one of existingSideOutputs(). Empty when the run replaces
/// nothing.
QString existingOutput(const RunPlan &plan);
