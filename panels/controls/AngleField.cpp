#include "panels/controls/AngleField.h"

#include <QEvent>
#include <QLocale>
#include <QSignalBlocker>

#include <cmath>

namespace
{

constexpr double fullTurn = 360.0; // degrees

/// The text with the decimal point of the locale in the place of a point or a comma.
QString inLocale(QString text, const QLocale &locale)
{
    for (const char point : {'.', ','})
        text.replace(QLatin1Char(point), QString(locale.decimalPoint()));
    return text;
}

} // namespace

AngleField::AngleField(QWidget *parent)
    : QDoubleSpinBox(parent)
{
    setLocale(QLocale());
    setDecimals(4);
    setRange(0.0, fullTurn);
    setSuffix(QStringLiteral("°"));
    setAlignment(Qt::AlignRight);
}

double AngleField::rounded(double angle) const
{
    const double unit = std::pow(10.0, decimals());
    return std::round(angle * unit) / unit;
}

void AngleField::showAngle(double angle)
{
    const QSignalBlocker blocker(this);
    if (rounded(angle) != value())
        setValue(angle);
}

QString AngleField::textFromValue(double value) const
{
    return locale().toString(rounded(value), 'f', QLocale::FloatingPointShortest);
}

double AngleField::valueFromText(const QString &text) const
{
    return QDoubleSpinBox::valueFromText(inLocale(text, locale()));
}

QValidator::State AngleField::validate(QString &text, int &cursor) const
{
    text = inLocale(text, locale());
    return QDoubleSpinBox::validate(text, cursor);
}

void AngleField::stepBy(int steps)
{
    const double turned = std::fmod(value() + steps * singleStep(), fullTurn);
    setValue(turned < 0.0 ? turned + fullTurn : turned);
    selectAll();
}

void AngleField::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        setLocale(QLocale()); // the decimal point of the language
    QDoubleSpinBox::changeEvent(event);
}
