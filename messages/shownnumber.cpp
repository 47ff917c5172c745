#include "messages/shownnumber.h"

QString shownNumber(double value, char format, int precision, const QLocale &locale)
{
    const QChar point(QLatin1Char('.'));
    // Qt 6 writes the exponent with a capital letter, Qt 5 does not.
    const QString text = locale.toString(value, format, precision).replace(QLatin1Char('E'), QLatin1Char('e'));
    const QString mark = locale.decimalPoint(); // a character in Qt 5, a text in Qt 6
    const auto at = text.lastIndexOf(mark);
    const bool groupsLookAlike = QString(locale.groupSeparator()) == point;
    if (at < 0 || mark == point)
        return text;
    QString whole = text.left(at);
    if (groupsLookAlike)
        whole.remove(point);
    return whole + point + text.mid(at + mark.size());
}
