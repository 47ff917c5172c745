#pragma once

#include "app/process/processes.h"
#include "dataset/deminfo.h"
#include "dataset/extremes.h"
#include "panels/options/processoptions.h"

#include <QObject>

#include <array>
#include <memory>
#include <optional>

class intervisibilityOptionsWidget;
class optionsWidget;
class QTabWidget;
class QWidget;
class LightShelf;
class WorkFolder;

namespace Ui
{
class quvoGdalUtilitiesDialog;
}

/// The tabs of the main dialog: each holds the option panel of one process.
class ProcessTabs : public QObject
{
    Q_OBJECT

public:
    /// Makes a panel for each process and puts it into its tab of the form. The panels write the files that
    /// their tools read to the work folder. `form` and `workFolder` outlive this object.
    ProcessTabs(const Ui::quvoGdalUtilitiesDialog &form, WorkFolder &workFolder);
    ~ProcessTabs() override;

    /// Process and panel of the current tab; empty and null while no tab of a process is current.
    std::optional<Process> currentProcess() const;
    optionsWidget *currentPanel() const;
    QString currentTitle() const;

    /// Sets the texts that the panels lack, in the language in use.
    void applyTexts();

    /// Makes the tab of a process the current one.
    void show(Process process);

    /// The title of a process's tab.
    QString title(Process process) const;

    /// The options that the panel of a process showed when it was new.
    const ProcessOptions &defaults(Process process) const
    {
        return m_defaults[static_cast<std::size_t>(process)];
    }

    optionsWidget &panel(Process process) const { return *m_panels[static_cast<std::size_t>(process)]; }
    intervisibilityOptionsWidget &intervisibilityPanel() const { return *m_intervisibility; }

public slots:
    /// Passes the DEM to each panel: it or its band changed, or its extreme values became known.
    void setDem(const DemInfo &dem);

signals:
    /// The options of a panel changed.
    void optionsChanged();

    /// A panel has read the extreme values of the DEM's band from all cells.
    void extremesComputed(const Extremes &extremes);

private:
    struct Row;

    template <class Panel> void addPanel(Process process, QWidget &tab, WorkFolder &workFolder);

    QTabWidget &m_tabs;
    std::array<int, processCount> m_indexes{};            ///< index of each process's tab
    std::array<optionsWidget *, processCount> m_panels{}; ///< panel of each process; its tab owns it
    std::array<ProcessOptions, processCount> m_defaults;
    intervisibilityOptionsWidget *m_intervisibility = nullptr;
    std::unique_ptr<LightShelf> m_lights; ///< the user's own
};
