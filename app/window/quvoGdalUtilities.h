#pragma once

#include "app/preview/Previews.h"
#include "app/process/tools.h"
#include "app/recipe/recipe.h"
#include "dataset/workfolder.h"
#include "runner/QuvoScriptRunner.h"

#include <QDialog>

#include <memory>
#include <optional>

class DemLook;
class DemPart;
class DemSources;
class InputDem;
class KeptSettings;
class Launch;
class optionsWidget;
class PreviewControl;
class ProcessTabs;
class OutputField;
class SettingsMenu;
class WindowShape;

namespace Ui
{
class quvoGdalUtilitiesDialog;
}

/// The main dialog. It connects controls, shows results and asks questions; what can be decided without a
/// window is decided by functions elsewhere (app/window/dialogrules, app/run/runplan, …).
class quvoGdalUtilities : public QDialog
{
    Q_OBJECT

public:
    quvoGdalUtilities(const ToolPaths &tools, QWidget *parent, Qt::WindowFlags flags);
    ~quvoGdalUtilities() override;

    /// Opens the file as the input DEM, or warns that it is not a DEM. Also ends setKeepStartingDir().
    void setInputDem(const QString &path);

    /// Whether the first file dialog for a DEM opens in the current directory.
    void setKeepStartingDir(bool keep);

    /// The settings that the window shows.
    Recipe recipe() const;

    /// Shows settings that openRecipe() has checked. Where their input or output is empty, the window keeps its
    /// own.
    void setRecipe(const Recipe &recipe);

    /// Whether the launch button may be used now: no run is on and the settings suffice.
    bool mayLaunch();

    /// Launch::commandToCopy().
    QString commandToCopy() const;

    /// Shows the settings of the last time, if the user has chosen that. `withInput`: their DEM, too.
    void takeUpLastSettings(bool withInput);

    /// Stops a run and closes the window without a question, because the session or the process ends.
    void closeAtOnce();

    /// Kills the tool of a run and deletes its half product, when the process is about to end. No widget is
    /// touched.
    void abandonRun();

public slots:
    void slot_showInputFilePreview();
    void slot_updateOutputFilePreview();
    void slot_updateReducingProgress(int percent);
    void slot_reduceProcessFailed(const QString &toolText);
    void slot_showOutputFilePreview();
    void slot_updatePreviewComputingProgress(int percent);
    /// Removes the previews until the program is started again, and warns with the tool's text.
    void slot_previewProcessFailed(const QString &toolText);
    /// Shows or hides the previews; the window grows or shrinks by their width. In a window that is too narrow
    /// for both, changes options and previews.
    void slot_dialogExtension();
    void slot_updateMarkerPosition();
    /// On the intervisibility tab, moves the current observer to the place (MapView::clicked()), or adds
    /// one where there is no current observer.
    void slot_onPreviewLabelClicked(int x, int y, QSize shown);

    /// Saves the geometry, however the dialog is closed. While a run is on, asks whether to stop it; the dialog
    /// stays open where the user declines.
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
    /// Ctrl+Return launches. Return alone takes the value of a field, and Escape leaves the field; a QDialog
    /// would launch and close.
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void connectPreviews();
    void connectPanel(optionsWidget &panel);
    void addKeys();
    void makeSources();
    void openDropped(const QStringList &paths);
    void applyTexts();
    void updateLook();

    ProcessingRequest currentRequest() const;
    ProcessingRequest requestOf(std::optional<Process> process) const;
    void updateOutputFormat();
    /// Says to the current panel which product its options make.
    void updateProduct();
    bool isRunning() const;
    void stopRunSilently();
    std::optional<ProcessingRequest> previewRequest(const QString &copy);

    std::unique_ptr<Ui::quvoGdalUtilitiesDialog> m_form;
    WorkFolder m_workFolder;
    ToolPaths m_tools;
    QuvoScriptRunner m_scriptRunner;
    std::unique_ptr<Launch> m_launch;
    Previews m_previews;
    std::unique_ptr<PreviewControl> m_previewControl;
    std::unique_ptr<ProcessTabs> m_tabs;
    std::unique_ptr<InputDem> m_input;
    std::unique_ptr<DemLook> m_look;
    std::unique_ptr<DemPart> m_part;
    std::unique_ptr<OutputField> m_output;
    std::unique_ptr<SettingsMenu> m_settings;
    std::unique_ptr<KeptSettings> m_kept;
    std::unique_ptr<DemSources> m_sources;
    std::unique_ptr<WindowShape> m_shape;
};
