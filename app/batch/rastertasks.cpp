#include "app/batch/rastertasks.h"

#include "app/batch/BatchRun.h"
#include "app/batch/contourtasks.h"
#include "app/batch/terminalprogress.h"
#include "app/run/overviewrun.h"
#include "app/startup/StopSignals.h"
#include "app/startup/console.h"
#include "dataset/pathencoding.h"
#include "dataset/views/aspectcorrection.h"
#include "dataset/views/georeference.h"
#include "dataset/views/voidfill.h"

#include <QDir>
#include <QFileInfo>

namespace
{

TaskEnd buildOverviewsOf(const QString &raster, const TaskProgress &progress)
{
    const OverviewResult result = runOverviews(raster, progress);
    return {result.state == OverviewResult::Stopped, result.problem};
}

TaskEnd correctAspectOf(const QString &raster, const QString &dem, const BatchArguments &arguments,
                        const TaskProgress &progress)
{
    ProcessOptions options = AspectOptions();
    for (const auto &option : arguments.options) {
        const QString problem = setOption(options, option.first, option.second);
        if (!problem.isEmpty())
            return {false, problem};
    }
    const CorrectionResult result = correctDirections(raster, dem, arguments.band.value_or(1),
                                                      std::get<AspectOptions>(options).trigonometric, progress);
    return {result.isStopped, result.problem};
}

TaskEnd fillVoidsOf(const QString &dem, const QString &filled, const BatchArguments &arguments,
                    const TaskProgress &progress)
{
    const QString mask = arguments.mask.isEmpty() ? QString() : QFileInfo(arguments.mask).absoluteFilePath();
    const FillResult result = fillVoids({.dem = dem,
                                         .band = arguments.band.value_or(1),
                                         .distance = arguments.outputOptions.fillDistance,
                                         .filled = filled,
                                         .mask = mask},
                                        progress);
    return {result.isStopped, result.problem};
}

TaskEnd runTask(const BatchArguments &arguments, const TaskProgress &progress)
{
    const QString raster = dataSetName(arguments.raster, QDir::currentPath());
    if (arguments.action == BatchAction::BuildOverviews)
        return buildOverviewsOf(raster, progress);
    if (!arguments.input)
        return {false, labelText({"MESS_LOT_SANS_ENTREE", "Indiquez le MNT d'entrée (--input)."})};
    const QString dem = dataSetName(*arguments.input, QDir::currentPath());
    if (arguments.action == BatchAction::CorrectAspect)
        return correctAspectOf(raster, dem, arguments, progress);
    if (arguments.action == BatchAction::FillVoids)
        return fillVoidsOf(dem, raster, arguments, progress);
    if (arguments.action == BatchAction::SmoothDem)
        return smoothDemTask(dem, raster, arguments, progress);
    if (arguments.action == BatchAction::FinishContours)
        return finishContoursTask(dem, raster, arguments, progress);
    return {false, copyGeoreference(dem, raster)};
}

} // namespace

bool isRasterTask(BatchAction action)
{
    return action == BatchAction::BuildOverviews || action == BatchAction::CorrectAspect
        || action == BatchAction::FillVoids || action == BatchAction::SmoothDem
        || action == BatchAction::FinishContours || action == BatchAction::CopyGeoreference;
}

BatchExit runRasterTask(const BatchArguments &arguments)
{
    const StopSignals stopSignals;
    TerminalProgress progress;
    printOutput(progress.advance(0));
    const TaskEnd end = runTask(arguments, [&](int percent) {
        printOutput(progress.advance(percent));
        return !StopSignals::stopWasRequested();
    });
    const bool isDone = end.problem.isEmpty() && !end.isStopped;
    printOutput(isDone ? progress.finish() : progress.abandon());
    for (const QString &note : end.notes)
        printError(note);
    if (isDone)
        return BatchExit::Done;
    printError(end.isStopped ? stoppedText() : end.problem);
    return end.isStopped ? stoppedExit() : BatchExit::Failed;
}
