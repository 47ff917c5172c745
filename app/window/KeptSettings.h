#pragma once

#include "app/process/processes.h"
#include "app/recipe/recipe.h"
#include "dataset/workfolder.h"

#include <QList>
#include <QObject>

#include <functional>

class ProcessTabs;
class QAction;
class QWidget;

/// Returns the options of the main dialog to their defaults, and takes up the last DEM, tab and options at the
/// next start, if the user has chosen that.
class KeptSettings : public QObject
{
    Q_OBJECT

public:
    /// What this object needs of the main dialog.
    struct Window
    {
        QWidget *widget;                               ///< parent of boxes
        WorkFolder &workFolder;                        ///< where temporary mosaics are written
        std::function<Recipe(Process)> recipe;         ///< returns the settings of a process, without an output
        std::function<void(const Recipe &)> setRecipe; ///< shows settings that openRecipe() has checked
    };

    /// `tabs` and the dialog outlive this object.
    KeptSettings(ProcessTabs &tabs, Window window);

    /// The actions for a menu: reset one tab, reset all tabs, take up at the next start. This object owns them.
    QList<QAction *> actions() const { return {m_pReset, m_pResetAll, m_pTakeUp}; }

    /// Sets the texts in the language in use.
    void applyTexts();

    /// Lets an action be chosen only where it would change something. A menu calls it before it is shown.
    void updateActions();

    /// Shows the settings of the last save(). `withInput`: their DEM, too; where it cannot be read, a warning
    /// says so and the options come back without it.
    void takeUp(bool withInput);

    /// Stores the settings, if the user has chosen to take them up.
    void save();

private:
    void reset(const QList<Process> &processes, const QString &question);

    ProcessTabs &m_tabs;
    Window m_window;
    QAction *m_pReset;
    QAction *m_pResetAll;
    QAction *m_pTakeUp;
};
