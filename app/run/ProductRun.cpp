#include "app/run/ProductRun.h"

#include "app/run/replacedoutput.h"
#include "dataset/overviews.h"
#include "runner/QuvoScriptRunner.h"
#include "runner/commandsplit.h"
#include "runner/tooltext.h"

namespace
{

constexpr int overviewsBegin = 85; // percent of the bar: overviews take less time than the product

} // namespace

ProductRun::ProductRun(QuvoScriptRunner &runner)
    : m_runner(runner)
{
    connect(&runner, &QuvoScriptRunner::done, this, &ProductRun::onDone);
    connect(&runner, &QuvoScriptRunner::aborted, this, &ProductRun::onAborted);
    connect(&runner, &QuvoScriptRunner::error, this, &ProductRun::onError);
}

ProductRun::~ProductRun()
{
    abandon();
}

void ProductRun::start(const RunPlan &plan, std::unique_ptr<OutputLock> lock, bool showProgress,
                       const QString &icon)
{
    m_plan = plan;
    m_commands = QStringList{plan.command};
    m_outcome = {};
    m_lock = std::move(lock);
    m_showProgress = showProgress;
    m_icon = icon;
    m_buildingOverviews = false;
    m_statisticsFiles = StatisticsFiles(plan.touchedInputFiles);
    m_part = std::make_unique<PartFolder>(plan.request.output);
    if (!m_part->isValid()) {
        fail(partFolderProblem(plan.request.output));
        return;
    }
    m_partPlan = planAt(plan, m_part->product());
    m_partPlan.outputs.first().before = QStringList(); // nothing was in the part folder
    const ProductSteps steps = stepsOf(m_partPlan, m_part->stepsFolder());
    if (!steps.problem.isEmpty()) {
        fail(m_part->withFinalPaths(steps.problem));
        return;
    }
    if (needsSteps(plan.request, plan.dem)) {
        m_commands.clear();
        for (const ProductStep &step : steps.steps)
            m_commands += m_part->withFinalPaths(step.command);
        m_partPlan.expected.width = steps.width;
        m_partPlan.expected.height = steps.height;
    }
    m_runner.setWorkingFolder(m_partPlan.workingFolder);
    m_runner.setShares(sharesOf(steps));
    if (!plan.overviewCommand.isEmpty())
        m_runner.setPartOfBar(0, overviewsBegin);
    m_runner.run(commandsOf(steps), outputsOf(steps, m_partPlan.outputs),
                 showProgress ? ProgressWindowWithStop : NoProgressWindow, icon);
}

void ProductRun::stop()
{
    if (isRunning())
        m_runner.processUserCancel();
}

void ProductRun::abandon()
{
    if (!isRunning())
        return;
    m_runner.stop();
    if (m_buildingOverviews)
        place();
    end();
}

void ProductRun::end()
{
    m_runner.hideProgress();
    m_runner.setWorkingFolder(QString());
    m_part.reset();
    m_statisticsFiles.restore();
    m_lock.reset();
}

void ProductRun::fail(const QString &problem)
{
    m_outcome.problem = problem;
    end();
    emit failed(m_outcome.toolText);
}

/// Builds the overviews before the product is moved, so that both appear together.
void ProductRun::buildOverviews()
{
    m_buildingOverviews = true;
    const QuvoOutputFile overviews{overviewFile(m_part->product()), QString(), QuvoOutputFileKind::PlainFile};
    m_runner.setPartOfBar(overviewsBegin, 100);
    const QString title = labelText({"MESS_CALC_VUES", "Calcul des vues d'ensemble du résultat."});
    m_runner.run({{m_partPlan.overviewCommand, title}}, {{overviews}},
                 m_showProgress ? ProgressWindowWithStop : NoProgressWindow, m_icon);
}

QString ProductRun::place()
{
    // Another product of that base name may have come while the tool ran.
    const QString problem = sharedFileProblem(m_plan.outputs.first());
    return problem.isEmpty() ? m_part->place(replacedFiles(m_plan.outputs)) : problem;
}

void ProductRun::placeAndEnd()
{
    const QString problem = place();
    if (!problem.isEmpty()) {
        fail(problem);
        return;
    }
    end();
    emit finished();
}

/// Ends the run with the product, which is whole even where its overviews could not be built.
void ProductRun::placeWithoutOverviews(const QString &warning)
{
    m_outcome.warnings += m_part->withFinalPaths(warning);
    placeAndEnd();
}

void ProductRun::onDone()
{
    if (!isRunning())
        return;
    if (m_buildingOverviews) {
        placeAndEnd();
        return;
    }
    const QString toolText = m_runner.standardErrorOfList();
    m_outcome.toolText = m_part->withFinalPaths(toldOnce(toolText));
    m_outcome.exitCode = 0;
    const ProductCheck check = checkProduct(m_partPlan.expected, toolText);
    m_outcome.featureCount = check.featureCount;
    if (!check.problem.isEmpty())
        fail(m_part->withFinalPaths(check.problem));
    else if (!m_plan.overviewCommand.isEmpty())
        buildOverviews();
    else
        placeAndEnd();
}

void ProductRun::onAborted()
{
    if (!isRunning())
        return;
    if (m_buildingOverviews) {
        placeWithoutOverviews(labelText({"MESS_VUES_STOP",
                                         "Le calcul des vues d'ensemble a été arrêté ; le résultat est "
                                         "complet sans elles."}));
        return;
    }
    end();
    emit aborted();
}

void ProductRun::onError(const QString &toolText)
{
    if (!isRunning())
        return;
    if (m_buildingOverviews) {
        placeWithoutOverviews(labelText({"MESS_VUES_ERR",
                                         "Les vues d'ensemble n'ont pas pu être calculées ; le résultat "
                                         "est complet sans elles."})
                              + QLatin1Char('\n') + toolText.trimmed());
        return;
    }
    m_outcome.toolText = m_part->withFinalPaths(toldOnce(toolText));
    const QString startProblem = m_runner.startProblem();
    if (startProblem.isEmpty()) {
        if (m_runner.lastExitCode() != 0)
            m_outcome.exitCode = m_runner.lastExitCode();
        fail(QString());
        return;
    }
    const QString tool = splitProcessCommand(m_runner.lastCommand()).program;
    fail(labelText({"MESS_OUTIL_NON_LANCE", "« %1 » n'a pas pu être lancé : %2"}).arg(tool, startProblem));
}
