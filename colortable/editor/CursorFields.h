#pragma once

#include "colortable/editor/editedtable.h"

#include <QWidget>

class QCheckBox;
class NumberBox;
class QLabel;
class QLineEdit;
class QSpinBox;

/// The selected cursor in numbers: its value with one decimal, red, green, blue, alpha, the hexadecimal code,
/// and whether the segment above it runs evenly to the eye.
class CursorFields : public QWidget
{
    Q_OBJECT

public:
    explicit CursorFields(QWidget *parent = nullptr);

    /// Shows a cursor of the table, or a table without one (-1); no signal follows.
    void show(const EditedTable &table, int at);

signals:
    void valueTyped(double value);
    void colorTyped(const QColor &color);
    void evenToggled(bool even);

private:
    QSpinBox *addLevel(const QString &name);
    void onLevels();
    void onCode();

    NumberBox *m_value;
    QVector<QSpinBox *> m_levels; ///< red, green, blue, alpha
    QLineEdit *m_code;
    QCheckBox *m_even;
    QColor m_color;
};
