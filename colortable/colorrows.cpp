#include "colortable/colorrows.h"

#include "messages/label.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int opaque = 255;

bool isNumber(const QVariant &value)
{
    return value.userType() == QMetaType::Double || value.userType() == QMetaType::Int
        || value.userType() == QMetaType::LongLong;
}

bool readValue(const QVariantMap &row, QuvoColorDef &entry)
{
    entry.percent = row.contains(QStringLiteral("percent"));
    const QVariant place = row.value(entry.percent ? QStringLiteral("percent") : QStringLiteral("value"));
    // The type is checked first, because QVariant(true) equals any text.
    if (!entry.percent && place.userType() == QMetaType::QString && place.toString() == QLatin1String("nv")) {
        entry.value = QuvoColorDef::noDataValue;
        return true;
    }
    entry.value = place.toDouble();
    return isNumber(place) && std::isfinite(entry.value)
        && (!entry.percent || (entry.value >= 0.0 && entry.value <= 100.0));
}

bool readComponents(const QVariantList &components, QColor &color)
{
    int parts[] = {0, 0, 0, opaque};
    if (components.size() < 3 || components.size() > 4)
        return false;
    for (int at = 0; at < components.size(); ++at) {
        const double part = components.at(at).toDouble();
        if (!isNumber(components.at(at)) || part != std::floor(part) || part < 0.0 || part > opaque)
            return false;
        parts[at] = static_cast<int>(part);
    }
    color.setRgb(parts[0], parts[1], parts[2], parts[3]);
    return true;
}

} // namespace

QVariantList colorRows(const QList<QuvoColorDef> &table)
{
    QVariantList rows;
    for (const QuvoColorDef &entry : table) {
        QVariantList color{entry.color.red(), entry.color.green(), entry.color.blue()};
        if (entry.color.alpha() != opaque)
            color += entry.color.alpha();
        QVariantMap row{{QStringLiteral("color"), color}};
        row.insert(entry.percent ? QStringLiteral("percent") : QStringLiteral("value"),
                   entry.isNoData() ? QVariant(QStringLiteral("nv")) : QVariant(entry.value));
        rows += row;
    }
    return rows;
}

ColorRowsReading readColorRows(const QVariant &rows)
{
    QList<QuvoColorDef> table;
    const QVariantList list = rows.toList();
    bool good = !list.isEmpty();
    for (int at = 0; good && at < list.size(); ++at) {
        const QVariantMap row = list.at(at).toMap();
        QuvoColorDef entry;
        good = row.size() == 2 && readValue(row, entry)
            && readComponents(row.value(QStringLiteral("color")).toList(), entry.color);
        table += entry;
    }
    if (!good)
        return {{},
                labelText({"MESS_TC_RANG", "La couleur %1 de « colors » n'est pas valable."})
                    .arg(qMax(1, static_cast<int>(table.size())))};
    sortByValue(table);
    return {table, {}};
}
