#pragma once

#include "panels/observers/observercolumns.h"
#include "panels/observers/observercommands.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QUndoStack>

#include <limits>
#include <optional>

/// The observers as a table, one row each, with the columns of ObserverColumn. The model reads the ground under
/// an observer from the DEM once, when the observer or the DEM changes.
///
/// Every change of points is a step of the history. A step that adds or changes points also switches off the
/// enabled points without ground, and pointsSwitchedOff() follows. Undoing and redoing switch off none.
class ObserverPointsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using enum ObserverColumn;

    explicit ObserverPointsModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// In the edit role, heights, distances and modes are texts and the enabled flag is a boolean. The text of
    /// a number reads back as the same number.
    QVariant data(const QModelIndex &index, int role) const override;
    /// Returns false, and changes nothing, where the point would have a pointProblem().
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    const ObserverPoint &point(int row) const { return m_rows.at(row).point; }
    /// The list is made once after each change: panel and previews query it several times for one edit.
    QList<ObserverPoint> points() const;
    void setPoint(int row, const ObserverPoint &point) { changePoints({{row, point}}); }
    /// Points that are as before are not part of the step; without any other there is no step.
    /// joins: the step becomes one with the step before, where that one joins, too, and changed the same point.
    void changePoints(const NumberedPoints &points, bool joins = false);
    void addPoints(const QList<ObserverPoint> &points);
    /// `rows`: in ascending order, each once.
    void removePoints(const QVector<int> &rows);
    /// Sorts the points themselves, in the order of sortedRows(). The tool gets them in the new order, and what
    /// is selected stays selected.
    void sort(int column, Qt::SortOrder order) override;
    /// Replaces all rows. Enabled points without ground stay enabled.
    void openSettings(const QList<ObserverPoint> &points);

    QUndoStack &history() { return m_history; }

    /// What the next call of the history's undo() or redo() does, as ObserverStep::name(); empty for nothing.
    QString undoName() const;
    QString redoName() const;

    /// Sets the DEM under the points. No signal follows, and it is no step of the history.
    void setGround(const DemGround &ground);

    /// Number of enabled points without ground: their heights are relative, and the DEM has no data under them.
    int groundlessCount() const;

    int enabledCount() const;

    /// The enabled points with their absolute altitudes. Relative heights count from the ground of `copy`, a
    /// reduced copy of the DEM, where it has data, and otherwise from the DEM's. Points without ground are left
    /// out. Of more than `most` such points, so many are returned, spread evenly over the table.
    QList<ToolObserver> observers(const DemGround &copy = {}, int most = std::numeric_limits<int>::max()) const;

    /// Shows the area, in km², that each of observers() sees. A list of another length shows none. The areas
    /// are shown until a point or the ground changes.
    void setSeenAreas(const QVector<double> &areas);

    /// Whether one of the points from `firstRow` to `lastRow` has a name, or a limit, for the column.
    bool isUsed(int column, int firstRow, int lastRow) const;

    // Sentences with the unit of a number and what it counts from, in the current language.

    QString heightMeaning() const;
    QString distanceMeaning() const;
    QString columnMeaning(int column) const; ///< empty for a column whose title says all

    /// Refreshes the headers after a change of the language.
    void retranslate();

signals:
    /// The history was used. `rows` are those of the step in ascending order; some of them may no longer exist.
    void restored(const QVector<int> &rows);
    /// `count` enabled points without ground were switched off.
    void pointsSwitchedOff(int count);

private:
    friend class ObserverStep;

    struct Row
    {
        ObserverPoint point;
        std::optional<double> ground; ///< elevation of the DEM under the point; nothing where it has no data
        std::optional<double> seenArea = {}; ///< in km²; nothing while it is not known

        bool isGroundless() const { return point.enabled && !absoluteAltitude(point, ground); }
    };

    Row rowOf(const ObserverPoint &point) const;
    void takeStep(const StepName &name, const NumberedPoints &changed, const QList<ObserverPoint> &added,
                  bool joins = false);
    int switchOffGroundless(QVector<Row> &rows) const;
    QString stepName(int step) const;

    // What steps are made of: they change the rows, and no history.
    void change(const NumberedPoints &points);
    void takeOut(const NumberedPoints &points);
    void putIn(const NumberedPoints &points);
    /// order[row]: the row where the point stood that goes to `row`; empty: all stay.
    void reorder(const QVector<int> &order);
    void clearSeenAreas();

    QVector<int> seeingRows() const;
    QString text(const Row &row, int column) const;

    QVector<Row> m_rows;
    mutable std::optional<QList<ObserverPoint>> m_points; ///< those of the rows; nothing after a change
    bool m_showsAreas = false;                            ///< some row has an area
    DemGround m_ground;
    QUndoStack m_history;
    QIcon m_on;
    QIcon m_off;
};
