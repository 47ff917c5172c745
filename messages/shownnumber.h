#pragma once

#include <QLocale>
#include <QString>

/// A number with decimals as the windows show it: in the digits and groups of the locale, but with a decimal
/// point, as in the fields, whose texts the tools read. `format` and `precision` are those of
/// QLocale::toString().
QString shownNumber(double value, char format, int precision, const QLocale &locale = QLocale());
