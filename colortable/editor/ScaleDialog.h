#pragma once

#include <QDialog>

class NumberBox;

/// Asks for the factor and the shift of a table's values.
class ScaleDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ScaleDialog(QWidget *parent);

    double factor() const;
    double shift() const;

private:
    NumberBox *m_factor;
    NumberBox *m_shift;
};
