#include "panels/options/maprampcolors.h"

#include "colortable/colortablefile.h"
#include "colortable/toolcolors.h"

#include <QCoreApplication>
#include <QDir>

namespace
{

QString rampFile(const QString &name)
{
    const bool isPlain =
        !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\'));
    return isPlain ? tableLibraryFolder() + QLatin1Char('/') + name + QStringLiteral(".txt") : QString();
}

} // namespace

QString tableLibraryFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/libraries/colormap");
}

bool isUnknownRamp(const QString &name)
{
    return QDir(tableLibraryFolder()).exists() && !QFile::exists(rampFile(name));
}

QVector<QRgb> rampColors(const QString &name)
{
    const QString file = rampFile(name);
    return file.isEmpty() ? QVector<QRgb>() : evenColors(readColorTable(file).entries);
}

QVector<QRgb> evenColors(const QList<QuvoColorDef> &table)
{
    constexpr int steps = 64; // more than the entries of the library's ramps
    constexpr double wholeRange = 100.0;
    const QList<QuvoColorDef> entries = elevationEntries(table);
    if (entries.isEmpty())
        return {};
    const bool isRelative = entries.first().percent;
    const double low = isRelative ? 0.0 : entries.first().value;
    const double high = isRelative ? wholeRange : entries.last().value;
    const ToolColors tool(entries, 0.0, wholeRange);
    QVector<QRgb> colors;
    for (int step = 0; step <= steps; ++step)
        colors += tool.color(low + (high - low) * step / steps) | 0xff000000U;
    return colors;
}
