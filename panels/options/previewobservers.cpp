#include "panels/options/previewobservers.h"

#include <QStringList>

namespace
{

/// The fields of each line. A quoted field may hold commas and line ends; two quotes stand for one.
QVector<QStringList> readRows(const QString &text)
{
    QVector<QStringList> rows;
    QStringList row;
    QString field;
    bool isQuoted = false;
    for (const QChar letter : text) {
        if (letter == QLatin1Char('"')) {
            isQuoted = !isQuoted; // between the two quotes that stand for one, the field is not quoted
        } else if (isQuoted || (letter != QLatin1Char(',') && letter != QLatin1Char('\n'))) {
            field += letter;
        } else {
            row += field;
            field.clear();
            if (letter == QLatin1Char('\n')) {
                rows += row;
                row.clear();
            }
        }
    }
    return rows;
}

} // namespace

QVector<double> readSeenAreas(const QString &text)
{
    const QVector<QStringList> rows = readRows(text);
    const int column = rows.isEmpty() ? -1 : static_cast<int>(rows.first().indexOf(QStringLiteral("seen_km2")));
    QVector<double> areas;
    for (int at = 1; column >= 0 && at < rows.size(); ++at) {
        if (rows.at(at).first() != QString::number(at))
            break;
        bool isNumber = false;
        areas += rows.at(at).value(column).toDouble(&isNumber);
        if (!isNumber)
            return {};
    }
    return areas;
}
