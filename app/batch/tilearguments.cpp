#include "app/batch/tilearguments.h"

#include "messages/label.h"

#include <QCommandLineParser>

namespace
{

const QString tilesName = QStringLiteral("tiles");
const QString folderName = QStringLiteral("into");
const QString sideName = QStringLiteral("tile-size");
const QString planName = QStringLiteral("plan");
const QString tasksName = QStringLiteral("tasks");
const QString taskName = QStringLiteral("task");
const QString skipName = QStringLiteral("skip-done");
const QString logName = QStringLiteral("log");
const QString joinName = QStringLiteral("join");

/// Reads a number of at least `least`. Returns the problem, in a sentence; empty for a good number.
template <class Number>
QString readNumber(const QCommandLineParser &parser, const QString &name, int least, Number &number)
{
    if (!parser.isSet(name))
        return {};
    bool isNumber = false;
    const int value = parser.value(name).toInt(&isNumber);
    if (!isNumber || value < least)
        return labelText({"MESS_LOT_NOMBRE_INV", "--%1 demande un nombre entier à partir de %2, pas « %3 »."})
            .arg(name, QString::number(least), parser.value(name));
    number = value;
    return {};
}

QString readJoin(const QCommandLineParser &parser, std::optional<TileJoin> &join)
{
    if (!parser.isSet(joinName))
        return {};
    const QString word = parser.value(joinName).toLower();
    if (word == QLatin1String("vrt"))
        join = TileJoin::Vrt;
    else if (word == QLatin1String("cog"))
        join = TileJoin::Cog;
    else if (word == QLatin1String("none"))
        join = TileJoin::None;
    else
        return labelText({"MESS_LOT_JOIN_INV", "--join demande vrt, cog ou none, pas « %1 »."})
            .arg(parser.value(joinName));
    return {};
}

/// The problem of options that do not go together.
QString combinationProblem(const TileArguments &arguments, bool hasInputs)
{
    if (arguments.folder.isEmpty())
        return labelText({"MESS_LOT_SANS_INTO", "--tiles demande le dossier des tuiles (--into)."});
    if (!hasInputs && arguments.onlyPlan)
        return labelText({"MESS_LOT_PLAN_RECETTE", "--plan demande une recette, puis les MNT."});
    if (arguments.onlyPlan && arguments.task)
        return labelText({"MESS_LOT_PLAN_OU_TASK", "--plan et --task ne s'emploient pas ensemble."});
    return {};
}

} // namespace

void declareTileOptions(QCommandLineParser &parser)
{
    const auto text = [](const char *key, const char *defaultText) { return labelText({key, defaultText}); };
    parser.addOptions({
        {tilesName,
         text("MESS_LOT_EN_TUILES",
              "Fait le produit en tuiles, sans raccord visible ; les MNT (fichiers ou dossier) n'en font "
              "qu'un.")},
        {folderName, text("MESS_LOT_INTO", "Avec --tiles : dossier du plan et des tuiles."),
         QStringLiteral("folder")},
        {sideName, text("MESS_LOT_COTE", "Avec --tiles : côté d'une tuile en cellules (4096 par défaut)."),
         QStringLiteral("cells")},
        {planName,
         text("MESS_LOT_PLAN",
              "Avec --tiles : écrit le plan et affiche une commande par tâche, sans rien calculer.")},
        {tasksName, text("MESS_LOT_TACHES", "Avec --plan : nombre de tâches (une par tuile par défaut)."),
         QStringLiteral("n")},
        {taskName,
         text("MESS_LOT_TACHE", "Avec --tiles : fait la part i (à partir de 0) sur n des tuiles du plan."),
         QStringLiteral("i/n")},
        {skipName,
         text("MESS_LOT_SAUTER", "Avec --tiles : garde les tuiles déjà faites d'après le même plan.")},
        {logName,
         text("MESS_LOT_JOURNAL", "Avec --tiles : la sortie standard est une suite d'objets JSON (json)."),
         QStringLiteral("format")},
        {joinName,
         text("MESS_LOT_JOINDRE",
              "Avec --tiles : réunit les tuiles faites dans un fichier VRT (vrt) ou COG (cog)."),
         QStringLiteral("vrt|cog")},
    });
}

TileArguments readTileArguments(const QCommandLineParser &parser, bool hasInputs)
{
    TileArguments arguments;
    arguments.tiles = parser.isSet(tilesName);
    if (!arguments.tiles) {
        for (const QString &name :
             {folderName, sideName, planName, tasksName, taskName, skipName, logName, joinName}) {
            if (parser.isSet(name))
                arguments.problem =
                    labelText({"MESS_LOT_SANS_TILES", "--%1 ne s'emploie qu'avec --tiles."}).arg(name);
        }
        return arguments;
    }
    arguments.folder = parser.value(folderName);
    arguments.onlyPlan = parser.isSet(planName);
    arguments.skipDone = parser.isSet(skipName);
    arguments.jsonLog = parser.isSet(logName);
    constexpr int leastSide = 16;
    arguments.problem = readNumber(parser, sideName, leastSide, arguments.side);
    if (arguments.problem.isEmpty())
        arguments.problem = readNumber(parser, tasksName, 1, arguments.tasks);
    if (arguments.problem.isEmpty())
        arguments.problem = readJoin(parser, arguments.join);
    if (arguments.problem.isEmpty() && arguments.jsonLog && parser.value(logName) != QLatin1String("json"))
        arguments.problem = labelText({"MESS_LOT_JOURNAL_INV", "--log ne connaît que json, pas « %1 »."})
                                .arg(parser.value(logName));
    if (arguments.problem.isEmpty() && parser.isSet(taskName)) {
        arguments.task = readTaskNumber(parser.value(taskName));
        if (!arguments.task->isValid)
            arguments.problem =
                labelText({"MESS_LOT_TACHE_INV", "--task demande i/n, avec i de 0 à n-1, pas « %1 »."})
                    .arg(parser.value(taskName));
    }
    if (arguments.problem.isEmpty())
        arguments.problem = combinationProblem(arguments, hasInputs);
    arguments.onlyJoin =
        !hasInputs && !arguments.task && arguments.join.value_or(TileJoin::None) != TileJoin::None;
    return arguments;
}
