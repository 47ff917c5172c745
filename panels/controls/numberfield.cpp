#include "panels/controls/numberfield.h"

#include <QDoubleValidator>
#include <QLineEdit>
#include <QLocale>

namespace
{

/// Replaces a number outside of the range by the bound.
class RangeValidator : public PointForComma<QDoubleValidator>
{
public:
    using PointForComma::PointForComma;

    bool acceptsEmpty = false;

    QValidator::State validate(QString &input, int &cursor) const override
    {
        return acceptsEmpty && input.isEmpty() ? Acceptable : PointForComma::validate(input, cursor);
    }

    void fixup(QString &input) const override
    {
        bool isNumber = false;
        const double number = input.toDouble(&isNumber);
        if (isNumber && (number < bottom() || number > top()))
            input = numberText(qBound(bottom(), number, top()));
    }
};

RangeValidator *makeValidator(int decimals, QObject *parent, double lowest, double highest)
{
    auto validator = new RangeValidator(lowest, highest, decimals, parent);
    QLocale numbers = QLocale::c();
    numbers.setNumberOptions(QLocale::RejectGroupSeparator | QLocale::OmitGroupSeparator);
    validator->setLocale(numbers);
    return validator;
}

// The shortest text of the smallest double has 324 decimals: no number that is shown may be refused.
constexpr int mostDecimals = 324;

} // namespace

QValidator *makeNumberValidator(int decimals, QObject *parent, double lowest, double highest)
{
    return makeValidator(decimals, parent, lowest, highest);
}

void makeNumberField(QLineEdit *field, double lowest, double highest)
{
    field->setValidator(makeNumberValidator(mostDecimals, field, lowest, highest));
}

void makeOptionalNumberField(QLineEdit *field, double lowest, double highest)
{
    RangeValidator *validator = makeValidator(mostDecimals, field, lowest, highest);
    validator->acceptsEmpty = true;
    field->setValidator(validator);
}

std::optional<double> fieldNumber(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional<double>(text.toDouble());
}

QString numberText(const std::optional<double> &number, int decimals)
{
    if (!number)
        return {};
    const QString text = QString::number(*number, 'f', decimals);
    return text.toDouble() == *number ? text : QString::number(*number, 'f', QLocale::FloatingPointShortest);
}
