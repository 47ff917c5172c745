#include "runner/timetext.h"

#include "messages/label.h"

namespace
{

constexpr Label hoursLabel{"MESS_HEURES", "hour(s)"};
constexpr Label minutesLabel{"MESS_MINUTES", "minute(s)"};
constexpr Label secondsLabel{"MESS_SECONDES", "second(s)"};

QString counted(int number, const Label &unit)
{
    return QStringLiteral("%1 %2").arg(QString::number(number), labelText(unit));
}

} // namespace

QTime clockTime(qint64 milliseconds)
{
    constexpr qint64 day = 24LL * 60 * 60 * 1000;
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(((milliseconds % day) + day) % day));
}

QString formatTime(const QTime &duration)
{
    if (duration.isNull())
        return counted(0, secondsLabel);

    QString text;
    if (duration.hour() != 0)
        text += counted(duration.hour(), hoursLabel);
    if (duration.minute() != 0) {
        if (!text.isEmpty())
            text += QLatin1String(", ");
        text += counted(duration.minute(), minutesLabel);
    }
    if (duration.second() != 0) {
        if (!text.isEmpty())
            text += QLatin1String(" and "); // kept so on purpose: the same word in every language
        text += counted(duration.second(), secondsLabel);
    }
    return text;
}

qint64 remainingTime(qint64 elapsed, int percent)
{
    return static_cast<qint64>(static_cast<double>(elapsed) * (100.0 / percent - 1.0));
}
