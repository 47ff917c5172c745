#include "panels/options/observerpoints.h"

#include "messages/label.h"
#include "panels/options/recordfields.h"

#include <QSet>

#include <cmath>

QString altitudeModeText(AltitudeMode mode)
{
    return mode == AltitudeMode::Relative ? QStringLiteral("Relative") : QStringLiteral("Absolute");
}

std::optional<AltitudeMode> readAltitudeMode(const QString &text)
{
    for (const AltitudeMode mode : {AltitudeMode::Relative, AltitudeMode::Absolute}) {
        if (text.compare(altitudeModeText(mode), Qt::CaseInsensitive) == 0)
            return mode;
    }
    return std::nullopt;
}

bool isCoordinate(double number)
{
    return std::abs(number) <= highestCoordinate; // false for NaN
}

bool isAltitude(double number)
{
    return std::abs(number) <= highestAltitude;
}

QString pointProblem(const ObserverPoint &point)
{
    const auto problem = [](const char *name, double number, double lowest, double highest) {
        return numberProblem(QString::fromLatin1(name), number, lowest, highest, false);
    };
    if (!isCoordinate(point.x))
        return problem("x", point.x, -highestCoordinate, highestCoordinate);
    if (!isCoordinate(point.y))
        return problem("y", point.y, -highestCoordinate, highestCoordinate);
    if (!isAltitude(point.height))
        return problem("height", point.height, -highestAltitude, highestAltitude);
    if (!(point.maxDistance >= 0.0 && point.maxDistance <= longestDistance))
        return problem("distance", point.maxDistance, 0.0, longestDistance);
    return limitsProblem(point.limits);
}

std::optional<double> absoluteAltitude(const ObserverPoint &point, const std::optional<double> &ground)
{
    if (point.mode == AltitudeMode::Absolute)
        return point.height;
    return ground ? std::optional<double>(*ground + point.height) : std::nullopt;
}

std::optional<ToolObserver> toolObserver(const ObserverPoint &point, const std::optional<double> &copyGround,
                                         const std::optional<double> &demGround)
{
    const auto altitude = absoluteAltitude(point, copyGround ? copyGround : demGround);
    if (!point.enabled || !altitude)
        return std::nullopt;
    return ToolObserver{point.x, point.y, *altitude, point.maxDistance, point.name, point.limits};
}

namespace
{

/// A point that was read from a row.
struct PointRowReading
{
    ObserverPoint point;
    QString problem; ///< empty for a good point
};

QVariantMap pointRow(const ObserverPoint &point)
{
    QVariantMap row{{QStringLiteral("enabled"), point.enabled},
                    {QStringLiteral("x"), point.x},
                    {QStringLiteral("y"), point.y},
                    {QStringLiteral("height"), point.height},
                    {QStringLiteral("mode"), altitudeModeText(point.mode)},
                    {QStringLiteral("distance"), point.maxDistance}};
    if (!point.name.isEmpty())
        row.insert(QStringLiteral("name"), point.name);
    for (const LimitField &field : limitFields()) {
        if (const auto &number = point.limits.*field.value)
            row.insert(QString::fromLatin1(field.name), *number);
    }
    return row;
}

/// The names of all members that a row may have.
QSet<QString> knownMembers()
{
    QSet<QString> names{QStringLiteral("name")};
    const QVariantMap always = pointRow({});
    for (auto member = always.cbegin(); member != always.cend(); ++member)
        names += member.key();
    for (const LimitField &field : limitFields())
        names += QString::fromLatin1(field.name);
    return names;
}

QString notANumber(const QString &member)
{
    return labelText(
               {"MESS_OBS_NOMBRE", "Chaque observateur demande les nombres x et y ; %1 n'est pas un nombre."})
        .arg(member);
}

// The functions read…() set members of the point from a row. They return the problem in a sentence; empty for
// good members.

QString readNumbers(const QVariantMap &row, ObserverPoint &point)
{
    QString problem;
    const QList<QPair<QString, double *>> numbers{
        {"x", &point.x}, {"y", &point.y}, {"height", &point.height}, {"distance", &point.maxDistance}};
    for (const auto &[name, number] : numbers) {
        const bool required = name.size() == 1;
        const auto value = readNumber(row.value(name));
        if (value)
            *number = *value;
        else if (required || row.contains(name))
            problem = notANumber(name);
    }
    for (const LimitField &field : limitFields()) {
        const QVariant value = row.value(QString::fromLatin1(field.name));
        if (!value.isValid() || isNone(value))
            continue;
        point.limits.*field.value = readNumber(value);
        if (!(point.limits.*field.value))
            problem = notANumber(QString::fromLatin1(field.name));
    }
    return problem;
}

QString readWords(const QVariantMap &row, ObserverPoint &point)
{
    const QString modeName = QStringLiteral("mode");
    if (row.contains(modeName)) {
        const auto mode = readAltitudeMode(row.value(modeName).toString());
        if (!mode)
            return labelText({"MESS_OBS_MODE", "mode doit être Relative ou Absolute."});
        point.mode = *mode;
    }
    const QString enabled = QStringLiteral("enabled");
    if (row.contains(enabled)) {
        const auto on = readSwitch(row.value(enabled));
        if (!on)
            return switchProblem(enabled, row.value(enabled));
        point.enabled = *on;
    }
    const QString nameName = QStringLiteral("name");
    if (row.contains(nameName)) {
        const QVariant name = row.value(nameName);
        if (name.userType() != QMetaType::QString || name.toString().contains(QChar(0)))
            return textProblem(nameName);
        point.name = name.toString();
    }
    return {};
}

PointRowReading readPointRow(const QVariantMap &row)
{
    static const QSet<QString> known = knownMembers();
    PointRowReading reading;
    for (auto member = row.cbegin(); member != row.cend(); ++member) {
        if (!known.contains(member.key()))
            reading.problem = labelText({"MESS_REC_INCONNU", "Membre inconnu : « %1 »."}).arg(member.key());
    }
    if (reading.problem.isEmpty())
        reading.problem = readNumbers(row, reading.point);
    if (reading.problem.isEmpty())
        reading.problem = readWords(row, reading.point);
    if (reading.problem.isEmpty())
        reading.problem = pointProblem(reading.point);
    return reading;
}

} // namespace

PointRowsReading readPointRows(const QVariant &value)
{
    PointRowsReading reading;
    if (value.userType() != QMetaType::QVariantList)
        return {{}, labelText({"MESS_OBS_TABLEAU", "observers doit être un tableau d'observateurs."})};
    for (const QVariant &row : value.toList()) {
        const PointRowReading one = readPointRow(row.toMap());
        if (!one.problem.isEmpty())
            return {{}, one.problem};
        reading.points += one.point;
    }
    return reading;
}

QVariantList pointRows(const QList<ObserverPoint> &points)
{
    QVariantList rows;
    for (const ObserverPoint &point : points)
        rows += pointRow(point);
    return rows;
}
