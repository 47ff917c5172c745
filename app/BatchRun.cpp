#include "app/BatchRun.h"

#include "app/console.h"
#include "runner/outputfiles.h"

BatchRun::BatchRun()
    : m_runner(nullptr)
{
    connect(&m_runner, &QuvoScriptRunner::updateProgress, this,
            [this](int percent) { printOutput(m_progress.advance(percent)); });
    connect(&m_runner, &QuvoScriptRunner::done, this, &BatchRun::onDone);
    connect(&m_runner, &QuvoScriptRunner::aborted, this, &BatchRun::onStopped);
    connect(&m_runner, &QuvoScriptRunner::error, this, &BatchRun::onError);
    connect(&m_stopSignals, &StopSignals::stopRequested, &m_runner, &QuvoScriptRunner::processUserCancel);
}

void BatchRun::start(const RunPlan &plan, bool overwrite)
{
    m_plan = plan;
    m_lock = std::make_unique<OutputLock>(plan.request.output);
    if (!m_lock->problem().isEmpty()) {
        end(BatchExit::Failed, m_lock->problem());
        return;
    }
    const QString existing = existingOutput(plan);
    if (!existing.isEmpty() && !overwrite) {
        end(BatchExit::BadArguments,
            labelText({"MESS_LOT_EXISTE", "« %1 » existe déjà ; --overwrite le remplace."}).arg(existing));
        return;
    }
    printOutput(m_progress.advance(0));
    const QString title = labelText(processRow(*plan.request.process).stepTitle);
    m_runner.run({{plan.command, title}}, {plan.outputs}, NoProgressWindow);
}

void BatchRun::onDone()
{
    const QString toolText = m_runner.lastStandardError();
    const ProductCheck check = checkProduct(m_plan.expected, toolText);
    if (check.problem.isEmpty()) {
        printOutput(m_progress.finish());
        printError(toolText);
        end(BatchExit::Done, QString());
        return;
    }
    deleteOutputFiles({m_plan.outputs});
    printOutput(m_progress.abandon());
    printError(toolText);
    end(BatchExit::Failed, check.problem);
}

void BatchRun::onStopped()
{
    printOutput(m_progress.abandon());
    end(BatchExit::Failed, labelText({"MESS_TRAIT_ANNULE", "Le traitement a été annulé."}));
}

void BatchRun::onError(const QString &toolText)
{
    if (StopSignals::wasAsked()) { // Ctrl-C reached the tool, too, and it was faster
        onStopped();
        return;
    }
    printOutput(m_progress.abandon());
    printError(toolText);
    end(BatchExit::Failed,
        labelText({"MESS_ERR_CREAT_IMG", "Une erreur est survenue lors de la création de l'image de sortie."}));
}

void BatchRun::end(BatchExit exit, const QString &sentence)
{
    printError(sentence);
    m_lock.reset();
    emit finished(exit);
}
