#pragma once

#include <QDoubleSpinBox>

/// A field for a number with decimals, with a decimal point in every language, as the tools read numbers. A
/// typed comma is taken as a point; digits are not grouped.
class NumberBox : public QDoubleSpinBox
{
    Q_OBJECT

public:
    explicit NumberBox(QWidget *parent = nullptr);

    double valueFromText(const QString &text) const override;
    QValidator::State validate(QString &text, int &cursor) const override;
};
