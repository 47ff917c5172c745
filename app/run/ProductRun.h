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
    QString problem;  ///< what is wrong with the product, or why the old one stays, in a sentence; or empty
    QString toolText; ///< what the tool wrote on its standard error
    std::optional<int> exitCode; ///< of the tool; empty when it was stopped or never started
    long long featureCount = 0;  ///< number of features of a vector product
    QStringList warnings;        ///< sentences about overviews that could not be built beside a whole product
};

/// Makes a product: runs the tool, checks the product and builds its overviews. The window and the batch
/// program share it. While no run is on, the script runner's signals belong to another user of the runner and
/// are ignored.
class ProductRun : public QObject
{
    Q_OBJECT

public:
    /// `runner` outlives this object.
    explicit ProductRun(QuvoScriptRunner &runner);

    /// Starts a plan that has no problem. The lock is held until the run has ended. `icon` is the path of the
    /// picture in the progress window. finished(), aborted() or failed() follows, possibly from inside this
    /// call.
    void start(const RunPlan &plan, std::unique_ptr<OutputLock> lock, bool showProgress, const QString &icon);

    /// Stops the run; aborted() follows, or finished() when only the overviews were missing. Does nothing while
    /// no run is on.
    void stop();

    bool isRunning() const { return m_lock != nullptr; }
    const RunPlan &plan() const { return m_plan; }
    const RunOutcome &outcome() const { return m_outcome; }

signals:
    /// The product passed its check.
    void finished();
    /// The run was stopped and the product deleted.
    void aborted();
    /// There is no new product: the old one could not be removed, the tool failed, or its product did not pass
    /// the check and was deleted.
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
    bool m_showProgress = false;
    QString m_icon;
    bool m_buildingOverviews = false; ///< the product has passed its check
};
