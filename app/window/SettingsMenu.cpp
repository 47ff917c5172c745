#include "app/window/SettingsMenu.h"

#include "app/recipe/openedrecipe.h"
#include "app/run/copiedcommand.h"
#include "app/startup/environment.h"
#include "app/startup/settings.h"
#include "app/window/RecentRunsDialog.h"
#include "app/window/TilesDialog.h"
#include "app/window/dialogs/HelpDialog.h"
#include "dataset/QuvoFilerDialog.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/languages.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QMenu>
#include <QSaveFile>
#include <QToolButton>

#include <utility>

namespace
{

const QString extension = QStringLiteral(".json");

/// The text with "&" escaped, which would mark a shortcut in a menu.
QString inMenu(const QString &text)
{
    return QString(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString fileFilter()
{
    return QStringLiteral("%1 (*.json)").arg(labelText({"MESS_REGL_FICHIER", "Fichier de réglages"}));
}

} // namespace

SettingsMenu::SettingsMenu(QToolButton &button, ProductRun &run, Window window)
    : m_button(button)
    , m_window(std::move(window))
    , m_history(run)
{
    makeActions(button);
    makeLanguages();
    applyTexts();
    button.installEventFilter(this);
}

void SettingsMenu::makeActions(QToolButton &button)
{
    auto menu = new QMenu(&button);
    const auto add = [&](const char *name, const QKeySequence &keys, void (SettingsMenu::*slot)()) {
        QAction *action = menu->addAction(QString());
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        action->setShortcutVisibleInContextMenu(true);
        connect(action, &QAction::triggered, this, slot);
        m_window.widget->addAction(action); // the shortcut also works while the menu is closed
        return action;
    };
    m_pOpen = add("m_pActionOpen", QKeySequence(QStringLiteral("Ctrl+Shift+O")), &SettingsMenu::slot_open);
    m_pSave = add("m_pActionSave", QKeySequence::Save, &SettingsMenu::slot_save);
    m_pCopy = add("m_pActionCopy", {}, &SettingsMenu::slot_copyCommand);
    m_pTiles = add("m_pActionTiles", {}, &SettingsMenu::slot_planTiles);
    m_pRecentMenu = menu->addMenu(QString());
    m_pRecentMenu->setToolTipsVisible(true);
    menu->addSeparator();
    m_pLanguageMenu = menu->addMenu(QString());
    m_pLanguageMenu->setObjectName(QStringLiteral("m_pLanguageMenu"));
    m_pHelp = add("m_pActionHelp", QKeySequence::HelpContents, &SettingsMenu::slot_showHelp);
    connect(menu, &QMenu::aboutToShow, this, [this] {
        m_pCopy->setEnabled(m_window.mayLaunch());
        m_pTiles->setEnabled(m_window.mayLaunch());
    });
    connect(m_pRecentMenu, &QMenu::aboutToShow, this, &SettingsMenu::listRecentRuns);
    button.setMenu(menu);
    button.setPopupMode(QToolButton::InstantPopup);
}

void SettingsMenu::addActions(const QList<QAction *> &actions)
{
    QMenu *menu = m_button.menu();
    QAction *languages = m_pLanguageMenu->menuAction();
    menu->insertActions(languages, actions);
    menu->insertSeparator(languages);
}

/// Adds an entry for each language, which bears its own name whatever the language in use.
void SettingsMenu::makeLanguages()
{
    auto group = new QActionGroup(m_pLanguageMenu);
    const QuvoLanguageManager *languages = QuvoLanguageManager::getInstance();
    const QString inUse = languageNamed(languages->language()).name;
    for (const Language &language : availableLanguages(languages->messagesPath())) {
        QAction *action = m_pLanguageMenu->addAction(language.ownName);
        action->setCheckable(true);
        action->setChecked(language.name == inUse);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, name = language.name] { changeLanguage(name); });
    }
}

void SettingsMenu::applyTexts()
{
    m_pOpen->setText(tr("Ouvrir des réglages…", "MESS_REGL_OUVRIR"));
    m_pSave->setText(tr("Enregistrer les réglages…", "MESS_REGL_ENREG"));
    m_pCopy->setText(tr("Copier la commande", "MESS_REGL_COPIER"));
    m_pTiles->setText(tr("Traiter en tuiles…", "MESS_PLANT_MENU"));
    m_pRecentMenu->setTitle(tr("Derniers traitements", "MESS_HIST_TITRE"));
    m_pLanguageMenu->setTitle(tr("Langue", "MESS_REGL_LANGUE"));
    m_pHelp->setText(tr("Aide", "MESS_AIDE"));
}

bool SettingsMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    return QObject::eventFilter(watched, event);
}

bool SettingsMenu::isSettingsFile(const QString &file)
{
    return file.endsWith(extension, Qt::CaseInsensitive);
}

void SettingsMenu::openFile(const QString &file)
{
    const RecipeReading reading = readRecipeFile(file);
    if (reading.problem.isEmpty())
        m_lastFile = file;
    show(reading);
}

void SettingsMenu::show(const RecipeReading &reading)
{
    const OpenedRecipe opened = openRecipe(reading, m_window.recipe().input, m_window.workFolder);
    if (!opened.problem.isEmpty()) {
        Prompt::warning(m_window.widget,
                        tr("Les réglages ne peuvent pas être repris.", "MESS_REGL_INVALIDE")
                            + QStringLiteral("\n\n") + opened.problem);
        return;
    }
    m_window.setRecipe(opened.recipe);
    if (!opened.warnings.isEmpty())
        Prompt::warning(m_window.widget, opened.warnings.join(QLatin1Char('\n')));
}

