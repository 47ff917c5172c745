#pragma once

#include "app/window/RunHistory.h"
#include "dataset/workfolder.h"

#include <QObject>
#include <QPointer>

#include <functional>

class HelpDialog;
class QAction;
class QMenu;
class QToolButton;

/// The menu of the main dialog's tool button: settings files, the command to copy, recent runs, language and
/// help. Its shortcuts work in the whole dialog.
class SettingsMenu : public QObject
{
    Q_OBJECT

public:
    /// What the menu needs of the main dialog.
    struct Window
    {
        QWidget *widget;                               ///< parent of boxes and dialogs
        WorkFolder &workFolder;                        ///< where temporary mosaics are written
        std::function<Recipe()> recipe;                ///< returns the settings that the dialog shows
        std::function<void(const Recipe &)> setRecipe; ///< shows settings that openRecipe() has checked
        std::function<bool()> mayLaunch;               ///< returns whether a launch may begin
        std::function<QString()> commandToCopy;        ///< returns a command; empty after a warning
        std::function<QString()> helpPage;             ///< returns the page of the guide to open
    };

    /// `button`, `run` and the dialog outlive the menu.
    SettingsMenu(QToolButton &button, ProductRun &run, Window window);

    /// Lists the actions before the languages.
    void addActions(const QList<QAction *> &actions);

    /// A run with these settings begins; the list of recent runs will hold it.
    void beginRun(const Recipe &recipe) { m_history.begin(recipe); }

    /// Opens a settings file. A file that is not valid changes nothing; a warning says why.
    void openFile(const QString &file);

    /// Whether the file has the extension of a settings file.
    static bool isSettingsFile(const QString &file);

public slots:
    void slot_open();
    void slot_save();
    void slot_copyCommand();
    void slot_showRecentRuns();
    void slot_planTiles();
    void slot_showHelp();

protected:
    /// Translates the menu when the button's language changes.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeActions(QToolButton &button);
    void makeLanguages();
    void applyTexts();
    void listRecentRuns();
    void changeLanguage(const QString &language);
    void show(const RecipeReading &reading);

    QToolButton &m_button;
    Window m_window;
    RunHistory m_history;
    QMenu *m_pRecentMenu = nullptr;
    QMenu *m_pLanguageMenu = nullptr;
    QAction *m_pOpen = nullptr;
    QAction *m_pSave = nullptr;
    QAction *m_pCopy = nullptr;
    QAction *m_pTiles = nullptr;
    QAction *m_pHelp = nullptr;
    QPointer<HelpDialog> m_pHelpDialog;
    QString m_lastFile; ///< path of the settings file that was opened or saved last
};
