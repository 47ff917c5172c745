#include "app/run/ProductRun.h"

#include "app/run/replacedoutput.h"
#include "dataset/overviews.h"
#include "runner/QuvoScriptRunner.h"
#include "runner/outputfiles.h"

ProductRun::ProductRun(QuvoScriptRunner &runner)
    : m_runner(runner)
{
    connect(&runner, &QuvoScriptRunner::done, this, &ProductRun::onDone);
    connect(&runner, &QuvoScriptRunner::aborted, this, &ProductRun::onAborted);
    connect(&runner, &QuvoScriptRunner::error, this, &ProductRun::onError);
}

void ProductRun::start(const RunPlan &plan, std::unique_ptr<OutputLock> lock, bool showProgress,
                       const QString &icon)
{
    m_plan = plan;
    m_outcome = {};
    m_lock = std::move(lock);
    m_showProgress = showProgress;
    m_icon = icon;
    m_buildingOverviews = false;
    m_statisticsFiles = StatisticsFiles(plan.touchedInputFiles);
    m_outcome.problem = removeReplaced(plan.outputs.first());
    if (!m_outcome.problem.isEmpty()) {
        end();
        emit failed(QString());
        return;
    }
    m_plan.outputs.first().before = namesakes(m_plan.outputs.first());
    const QString title = labelText(processRow(*plan.request.process).stepTitle);
    m_runner.run({{plan.command, title}}, {m_plan.outputs},
                 showProgress ? ProgressWindowWithStop : NoProgressWindow, icon);
}

void ProductRun::stop()
{
    if (isRunning())
        m_runner.processUserCancel();
}

void ProductRun::end()
{
    m_statisticsFiles.restore();
    m_lock.reset();
}

void ProductRun::buildOverviews()
{
    m_buildingOverviews = true;
    const QuvoOutputFile overviews{overviewFile(m_plan.request.output), QString(),
                                   QuvoOutputFileKind::PlainFile};
    const QString title = labelText({"MESS_CALC_VUES", "Calcul des vues d'ensemble du résultat."});
    m_runner.run({{m_plan.overviewCommand, title}}, {{overviews}},
                 m_showProgress ? ProgressWindowWithStop : NoProgressWindow, m_icon);
}

/// Ends the run with the product, which stays even where its overviews could not be built.
void ProductRun::endWithoutOverviews(const QString &warning)
{
    if (!warning.isEmpty())
        m_outcome.warnings += warning;
    end();
    emit finished();
}

void ProductRun::onDone()
{
    if (!isRunning())
        return;
    if (m_buildingOverviews) {
        endWithoutOverviews(QString());
        return;
    }
    m_outcome.toolText = m_runner.lastStandardError();
    m_outcome.exitCode = 0;
    const ProductCheck check = checkProduct(m_plan.expected, m_outcome.toolText);
    m_outcome.problem = check.problem;
    m_outcome.featureCount = check.featureCount;
    if (!check.problem.isEmpty())
        deleteOutputFiles({m_plan.outputs});
    if (check.problem.isEmpty() && !m_plan.overviewCommand.isEmpty()) {
        buildOverviews();
        return;
    }
    end();
    if (check.problem.isEmpty())
        emit finished();
    else
        emit failed(m_outcome.toolText);
}

void ProductRun::onAborted()
{
    if (!isRunning())
        return;
    if (m_buildingOverviews) {
        endWithoutOverviews(labelText({"MESS_VUES_STOP",
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
        endWithoutOverviews(labelText({"MESS_VUES_ERR",
                                       "Les vues d'ensemble n'ont pas pu être calculées ; le résultat "
                                       "est complet sans elles."})
                            + QLatin1Char('\n') + toolText.trimmed());
        return;
    }
    m_outcome.toolText = toolText;
    if (m_runner.lastExitCode() != 0) // 0: the tool could not be started
        m_outcome.exitCode = m_runner.lastExitCode();
    end();
    emit failed(toolText);
}
