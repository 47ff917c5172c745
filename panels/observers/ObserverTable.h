#pragma once

#include "panels/observers/ObserverPointsModel.h"
#include "panels/observers/TableColumns.h"

#include <QObject>

#include <optional>

class QAction;
class QKeyEvent;
class QTableView;
class QToolButton;

/// The work on the table of observers: its selection and keys, the removal of points, and undo and redo.
///
/// While the table has the focus, the space bar switches the selected points on and off, "delete" removes them,
/// "copy" copies them, "paste" emits pasteRequested(), and the keys of undo and redo use the history.
class ObserverTable : public QObject
{
    Q_OBJECT

public:
    /// The view and the model outlive this object.
    ObserverTable(QTableView *view, ObserverPointsModel &model);

    /// Lets the buttons undo and redo.
    void setHistoryButtons(QToolButton *undo, QToolButton *redo);

    /// Lets the keys of undo and redo use the history while the widget has the focus, too.
    void addHistoryKeys(QWidget *widget);

    /// Undo and redo, with their keys; owned by this object.
    QList<QAction *> historyActions() const { return {m_undo, m_redo}; }

    /// Counted from 0; -1 where no row is current.
    int currentRow() const;

    /// Makes the row the current one and the only selected one.
    void choose(int row);

    /// Adds the points and makes the last of them current.
    void addPoints(const QList<ObserverPoint> &points);

    /// Lets the button open the menu of columns.
    void setColumnsButton(QToolButton *button);

    /// Adds the points in the lines of the clipboard, as readPointLines() reads them. A message box names the
    /// lines that are none. `defaults` supplies what a line leaves out.
    void paste(const ObserverPoint &defaults);

    /// Copies the selected points, or else the current one, to the clipboard in the form that paste() reads.
    void copy();

    /// Removes the selected points. If no row is selected, removes the current point.
    void removeSelected();

    /// Removes all points after a question.
    void removeAll();

    /// Whether the column of the areas that the observers see is visible.
    bool showsSeenAreas() const;

    /// Shows the texts in the current language.
    void retranslate();

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// Says that a place has no ground for an observer whose height counts from it; of several observers, also
    /// how many these are, and that they were switched off.
    void warnOfGroundless(int count = 1);

signals:
    void pasteRequested();
    /// The column of the areas that the observers see became visible.
    void seenAreasWanted();

private:
    bool handleKey(const QKeyEvent &key);
    void fitRowHeight();
    void toggleClicked(const QModelIndex &index);
    void enable(const QVector<int> &rows, bool on);
    void choosePresentRow(const QVector<int> &rows);
    void showHistory();
    QVector<int> selectedRows() const;

    QTableView *m_view;
    ObserverPointsModel &m_model;
    QAction *m_undo;
    QAction *m_redo;
    QAction *m_copy;
    QAction *m_paste;
    std::optional<TableColumns> m_columns; ///< exists once the view has its model
};
