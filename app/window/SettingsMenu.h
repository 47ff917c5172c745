#pragma once

#include "app/window/RunHistory.h"

#include <QObject>
#include <QPointer>

class HelpDialog;
class QAction;
class QMenu;
class QToolButton;
class quvoGdalUtilities;

/// The menu of the main dialog's tool button: settings files, the command to copy, the runs made last, language
/// and help. Its shortcuts hold in the whole dialog.
class SettingsMenu : public QObject
{
    Q_OBJECT

public:
    /// Button and window outlive the menu.
    SettingsMenu(QToolButton &button, quvoGdalUtilities &window, ProductRun &run);

    /// A run begins with these settings.
    void noteRun(const Recipe &recipe) { m_history.begin(recipe); }

    /// Opens a settings file; one that is no good is warned of, and nothing changes.
    void openFile(const QString &file);

    /// Whether that file is one of settings, by its name.
    static bool isSettingsFile(const QString &file);

public slots:
    void slot_open();
    void slot_save();
    void slot_copyCommand();
    void slot_showRecentRuns();
    void slot_showHelp();

protected:
    /// The button's texts follow the language, and the menu's with them.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeActions(QToolButton &button);
    void makeLanguages();
    void applyTexts();
    void listRecentRuns();
    void changeLanguage(const QString &language);
    void show(const RecipeReading &reading);

    QToolButton &m_button;
    quvoGdalUtilities &m_window;
    RunHistory m_history;
    QMenu *m_pRecentMenu = nullptr;
    QMenu *m_pLanguageMenu = nullptr;
    QAction *m_pOpen = nullptr;
    QAction *m_pSave = nullptr;
    QAction *m_pCopy = nullptr;
    QAction *m_pHelp = nullptr;
    QPointer<HelpDialog> m_pHelpDialog;
    QString m_lastFile; ///< of settings, that was opened or saved
};
