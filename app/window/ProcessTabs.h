#pragma once

#include "app/process/processes.h"
#include "dataset/deminfo.h"
#include "dataset/extremes.h"
#include "panels/options/processoptions.h"

#include <QObject>

#include <array>
#include <memory>
#include <optional>

class optionsWidget;
class QTabWidget;
class QWidget;
class LightShelf;
class WorkFolder;

namespace Ui
{
class quvoGdalUtilitiesDialog;
}

/// The tabs of the main dialog: each holds the option panel of one process. A panel is made when it is first
/// used; those that nothing has used are made, one after another, once the window has been painted, so that it
/// appears without waiting for them.
class ProcessTabs : public QObject
{
    Q_OBJECT

public:
    /// The panels write the files that their tools read to the work folder. `form` and `workFolder` outlive
    /// this object.
    ProcessTabs(const Ui::quvoGdalUtilitiesDialog &form, WorkFolder &workFolder);
    ~ProcessTabs() override;

    /// Process and panel of the current tab; empty and null while no tab of a process is current.
    std::optional<Process> currentProcess() const;
    optionsWidget *currentPanel();
    QString currentTitle() const;

    /// Sets the texts that the panels lack, in the language in use.
    void applyTexts();

    /// Makes the tab of a process the current one.
    void show(Process process);

    /// The title of a process's tab.
    QString title(Process process) const;

    /// Whether the options of a process differ from those that its panel showed when it was new.
    bool isChanged(Process process) const;

    /// Shows the options that the panel of a process showed when it was new.
    void reset(Process process);

    /// The panel of a process; made now where it was not used before.
    optionsWidget &panel(Process process);

public slots:
    /// Passes the DEM to each panel: it or its band changed, or its extreme values became known.
    void setDem(const DemInfo &dem);

signals:
    /// A panel was made and stands in its tab.
    void panelMade(optionsWidget &panel);

    /// The options of a panel changed.
    void optionsChanged();

    /// A panel has read the extreme values of the DEM's band from all cells.
    void extremesComputed(const Extremes &extremes);

protected:
    /// Waits for the first painting of the tabs.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Tab
    {
        QWidget *page = nullptr;
        int index = -1;
        optionsWidget *panel = nullptr; ///< null until it is used; the page owns it
        ProcessOptions defaults;        ///< those of the new panel
    };
    struct Row;
    static const Row rows[processCount];

    Tab &tab(Process process) { return m_processTabs[static_cast<std::size_t>(process)]; }
    const Tab &tab(Process process) const { return m_processTabs[static_cast<std::size_t>(process)]; }
    template <class Panel> optionsWidget &makePanel(Process process);
    void makeNextPanel();

    QTabWidget &m_tabs;
    WorkFolder &m_workFolder;
    std::array<Tab, processCount> m_processTabs;
    std::optional<DemInfo> m_dem;
    std::unique_ptr<LightShelf> m_lights; ///< the user's own
};
