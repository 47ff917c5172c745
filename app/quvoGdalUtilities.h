#pragma once

#include "app/ProductRun.h"
#include "app/outputoptions.h"
#include "app/recipe.h"
#include "app/settings.h"
#include "app/tools.h"
#include "dataset/workfolder.h"
#include "runner/QuvoScriptRunner.h"

#include <QDialog>

#include <array>
#include <memory>
#include <optional>

class colorReliefOptionsWidget;
class InputDem;
class optionsWidget;
class OutputFile;
class SettingsMenu;
struct ProcessResult;

namespace Ui
{
class quvoGdalUtilitiesDialog;
}

/// The main dialog. It connects, asks and shows; what can be settled without a window stands in functions of
/// its own (app/dialogrules, app/runplan, …).
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

    /// Shows settings that were looked at (app/windowrecipe); of an empty input or output the window keeps its
    /// own.
    void setRecipe(const Recipe &recipe);

    /// What does in a shell what a launch does here; empty after a box that says why it would not begin.
    QString commandToCopy();

    /// Wide enough for every tab.
    QSize sizeHint() const override;

public slots:
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
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    static constexpr int processCount = 7;

    template <class Panel> void addPanel(Process process, Panel *panel, QWidget *tab);
    void connectControls();
    void applyTexts();
    void restoreGeometryFromSettings();

    std::optional<Process> currentProcess() const;
    optionsWidget *currentPanel() const;
    ProcessingRequest currentRequest() const;
    OutputOptions &currentOutputOptions();
    std::optional<RunPlan> currentPlan();
    void warnOfOutput(const QString &name, const QString &problem);
    void showResult(const ProcessResult &result);

    std::unique_ptr<Ui::quvoGdalUtilitiesDialog> m_form;
    WorkFolder m_workFolder;
    ToolPaths m_tools;
    QuvoScriptRunner m_scriptRunner;
    ProductRun m_run;
    std::unique_ptr<InputDem> m_input;
    std::unique_ptr<OutputFile> m_output;
    std::unique_ptr<SettingsMenu> m_settings;
    colorReliefOptionsWidget *m_colorRelief = nullptr;
    OutputOptions m_rasterOptions; ///< of the products of each kind
    OutputOptions m_vectorOptions;
    LastGeometry m_lastGeometry;
    QString m_lastChosenFolder; ///< of the DEM that was last chosen in a file dialog
    bool m_keepStartingDir = false;

    // By process, in the order of the enumeration: the index of its tab, and its panel.
    std::array<int, processCount> m_tabIndexes{};
    std::array<optionsWidget *, processCount> m_panels{};
};
