#include "app/batch/BatchSeries.h"

#include "app/startup/console.h"
#include "messages/label.h"

#include <QCoreApplication>
#include <QTimer>

BatchSeries::BatchSeries(const StopSignals &stopSignals, const QVector<BatchArguments> &runs)
    : m_runs(runs)
    , m_run(stopSignals, true)
{
    connect(&m_run, &BatchRun::finished, this, &BatchSeries::onRunFinished);
}

void BatchSeries::next()
{
    ++m_current;
    const bool stopped = StopSignals::stopWasRequested();
    if (m_current == m_runs.size() || stopped) {
        emit finished(stopped ? stoppedExit() : m_exit);
        return;
    }
    const BatchArguments &arguments = m_runs.at(m_current);
    printOutput(withColon(*arguments.input) + QLatin1Char(' '));
    const BatchRequest batch = assembleBatch(arguments, m_workFolder);
    if (StopSignals::stopWasRequested()) { // while the tool's input was prepared
        onRunFinished(BatchExit::Failed);
        return;
    }
    RunPlan plan;
    plan.problem = batch.problem;
    if (plan.problem.isEmpty())
        plan = planRun(batch.request, findTools(QCoreApplication::applicationDirPath()), batch.otherInputs);
    if (!plan.problem.isEmpty()) {
        printError(plan.problem);
        onRunFinished(BatchExit::BadArguments);
        return;
    }
    printError(plan.treatmentNote);
    for (const QString &warning : batch.warnings + plan.warnings)
        printError(warning);
    m_output = plan.request.output;
    const bool isOwnProduct = m_products.contains(m_output); // "a.tif" and "a.asc" have the same product
    m_run.start(plan, arguments.overwrite && !isOwnProduct);
}

void BatchSeries::onRunFinished(BatchExit exit)
{
    if (exit == BatchExit::Done)
        m_products += m_output;
    if (exit != BatchExit::Done) {
        m_exit = BatchExit::Failed;
        printOutput(QStringLiteral(" %1\n").arg(labelText({"MESS_LOT_ECHEC", "échec"})));
    }
    // From the event loop, which delivers stop signals: a run may end inside its own start.
    QTimer::singleShot(0, this, &BatchSeries::next);
}
