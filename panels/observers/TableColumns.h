#pragma once

#include <QMenu>
#include <QObject>
#include <QVector>

#include <optional>

class ObserverPointsModel;
class QAction;
class QTableView;
class QToolButton;

/// The columns of the table of observers: which ones are shown, their widths, and sorting by a click on a
/// title.
///
/// The limits of the observers and the areas that they see are hidden at first. A menu shows and hides them,
/// and limits appear when points come that have values for them.
class TableColumns : public QObject
{
    Q_OBJECT

public:
    /// The view shows the model. Both outlive this object.
    TableColumns(QTableView *view, ObserverPointsModel &model);

    /// Lets the button open the menu of columns.
    void setMenuButton(QToolButton *button);

    /// Shows the texts in the current language.
    void retranslate();

    /// Adapts the widths to titles and fonts.
    void fit();

signals:
    /// The user, or new points, made the column visible.
    void shown(int column);

private:
    /// How the rows are sorted.
    struct Sorting
    {
        int column;
        Qt::SortOrder order;

        bool operator==(const Sorting &other) const = default;
    };

    void show(int column, bool on);
    void showUsed(int firstRow, int lastRow);
    void sortBy(int column);
    void markSorted(const std::optional<Sorting> &sorting);
    int leastWidth(int column) const;

    QTableView *m_view;
    ObserverPointsModel &m_model;
    std::optional<Sorting> m_sorting; ///< nothing once the points have changed
    QMenu m_menu;
    QVector<QAction *> m_actions; ///< of the columns that can be hidden; QAction::data() is the column
};
