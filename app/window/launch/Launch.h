#pragma once

#include "app/preview/ProductReading.h"
#include "app/process/tools.h"
#include "app/recipe/recipe.h"
#include "app/run/ProductRun.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class optionsWidget;
class QuvoScriptRunner;
class QWidget;
struct ProcessResult;

/// The launch of the main dialog: from the settings that the dialog shows to the result window.
class Launch : public QObject
{
    Q_OBJECT

public:
    /// What the launch needs of the main dialog.
    struct Window
    {
        QWidget *widget;                            ///< parent of boxes and dialogs
        std::function<bool()> mayLaunch;            ///< returns whether the settings suffice and no run is on
        std::function<ProcessingRequest()> request; ///< returns what the dialog shows, without the tool's input
        std::function<optionsWidget *()> panel;     ///< returns the current panel; null while no tab is current
    };

    /// `runner` and the dialog outlive this object.
    Launch(QuvoScriptRunner &runner, const ToolPaths &tools, Window window);
    ~Launch() override;

    ProductRun &run() { return m_run; }
    bool isRunning() const { return m_run.isRunning(); }

    /// The settings that the dialog shows. A panel is current.
    Recipe recipe() const;

    /// Like recipe(), where a process can run with the options of the panel. Nothing after a box that says why
    /// it cannot, or where no panel is current.
    std::optional<Recipe> recipeToRun() const;

    /// A command for a shell that makes the product of a launch. Empty after a box that says why a launch could
    /// not begin.
    QString commandToCopy() const;

    /// Checks the settings, asks what has to be asked and starts the run. Returns whether it began: began()
    /// comes first, and ended() follows when the run has ended, in whatever way.
    bool start();

    /// Stops a run without ended() and without a result window.
    void stopSilently();

    /// The run has emitted finished(), aborted() or failed(): shows its result; ended() follows.
    void showFinished();
    void showAborted();
    void showFailed();

signals:
    /// A run with these settings starts.
    void began(const Recipe &settings);

    /// A run has ended, and the result window is shown.
    void ended();

private:
    std::optional<RunPlan> currentPlan() const;
    void showResult(ProcessResult result);

    ToolPaths m_tools;
    Window m_window;
    ProductRun m_run;
    std::optional<ProductSource> m_source; ///< what the product of the last run is made of
    QString m_command;                     ///< command for a shell that makes the product of the last run
};