void SettingsMenu::slot_open()
{
    const QString start =
        m_lastFile.isEmpty() ? QFileInfo(namingInput(m_window.recipe())).absolutePath() : m_lastFile;
    const QString file =
        QuvoFilerDialog::getSelection(m_window.widget, QuvoFilerDialog::OpenFile,
                                      tr("Ouvrir des réglages", "MESS_REGL_OUVRIR_T"), start, fileFilter());
    if (!file.isEmpty())
        openFile(file);
}

void SettingsMenu::slot_save()
{
    const Recipe recipe = m_window.recipe();
    const QByteArray text = writeRecipe(recipe);
    QString problem = readRecipe(text, QString()).problem; // a field may hold a value that no recipe accepts
    if (problem.isEmpty())
        problem = valuesProblem(recipe.options);
    if (!problem.isEmpty()) {
        Prompt::warning(m_window.widget, problem);
        return;
    }
    const QFileInfo output(recipe.output.isEmpty() ? recipe.process : recipe.output);
    const QString start = m_lastFile.isEmpty()
        ? output.absolutePath() + QLatin1Char('/') + output.completeBaseName() + extension
        : m_lastFile;
    QString name =
        QuvoFilerDialog::getSelection(m_window.widget, QuvoFilerDialog::SaveFile,
                                      tr("Enregistrer les réglages", "MESS_REGL_ENREG_T"), start, fileFilter());
    if (name.isEmpty())
        return;
    if (!isSettingsFile(name))
        name += extension;
    if (QFileInfo::exists(name)
        && !Prompt::question(m_window.widget,
                             dico_label("MESS_FICHIER_EXISTANT", name.toLocal8Bit().constData())))
        return;
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        Prompt::critical(m_window.widget,
                         dico_label("MESS_ERR_ECR_FICH", name.toLocal8Bit().constData())
                             + QStringLiteral("\n\n") + file.errorString());
        return;
    }
    m_lastFile = name;
    Prompt::notice(&m_button,
                   tr("Les réglages sont enregistrés dans « %1 ».", "MESS_REGL_ENREGISTRES")
                       .arg(QFileInfo(name).fileName()));
}

void SettingsMenu::slot_copyCommand()
{
    const QString command = m_window.commandToCopy();
    if (command.isEmpty())
        return;
    QApplication::clipboard()->setText(command);
    Prompt::notice(&m_button, commandCopiedText());
}

void SettingsMenu::listRecentRuns()
{
    constexpr int mostListed = 10;
    m_pRecentMenu->clear();
    const QList<RecentRun> runs = readRecentRuns(recentRunsFile(), mostListed);
    for (const RecentRun &run : runs) {
        const QString text = QStringLiteral("%1 · %2 · %3 · %4 (%5)")
                                 .arg(startText(run), processTitle(run.recipe.process),
                                      namingInput(run.recipe).section(QLatin1Char('/'), -1),
                                      runEndText(run.end), durationText(run.seconds));
        QAction *action = m_pRecentMenu->addAction(inMenu(text));
        action->setToolTip(run.recipe.output);
        connect(action, &QAction::triggered, this, [this, recipe = run.recipe] { show({recipe, {}}); });
    }
    m_pRecentMenu->addSeparator();
    QAction *all = m_pRecentMenu->addAction(tr("Tous les derniers traitements…", "MESS_HIST_TOUS"), this,
                                            &SettingsMenu::slot_showRecentRuns);
    all->setEnabled(!runs.isEmpty());
}

void SettingsMenu::slot_showRecentRuns()
{
    auto dialog = new RecentRunsDialog(recentRunsFile(), m_window.widget);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &RecentRunsDialog::chosen, this, [this](const Recipe &recipe) { show({recipe, {}}); });
    dialog->open();
}

void SettingsMenu::slot_planTiles()
{
    if (!m_window.mayLaunch())
        return;
    const Recipe recipe = m_window.recipe();
    const QString problem = valuesProblem(recipe.options);
    if (!problem.isEmpty()) {
        Prompt::warning(m_window.widget, problem);
        return;
    }
    auto dialog = new TilesDialog(recipe, QApplication::applicationDirPath(), m_window.widget);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void SettingsMenu::slot_showHelp()
{
    if (!m_pHelpDialog) {
        m_pHelpDialog = new HelpDialog(guideFolder(), m_window.widget);
        m_pHelpDialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_pHelpDialog->showPage(m_window.helpPage());
    m_pHelpDialog->show();
    m_pHelpDialog->raise();
    m_pHelpDialog->activateWindow();
}

void SettingsMenu::changeLanguage(const QString &language)
{
    QuvoLanguageManager *languages = QuvoLanguageManager::getInstance();
    const QString before = languages->language();
    writeChosenLanguage(language);
    languages->changeLanguage(language);
    exportLanguage(before, language);
    QApplication::setLayoutDirection(languages->currentLanguageNeedsReversedLayout() ? Qt::RightToLeft
                                                                                     : Qt::LeftToRight);
    // Existing windows keep their locale, in which they format numbers.
    for (QWidget *window : QApplication::topLevelWidgets())
        window->setLocale(QLocale());
}
