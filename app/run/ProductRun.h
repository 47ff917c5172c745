#pragma once

#include "app/run/PartFolder.h"
#include "app/run/outputlock.h"
#include "app/run/runplan.h"
#include "app/run/statisticsfiles.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

class QuvoScriptRunner;

/// How a run ended.
struct RunOutcome
{
    QString problem; ///< why there is no new product, beyond what the tool wrote, in a sentence; or empty
    bool isDiskFull = false;     ///< the problem is that the product's disk is full
    QString toolText;            ///< what the tool wrote on its standard error
    std::optional<int> exitCode; ///< of the tool; empty when it was stopped or never started
    long long featureCount = 0;  ///< number of features of a vector product
    QStringList warnings;        ///< sentences about overviews that could not be built beside a whole product
};

/// Makes a product in a part folder: runs the tool, checks the product, builds its overviews and moves it to
/// its place. The old product stays until then, also when the run is stopped or fails. Files that the tool
/// writes besides the product have part folders of their own and are moved just before it. The window and the
/// batch program share this class. While no run is on, the script runner's signals belong to another user of
/// the runner and are ignored.
class ProductRun : public QObject
{
    Q_OBJECT

public:
    /// `runner` outlives this object.
    explicit ProductRun(QuvoScriptRunner &runner);

    /// Ends a run as abandon() does.
    ~ProductRun() override;

    /// Starts a plan that has no problem. The lock is held until the run has ended. `icon` is the path of the
    /// picture in the progress window. finished(), aborted() or failed() follows, possibly from inside this
    /// call.
    void start(const RunPlan &plan, std::unique_ptr<OutputLock> lock, bool showProgress, const QString &icon);

    /// Stops the run; aborted() follows, or finished() when only the overviews were missing. Does nothing while
    /// no run is on.
    void stop();

    /// Stops the run without a signal. A product that lacks only its overviews is moved to its place. Does
    /// nothing while no run is on.
    void abandon();

    bool isRunning() const { return m_lock != nullptr; }
    /// The plan as it was given to start(): its paths are those of the finished product.
    const RunPlan &plan() const { return m_plan; }
    /// The command lines of the last run's steps with the paths of the finished product. Intermediate files
    /// have no folder there, since theirs is removed with them.
    const QStringList &commands() const { return m_commands; }

    const RunOutcome &outcome() const { return m_outcome; }

signals:
    /// The product passed its check and is in its place.
    void finished();
    /// The run was stopped and what it had written deleted.
    void aborted();
    /// There is no new product: the tool failed, or its product did not pass the check or could not be moved to
    /// its place.
    void failed(const QString &toolText);

private:
    QString beginSideFiles();
    bool writeClassLegend() const;
    QString missingSideFile() const;
    QString withFinalPaths(QString text) const;
    void end();
    void fail(const QString &problem);
    void buildOverviews();
    QString place();
    void placeAndEnd();
    void placeWithoutOverviews(const QString &warning);
    void onDone();
    void onAborted();
    void onError(const QString &toolText);

    QuvoScriptRunner &m_runner;
    RunPlan m_plan;
    RunPlan m_partPlan; ///< the same run with its product in the part folder
    QStringList m_commands;
    RunOutcome m_outcome;
    StatisticsFiles m_statisticsFiles;
    std::unique_ptr<OutputLock> m_lock; ///< released after the part folder, which other runs would sweep
    std::unique_ptr<PartFolder> m_part;
    std::vector<std::unique_ptr<PartFolder>> m_sideParts; ///< one for each of RunPlan::sideOutputs
    bool m_showProgress = false;
    QString m_icon;
    bool m_buildingOverviews = false; ///< the product has passed its check
};
