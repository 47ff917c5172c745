#include "app/window/ProcessTabs.h"

#include "app/recipe/lightrecipes.h"
#include "app/startup/settings.h"
#include "app/window/dialogs/LightDialog.h"
#include "app/window/mnemonics.h"
#include "messages/FittingArea.h"
#include "panels/aspectOptionsWidget.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/contourOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/optiontips.h"
#include "panels/shadedOptionsWidget.h"
#include "panels/slopeOptionsWidget.h"
#include "panels/tri_tpi_roughnessOptionsWidget.h"
#include "ui_quvoGdalUtilitiesDialog.h"

#include <QEvent>
#include <QTimer>

#include <type_traits>

/// The tab and the panel of a process.
struct ProcessTabs::Row
{
    Process process;
    QWidget *Ui::quvoGdalUtilitiesDialog::*page;
    optionsWidget &(ProcessTabs::*makePanel)(Process process);
};

using Form = Ui::quvoGdalUtilitiesDialog;

constexpr ProcessTabs::Row ProcessTabs::rows[] = {
    {Process::ShadedRelief, &Form::shadedTab, &ProcessTabs::makePanel<shadedOptionsWidget>},
    {Process::Slope, &Form::slopeTab, &ProcessTabs::makePanel<slopeOptionsWidget>},
    {Process::Aspect, &Form::aspectTab, &ProcessTabs::makePanel<aspectOptionsWidget>},
    {Process::Intervisibility, &Form::intervisibilityTab,
     &ProcessTabs::makePanel<intervisibilityOptionsWidget>},
    {Process::ColorRelief, &Form::colorReliefTab, &ProcessTabs::makePanel<colorReliefOptionsWidget>},
    {Process::Contour, &Form::contourTab, &ProcessTabs::makePanel<contourOptionsWidget>},
    {Process::TriTpiRoughness, &Form::tri_tpi_roughnessTab,
     &ProcessTabs::makePanel<tri_tpi_roughnessOptionsWidget>},
};

ProcessTabs::ProcessTabs(const Ui::quvoGdalUtilitiesDialog &form, WorkFolder &workFolder)
    : m_tabs(*form.m_pTabWidget)
    , m_workFolder(workFolder)
    , m_lights(std::make_unique<LightRecipes>(ownLightFolder()))
{
    static_assert(hasRowOfEachProcess(rows), "Every process needs a panel, in the order of the enumeration.");
    for (const Row &row : rows) {
        QWidget *page = form.*row.page;
        tab(row.process).page = page;
        tab(row.process).index = m_tabs.indexOf(page);
    }
    m_tabs.installEventFilter(this);
}

ProcessTabs::~ProcessTabs() = default;

optionsWidget &ProcessTabs::panel(Process process)
{
    if (optionsWidget *panel = tab(process).panel)
        return *panel;
    const Row &row = rows[static_cast<std::size_t>(process)];
    return (this->*row.makePanel)(process);
}

template <class Panel> optionsWidget &ProcessTabs::makePanel(Process process)
{
    Panel *panel = nullptr;
    if constexpr (std::is_constructible_v<Panel, WorkFolder &>)
        panel = new Panel(m_workFolder);
    else
        panel = new Panel;
    Tab &tab = this->tab(process);
    tab.panel = panel;
    tab.defaults = panel->processOptions();
    auto area = new FittingArea(panel, tab.page);
    tab.page->layout()->addWidget(area);
    area->show(); // the layout alone would show it later, where its page is visible already
    if constexpr (std::is_same_v<Panel, shadedOptionsWidget>)
        panel->setLightShelf(m_lights.get());
    if constexpr (std::is_same_v<Panel, colorReliefOptionsWidget>) {
        panel->setOwnTableFolder(ownColorTableFolder());
        const auto &relief = static_cast<shadedOptionsWidget &>(this->panel(Process::ShadedRelief));
        const auto passLight = [panel, &relief] { panel->setPanelLight(relief.options()); };
        connect(&relief, &shadedOptionsWidget::completeChanged, panel, passLight);
        passLight();
        panel->setLightEditor([this](QWidget *parent, const ShadedOptions &light, const auto &changed) {
            return editLight(parent, light, m_lights.get(), changed);
        });
        panel->chooseTable(readLastColorTable());
        connect(panel, &Panel::tableChosen, panel, writeLastColorTable);
    }
    if (m_dem)
        panel->setDem(*m_dem);
    setOptionTips(*panel, tab.defaults);
    connect(panel, &Panel::completeChanged, this, &ProcessTabs::optionsChanged);
    if constexpr (requires { &Panel::extremesComputed; })
        connect(panel, &Panel::extremesComputed, this, &ProcessTabs::extremesComputed);
    emit panelMade(*panel);
    return *panel;
}

bool ProcessTabs::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_tabs && event->type() == QEvent::Paint) {
        m_tabs.removeEventFilter(this);
        QTimer::singleShot(0, this, &ProcessTabs::makeNextPanel);
    }
    return QObject::eventFilter(watched, event);
}

/// Makes one panel, and the next one after what else waits, so that the window answers in between.
void ProcessTabs::makeNextPanel()
{
    for (const Row &row : rows) {
        if (tab(row.process).panel)
            continue;
        panel(row.process);
        QTimer::singleShot(0, this, &ProcessTabs::makeNextPanel);
        return;
    }
}

std::optional<Process> ProcessTabs::currentProcess() const
{
    for (const Row &row : rows) {
        if (tab(row.process).index == m_tabs.currentIndex())
            return row.process;
    }
    return std::nullopt;
}

optionsWidget *ProcessTabs::currentPanel()
{
    const auto process = currentProcess();
    return process ? &panel(*process) : nullptr;
}

QString ProcessTabs::currentTitle() const
{
    return withoutMnemonic(m_tabs.tabText(m_tabs.currentIndex()));
}

QString ProcessTabs::title(Process process) const
{
    return withoutMnemonic(m_tabs.tabText(tab(process).index));
}

void ProcessTabs::applyTexts()
{
    for (const Tab &tab : m_processTabs) {
        if (tab.panel)
            setOptionTips(*tab.panel, tab.defaults);
    }
}

void ProcessTabs::show(Process process)
{
    m_tabs.setCurrentIndex(tab(process).index);
}

bool ProcessTabs::isChanged(Process process) const
{
    const Tab &tab = this->tab(process);
    return tab.panel && tab.panel->processOptions() != tab.defaults;
}

void ProcessTabs::reset(Process process)
{
    if (isChanged(process))
        tab(process).panel->setProcessOptions(tab(process).defaults);
}

void ProcessTabs::setDem(const DemInfo &dem)
{
    m_dem = dem;
    for (const Tab &tab : m_processTabs) {
        if (tab.panel)
            tab.panel->setDem(dem);
    }
}
