#include "colortable/editor/TableHistory.h"

#include <QUndoCommand>

/// One change, as the tables before and after it.
class TableCommand : public QUndoCommand
{
public:
    TableCommand(TableHistory &history, const EditedTable &after, int selected, const QString &name, int series)
        : QUndoCommand(name)
        , m_history(history)
        , m_before(history.table())
        , m_after(after)
        , m_selectedBefore(history.selected())
        , m_selectedAfter(selected)
        , m_series(series)
    { }

    void undo() override { m_history.show(m_before, m_selectedBefore); }
    void redo() override { m_history.show(m_after, m_selectedAfter); }
    int id() const override { return m_series > 0 ? m_series : -1; }

    bool mergeWith(const QUndoCommand *other) override
    {
        const auto *next = static_cast<const TableCommand *>(other); // of the same id, so of this class
        m_after = next->m_after;
        m_selectedAfter = next->m_selectedAfter;
        setObsolete(m_after == m_before);
        return true;
    }

private:
    TableHistory &m_history;
    EditedTable m_before;
    EditedTable m_after;
    int m_selectedBefore;
    int m_selectedAfter;
    int m_series;
};

void TableHistory::open(const EditedTable &table)
{
    m_stack.clear();
    show(table, table.cursors.isEmpty() ? -1 : 0);
}

void TableHistory::change(const EditedTable &table, int selected, const QString &name, int series)
{
    if (table == m_table)
        select(selected);
    else
        m_stack.push(new TableCommand(*this, table, selected, name, series));
}

void TableHistory::change(const CursorChange &changed, const QString &name, int series)
{
    if (changed.at >= 0)
        change(changed.table, changed.at, name, series);
}

void TableHistory::select(int at)
{
    show(m_table, at);
}

void TableHistory::show(const EditedTable &table, int selected)
{
    const int last = static_cast<int>(table.cursors.size()) - 1;
    m_table = table;
    m_selected = qBound(qMin(0, last), selected, last);
    emit changed();
}
