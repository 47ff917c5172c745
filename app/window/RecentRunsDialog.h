#pragma once

#include "app/recipe/recentruns.h"

#include <QDialog>

class QPushButton;
class QTableWidget;

/// Shows the recent runs in a table. The user may choose one to restore its settings, or clear the list.
class RecentRunsDialog : public QDialog
{
    Q_OBJECT

public:
    /// `file`: path of the list (app/recipe/recentruns).
    RecentRunsDialog(const QString &file, QWidget *parent);

signals:
    /// The user chose a run, and the dialog has closed.
    void chosen(const Recipe &recipe);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTexts();
    void choose(int row);
    void updateButtons();
    void showResult();
    void clear();

    QString m_file;
    QList<RecentRun> m_runs;
    QTableWidget *m_pTable;
    QPushButton *m_pPBChoose;
    QPushButton *m_pPBShowResult;
    QPushButton *m_pPBClear;
    QPushButton *m_pPBClose;
};

/// Formats the start of a run in local time as "2024-05-06 07:08", which every country reads alike.
QString startText(const RecentRun &run);

/// Title of the process's tab; with the word itself where the tab holds several terrain indices. An unknown
/// word is returned as it is.
QString processTitle(const QString &word);
