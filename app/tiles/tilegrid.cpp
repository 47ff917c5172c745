#include "app/tiles/tilegrid.h"

#include <QStringList>

QRect TileGrid::window(qint64 tile) const
{
    const int column = static_cast<int>(tile % columns());
    const int row = static_cast<int>(tile / columns());
    return QRect(column * side, row * side, side, side) & QRect(QPoint(0, 0), raster);
}

QString TileGrid::name(qint64 tile) const
{
    constexpr int digits = 4;
    constexpr int decimal = 10;
    const QLatin1Char zero('0');
    return QStringLiteral("r%1_c%2")
        .arg(tile / columns(), digits, decimal, zero)
        .arg(tile % columns(), digits, decimal, zero);
}

TileShare shareOf(qint64 tiles, int task, int tasks)
{
    return {tiles * task / tasks, tiles * (task + 1) / tasks};
}

TaskNumber readTaskNumber(const QString &text)
{
    const QStringList numbers = text.split(QLatin1Char('/'));
    TaskNumber number;
    bool hasTask = false;
    bool hasTasks = false;
    number.task = numbers.value(0).toInt(&hasTask);
    number.tasks = numbers.value(1).toInt(&hasTasks);
    number.isValid =
        numbers.size() == 2 && hasTask && hasTasks && number.task >= 0 && number.task < number.tasks;
    return number;
}
