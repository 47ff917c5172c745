#pragma once

#include "app/recipe/recipe.h"
#include "app/tiles/tilecommands.h"
#include "runner/QuvoUtilityRunner.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

/// Saves the plan of a product in tiles in a folder, and shows the commands that make the tiles: on this
/// machine, with Snakemake, on Slurm, or one command a task. The batch program makes the plan in a child
/// process.
class TilesDialog : public QDialog
{
    Q_OBJECT

public:
    /// `programs`: the folder of the programs.
    TilesDialog(const Recipe &recipe, const QString &programs, QWidget *parent);
    ~TilesDialog() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void arrange();
    void applyTexts();
    void chooseFolder();
    void updateControls();
    void plan();
    void forgetPlan();
    bool writeFile(const QString &path, const QByteArray &text);
    void onPlanned();
    void onFailed(const QString &text);
    void showCommand();
    TilePlace place() const;
    QStringList dems() const;

    Recipe m_recipe;
    QString m_programs;
    QuvoUtilityRunner m_runner;
    bool m_isRunning = false;
    bool m_hasPlan = false;
    QString m_tasks; ///< the commands of the tasks
    QLabel *m_pIntroduction;
    QLabel *m_pFolderLabel;
    QLineEdit *m_pLEFolder;
    QPushButton *m_pPBFolder;
    QLabel *m_pSideLabel;
    QSpinBox *m_pSBSide;
    QPushButton *m_pPBPlan;
    QLabel *m_pNote;
    QLabel *m_pWayLabel;
    QComboBox *m_pCBWay;
    QPlainTextEdit *m_pCommand;
    QPushButton *m_pPBCopy;
    QPushButton *m_pPBClose;
};
