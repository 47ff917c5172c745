#pragma once

#include "colortable/QuvoColorDef.h"

#include <QComboBox>

/// A combo box of colour tables: each is painted as its ramp, with its name and the colour of the cells without
/// data.
class ColorRampComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ColorRampComboBox(QWidget *parent = nullptr);

    /// A table as the list holds it.
    struct Table
    {
        QString file;     ///< that the user knows it by
        QString toolFile; ///< that the tool is given: the same, or a copy in numbers
        QList<QuvoColorDef> entries;
    };

    /// Puts the table in the place of the one of the same file, or at the end. Returns its row.
    int putTable(const QString &name, const Table &table);

    /// The copy that stands for the file; empty where there is none.
    QString copyOf(const QString &file) const;

    /// Of that row; empty where there is none.
    Table table(int row) const;
    Table currentTable() const { return table(currentIndex()); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
