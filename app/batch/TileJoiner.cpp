#include "app/batch/TileJoiner.h"

#include "app/batch/BatchRun.h"
#include "app/run/replacedoutput.h"
#include "app/startup/console.h"
#include "app/tiles/makeplan.h"
#include "app/tiles/tilejoin.h"
#include "dataset/join/contourjoin.h"
#include "dataset/views/mosaic.h"
#include "dataset/views/rasterstatistics.h"
#include "messages/label.h"
#include "runner/quoting.h"

#include <QCoreApplication>

TileJoiner::TileJoiner(const StopSignals &stopSignals, const TilePlan &plan, const QString &folder,
                       TileJoin join, TileLog &log)
    : m_plan(plan)
    , m_folder(folder)
    , m_join(join)
    , m_log(log)
    , m_scriptRunner(nullptr)
{
    connect(&m_scriptRunner, &QuvoScriptRunner::updateProgress, this,
            [this](int percent) { m_log.progress(percent); });
    connect(&m_scriptRunner, &QuvoScriptRunner::done, this, &TileJoiner::place);
    connect(&m_scriptRunner, &QuvoScriptRunner::error, this, &TileJoiner::end);
    connect(&m_scriptRunner, &QuvoScriptRunner::aborted, this, [this] { end(stoppedText()); });
    connect(&stopSignals, &StopSignals::stopRequested, this, [this] {
        if (m_part)
            m_scriptRunner.processUserCancel();
    });
}

void TileJoiner::start()
{
    const TileSet set = finishedTiles(m_folder, m_plan);
    if (!set.missing.isEmpty()) {
        printError(missingTilesProblem(set.missing));
        emit finished(BatchExit::Failed);
        return;
    }
    if (isContourPlan(m_plan))
        writeContours();
    else if (!m_plan.groups.isEmpty())
        writeSights();
    else if (m_join == TileJoin::Cog)
        writeGeoTiff(set.products);
    else
        writeView(set.products);
}

void TileJoiner::writeView(const QStringList &products)
{
    const QString file = joinedProduct(m_folder, m_plan, QStringLiteral("vrt"));
    m_log.begin(QStringLiteral("vrt"), file);
    const QString problem = writeMosaic(products, file).problem;
    end(problem.isEmpty() ? addStatistics(file) : problem);
}

/// Adds the statistics to the joined product, where the recipe says so. Returns why that failed, in a sentence;
/// empty otherwise.
QString TileJoiner::addStatistics(const QString &raster)
{
    if (!m_plan.recipe.outputOptions.statistics)
        return {};
    const QString problem = writeStatistics(raster, [this](double share) { return hasTime(share); });
    return problem.isEmpty() && StopSignals::stopWasRequested() ? stoppedText() : problem;
}

/// Takes the lock of the product and makes its part folder. Returns whether it can be written.
bool TileJoiner::beginFile(const QuvoOutputFile &file, const QString &name)
{
    m_file = file;
    m_log.begin(name, file.path);
    m_lock = std::make_unique<OutputLock>(file.path);
    if (!m_lock->problem().isEmpty()) {
        end(m_lock->problem());
        return false;
    }
    m_part = std::make_unique<PartFolder>(file.path);
    if (!m_part->isValid())
        end(partFolderProblem(file.path));
    return m_part != nullptr;
}

void TileJoiner::writeGeoTiff(const QStringList &products)
{
    const QuvoOutputFile file{.path = joinedProduct(m_folder, m_plan, QStringLiteral("tif")),
                              .driver = QStringLiteral("GTiff"),
                              .kind = QuvoOutputFileKind::Raster};
    if (!beginFile(file, QStringLiteral("cog")))
        return;
    const QString view = m_workFolder.newFolder() + QStringLiteral("/tiles.vrt");
    const QString problem = writeMosaic(products, view).problem;
    if (!problem.isEmpty()) {
        end(problem);
        return;
    }
    const QString command = processCommand(findTools(QCoreApplication::applicationDirPath()).translate,
                                           cogArguments(m_plan) + quotedArgument(view) + QLatin1Char(' ')
                                               + quotedArgument(m_part->product()));
    m_log.command(command);
    m_scriptRunner.run({{command, QString()}}, {{}}, NoProgressWindow);
}

void TileJoiner::writeContours()
{
    ContourJoin join = contourJoinOf(m_plan);
    ProcessingRequest product{.process = Process::Contour,
                              .mode = {},
                              .input = m_plan.recipe.input,
                              .output = joinedProduct(m_folder, m_plan, joinedExtension(m_plan)),
                              .outputOptions = m_plan.recipe.outputOptions};
    if (!beginFile(declaredOutputs(product).first(), QStringLiteral("contour")))
        return;
    join.path = m_part->product();
    const ContourJoinResult result =
        joinContours(contourTiles(m_folder, m_plan), join, [this](double share) { return hasTime(share); });
    if (result.unmatched > 0)
        printError(
            labelText({"MESS_TUILES_OUVERTES", "%1 bouts de courbes ne continuent pas dans la tuile voisine."})
                .arg(result.unmatched));
    if (result.isStopped)
        end(stoppedText());
    else if (!result.problem.isEmpty())
        end(result.problem);
    else
        place();
}

void TileJoiner::writeSights()
{
    SightJoin join = sightJoinOf(m_plan);
    const QuvoOutputFile file{.path = joinedProduct(m_folder, m_plan, QStringLiteral("tif")),
                              .driver = QStringLiteral("GTiff"),
                              .kind = QuvoOutputFileKind::Raster};
    if (!beginFile(file, m_plan.recipe.process))
        return;
    join.path = m_part->product();
    const QString problem =
        joinSights(sightShares(m_folder, m_plan), join, [this](double share) { return hasTime(share); });
    if (StopSignals::stopWasRequested())
        end(stoppedText());
    else if (!problem.isEmpty())
        end(problem);
    else if (const QString missing = addStatistics(join.path); !missing.isEmpty())
        end(missing);
    else
        place();
}

/// Reports the progress of the joining; false where the user has stopped it.
bool TileJoiner::hasTime(double share)
{
    constexpr double all = 100.0;
    m_log.progress(static_cast<int>(share * all));
    return !StopSignals::stopWasRequested();
}

void TileJoiner::place()
{
    end(m_part->place(replacedFiles({m_file})));
}

void TileJoiner::end(const QString &problem)
{
    const bool isBusy = m_lock && m_lock->isHeldByOther();
    m_part.reset();
    m_lock.reset();
    BatchExit exit = BatchExit::Done;
    if (StopSignals::stopWasRequested() && !problem.isEmpty())
        exit = stoppedExit();
    else if (isBusy || saysDiskFull(problem))
        exit = BatchExit::TryAgain;
    else if (!problem.isEmpty())
        exit = BatchExit::Failed;
    m_log.end(problem.isEmpty() ? "joined" : StopSignals::stopWasRequested() ? "stopped" : "failed");
    printError(problem);
    emit finished(exit);
}
