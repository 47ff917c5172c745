#pragma once

#include "app/recipe/recentruns.h"

#include <QDialog>

class QPushButton;
class QTableWidget;

/// The runs made last in a table. One that is chosen brings its settings back.
class RecentRunsDialog : public QDialog
{
    Q_OBJECT

public:
    /// file: recentRunsFile().
    RecentRunsDialog(const QString &file, QWidget *parent);

signals:
    /// The dialog closes after it.
    void chosen(const Recipe &recipe);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTexts();
    void choose(int row);
    void clear();

    QString m_file;
    QList<RecentRun> m_runs;
    QTableWidget *m_pTable;
    QPushButton *m_pPBChoose;
    QPushButton *m_pPBClear;
    QPushButton *m_pPBClose;
};

/// When the run began, here: a date that no country reads as another.
QString startText(const RecentRun &run);

/// The process as its tab names it, with the index where one tab holds several.
QString processTitle(const QString &word);
