#pragma once

#include "app/run/outputlock.h"
#include "app/run/runplan.h"
#include "app/run/statisticsfiles.h"

#include <QObject>

#include <memory>
#include <optional>

class QuvoScriptRunner;

/// How a run ended.
struct RunOutcome
{
    QString problem;             ///< what is wrong with a product that failed its check; empty otherwise
    QString toolText;            ///< what the tool wrote on its standard error
    std::optional<int> exitCode; ///< of the tool; none when it was stopped or never started
    long long featureCount = 0;  ///< of a vector product
    QStringList warnings;        ///< what is missing beside a product that is whole
};

/// A run that makes a product: one step of the script runner, and a look at what came out. Window and batch
/// program make theirs with it. While none is started the script runner's signals concern somebody else.
class ProductRun : public QObject
{
    Q_OBJECT

public:
    explicit ProductRun(QuvoScriptRunner &runner);

    /// Starts a plan without a fault, whose lock is held until the run has ended. One of the signals follows,
    /// possibly from inside this call.
    void start(const RunPlan &plan, std::unique_ptr<OutputLock> lock, bool window, const QString &icon);

    /// Stops the run, which aborted() follows; does nothing when none is on, so that a finished product stays.
    void stop();

    bool isRunning() const { return m_lock != nullptr; }
    const RunPlan &plan() const { return m_plan; }
    const RunOutcome &outcome() const { return m_outcome; }

signals:
    /// The product is there and was found whole.
    void finished();
    /// The run was stopped; nothing of the product is left.
    void aborted();
    /// The run failed, or its product was no good; nothing of it is left.
    void failed(const QString &toolText);

private:
    void end();
    void buildOverviews();
    void endWithoutOverviews(const QString &warning);
    void onDone();
    void onAborted();
    void onError(const QString &toolText);

    QuvoScriptRunner &m_runner;
    RunPlan m_plan;
    RunOutcome m_outcome;
    StatisticsFiles m_statisticsFiles;
    std::unique_ptr<OutputLock> m_lock;
    bool m_window = false;
    QString m_icon;
    bool m_buildingOverviews = false; ///< the product itself is done and whole
};
