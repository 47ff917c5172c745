#pragma once

#include "colortable/QuvoColorDef.h"

#include <QComboBox>

/// A combo box of colour tables. Each row shows the ramp of a table, its name, and the colour of the cells
/// without data.
class ColorRampComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ColorRampComboBox(QWidget *parent = nullptr);

    /// A table of the list.
    struct Table
    {
        QString file;     ///< path of the file that the user chose; it identifies the table
        QString toolFile; ///< path of the file for the tool: the same file, or a copy that the tool can read
        QList<QuvoColorDef> entries;
    };

    /// Replaces the table of the same file, or adds the table at the end under `name`. Returns its row.
    int putTable(const QString &name, const Table &table);

    /// Path of the copy that the tool reads in place of `file`; empty where the tool reads the file itself, or
    /// where the file is not in the list.
    QString copyOf(const QString &file) const;

    /// Whether a table of that file is in the list.
    bool holds(const QString &file) const;

    /// The table of the row; an empty table where there is no such row.
    Table table(int row) const;
    Table currentTable() const { return table(currentIndex()); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
