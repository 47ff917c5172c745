#pragma once

#include <QString>
#include <QValidator>

#include <limits>
#include <optional>

class QLineEdit;

/// A validator that replaces a typed comma by the point that the tools read. Without it, a typed 10,5 would
/// become 105, because the comma would be refused.
template <class Validator> class PointForComma : public Validator
{
public:
    using Validator::Validator;

    QValidator::State validate(QString &input, int &cursor) const override
    {
        input.replace(QLatin1Char(','), QLatin1Char('.'));
        return Validator::validate(input, cursor);
    }
};

constexpr double anyNumber = std::numeric_limits<double>::max();

/// A validator for numbers from `lowest` to `highest` with up to `decimals` decimals, in the C locale whatever
/// the user's is. Where the user leaves a number outside of the range, the field shows the bound instead. The
/// parent owns it.
QValidator *makeNumberValidator(int decimals, QObject *parent, double lowest = -anyNumber,
                                double highest = anyNumber);

/// Sets such a validator in the field, with as many decimals as a double can have.
void makeNumberField(QLineEdit *field, double lowest = -anyNumber, double highest = anyNumber);

/// The same for a field that may also be empty.
void makeOptionalNumberField(QLineEdit *field, double lowest, double highest);

/// The number in a field's text: nothing for an empty text, 0 for a text that is not a number.
std::optional<double> fieldNumber(const QString &text);

/// The text of a number for such a field, with `decimals` decimals, or more where the number has more; empty
/// for no number.
QString numberText(const std::optional<double> &number, int decimals = 3);
