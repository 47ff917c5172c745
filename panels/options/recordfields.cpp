#include "panels/options/recordfields.h"

#include <cmath>

std::optional<double> readNumber(const QVariant &value)
{
    bool isNumber = value.userType() == QMetaType::Double || value.userType() == QMetaType::Int
        || value.userType() == QMetaType::LongLong;
    double number = 0.0;
    if (isNumber)
        number = value.toDouble();
    else if (value.userType() == QMetaType::QString)
        number = value.toString().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<bool> readSwitch(const QVariant &value)
{
    if (value.userType() == QMetaType::Bool)
        return value.toBool();
    const QString text = value.userType() == QMetaType::QString ? value.toString() : QString();
    if (text != QLatin1String("true") && text != QLatin1String("false"))
        return std::nullopt;
    return text == QLatin1String("true");
}

bool isNone(const QVariant &value)
{
    return value.userType() == QMetaType::Nullptr;
}

QString numberProblem(const QString &name, const QVariant &value, double lowest, double highest, bool whole)
{
    const QString given = value.toString();
    const QString from = QString::number(lowest);
    const QString to = QString::number(highest);
    if (whole)
        return labelText({"MESS_OPT_PAS_ENTIER", "%1 doit être un nombre entier de %2 à %3, pas « %4 »."})
            .arg(name, from, to, given);
    return labelText({"MESS_OPT_PAS_NOMBRE", "%1 doit être un nombre de %2 à %3, pas « %4 »."})
        .arg(name, from, to, given);
}

QString switchProblem(const QString &name, const QVariant &value)
{
    return labelText({"MESS_OPT_PAS_BOOL", "%1 doit être true ou false, pas « %2 »."})
        .arg(name, value.toString());
}

QString textProblem(const QString &name)
{
    return labelText({"MESS_OPT_PAS_TEXTE", "%1 doit être un texte."}).arg(name);
}
