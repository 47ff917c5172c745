#include "messages/NumberBox.h"

#include <QLocale>

namespace
{

QString withPoint(QString text)
{
    return text.replace(QLatin1Char(','), QLatin1Char('.'));
}

} // namespace

NumberBox::NumberBox(QWidget *parent)
    : QDoubleSpinBox(parent)
{
    QLocale numbers = QLocale::c();
    numbers.setNumberOptions(QLocale::OmitGroupSeparator);
    setLocale(numbers);
}

double NumberBox::valueFromText(const QString &text) const
{
    return QDoubleSpinBox::valueFromText(withPoint(text));
}

QValidator::State NumberBox::validate(QString &text, int &cursor) const
{
    text = withPoint(text);
    return QDoubleSpinBox::validate(text, cursor);
}
