#include "app/batch/TileRuns.h"

#include "app/batch/BatchRun.h"
#include "app/startup/console.h"
#include "app/startup/environment.h"
#include "app/tiles/tilejoin.h"
#include "app/tiles/tilemarks.h"
#include "messages/label.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

namespace
{

TileShare tilesOf(const TilePlan &plan, const TileArguments &arguments)
{
    const TaskNumber task = arguments.task.value_or(TaskNumber());
    return shareOf(plan.tileCount(), task.task, task.tasks);
}

QString taskText(const TileArguments &arguments)
{
    return arguments.task ? QStringLiteral("%1/%2").arg(arguments.task->task).arg(arguments.task->tasks)
                          : QString();
}

} // namespace

TileRuns::TileRuns(const StopSignals &stopSignals, const TilePlan &plan, const QString &folder,
                   const TileArguments &arguments, bool overwrite)
    : m_plan(plan)
    , m_folder(folder)
    , m_arguments(arguments)
    , m_overwrite(overwrite)
    , m_share(tilesOf(plan, arguments))
    , m_tiles(m_plan)
    , m_log(arguments.jsonLog, taskText(arguments))
    , m_scriptRunner(nullptr)
    , m_run(m_scriptRunner)
    , m_joiner(stopSignals, m_plan, folder, arguments.join.value_or(TileJoin::Vrt), m_log)
{
    connect(&m_scriptRunner, &QuvoScriptRunner::updateProgress, this,
            [this](int percent) { m_log.progress(m_scriptRunner.listProgress(percent)); });
    connect(&m_run, &ProductRun::finished, this, &TileRuns::onFinished);
    connect(&m_run, &ProductRun::aborted, this, &TileRuns::onAborted);
    connect(&m_run, &ProductRun::failed, this, &TileRuns::onFailed);
    connect(&stopSignals, &StopSignals::stopRequested, &m_run, &ProductRun::stop);
    connect(&m_joiner, &TileJoiner::finished, this, &TileRuns::finished);
}

void TileRuns::start()
{
    m_next = m_share.begin;
    if (m_arguments.onlyJoin) {
        m_joiner.start();
        return;
    }
    const QString problem = prepare();
    if (!problem.isEmpty()) {
        printError(problem);
        emit finished(BatchExit::BadInput);
        return;
    }
    next();
}

/// Prepares what all tiles need: their folders, and the files that the tool reads. Returns why that failed, in
/// a sentence; empty otherwise.
QString TileRuns::prepare()
{
    const QString problem = makeTileFolders(m_folder);
    if (!problem.isEmpty())
        return problem;
    const DemFacts dem = readDemFacts(m_plan.recipe.input, m_plan.recipe.band);
    exportWindowVariables(m_plan.inputs.size() == 1 && dem.blockWidth == dem.width);
    if (!m_plan.groups.isEmpty()) // each tile has its own observers
        return {};
    m_input = prepareInput(m_plan.recipe.options, m_plan.recipe.input, m_plan.recipe.band, m_workFolder,
                           &StopSignals::stopWasRequested);
    for (const QString &warning : qAsConst(m_input.warnings))
        printError(warning);
    return m_input.problem;
}

/// Begins the next tile when the event loop is reached again. A tile may end inside the call that starts it,
/// and without the event loop no stop signal would be noticed between two tiles.
void TileRuns::nextLater()
{
    QTimer::singleShot(0, this, &TileRuns::next);
}

void TileRuns::next()
{
    if (StopSignals::stopWasRequested()) {
        printError(stoppedText());
        emit finished(stoppedExit());
        return;
    }
    if (m_next == m_share.end || m_exit == BatchExit::TryAgain) {
        const TileJoin join = m_arguments.join.value_or(m_arguments.task ? TileJoin::None : TileJoin::Vrt);
        if (m_exit == BatchExit::Done && join != TileJoin::None)
            m_joiner.start();
        else
            emit finished(m_exit);
        return;
    }
    startTile(m_tiles.tile(m_next++));
}

void TileRuns::startTile(const PlannedTile &tile)
{
    m_tile = tile;
    const QString product = tileProduct(m_folder, tile.name, tileExtension(m_plan));
    m_log.begin(tile.name, product);
    if (m_arguments.skipDone && isTileDone(m_folder, tile, product)) {
        endTile("skipped", BatchExit::Done, {});
        return;
    }
    const QString changed = changedInputProblem(m_plan, tile.inputs);
    if (!changed.isEmpty()) {
        endTile("failed", BatchExit::BadInput, changed);
        return;
    }
    if (!m_plan.groups.isEmpty())
        m_input = prepareInput(tileRecipe(m_plan, tile).options, m_plan.recipe.input, m_plan.recipe.band,
                               m_workFolder, &StopSignals::stopWasRequested);
    if (!m_input.problem.isEmpty()) {
        endTile("failed", BatchExit::BadInput, m_input.problem);
        return;
    }
    ProcessingRequest request = tileRequest(m_plan, tile, m_input.toolInput);
    request.output = product;
    QStringList sources;
    for (const int input : tile.inputs)
        sources += m_plan.inputs.at(input).path;
    const RunPlan run = planRun(request, findTools(QCoreApplication::applicationDirPath()), sources);
    if (!run.problem.isEmpty()) {
        endTile("failed", exitOfProblem(run.problemKind), run.problem);
        return;
    }
    if (m_treatmentNote != run.treatmentNote)
        printError(run.treatmentNote);
    m_treatmentNote = run.treatmentNote;
    startRun(run);
}

void TileRuns::startRun(const RunPlan &run)
{
    auto lock = std::make_unique<OutputLock>(writtenFiles(run));
    if (!lock->problem().isEmpty()) {
        endTile("failed", lock->isHeldByOther() ? BatchExit::TryAgain : BatchExit::Failed, lock->problem());
        return;
    }
    const QString existing = existingOutput(run);
    if (!existing.isEmpty() && !m_overwrite && !m_arguments.skipDone) {
        endTile("failed", BatchExit::Refused,
                labelText({"MESS_LOT_EXISTE", "« %1 » existe déjà ; --overwrite le remplace."}).arg(existing));
        return;
    }
    m_run.start(run, std::move(lock), false, QString());
}

void TileRuns::endTile(const char *state, BatchExit exit, const QString &problem)
{
    m_log.end(state);
    printError(problem);
    // What a later try may mend counts less than what it will not.
    if (exit != BatchExit::Done && (m_exit == BatchExit::Done || m_exit == BatchExit::TryAgain))
        m_exit = exit;
    nextLater();
}

void TileRuns::onFinished()
{
    m_log.command(m_run.commands().join(QLatin1Char('\n')));
    printError(m_run.outcome().toolText);
    const QString problem = markTile(m_folder, m_tile, m_run.plan().request.output);
    endTile(problem.isEmpty() ? "done" : "failed", problem.isEmpty() ? BatchExit::Done : BatchExit::TryAgain,
            problem);
}

void TileRuns::onAborted()
{
    m_log.end("stopped");
    next(); // which says that the run was stopped
}

void TileRuns::onFailed()
{
    if (StopSignals::stopWasRequested()) { // Ctrl-C ended the tool before this program could stop it
        onAborted();
        return;
    }
    const RunOutcome &outcome = m_run.outcome();
    printError(outcome.toolText);
    m_log.command(m_run.commands().join(QLatin1Char('\n')));
    endTile("failed", exitOfFailure(outcome, m_run.plan()), outcome.problem);
}
