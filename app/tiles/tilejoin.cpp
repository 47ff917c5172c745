#include "app/tiles/tilejoin.h"

#include "app/tiles/tilemarks.h"
#include "dataset/formatfilters.h"
#include "dataset/join/contourwindow.h"
#include "dataset/views/demfacts.h"
#include "messages/label.h"

#include <QColor>
#include <QLocale>

#include <cmath>

TileSet finishedTiles(const QString &folder, const TilePlan &plan)
{
    TileSet set;
    const QString extension = tileExtension(plan);
    PlannedTiles tiles(plan);
    for (qint64 number = 0; number < plan.tileCount(); ++number) {
        const PlannedTile tile = tiles.tile(number);
        const QString product = tileProduct(folder, tile.name, extension);
        if (isTileDone(folder, tile, product))
            set.products += product;
        else
            set.missing += tile.name;
    }
    return set;
}

bool isContourPlan(const TilePlan &plan)
{
    return processOf(plan.recipe.options) == Process::Contour;
}

QString joinedExtension(const TilePlan &plan)
{
    const ProcessRow &row = processRow(processOf(plan.recipe.options));
    return formatExtensions(outputFormat(plan.recipe.outputOptions, row.product)).value(0);
}

QString tileExtension(const TilePlan &plan)
{
    return isContourPlan(plan) ? QStringLiteral("gpkg") : joinedExtension(plan);
}

QVector<ContourTile> contourTiles(const QString &folder, const TilePlan &plan)
{
    const DemFacts dem = readDemFacts(plan.recipe.input, plan.recipe.band);
    QVector<ContourTile> tiles;
    for (qint64 number = 0; number < plan.grid.count(); ++number)
        tiles += {tileProduct(folder, plan.grid.name(number), tileExtension(plan)),
                  contourWindow(plan.grid.raster, plan.grid.window(number), dem.toGround).keep};
    return tiles;
}

QVector<SightShare> sightShares(const QString &folder, const TilePlan &plan)
{
    QVector<SightShare> shares;
    for (const SightGroup &group : plan.groups)
        shares += {tileProduct(folder, plan.grid.name(group.tile), tileExtension(plan)), group.window};
    return shares;
}

SightJoin sightJoinOf(const TilePlan &plan)
{
    const auto &options = std::get<IntervisibilityOptions>(plan.recipe.options);
    const SightResult result = sightResult(options);
    const auto rgb = [](const QString &name) {
        const QColor color(name);
        return SightJoin::Rgb{static_cast<unsigned char>(color.red()),
                              static_cast<unsigned char>(color.green()),
                              static_cast<unsigned char>(color.blue())};
    };
    SightJoin join;
    if (result != SightResult::Picture)
        join.sum = result == SightResult::Count ? SightSum::Count : SightSum::LeastHeight;
    join.byAll = options.combination.compare(QLatin1String("AND"), Qt::CaseInsensitive) == 0;
    join.observers = static_cast<int>(options.observers.size());
    join.seen = rgb(options.visibleColor);
    join.hidden = rgb(options.hiddenColor);
    join.noData = rgb(options.noDataColor);
    join.dem = plan.recipe.input;
    join.band = plan.recipe.band;
    ProcessingRequest product;
    product.process = Process::Intervisibility;
    product.cellUse.sight = result;
    join.creationOptions = creationOptions(plan.recipe.outputOptions, productRow(product));
    return join;
}

QString cogArguments(const TilePlan &plan)
{
    const ProcessRow &product = processRow(processOf(plan.recipe.options));
    OutputOptions options = plan.recipe.outputOptions;
    options.format = QStringLiteral("COG");
    options.tiled = options.worldFile = false; // the format's own business
    QString arguments = QStringLiteral("-strict -of COG") + creationArguments(options, product);
    if (options.compression.isEmpty())
        arguments += QStringLiteral(" -co BIGTIFF=IF_SAFER");
    if (options.statistics)
        arguments += QStringLiteral(" -stats");
    return arguments + QLatin1Char(' ');
}

ContourJoin contourJoinOf(const TilePlan &plan)
{
    constexpr double smallShare = 1e-3; // of a cell
    const DemFacts dem = readDemFacts(plan.recipe.input, plan.recipe.band);
    return {.path = {},
            .driver = outputFormat(plan.recipe.outputOptions, ProductKind::Vector),
            .layer = outputLayer(plan.recipe.outputOptions),
            .attribute = std::get<ContourOptions>(plan.recipe.options).attribute,
            .tolerance = std::abs(dem.toGround[1]) * smallShare};
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
