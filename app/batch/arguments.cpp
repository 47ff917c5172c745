#include "app/batch/arguments.h"

#include "app/process/commandline.h"
#include "app/startup/versions.h"

#include <QCommandLineParser>

namespace
{

const QString helpName = QStringLiteral("help");
const QString versionName = QStringLiteral("version");
const QString listName = QStringLiteral("list");
const QString buildName = QStringLiteral("build-overviews");
const QString correctName = QStringLiteral("correct-aspect");
const QString fillName = QStringLiteral("fill-voids");
const QString smoothName = QStringLiteral("smooth-dem");
const QString finishName = QStringLiteral("finish-contours");
const QString linesName = QStringLiteral("lines");
const QString maskName = QStringLiteral("mask");
const QString partName = QStringLiteral("part");
const QString georeferenceName = QStringLiteral("georeference");
const QString mosaicName = QStringLiteral("mosaic");
const QString printName = QStringLiteral("print-command");

/// The options, in the order in which the help shows them.
void declareOptions(QCommandLineParser &parser)
{
    const auto text = [](const char *key, const char *defaultText) { return labelText({key, defaultText}); };
    parser.setApplicationDescription(
        text("MESS_LOT_BUT",
             "Calcule un produit d'un modèle numérique de terrain avec les outils de GDAL, sans fenêtre."));
    parser.addPositionalArgument(
        QStringLiteral("recipe.json"),
        text("MESS_LOT_RECETTE",
             "Recette à exécuter, « - » pour l'entrée standard ; les options de la ligne de commande "
             "l'emportent."),
        QStringLiteral("[recipe.json"));
    parser.addPositionalArgument(
        QStringLiteral("dem"),
        text("MESS_LOT_DES_MNT",
             "MNT pour chacun desquels la recette est exécutée ; chaque produit porte le nom de son MNT, suivi "
             "de celui du traitement, et se trouve à côté de lui. Avec --mosaic, ils sont les tuiles d'un seul "
             "MNT."),
        QStringLiteral("[dem...]]"));
    parser.addOptions({
        {QStringLiteral("process"), text("MESS_LOT_TRAITEMENT", "Traitement (voir --list)."),
         QStringLiteral("word")},
        {QStringLiteral("input"), text("MESS_LOT_ENTREE", "MNT d'entrée."), QStringLiteral("file")},
        {QStringLiteral("output"), text("MESS_LOT_SORTIE", "Fichier à créer."), QStringLiteral("file")},
        {QStringLiteral("band"), text("MESS_LOT_BANDE", "Bande du MNT (1 par défaut)."), QStringLiteral("n")},
        {partName,
         text(
             "MESS_LOT_PARTIE",
             "Partie du MNT à traiter, en cellules depuis son coin supérieur gauche : « colonne ligne colonnes "
             "lignes »."),
         QStringLiteral("cells")},
    });
    for (const OutputOptionField &output : outputOptionFields()) {
        const QString name = QLatin1String(output.argument);
        const QString meaning = labelText(output.field.meaning);
        parser.addOption(output.valueName ? QCommandLineOption(name, meaning, QLatin1String(output.valueName))
                                          : QCommandLineOption(name, meaning));
    }
    parser.addOptions({
        {QStringLiteral("set"), text("MESS_LOT_OPTION", "Option du traitement (voir --list) ; répétable."),
         QStringLiteral("name=value")},
        {mosaicName,
         text("MESS_LOT_MOSAIQUE", "Les MNT de la ligne de commande sont les tuiles d'un seul : un produit.")},
        {QStringLiteral("overwrite"), text("MESS_LOT_REMPLACER", "Remplace un produit qui existe déjà.")},
        {printName, text("MESS_LOT_COMMANDE", "Affiche la commande de l'outil et n'exécute rien.")},
        {listName, text("MESS_LOT_LISTE", "Affiche les traitements et leurs options.")},
        {buildName,
         text("MESS_LOT_CALC_VUES", "Calcule les vues d'ensemble d'un raster, à côté de lui, et rien d'autre."),
         QStringLiteral("raster")},
        {correctName,
         text("MESS_LOT_CORR_ORIENT",
              "Corrige sur place les orientations d'un raster pour les cellules non carrées du MNT (--input)."),
         QStringLiteral("raster")},
        {fillName,
         text("MESS_LOT_COMBLE",
              "Écrit ce raster, une copie du MNT (--input) dont les vides sont comblés (--fill-distance)."),
         QStringLiteral("raster")},
        {maskName, text("MESS_LOT_MASQUE_FIC", "Avec --fill-voids : raster qui marque les cellules comblées."),
         QStringLiteral("raster")},
        {smoothName,
         text("MESS_LOT_LISSE", "Écrit ce raster, une copie lissée du MNT (--input, --set smoothing=rayon)."),
         QStringLiteral("raster")},
        {finishName,
         text("MESS_LOT_FINIR",
              "Écrit ce fichier à partir des courbes de niveau de l'outil (--lines) et de son MNT (--input)."),
         QStringLiteral("file")},
        {linesName, text("MESS_LOT_FINIR_LIGNES", "Avec --finish-contours : fichier écrit par l'outil."),
         QStringLiteral("file")},
        {georeferenceName,
         text("MESS_LOT_GEOREF", "Donne sur place à un GeoTIFF la géoréférence du MNT (--input)."),
         QStringLiteral("raster")},
        {{QStringLiteral("v"), versionName}, text("MESS_LOT_VERSION", "Affiche la version.")},
        {{QStringLiteral("h"), helpName}, text("MESS_LOT_AIDE", "Affiche cette aide.")},
    });
    declareTileOptions(parser);
}

BatchAction actionOf(const QCommandLineParser &parser)
{
    if (parser.isSet(helpName))
        return BatchAction::Help;
    if (parser.isSet(versionName))
        return BatchAction::Version;
    if (parser.isSet(listName))
        return BatchAction::List;
    if (parser.isSet(buildName))
        return BatchAction::BuildOverviews;
    if (parser.isSet(correctName))
        return BatchAction::CorrectAspect;
    if (parser.isSet(fillName))
        return BatchAction::FillVoids;
    if (parser.isSet(smoothName))
        return BatchAction::SmoothDem;
    if (parser.isSet(finishName))
        return BatchAction::FinishContours;
    if (parser.isSet(georeferenceName))
        return BatchAction::CopyGeoreference;
    return parser.isSet(printName) ? BatchAction::PrintCommand : BatchAction::Run;
}

// The functions below fill in the arguments. Each returns the problem of what it reads, in a sentence; empty
// when that is valid.

QString readBand(BatchArguments &arguments, const QString &text)
{
    bool isNumber = false;
    const int band = text.toInt(&isNumber);
    if (!isNumber || band < 1)
        return labelText({"MESS_LOT_BANDE_INV", "--band demande un numéro à partir de 1, pas « %1 »."})
            .arg(text);
    arguments.band = band;
    return {};
}

QString readOption(BatchArguments &arguments, const QString &text)
{
    const auto equals = text.indexOf(QLatin1Char('='));
    if (equals <= 0)
        return labelText({"MESS_LOT_OPTION_INV", "--set demande name=value, pas « %1 »."}).arg(text);
    arguments.options += {text.left(equals), text.mid(equals + 1)};
    return {};
}

QString readOutputOptions(BatchArguments &arguments, const QCommandLineParser &parser)
{
    for (const OutputOptionField &output : outputOptionFields()) {
        const QString name = QLatin1String(output.argument);
        if (!parser.isSet(name))
            continue;
        const QVariant value = output.valueName ? QVariant(parser.value(name)) : QVariant(true);
        const QString problem = setField(arguments.outputOptions, output.field, value);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString readDems(BatchArguments &arguments, const QCommandLineParser &parser)
{
    const QStringList files = parser.positionalArguments();
    arguments.recipeFile = files.value(0);
    arguments.dems = files.mid(1);
    arguments.mosaic = parser.isSet(mosaicName);
    if (arguments.mosaic && arguments.dems.size() < 2)
        return tooFewTilesProblem();
    if (arguments.mosaic && parser.isSet(QStringLiteral("input")))
        return labelText({"MESS_LOT_MOSAIQUE_INPUT", "--input ne s'emploie pas avec --mosaic."});
    arguments.tiles = readTileArguments(parser, !arguments.dems.isEmpty());
    if (!arguments.tiles.problem.isEmpty())
        return arguments.tiles.problem;
    for (const char *option : {"input", "output"}) {
        if (!arguments.dems.isEmpty() && !arguments.mosaic && parser.isSet(QLatin1String(option)))
            return labelText({"MESS_LOT_PLUSIEURS",
                              "--%1 ne s'emploie pas avec plusieurs MNT : chacun a son propre produit à côté "
                              "de lui."})
                .arg(QLatin1String(option));
    }
    return {};
}

QString readValues(BatchArguments &arguments, const QCommandLineParser &parser)
{
    QString problem = readDems(arguments, parser);
    if (!problem.isEmpty())
        return problem;
    arguments.process = parser.value(QStringLiteral("process"));
    if (parser.isSet(QStringLiteral("input")))
        arguments.input = parser.value(QStringLiteral("input"));
    if (parser.isSet(QStringLiteral("output")))
        arguments.output = parser.value(QStringLiteral("output"));
    problem = readOutputOptions(arguments, parser);
    if (!problem.isEmpty())
        return problem;
    arguments.mask = parser.value(maskName);
    arguments.lines = parser.value(linesName);
    if (parser.isSet(partName)) {
        arguments.part = readPart(parser.value(partName));
        if (!arguments.part)
            return labelText({"MESS_LOT_PARTIE_INV",
                              "--part demande quatre nombres entiers, « colonne ligne colonnes lignes », pas « "
                              "%1 »."})
                .arg(parser.value(partName));
    }
    arguments.overwrite = parser.isSet(QStringLiteral("overwrite"));
    if (parser.isSet(QStringLiteral("band"))) {
        problem = readBand(arguments, parser.value(QStringLiteral("band")));
        if (!problem.isEmpty())
            return problem;
    }
    for (const QString &option : parser.values(QStringLiteral("set"))) {
        problem = readOption(arguments, option);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

} // namespace

QString tooFewTilesProblem()
{
    return labelText({"MESS_LOT_SANS_TUILES", "--mosaic demande une recette, puis au moins deux MNT."});
}

BatchArguments readBatchArguments(const QStringList &texts)
{
    QCommandLineParser parser;
    declareOptions(parser);
    BatchArguments arguments;
    if (!parser.parse(texts)) {
        arguments.problem = parser.errorText();
        return arguments;
    }
    arguments.action = actionOf(parser);
    for (const QString &name : {buildName, correctName, fillName, smoothName, finishName, georeferenceName})
        arguments.raster += parser.value(name);
    const bool onlyPrintsText = arguments.action == BatchAction::Help
        || arguments.action == BatchAction::Version || arguments.action == BatchAction::List;
    if (!onlyPrintsText)
        arguments.problem = readValues(arguments, parser);
    return arguments;
}

QString batchHelp()
{
    QCommandLineParser parser;
    declareOptions(parser);
    return parser.helpText();
}

QString batchVersion()
{
    return QStringLiteral("QuvoDemBatch %1\n").arg(programVersion());
}

QString batchList()
{
    QString text;
    for (const NamedProcess &process : namedProcesses()) {
        const QVector<FieldDescription> fields = describeOptions(process.defaults);
        int nameWidth = 0;
        int rangeWidth = 0;
        for (const FieldDescription &field : fields) {
            nameWidth = qMax(nameWidth, static_cast<int>(field.name.size()));
            rangeWidth = qMax(rangeWidth, static_cast<int>(field.range.size()));
        }
        text += QStringLiteral("%1  %2\n")
                    .arg(processWord(process.defaults), labelText(processRow(process.process).stepTitle));
        for (const FieldDescription &field : fields) {
            const QString defaultValue =
                field.defaultValue.isEmpty() ? QStringLiteral("\"\"") : field.defaultValue;
            text += QStringLiteral("  %1  %2  [%3]  %4\n")
                        .arg(field.name.leftJustified(nameWidth), field.range.leftJustified(rangeWidth),
                             defaultValue.leftJustified(5), field.meaning);
        }
    }
    return text;
}
