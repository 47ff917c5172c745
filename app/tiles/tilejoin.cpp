#include "app/tiles/tilejoin.h"

#include "app/tiles/tilemarks.h"
#include "dataset/formatfilters.h"
#include "messages/label.h"

#include <QLocale>

TileSet finishedTiles(const QString &folder, const TilePlan &plan)
{
    TileSet set;
    const QString extension = tileExtension(plan);
    PlannedTiles tiles(plan);
    for (qint64 number = 0; number < plan.grid.count(); ++number) {
        const PlannedTile tile = tiles.tile(number);
        const QString product = tileProduct(folder, tile.name, extension);
        if (isTileDone(folder, tile, product))
            set.products += product;
        else
            set.missing += tile.name;
    }
    return set;
}

QString tileExtension(const TilePlan &plan)
{
    const ProcessRow &row = processRow(processOf(plan.recipe.options));
    return formatExtensions(outputFormat(plan.recipe.outputOptions, row.product)).value(0);
}

QString joinedProduct(const QString &folder, const TilePlan &plan, const QString &extension)
{
    return QStringLiteral("%1/%2.%3").arg(folder, plan.recipe.process, extension);
}

QString missingTilesProblem(const QStringList &missing)
{
    constexpr int named = 10;
    QString names = missing.mid(0, named).join(QStringLiteral(", "));
    if (missing.size() > named)
        names += QStringLiteral(" …");
    return labelText({"MESS_TUILES_MANQUENT", "%1 tuiles ne sont pas faites : %2"})
        .arg(QLocale().toString(missing.size()), names);
}
