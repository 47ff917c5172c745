#pragma once

#include "app/preview/Previews.h"
#include "app/process/outputoptions.h"
#include "app/process/tools.h"
#include "app/recipe/recipe.h"
#include "app/run/ProductRun.h"
#include "dataset/workfolder.h"
#include "runner/QuvoScriptRunner.h"

#include <QDialog>

#include <array>
#include <memory>
#include <optional>

class InputDem;
class intervisibilityOptionsWidget;
class optionsWidget;
class PreviewControl;
class OutputField;
class SettingsMenu;
class WindowShape;
struct ProcessResult;

namespace Ui
{
class quvoGdalUtilitiesDialog;
}

/// The main dialog. It connects, asks and shows; what can be settled without a window stands in functions of
/// its own (app/window/dialogrules, app/run/runplan, …).
class quvoGdalUtilities : public QDialog
{
    Q_OBJECT

public:
    /// tools: absolute paths of the external tools.
    quvoGdalUtilities(const ToolPaths &tools, QWidget *parent, Qt::WindowFlags flags);
    ~quvoGdalUtilities() override;

    /// Makes the path the input DEM, or warns that it is none; the current directory is kept no longer.
    void setInputDem(const QString &path);

    /// Whether the first dialog for choosing a DEM opens in the current directory.
    void setKeepStartingDir(bool keep);

    /// The settings as they are, for a file or a list.
    Recipe recipe() const;

    /// Shows settings that were looked at (app/recipe/openedrecipe); of an empty input or output the window
    /// keeps its own.
    void setRecipe(const Recipe &recipe);

    /// Whether a launch may begin.
    bool mayLaunch();

    /// What does in a shell what a launch does here; empty after a box that says why it would not begin.
    QString commandToCopy();

    /// Wide enough for every tab.
    QSize sizeHint() const override;

public slots:
    void slot_showInputFilePreview();
    void slot_updateOutputFilePreview();
    void slot_updateReducingProgress(int percent);
    void slot_reduceProcessFailed(const QString &toolText);
    void slot_showOutputFilePreview();
    void slot_updatePreviewComputingProgress(int percent);
    /// The previews stay off until the program is started anew.
    void slot_previewProcessFailed(const QString &toolText);
    /// Shows or hides the previews; the window grows or shrinks by them.
    void slot_dialogExtension();
    void slot_updateMarkerPosition();
    /// On the intervisibility tab the current observer goes to the place, which is counted from the picture's
    /// upper left corner; where there is none, a new one comes.
    void slot_onPreviewLabelClicked(int x, int y, QSize shown);

    /// Saves the geometry, however the dialog is closed. While a run is on, asks first and stops it.
    void done(int result) override;

    void slot_processFinished();
    void slot_processAborted();
    void slot_processFailed(const QString &toolText);
    void slot_showAboutAppDialog();
    void slot_activeLaunchButton();
    void slot_onWidgetOptionsCompleteChanged();
    void slot_selectInputDem();
    void slot_onCurrentTabChanged(int index);
    void slot_onInputDemChanged(const QString &path);
    void slot_onOutputFileChanged();
    void slot_selectOutputFile();
    void slot_showOutputFileAdvancedOptions();
    void slot_launchProcess();

protected:
    void changeEvent(QEvent *event) override;

private:
    struct PanelRow;

    template <class Panel> void addPanel(Process process, QWidget *tab);
    void addPanels();
    void connectControls();
    void connectPreviews();
    void applyTexts();

    std::optional<Process> currentProcess() const;
    optionsWidget *currentPanel() const;
    ProcessingRequest currentRequest() const;
    OutputOptions &currentOutputOptions();
    std::optional<RunPlan> currentPlan();
    bool launch();
    std::optional<ProcessingRequest> previewRequest(const QString &copy);
    void showResult(ProcessResult result);

    std::unique_ptr<Ui::quvoGdalUtilitiesDialog> m_form;
    WorkFolder m_workFolder;
    ToolPaths m_tools;
    QuvoScriptRunner m_scriptRunner;
    ProductRun m_run;
    Previews m_previews;
    std::unique_ptr<PreviewControl> m_previewControl;
    std::unique_ptr<InputDem> m_input;
    std::unique_ptr<OutputField> m_output;
    std::unique_ptr<SettingsMenu> m_settings;
    std::unique_ptr<WindowShape> m_shape;
    intervisibilityOptionsWidget *m_intervisibility = nullptr;
    OutputOptions m_rasterOptions; ///< output options of raster products
    OutputOptions m_vectorOptions; ///< output options of vector products
    QString m_launchedCommand;     ///< command for a shell that makes the product of the last run

    // The index of each process's tab, and its panel, in the order of the enumeration.
    std::array<int, processCount> m_tabIndexes{};
    std::array<optionsWidget *, processCount> m_panels{};
};
