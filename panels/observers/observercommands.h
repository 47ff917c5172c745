#pragma once

#include "messages/label.h"
#include "panels/options/observerpoints.h"

#include <QUndoCommand>
#include <QVector>

class ObserverPointsModel;

/// Names a step in the history of the table, in lower case. In the text for several points, %1 stands for their
/// number.
struct StepName
{
    Label one;
    Label several;
};

extern const StepName addingStep;
extern const StepName removalStep;
extern const StepName changeStep;
extern const StepName sortingStep;
extern const StepName settingsStep; ///< opened settings replace all points

/// A point and the row, counted from 0, where it stands in the table.
struct NumberedPoint
{
    int row = 0;
    ObserverPoint point;
};

/// Points in the order of their rows, each row once.
using NumberedPoints = QVector<NumberedPoint>;

/// What a step does: first some rows get other points, then rows are removed, then rows are inserted, then the
/// rows are sorted.
struct TableEdit
{
    NumberedPoints before; ///< the changed rows with their points before the step
    NumberedPoints after;  ///< the same rows with their points after the step
    NumberedPoints removed;
    NumberedPoints inserted; ///< with the rows where they stand after the step
    QVector<int> order; ///< order[row]: the row where the point stood that goes to `row`; empty: not sorted
};

/// A step in the history of the table. It holds points and no elevations: the DEM may be another one when the
/// step is undone. The model outlives the step.
class ObserverStep : public QUndoCommand
{
public:
    /// `count` is the number of points for the name. joins: the step may become one with others of this kind,
    /// before and after it, that change the same point.
    ObserverStep(ObserverPointsModel &model, const StepName &name, int count, const TableEdit &edit,
                 bool joins = false);

    void undo() override;
    void redo() override;
    int id() const override { return m_joins ? 0 : -1; }
    bool mergeWith(const QUndoCommand *next) override;

    /// What the step does, in the current language, for example "suppression de 3 points".
    QString name() const;

private:
    ObserverPointsModel &m_model;
    StepName m_name;
    int m_count;
    TableEdit m_edit;
    bool m_joins;
    bool m_wasDone = false; ///< redo() does the step for the first time, too
};
