#include "panels/controls/numberfield.h"

#include <QDoubleValidator>
#include <QLineEdit>
#include <QLocale>

#include <limits>

QValidator *makeNumberValidator(int decimals, QObject *parent)
{
    constexpr double most = std::numeric_limits<double>::max();
    auto validator = new PointForComma<QDoubleValidator>(-most, most, decimals, parent);
    QLocale numbers = QLocale::c();
    numbers.setNumberOptions(QLocale::RejectGroupSeparator | QLocale::OmitGroupSeparator);
    validator->setLocale(numbers);
    return validator;
}

void makeNumberField(QLineEdit *field)
{
    constexpr int decimals = 12;
    field->setValidator(makeNumberValidator(decimals, field));
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
