#include "panels/options/sightfields.h"

#include "dataset/pathencoding.h"
#include "panels/options/maprampcolors.h"
#include "panels/options/processoptions.h"

#include <QColor>
#include <QDir>

QVector<RecordField<IntervisibilityOptions>> fieldsOf(const IntervisibilityOptions &)
{
    constexpr double smallestStep = 0.001; // degrees
    return {
        QUVO_FIELD(IntervisibilityOptions, points, 0, 0, "MESS_OPT_OBS_SOURCE",
                   "fichier vecteur dont les points, et les lignes échantillonnées, sont des observateurs"),
        QUVO_FIELD(IntervisibilityOptions, pointsLayer, 0, 0, "MESS_OPT_OBS_COUCHE",
                   "couche de ce fichier ; vide : toutes"),
        QUVO_FIELD(IntervisibilityOptions, height, -highestAltitude, highestAltitude, "MESS_OPT_OBS_HAUTEUR",
                   "hauteur ou altitude de ces observateurs"),
        QUVO_FIELD(IntervisibilityOptions, mode, 0, 0, "MESS_OPT_OBS_MODE",
                   "Relative : au-dessus du sol ; Absolute : altitude"),
        QUVO_FIELD(IntervisibilityOptions, distance, 0, longestDistance, "MESS_OPT_OBS_DIST",
                   "distance maximale de leur vue, en mètres ; 0 : sans limite"),
        QUVO_FIELD(IntervisibilityOptions, step, 0, highestElevation, "MESS_OPT_OBS_PAS",
                   "pas d'échantillonnage des lignes, dans l'unité du MNT ; 0 : une cellule"),
        QUVO_FIELD(IntervisibilityOptions, combination, 0, 0, "MESS_OPT_OBS_COMBIN",
                   "OR : zones vues par un observateur au moins ; AND : par tous"),
        QUVO_FIELD(IntervisibilityOptions, groundHeight, -highestElevation, highestElevation,
                   "MESS_OPT_OBS_SOL", "hauteur ajoutée au sol des points dont la visibilité est calculée"),
        QUVO_FIELD(IntervisibilityOptions, visibleColor, 0, 0, "MESS_OPT_COUL_VIS",
                   "couleur des zones visibles"),
        QUVO_FIELD(IntervisibilityOptions, hiddenColor, 0, 0, "MESS_OPT_COUL_NVIS",
                   "couleur des zones non visibles"),
        QUVO_FIELD(IntervisibilityOptions, noDataColor, 0, 0, "MESS_OPT_COUL_NDEF",
                   "couleur des zones non définies"),
        QUVO_FIELD(IntervisibilityOptions, result, 0, 0, "MESS_OPT_RESULTAT",
                   "picture : image des zones ; count : nombre d'observateurs qui voient la cellule ; height : "
                   "hauteur minimale visible au-dessus du sol"),
        QUVO_FIELD(IntervisibilityOptions, ramp, 0, 0, "MESS_OPT_RAMPE",
                   "table de la bibliothèque qui colore les nombres sur la carte ; le produit n'en dépend pas"),
        QUVO_FIELD(IntervisibilityOptions, skyline, 0, 0, "MESS_OPT_HORIZON",
                   "fichier pour l'horizon de chaque observateur (.csv, .json ou .gpkg) ; vide : aucun"),
        QUVO_FIELD(IntervisibilityOptions, skylineStep, smallestStep, 180, "MESS_OPT_HORIZON_PAS",
                   "pas de l'horizon, en degrés ; par défaut chaque changement de pente"),
        QUVO_FIELD(IntervisibilityOptions, statistics, 0, 0, "MESS_OPT_STATIST",
                   "fichier pour ce que voit chaque observateur (.csv) ; vide : aucun"),
    };
}

QString fieldProblem(const IntervisibilityOptions &options)
{
    if (!readAltitudeMode(options.mode))
        return labelText({"MESS_OBS_MODE", "mode doit être Relative ou Absolute."});
    if (options.combination != QLatin1String("OR") && options.combination != QLatin1String("AND"))
        return labelText({"MESS_OBS_COMBIN", "combination doit être OR ou AND."});
    if (!readSightResult(options.result))
        return labelText({"MESS_OBS_RESULTAT", "result doit être picture, count ou height, pas « %1 »."})
            .arg(options.result);
    if (isUnknownRamp(options.ramp))
        return labelText({"MESS_OBS_RAMPE", "« %1 » n'est pas une table de couleurs de la bibliothèque."})
            .arg(options.ramp);
    for (const QString &color : {options.visibleColor, options.hiddenColor, options.noDataColor}) {
        if (!QColor(color).isValid())
            return labelText({"MESS_OBS_COULEUR", "« %1 » n'est pas une couleur ; écrivez-la #RRVVBB."})
                .arg(color);
    }
    return {};
}

QString runProblem(const IntervisibilityOptions &options)
{
    if (options.observers.isEmpty() && options.points.isEmpty())
        return labelText(
            {"MESS_OBS_AUCUN", "Indiquez des observateurs : points (un fichier vecteur) ou observers."});
    return fieldProblem(options);
}

void complete(IntervisibilityOptions &options, const QStringList &givenFields, const QString &folder)
{
    if (givenFields.contains(QLatin1String("points")) && !options.points.isEmpty())
        options.points = dataSetName(options.points, folder);
    const auto makeAbsolute = [&](const char *name, QString &path) {
        if (givenFields.contains(QLatin1String(name)) && !path.isEmpty())
            path = QDir::cleanPath(QDir(folder).absoluteFilePath(path));
    };
    makeAbsolute("skyline", options.skyline);
    makeAbsolute("statistics", options.statistics);
}

std::optional<QString> setRows(IntervisibilityOptions &options, const QString &name, const QVariant &value)
{
    if (name != QLatin1String("observers"))
        return std::nullopt;
    const PointRowsReading reading = readPointRows(value);
    if (reading.problem.isEmpty())
        options.observers = reading.points;
    return reading.problem;
}

QVariantMap rowValues(const IntervisibilityOptions &options)
{
    return {{QStringLiteral("observers"), pointRows(options.observers)}};
}
