#include "app/batch/tiletask.h"

#include "app/batch/BatchRun.h"
#include "app/batch/TileRuns.h"
#include "app/run/copiedcommand.h"
#include "app/run/outputname.h"
#include "app/startup/console.h"
#include "app/tiles/makeplan.h"
#include "app/tiles/tilejoin.h"
#include "dataset/pathencoding.h"
#include "dataset/views/mosaic.h"
#include "messages/label.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

namespace
{

BatchExit refuse(const QString &problem, BatchExit exit)
{
    printError(problem);
    return exit;
}

/// The rasters of the command line, in which a folder stands for all in it, without what an earlier run wrote
/// into the folder of the tiles.
QStringList inputRasters(const QStringList &typed, const QString &folder, const Recipe &recipe)
{
    QStringList rasters;
    for (const QString &name : typed) {
        if (QFileInfo(name).isDir())
            rasters += rastersInFolder(QFileInfo(name).absoluteFilePath());
        else
            rasters += dataSetName(name, QDir::currentPath());
    }
    TilePlan plan;
    plan.recipe = recipe;
    rasters.removeAll(folder + QStringLiteral("/dem.vrt"));
    for (const char *extension : {"vrt", "tif"})
        rasters.removeAll(joinedProduct(folder, plan, QString::fromLatin1(extension)));
    return rasters;
}

/// What keeps a plan of this recipe from the folder: the tiles of another process; empty where nothing does.
QString otherTilesProblem(const QString &folder, const Recipe &recipe)
{
    const PlanReading before = readPlan(planFile(folder));
    if (!before.problem.isEmpty() || before.plan.recipe.process == recipe.process)
        return {};
    return labelText({"MESS_TUILES_AUTRES",
                      "Le dossier « %1 » contient les tuiles d'un autre traitement (%2) ; indiquez un autre "
                      "dossier."})
        .arg(folder, before.plan.recipe.process);
}

/// The plan that the run works on, and the exit code that goes with its problem.
struct ReadyPlan
{
    TilePlan plan;
    QString problem;
    BatchExit exit = BatchExit::Done;
};

ReadyPlan makeReadyPlan(const BatchArguments &arguments, const QString &folder)
{
    const RecipeReading reading = recipeForDems(arguments);
    if (!reading.problem.isEmpty())
        return {{}, reading.problem, BatchExit::BadArguments};
    const Recipe &recipe = reading.recipe;
    QString problem = tilesProblem(recipe);
    if (!problem.isEmpty())
        return {{}, problem, BatchExit::BadArguments};
    problem = arguments.overwrite ? QString() : otherTilesProblem(folder, recipe);
    if (!problem.isEmpty())
        return {{}, problem, BatchExit::Refused};
    const QStringList dems = inputRasters(arguments.dems, folder, recipe);
    if (dems.isEmpty())
        return {{},
                labelText({"MESS_TUILES_SANS_MNT", "Aucun MNT n'a été trouvé dans ce qui est indiqué."}),
                BatchExit::BadInput};
    WorkFolder workFolder;
    const TilePlanning planning =
        makePlan({recipe, dems, folder, arguments.tiles.side}, workFolder, &StopSignals::stopWasRequested);
    if (StopSignals::stopWasRequested())
        return {{}, stoppedText(), stoppedExit()};
    if (!planning.problem.isEmpty())
        return {{}, planning.problem, planning.isInputProblem ? BatchExit::BadInput : BatchExit::BadArguments};
    for (const QString &warning : planning.warnings)
        printError(warning);
    problem = writePlan(planFile(folder), planning.plan);
    return {planning.plan, problem, saysDiskFull(problem) ? BatchExit::TryAgain : BatchExit::Failed};
}

/// Says what the tiles take before anything is computed.
void printSizes(const TilePlan &plan, const QString &folder)
{
    printError(tileSizesText(plan));
    const ProcessRow &row = processRow(processOf(plan.recipe.options));
    const qint64 bytes = static_cast<qint64>(plan.grid.raster.width()) * plan.grid.raster.height() * row.bands
        * row.bytesPerCell;
    for (const QString &warning : freeSpaceWarnings(planFile(folder), bytes))
        printError(warning);
}

/// One command a line; each makes a share of the tiles.
BatchExit printTasks(const TilePlan &plan, const QString &folder, const TileArguments &arguments)
{
    const auto tasks = static_cast<int>(std::min<qint64>(arguments.tasks.value_or(INT_MAX), plan.tileCount()));
    bool isPrinted = true;
    for (int task = 0; isPrinted && task < tasks; ++task)
        isPrinted = printOutput(
            shellCommand({QCoreApplication::applicationFilePath(), QStringLiteral("--tiles"),
                          QStringLiteral("--into"), folder, QStringLiteral("--task"),
                          QStringLiteral("%1/%2").arg(task).arg(tasks), QStringLiteral("--skip-done")})
            + QLatin1Char('\n'));
    return isPrinted ? BatchExit::Done : BatchExit::Failed;
}

} // namespace

BatchExit runTiles(const StopSignals &stopSignals, const BatchArguments &arguments)
{
    const QString folder = QDir::cleanPath(QDir::current().absoluteFilePath(arguments.tiles.folder));
    const bool makesPlan = !arguments.dems.isEmpty();
    if (makesPlan && !QDir().mkpath(folder))
        return refuse(
            labelText({"MESS_DOSSIER_IMPOSS", "Le dossier « %1 » ne peut pas être créé."}).arg(folder),
            BatchExit::BadArguments);
    ReadyPlan ready;
    if (makesPlan) {
        ready = makeReadyPlan(arguments, folder);
    } else {
        const PlanReading reading = readPlan(planFile(folder));
        ready = {reading.plan, reading.problem, BatchExit::BadInput};
    }
    if (!ready.problem.isEmpty())
        return refuse(ready.problem, ready.exit);
    if (makesPlan)
        printSizes(ready.plan, folder);
    if (arguments.tiles.onlyPlan)
        return printTasks(ready.plan, folder, arguments.tiles);

    TileRuns runs(stopSignals, ready.plan, folder, arguments.tiles, arguments.overwrite);
    QObject::connect(&runs, &TileRuns::finished, qApp,
                     [](BatchExit exit) { QCoreApplication::exit(static_cast<int>(exit)); });
    QTimer::singleShot(0, &runs, &TileRuns::start);
    return static_cast<BatchExit>(QCoreApplication::exec());
}
