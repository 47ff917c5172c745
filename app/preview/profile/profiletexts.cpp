#include "app/preview/profile/profiletexts.h"

#include "messages/label.h"
#include "messages/shownnumber.h"

#include <cmath>

namespace
{

QString cell(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString cell(const std::optional<double> &number)
{
    return number ? cell(*number) : QString();
}

} // namespace

QString distanceText(double metres, const QLocale &locale)
{
    constexpr double kilometre = 1000.0;
    const QString unit = metres < kilometre ? QStringLiteral(" m") : QStringLiteral(" km");
    if (metres < kilometre)
        return shownNumber(metres, 'f', 0, locale) + unit;
    return shownNumber(metres / kilometre, 'f', metres < 10.0 * kilometre ? 2 : 1, locale) + unit;
}

QString heightText(double height, const QString &unit, const QLocale &locale)
{
    constexpr double great = 1000.0;
    const int decimals = std::abs(height) < great ? 1 : 0;
    return (shownNumber(height, 'f', decimals, locale) + QLatin1Char(' ') + unit).trimmed();
}

QString verdictText(const Profile &profile, const QString &unit, const QLocale &locale)
{
    if (profile.samples.isEmpty())
        return {};
    if (!profile.leastHeight)
        return labelText({"MESS_PROF_SANS_SOL", "Le MNT n'a pas d'altitude à l'extrémité."});
    if (profile.beyondReach)
        return labelText(
            {"MESS_PROF_TROP_LOIN", "Extrémité au-delà de la distance maximale de l'observateur."});
    if (profile.farSeen)
        return labelText({"MESS_PROF_VUE", "Extrémité visible."});
    return labelText({"MESS_PROF_CACHEE", "Extrémité cachée : visible à partir de %1 au-dessus du sol."})
        .arg(heightText(*profile.leastHeight, unit, locale));
}

QString conditionsText(const Profile &profile, const QLocale &locale)
{
    constexpr int digits = 3;
    return distanceText(profile.length, locale) + QStringLiteral(" · ")
        + labelText({"MESS_PROF_COURBURE", "Courbure de la Terre et réfraction : k = %1"})
              .arg(shownNumber(profile.curvature, 'g', digits, locale));
}

QString readoutText(const ProfileSample &sample, const QString &unit, const QLocale &locale)
{
    const QString distance = distanceText(sample.distance, locale);
    if (!sample.ground)
        return distance + QStringLiteral(" · ") + labelText({"MESS_SANS_DONNEE", "sans donnée"});
    const QString ground = heightText(*sample.ground, unit, locale);
    if (!sample.sightLine)
        return labelText({"MESS_PROF_SOL", "%1 · sol %2"}).arg(distance, ground);
    const double above = *sample.sightLine - *sample.ground;
    const QString height = heightText(std::abs(above), unit, locale);
    if (above < 0.0)
        return labelText({"MESS_PROF_DESSOUS", "%1 · sol %2 · ligne de visée %3 sous le sol"})
            .arg(distance, ground, height);
    return labelText({"MESS_PROF_DESSUS", "%1 · sol %2 · ligne de visée %3 au-dessus du sol"})
        .arg(distance, ground, height);
}

QByteArray profileCsv(const Profile &profile)
{
    QStringList lines{QStringLiteral("distance_m,x,y,ground,sight_line,hidden")};
    for (const ProfileSample &sample : profile.samples) {
        const QString hidden = sample.ground ? QString::number(sample.hidden ? 1 : 0) : QString();
        lines += QStringList{cell(sample.distance), cell(sample.point.x()), cell(sample.point.y()),
                             cell(sample.ground),   cell(sample.sightLine), hidden}
                     .join(QLatin1Char(','));
    }
    return (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
}
