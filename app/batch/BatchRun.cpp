#include "app/batch/BatchRun.h"

#include "app/startup/console.h"

QString stoppedText()
{
    return labelText({"MESS_TRAIT_ANNULE", "Le traitement a été annulé."});
}

BatchRun::BatchRun(const StopSignals &stopSignals, bool oneOfSeveral)
    : m_scriptRunner(nullptr)
    , m_run(m_scriptRunner)
    , m_oneOfSeveral(oneOfSeveral)
{
    connect(&m_scriptRunner, &QuvoScriptRunner::updateProgress, this,
            [this](int percent) { printOutput(m_progress.advance(m_scriptRunner.listProgress(percent))); });
    connect(&m_run, &ProductRun::finished, this, &BatchRun::onFinished);
    connect(&m_run, &ProductRun::aborted, this, &BatchRun::onAborted);
    connect(&m_run, &ProductRun::failed, this, &BatchRun::onFailed);
    connect(&stopSignals, &StopSignals::stopRequested, &m_run, &ProductRun::stop);
}

void BatchRun::start(const RunPlan &plan, bool overwrite)
{
    if (StopSignals::stopWasRequested()) { // while the tool's input was prepared
        onAborted();
        return;
    }
    auto lock = std::make_unique<OutputLock>(writtenFiles(plan));
    if (!lock->problem().isEmpty()) {
        end(lock->isHeldByOther() ? BatchExit::TryAgain : BatchExit::Failed, lock->problem());
        return;
    }
    const QString existing = existingOutput(plan);
    if (!existing.isEmpty() && !overwrite) {
        end(BatchExit::Refused,
            labelText({"MESS_LOT_EXISTE", "« %1 » existe déjà ; --overwrite le remplace."}).arg(existing));
        return;
    }
    m_progress = {};
    printOutput(m_progress.advance(0));
    m_run.start(plan, std::move(lock), false, QString());
}

void BatchRun::onFinished()
{
    printOutput(m_progress.finish());
    for (const QuvoOutputFile &side : m_run.plan().sideOutputs)
        printOutput(QStringLiteral("  ") + side.path + QLatin1Char('\n'));
    printError(m_run.outcome().toolText);
    for (const QString &warning : m_run.outcome().warnings)
        printError(warning);
    end(BatchExit::Done, QString());
}

void BatchRun::onAborted()
{
    abandonProgress();
    end(stoppedExit(), stoppedText());
}

void BatchRun::onFailed()
{
    if (StopSignals::stopWasRequested()) { // Ctrl-C ended the tool before this program could stop it
        onAborted();
        return;
    }
    abandonProgress();
    printError(m_run.outcome().toolText);
    const QString failure =
        labelText({"MESS_ERR_CREAT_IMG", "Une erreur est survenue lors de la création de l'image de sortie."});
    end(exitOfFailure(m_run.outcome(), m_run.plan()),
        m_run.outcome().problem.isEmpty() ? failure : m_run.outcome().problem);
}

void BatchRun::abandonProgress()
{
    if (!m_oneOfSeveral)
        printOutput(m_progress.abandon());
}

void BatchRun::end(BatchExit exit, const QString &problem)
{
    printError(problem);
    emit finished(exit);
}
