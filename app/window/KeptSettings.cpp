#include "app/window/KeptSettings.h"

#include "app/recipe/lastsettings.h"
#include "app/recipe/openedrecipe.h"
#include "app/startup/settings.h"
#include "app/window/ProcessTabs.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"

#include <QAction>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace
{

QList<Process> allProcesses()
{
    QList<Process> processes;
    for (std::size_t at = 0; at < processCount; ++at)
        processes += static_cast<Process>(at);
    return processes;
}

} // namespace

KeptSettings::KeptSettings(ProcessTabs &tabs, Window window)
    : m_tabs(tabs)
    , m_window(std::move(window))
    , m_pReset(new QAction(this))
    , m_pResetAll(new QAction(this))
    , m_pTakeUp(new QAction(this))
{
    m_pReset->setObjectName(QStringLiteral("m_pActionReset"));
    m_pResetAll->setObjectName(QStringLiteral("m_pActionResetAll"));
    m_pTakeUp->setObjectName(QStringLiteral("m_pActionTakeUp"));
    m_pTakeUp->setCheckable(true);
    m_pTakeUp->setChecked(QFileInfo::exists(lastSettingsFile()));
    connect(m_pReset, &QAction::triggered, this, [this] {
        const auto process = m_tabs.currentProcess();
        if (process)
            reset({*process},
                  tr("Remettre les options de « %1 » à leurs valeurs par défaut ?", "MESS_RAZ_QUESTION")
                      .arg(m_tabs.title(*process)));
    });
    connect(m_pResetAll, &QAction::triggered, this, [this] {
        reset(allProcesses(),
              tr("Remettre les options de tous les onglets à leurs valeurs par défaut ?",
                 "MESS_RAZ_TOUT_QUESTION"));
    });
    connect(m_pTakeUp, &QAction::toggled, this, [this](bool on) {
        if (on)
            save();
        else
            QFile::remove(lastSettingsFile());
    });
    applyTexts();
}

void KeptSettings::applyTexts()
{
    m_pReset->setText(tr("Réinitialiser cet onglet", "MESS_RAZ_ONGLET"));
    m_pResetAll->setText(tr("Réinitialiser tous les onglets", "MESS_RAZ_TOUT"));
    m_pTakeUp->setText(tr("Reprendre ces réglages au prochain démarrage", "MESS_REPRENDRE"));
}

void KeptSettings::updateActions()
{
    const QList<Process> processes = allProcesses();
    const auto current = m_tabs.currentProcess();
    m_pReset->setEnabled(current && m_tabs.isChanged(*current));
    m_pResetAll->setEnabled(std::any_of(processes.begin(), processes.end(),
                                        [this](Process process) { return m_tabs.isChanged(process); }));
}

void KeptSettings::reset(const QList<Process> &processes, const QString &question)
{
    if (!Prompt::question(m_window.widget, question))
        return;
    for (const Process process : processes)
        m_tabs.reset(process);
}

void KeptSettings::takeUp(bool withInput)
{
    if (!m_pTakeUp->isChecked())
        return;
    QStringList warnings;
    const QList<Recipe> recipes = readLastSettings(lastSettingsFile());
    for (Recipe recipe : recipes) {
        if (!withInput) {
            recipe.input.clear();
            recipe.tiles.clear();
            recipe.band = 1;
            recipe.part = {};
        }
        const OpenedRecipe opened = openRecipe({recipe, {}}, {}, m_window.workFolder);
        warnings += opened.warnings;
        if (opened.problem.isEmpty())
            m_window.setRecipe(opened.recipe);
        else
            warnings += opened.problem;
    }
    if (!warnings.isEmpty())
        Prompt::warning(m_window.widget, warnings.join(QLatin1Char('\n')));
}

void KeptSettings::save()
{
    const auto current = m_tabs.currentProcess();
    if (!m_pTakeUp->isChecked() || !current)
        return;
    QList<Recipe> recipes;
    for (const Process process : allProcesses()) {
        if (process == *current)
            continue;
        Recipe recipe = m_window.recipe(process);
        recipe.input.clear(); // the last recipe holds the DEM
        recipe.tiles.clear();
        recipe.band = 1;
        recipe.part = {};
        recipes += recipe;
    }
    recipes += m_window.recipe(*current);
    if (!writeLastSettings(lastSettingsFile(), recipes))
        Prompt::warning(m_window.widget,
                        dico_label("MESS_ERR_ECR_FICH", lastSettingsFile().toLocal8Bit().constData()));
}
