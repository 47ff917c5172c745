#include "app/run/ProductRun.h"

#include "app/run/classlegend.h"
#include "app/run/replacedoutput.h"
#include "dataset/overviews.h"
#include "runner/QuvoScriptRunner.h"
#include "runner/tooltext.h"

#include <QFileInfo>

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
    const QString sideProblem = beginSideFiles();
    if (!sideProblem.isEmpty()) {
        fail(sideProblem);
        return;
    }
    if (!writeClassLegend()) {
        fail(labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."})
                 .arg(m_plan.sideOutputs.last().path));
        return;
    }
    const ProductSteps steps = stepsOf(m_partPlan, m_part->stepsFolder());
    if (!steps.problem.isEmpty()) {
        fail(withFinalPaths(steps.problem));
        return;
    }
    if (needsSteps(plan.request, plan.dem)) {
        m_commands.clear();
        for (const ProductStep &step : steps.steps)
            m_commands += withFinalPaths(step.command);
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

/// Makes the part folders of the side files and lets the tool write there. Returns why that failed, in a
/// sentence; empty otherwise.
QString ProductRun::beginSideFiles()
{
    for (SideFile &side : m_partPlan.request.toolInput.sideFiles) {
        m_sideParts.push_back(std::make_unique<PartFolder>(side.path));
        if (!m_sideParts.back()->isValid())
            return partFolderProblem(side.path);
        side.path = m_sideParts.back()->product();
    }
    return {};
}

/// Writes the legend of the picture in classes, where there is one, into its part folder.
bool ProductRun::writeClassLegend() const
{
    const ToolInput &input = m_partPlan.request.toolInput;
    return input.classes.classes.isEmpty() || classLegend(input.classes).save(input.sideFiles.last().path);
}

/// A sentence where the tool has not written a side file that it was asked for; empty otherwise.
QString ProductRun::missingSideFile() const
{
    for (const auto &part : m_sideParts) {
        if (QFileInfo(part->product()).size() == 0) // which is also the size of a missing file
            return labelText({"MESS_COTE_ABSENT", "L'outil n'a pas écrit « %1 »."}).arg(part->product());
    }
    return {};
}

QString ProductRun::withFinalPaths(QString text) const
{
    for (const auto &part : m_sideParts)
        text = part->withFinalPaths(text);
    return m_part->withFinalPaths(text);
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
    m_sideParts.clear();
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
    QString problem = sharedFileProblem(m_plan.outputs.first());
    for (std::size_t at = 0; problem.isEmpty() && at < m_sideParts.size(); ++at)
        problem = m_sideParts[at]->place(replacedFiles({m_plan.sideOutputs.at(static_cast<int>(at))}));
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
    m_outcome.warnings += withFinalPaths(warning);
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
    m_outcome.toolText = withFinalPaths(toldOnce(toolText));
    m_outcome.exitCode = 0;
    ProductCheck check = checkProduct(m_partPlan.expected, toolText);
    if (check.problem.isEmpty())
        check.problem = missingSideFile();
    m_outcome.featureCount = check.featureCount;
    m_outcome.isDiskFull = check.isDiskFull;
    if (!check.problem.isEmpty())
        fail(withFinalPaths(check.problem));
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
    m_outcome.toolText = withFinalPaths(toldOnce(toolText));
    const QString startProblem = m_runner.startProblem();
    if (startProblem.isEmpty() && m_runner.lastExitCode() != 0)
        m_outcome.exitCode = m_runner.lastExitCode();
    fail(startProblem);
}
