#pragma once

#include <QString>
#include <QValidator>

#include <optional>

class QLineEdit;

/// A comma that is typed becomes the point that the tools read: else 10,5 would be 105.
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

/// A validator for any number of up to so many decimals as the tools write it, whatever the user's locale. It
/// belongs to the parent.
QValidator *makeNumberValidator(int decimals, QObject *parent);

/// Gives the field such a validator, with enough decimals for coordinates.
void makeNumberField(QLineEdit *field);

/// The number in a field's text: none for an empty one, 0 for what is no number.
std::optional<double> fieldNumber(const QString &text);

/// The text of a number for such a field: as many decimals as that, and more where the number has more; empty
/// for none.
QString numberText(const std::optional<double> &number, int decimals = 3);
