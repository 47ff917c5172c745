#pragma once

#include "colortable/editor/editedtable.h"

#include <QObject>
#include <QUndoStack>

/// The table under edit, the selected cursor, and everything that can be undone.
class TableHistory : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    const EditedTable &table() const { return m_table; }

    /// Index of the selected cursor; -1 when the table has none.
    int selected() const { return m_selected; }

    /// Starts with another table; there is nothing to undo then.
    void open(const EditedTable &table);

    /// Makes a change that can be undone. `name`: what it does, for the menu. changed() follows, unless the
    /// table stays as it is. Changes with the same `series` above 0, one after the other, are undone together:
    /// the steps of one movement of the mouse.
    void change(const EditedTable &table, int selected, const QString &name, int series = 0);
    void change(const CursorChange &change, const QString &name, int series = 0);

    void select(int at);

    QUndoStack &stack() { return m_stack; }

signals:
    void changed(); ///< the table or the selected cursor

private:
    friend class TableCommand;
    void show(const EditedTable &table, int selected);

    EditedTable m_table;
    int m_selected = -1;
    QUndoStack m_stack;
};
