#include "panels/observers/observercommands.h"

#include "panels/observers/ObserverPointsModel.h"

#include <QLocale>

const StepName addingStep{{"MESS_ETAPE_AJOUT_1", "ajout d'un point"},
                          {"MESS_ETAPE_AJOUT", "ajout de %1 points"}};
const StepName removalStep{{"MESS_ETAPE_SUPPR_1", "suppression d'un point"},
                           {"MESS_ETAPE_SUPPR", "suppression de %1 points"}};
const StepName changeStep{{"MESS_ETAPE_MODIF_1", "modification d'un point"},
                          {"MESS_ETAPE_MODIF", "modification de %1 points"}};
const StepName sortingStep{{"MESS_ETAPE_TRI", "tri des points"}, {"MESS_ETAPE_TRI", "tri des points"}};
const StepName settingsStep{{"MESS_ETAPE_REGLAGES", "remplacement des points par ceux des réglages"},
                            {"MESS_ETAPE_REGLAGES", "remplacement des points par ceux des réglages"}};

namespace
{

/// The rows that the step put in, else those that it changed, else those that it took out.
QVector<int> rowsOf(const NumberedPoints &putIn, const NumberedPoints &changed, const NumberedPoints &takenOut)
{
    QVector<int> rows;
    for (const NumberedPoint &each : !putIn.isEmpty() ? putIn : !changed.isEmpty() ? changed : takenOut)
        rows += each.row;
    return rows;
}

QVector<int> inverse(const QVector<int> &order)
{
    QVector<int> places(order.size());
    for (int row = 0; row < order.size(); ++row)
        places[order.at(row)] = row;
    return places;
}

} // namespace

ObserverStep::ObserverStep(ObserverPointsModel &model, const StepName &name, int count, const TableEdit &edit,
                           bool joins)
    : m_model(model)
    , m_name(name)
    , m_count(count)
    , m_edit(edit)
    , m_joins(joins)
{ }

void ObserverStep::undo()
{
    m_model.reorder(inverse(m_edit.order));
    m_model.takeOut(m_edit.inserted);
    m_model.putIn(m_edit.removed);
    m_model.change(m_edit.before);
    emit m_model.restored(rowsOf(m_edit.removed, m_edit.before, m_edit.inserted));
}

void ObserverStep::redo()
{
    m_model.change(m_edit.after);
    m_model.takeOut(m_edit.removed);
    m_model.putIn(m_edit.inserted);
    m_model.reorder(m_edit.order);
    if (m_wasDone)
        emit m_model.restored(rowsOf(m_edit.inserted, m_edit.after, m_edit.removed));
    m_wasDone = true;
}

/// `next` has been done, and is of this class: no other one has the id.
bool ObserverStep::mergeWith(const QUndoCommand *next)
{
    const NumberedPoints &after = static_cast<const ObserverStep *>(next)->m_edit.after;
    if (m_edit.after.size() != 1 || after.size() != 1 || m_edit.after.first().row != after.first().row)
        return false;
    m_edit.after = after;
    setObsolete(m_edit.before.first().point == after.first().point);
    return true;
}

QString ObserverStep::name() const
{
    return m_count == 1 ? labelText(m_name.one)
                        : labelText(m_name.several).replace(QLatin1String("%1"), QLocale().toString(m_count));
}
