#include "app/tiles/tilemarks.h"

#include "messages/label.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

QString markFolder(const QString &folder)
{
    return folder + QStringLiteral("/.done");
}

QString markFile(const QString &folder, const PlannedTile &tile)
{
    return markFolder(folder) + QLatin1Char('/') + tile.name;
}

QByteArray markText(const PlannedTile &tile, const QString &product)
{
    const PlannedInput file = inputNow(product);
    return QStringLiteral("%1 %2 %3\n").arg(tile.stamp, QString::number(file.size), file.time).toLatin1();
}

} // namespace

QString tileFolder(const QString &folder)
{
    return folder + QStringLiteral("/tiles");
}

QString tileProduct(const QString &folder, const QString &name, const QString &extension)
{
    return QStringLiteral("%1/%2.%3").arg(tileFolder(folder), name, extension);
}

QString makeTileFolders(const QString &folder)
{
    for (const QString &path : {tileFolder(folder), markFolder(folder)}) {
        if (!QDir().mkpath(path))
            return labelText({"MESS_DOSSIER_IMPOSS", "Le dossier « %1 » ne peut pas être créé."}).arg(path);
    }
    return {};
}

bool isTileDone(const QString &folder, const PlannedTile &tile, const QString &product)
{
    QFile mark(markFile(folder, tile));
    return QFileInfo(product).isFile() && mark.open(QIODevice::ReadOnly)
        && mark.readAll() == markText(tile, product);
}

QString markTile(const QString &folder, const PlannedTile &tile, const QString &product)
{
    const QString name = markFile(folder, tile);
    const QByteArray text = markText(tile, product);
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return {};
    return labelText({"MESS_TC_NON_ECRITE", "« %1 » ne peut pas être écrit : %2"})
        .arg(name, file.errorString());
}
