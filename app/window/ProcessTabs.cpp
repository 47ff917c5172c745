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

#include <type_traits>

/// The tab and the panel of a process.
struct ProcessTabs::Row
{
    Process process;
    QWidget *Ui::quvoGdalUtilitiesDialog::*tab;
    void (ProcessTabs::*addPanel)(Process process, QWidget &tab, WorkFolder &workFolder);
};

ProcessTabs::ProcessTabs(const Ui::quvoGdalUtilitiesDialog &form, WorkFolder &workFolder)
    : m_tabs(*form.m_pTabWidget)
    , m_lights(std::make_unique<LightRecipes>(ownLightFolder()))
{
    using Form = Ui::quvoGdalUtilitiesDialog;
    using Tabs = ProcessTabs;
    static constexpr Row rows[] = {
        {Process::ShadedRelief, &Form::shadedTab, &Tabs::addPanel<shadedOptionsWidget>},
        {Process::Slope, &Form::slopeTab, &Tabs::addPanel<slopeOptionsWidget>},
        {Process::Aspect, &Form::aspectTab, &Tabs::addPanel<aspectOptionsWidget>},
        {Process::Intervisibility, &Form::intervisibilityTab, &Tabs::addPanel<intervisibilityOptionsWidget>},
        {Process::ColorRelief, &Form::colorReliefTab, &Tabs::addPanel<colorReliefOptionsWidget>},
        {Process::Contour, &Form::contourTab, &Tabs::addPanel<contourOptionsWidget>},
        {Process::TriTpiRoughness, &Form::tri_tpi_roughnessTab,
         &Tabs::addPanel<tri_tpi_roughnessOptionsWidget>},
    };
    static_assert(hasRowOfEachProcess(rows), "Every process needs a panel, in the order of the enumeration.");
    for (const Row &row : rows)
        (this->*row.addPanel)(row.process, *(form.*row.tab), workFolder);
    applyTexts();
}

ProcessTabs::~ProcessTabs() = default;

template <class Panel> void ProcessTabs::addPanel(Process process, QWidget &tab, WorkFolder &workFolder)
{
    Panel *panel = nullptr;
    if constexpr (std::is_constructible_v<Panel, WorkFolder &>)
        panel = new Panel(workFolder);
    else
        panel = new Panel;
    const auto at = static_cast<std::size_t>(process);
    m_indexes[at] = m_tabs.indexOf(&tab);
    m_panels[at] = panel;
    m_defaults[at] = panel->processOptions();
    tab.layout()->addWidget(new FittingArea(panel, &tab));
    connect(panel, &Panel::completeChanged, this, &ProcessTabs::optionsChanged);
    if constexpr (requires { &Panel::extremesComputed; })
        connect(panel, &Panel::extremesComputed, this, &ProcessTabs::extremesComputed);
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
    if constexpr (std::is_same_v<Panel, intervisibilityOptionsWidget>)
        m_intervisibility = panel;
}

std::optional<Process> ProcessTabs::currentProcess() const
{
    for (std::size_t at = 0; at < m_indexes.size(); ++at) {
        if (m_indexes[at] == m_tabs.currentIndex())
            return static_cast<Process>(at);
    }
    return std::nullopt;
}

optionsWidget *ProcessTabs::currentPanel() const
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
    return withoutMnemonic(m_tabs.tabText(m_indexes[static_cast<std::size_t>(process)]));
}

void ProcessTabs::applyTexts()
{
    for (std::size_t at = 0; at < processCount; ++at)
        setOptionTips(*m_panels[at], m_defaults[at]);
}

void ProcessTabs::show(Process process)
{
    m_tabs.setCurrentIndex(m_indexes[static_cast<std::size_t>(process)]);
}

void ProcessTabs::setDem(const DemInfo &dem)
{
    for (optionsWidget *panel : m_panels)
        panel->setDem(dem);
}
