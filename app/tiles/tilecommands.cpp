#include "app/tiles/tilecommands.h"

#include "app/run/copiedcommand.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

QString batchProgram(const TilePlace &place)
{
    return place.programs + QStringLiteral("/QuvoDemBatch");
}

} // namespace

QString tileCommand(TileWay way, const TilePlace &place)
{
    const QString scale = place.programs + QStringLiteral("/scale/");
    switch (way) {
    case TileWay::OneProcess:
        return shellCommand({batchProgram(place), QStringLiteral("--tiles"), QStringLiteral("--into"),
                             place.folder, QStringLiteral("--skip-done")},
                            Shell::Posix);
    case TileWay::Snakemake:
        return shellCommand({QStringLiteral("snakemake"), QStringLiteral("-s"),
                             scale + QStringLiteral("Snakefile"), QStringLiteral("-c%1").arg(place.cores),
                             QStringLiteral("--rerun-incomplete"), QStringLiteral("--configfile"),
                             snakemakeFile(place.folder)},
                            Shell::Posix);
    case TileWay::SlurmArray:
        break;
    }
    // The script finds the program by PATH, also on the nodes.
    return QStringLiteral("PATH=") + shellCommand({place.programs}, Shell::Posix)
        + QStringLiteral(":\"$PATH\" ")
        + shellCommand({QStringLiteral("sh"), scale + QStringLiteral("slurm/array.sh"), place.folder},
                       Shell::Posix);
}

QString tileRecipeFile(const QString &folder)
{
    return folder + QStringLiteral("/recipe.json");
}

QString snakemakeFile(const QString &folder)
{
    return folder + QStringLiteral("/snakemake.json");
}

QByteArray snakemakeValues(const TilePlace &place, const QStringList &dems, int side)
{
    const QJsonObject values{{QStringLiteral("recipe"), tileRecipeFile(place.folder)},
                             {QStringLiteral("dems"), QJsonArray::fromStringList(dems)},
                             {QStringLiteral("into"), place.folder},
                             {QStringLiteral("tile_size"), side},
                             {QStringLiteral("program"), batchProgram(place)}};
    return QJsonDocument(values).toJson();
}

QStringList planArguments(const QString &folder, const QStringList &dems, int side, int mostTasks)
{
    return QStringList{tileRecipeFile(folder)} + dems
        + QStringList{QStringLiteral("--tiles"),     QStringLiteral("--into"),  folder,
                      QStringLiteral("--tile-size"), QString::number(side),     QStringLiteral("--plan"),
                      QStringLiteral("--tasks"),     QString::number(mostTasks)};
}
