#include "panels/controls/AngleField.h"

#include <QLocale>
#include <QSignalBlocker>

#include <cmath>

namespace
{

constexpr double fullTurn = 360.0; // degrees

} // namespace

AngleField::AngleField(QWidget *parent)
    : NumberBox(parent)
{
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

void AngleField::stepBy(int steps)
{
    const double turned = std::fmod(value() + steps * singleStep(), fullTurn);
    setValue(turned < 0.0 ? turned + fullTurn : turned);
    selectAll();
}
