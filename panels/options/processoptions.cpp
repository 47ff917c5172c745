#include "panels/options/processoptions.h"

#include "colortable/colorrows.h"
#include "dataset/pathencoding.h"
#include "panels/options/contourinput.h"
#include "panels/options/contourlevels.h"
#include "panels/options/maprampcolors.h"
#include "panels/options/valueclasses.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <limits>

// Each record has a block of its own: the table of its fields, and overloads of the templates that stand first,
// which answer for all other records. The words and the fragments of all processes follow the blocks.

namespace
{

/// Why a run could not use the options.
template <class Record> QString runProblem(const Record &)
{
    return {};
}

/// Why a field that is filled in holds a wrong value.
template <class Record> QString fieldProblem(const Record &)
{
    return {};
}

/// Applies what the given fields imply.
template <class Record> void complete(Record &, const QStringList &, const QString &) { }

template <class Record> bool dependsOnExtremes(const Record &)
{
    return false;
}

/// Sets a field that holds rows instead of one value, or belongs to a record within the record. Nothing where
/// the record has no such field of that name, else the problem, which is empty for good rows.
template <class Record> std::optional<QString> setRows(Record &, const QString &, const QVariant &)
{
    return std::nullopt;
}

/// The fields that hold rows, and those of a record within the record, by their names.
template <class Record> QVariantMap rowValues(const Record &)
{
    return {};
}

/// Describes the fields of a record within the record.
template <class Record> QVector<FieldDescription> rowDescriptions(const Record &)
{
    return {};
}

// What several records have in common.

template <class Record> RecordField<Record> edgesField()
{
    return QUVO_FIELD(Record, computeEdges, 0, 0, "MESS_OPT_BORDS",
                      "calculer aussi sur les bords et à côté des cellules sans donnée");
}

template <class Record> RecordField<Record> methodField()
{
    return QUVO_FIELD(Record, zevenbergenThorne, 0, 0, "MESS_OPT_ZEVENBERGEN",
                      "formule de Zevenbergen et Thorne (terrain lisse) au lieu de celle de Horn");
}

template <class Record> RecordField<Record> scaleRowField()
{
    return QUVO_FIELD(
        Record, scaleIndex, -1, scaleRowCount - 1, "MESS_OPT_ECHELLE",
        "unités : 0 X, Y et Z dans la même ; 1 X et Y en mètres, Z en pieds ; 2 X et Y en degrés, Z en "
        "mètres ; 3 X et Y en degrés, Z en pieds ; -1 le rapport donné par scaleText");
}

template <class Record> RecordField<Record> scaleTextField()
{
    return QUVO_FIELD(Record, scaleText, 0, 0, "MESS_OPT_RAPPORT",
                      "rapport de l'unité verticale à l'unité horizontale, un nombre positif");
}

/// A record with a ratio of units: a row of the scale list or a typed text.
template <class Record>
concept HasScale = requires(Record record)
{
    record.scaleIndex;
    record.scaleText;
};

template <HasScale Record> QString runProblem(const Record &options)
{
    return scaleProblem(options.scaleIndex, options.scaleText);
}

template <HasScale Record> QString fieldProblem(const Record &options)
{
    return options.scaleText.isEmpty() ? QString() : runProblem(options);
}

/// A typed ratio is used where it is given and no row of the list is.
template <HasScale Record> void complete(Record &options, const QStringList &givenFields, const QString &)
{
    if (givenFields.contains(QLatin1String("scaleText")) && !givenFields.contains(QLatin1String("scaleIndex")))
        options.scaleIndex = -1;
}

constexpr double highestElevation = 1e9;

// Shaded relief.

QVector<RecordField<ShadedOptions>> fieldsOf(const ShadedOptions &)
{
    return {
        QUVO_FIELD(ShadedOptions, exaggeration, 0, 100, "MESS_OPT_EXAGERATION",
                   "facteur appliqué aux altitudes"),
        scaleRowField<ShadedOptions>(),
        scaleTextField<ShadedOptions>(),
        QUVO_FIELD(ShadedOptions, compass, 0, 360, "MESS_OPT_BOUSSOLE",
                   "lecture de la boussole, en degrés, 0 au nord ; l'outil reçoit l'azimut 270 - compass"),
        QUVO_FIELD(ShadedOptions, altitude, 0, 90, "MESS_OPT_ALTITUDE",
                   "hauteur du soleil sur l'horizon, en degrés"),
        edgesField<ShadedOptions>(),
        methodField<ShadedOptions>(),
        QUVO_FIELD(ShadedOptions, light, 0, 0, "MESS_OPT_LUMIERE",
                   "single : un soleil ; multidirectional : plusieurs soleils (sans compass) ; combined : un "
                   "soleil, et la pente assombrit ; igor : lumière douce (sans altitude)"),
    };
}

QString lightProblem(const ShadedOptions &options)
{
    if (readLight(options.light))
        return {};
    return labelText({"MESS_OPT_LUMIERE_INV",
                      "light doit être single, multidirectional, combined ou igor, pas « %1 »."})
        .arg(options.light);
}

QString fieldProblem(const ShadedOptions &options)
{
    const QString scale =
        options.scaleText.isEmpty() ? QString() : scaleProblem(options.scaleIndex, options.scaleText);
    return scale.isEmpty() ? lightProblem(options) : scale;
}

QString runProblem(const ShadedOptions &options)
{
    const QString scale = scaleProblem(options.scaleIndex, options.scaleText);
    return scale.isEmpty() ? lightProblem(options) : scale;
}

// Slope.

QVector<RecordField<SlopeOptions>> fieldsOf(const SlopeOptions &)
{
    return {
        QUVO_FIELD(SlopeOptions, percent, 0, 0, "MESS_OPT_POURCENT", "pentes en pour cent au lieu de degrés"),
        scaleRowField<SlopeOptions>(),
        scaleTextField<SlopeOptions>(),
        edgesField<SlopeOptions>(),
        methodField<SlopeOptions>(),
        QUVO_FIELD(SlopeOptions, classes, 0, 0, "MESS_OPT_CLASSES",
                   "image en classes à côté du produit : avalanche, farming, building ou le fichier d'une "
                   "table couleur, dont chaque entrée commence une classe"),
    };
}

QString fieldProblem(const SlopeOptions &options)
{
    const QString scale =
        options.scaleText.isEmpty() ? QString() : scaleProblem(options.scaleIndex, options.scaleText);
    return scale.isEmpty() ? slopeClasses(options).problem : scale;
}

QString runProblem(const SlopeOptions &options)
{
    const QString scale = scaleProblem(options.scaleIndex, options.scaleText);
    return scale.isEmpty() ? slopeClasses(options).problem : scale;
}

/// A relative name of a table counts from the folder of the recipe.
void complete(SlopeOptions &options, const QStringList &givenFields, const QString &folder)
{
    if (givenFields.contains(QLatin1String("scaleText")) && !givenFields.contains(QLatin1String("scaleIndex")))
        options.scaleIndex = -1;
    if (givenFields.contains(QLatin1String("classes")) && !options.classes.isEmpty()
        && !slopeClassWords().contains(options.classes))
        options.classes = QDir(folder).absoluteFilePath(options.classes);
}

// Aspect.

QVector<RecordField<AspectOptions>> fieldsOf(const AspectOptions &)
{
    return {
        QUVO_FIELD(AspectOptions, trigonometric, 0, 0, "MESS_OPT_TRIGO",
                   "angles depuis l'est, en sens inverse des aiguilles d'une montre, au lieu d'azimuts"),
        QUVO_FIELD(AspectOptions, zeroForFlat, 0, 0, "MESS_OPT_PLAT_ZERO",
                   "0 pour les zones plates au lieu de -9999"),
        edgesField<AspectOptions>(),
        methodField<AspectOptions>(),
        QUVO_FIELD(AspectOptions, directions, 0, 16, "MESS_OPT_DIRECTIONS",
                   "image en directions à côté du produit : 8 ou 16 directions ; 0 : aucune"),
    };
}

QString fieldProblem(const AspectOptions &options)
{
    if (options.directions == 0 || options.directions == 8 || options.directions == 16)
        return {};
    return labelText({"MESS_OPT_DIRECT_INV", "directions doit être 0, 8 ou 16, pas « %1 »."})
        .arg(options.directions);
}

QString runProblem(const AspectOptions &options)
{
    return fieldProblem(options);
}

// Terrain indices.

QVector<RecordField<TerrainIndexOptions>> fieldsOf(const TerrainIndexOptions &)
{
    return {
        // without the index, which the word of the process names
        edgesField<TerrainIndexOptions>(),
        QUVO_FIELD(TerrainIndexOptions, wilson, 0, 0, "MESS_OPT_WILSON",
                   "TRI seulement : différence moyenne (Wilson) au lieu de la racine de la somme des carrés "
                   "(Riley)"),
    };
}

QString runProblem(const TerrainIndexOptions &options)
{
    if (options.wilson && options.type != 0)
        return labelText({"MESS_OPT_WILSON_TRI", "wilson ne concerne que le traitement TRI."});
    return {};
}

// Colour relief.

QVector<RecordField<ColorReliefOptions>> fieldsOf(const ColorReliefOptions &)
{
    return {
        QUVO_FIELD(ColorReliefOptions, table, 0, 0, "MESS_OPT_TABLE",
                   "fichier de la table couleur, ou nom d'une table de la bibliothèque"),
        QUVO_FIELD(ColorReliefOptions, spread, 0, 0, "MESS_OPT_ETALER",
                   "étaler la table sur les altitudes du MNT au lieu de prendre les siennes"),
        QUVO_FIELD(ColorReliefOptions, minimum, -highestElevation, highestElevation, "MESS_OPT_ETALE_MIN",
                   "altitude où commence la table étalée ; par défaut la plus basse du MNT"),
        QUVO_FIELD(ColorReliefOptions, maximum, -highestElevation, highestElevation, "MESS_OPT_ETALE_MAX",
                   "altitude où finit la table étalée ; par défaut la plus haute du MNT"),
        QUVO_FIELD(ColorReliefOptions, alpha, 0, 0, "MESS_OPT_ALPHA", "canal alpha dans le produit"),
        QUVO_FIELD(ColorReliefOptions, shaded, 0, 0, "MESS_OPT_OMBRER",
                   "assombrir les couleurs par un relief ombré, que règlent les options shade.…"),
        QUVO_FIELD(ColorReliefOptions, shadeStrength, 0, 100, "MESS_OPT_OMBRE_FORCE",
                   "force de cet ombrage, en pour cent"),
    };
}

QString fieldProblem(const ColorReliefOptions &options)
{
    const QString shade = options.shaded ? fieldProblem(options.shade) : QString();
    if (!shade.isEmpty())
        return shade;
    if (options.minimum && options.maximum && *options.minimum > *options.maximum)
        return labelText({"MESS_TC_BORNES", "minimum ne doit pas dépasser maximum."});
    return {};
}

QString runProblem(const ColorReliefOptions &options)
{
    const QString shade = options.shaded ? runProblem(options.shade) : QString();
    return shade.isEmpty() ? fieldProblem(options) : shade;
}

void complete(ColorReliefOptions &options, const QStringList &givenFields, const QString &folder)
{
    if (givenFields.contains(QLatin1String("shade.scaleText"))
        && !givenFields.contains(QLatin1String("shade.scaleIndex")))
        options.shade.scaleIndex = -1;
    const bool tableGiven = givenFields.contains(QLatin1String("table"));
    const bool colorsGiven = givenFields.contains(QLatin1String("colors"));
    if (colorsGiven && !tableGiven)
        options.table.clear(); // colours without a name are not the default table
    if (!tableGiven)
        return;
    if (!colorsGiven)
        options.colors.clear();
    // A name without a file in the folder is that of a table of the library.
    const QString file = QDir(folder).filePath(options.table);
    if (!options.table.isEmpty() && QFileInfo::exists(file))
        options.table = file;
}

bool dependsOnExtremes(const ColorReliefOptions &options)
{
    return options.spread && !(options.minimum && options.maximum);
}

/// The fields of the shaded relief under the colours are named after it: "shade.compass".
const QString shadePrefix = QStringLiteral("shade.");

std::optional<QString> setRows(ColorReliefOptions &options, const QString &name, const QVariant &value)
{
    for (const auto &field : fieldsOf(options.shade)) {
        if (name == shadePrefix + QLatin1String(field.name))
            return setField(options.shade, field, value);
    }
    if (name != QLatin1String("colors"))
        return std::nullopt;
    const ColorRowsReading reading = readColorRows(value);
    if (reading.problem.isEmpty())
        options.colors = reading.entries;
    return reading.problem;
}

QVariantMap rowValues(const ColorReliefOptions &options)
{
    QVariantMap values;
    for (const auto &field : fieldsOf(options.shade))
        values.insert(shadePrefix + QLatin1String(field.name), fieldValue(options.shade, field));
    if (!options.colors.isEmpty())
        values.insert(QStringLiteral("colors"), colorRows(options.colors));
    return values;
}

QVector<FieldDescription> rowDescriptions(const ColorReliefOptions &options)
{
    QVector<FieldDescription> rows = describeFields(options.shade, fieldsOf(options.shade));
    for (FieldDescription &row : rows)
        row.name.prepend(shadePrefix);
    return rows;
}

// Intervisibility.

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

// Contour lines.

QVector<RecordField<ContourOptions>> fieldsOf(const ContourOptions &)
{
    constexpr double highest = highestElevation;
    constexpr int mostIndexSteps = 100;
    constexpr double anyNumber = std::numeric_limits<double>::max();
    return {
        QUVO_FIELD(ContourOptions, interval, 0, highest, "MESS_OPT_INTERVALLE",
                   "intervalle entre les courbes, dans l'unité du MNT"),
        QUVO_FIELD(ContourOptions, attribute, 0, 0, "MESS_OPT_ATTRIBUT",
                   "attribut qui reçoit l'altitude ; vide : aucun"),
        QUVO_FIELD(ContourOptions, threeD, 0, 0, "MESS_OPT_3D", "une altitude à chaque point des courbes"),
        QUVO_FIELD(ContourOptions, fixedLevels, 0, 0, "MESS_OPT_NIVEAUX",
                   "altitudes séparées par des espaces, en plus de celles de l'intervalle"),
        QUVO_FIELD(ContourOptions, everyValueValid, 0, 0, "MESS_OPT_TOUT_VALIDE",
                   "prendre aussi la valeur sans donnée du MNT pour une altitude"),
        QUVO_FIELD(ContourOptions, noDataValue, -anyNumber, anyNumber, "MESS_OPT_IGNORER",
                   "valeur du MNT à ignorer"),
        QUVO_FIELD(ContourOptions, offset, -highest, highest, "MESS_OPT_OFFSET",
                   "altitude à partir de laquelle comptent les intervalles"),
        QUVO_FIELD(ContourOptions, indexEvery, 0, mostIndexSteps, "MESS_OPT_MAITRESSES",
                   "une courbe maîtresse toutes les n courbes de l'intervalle ; 0 : aucune"),
        QUVO_FIELD(ContourOptions, shortestRing, 0, highest, "MESS_OPT_ANNEAU",
                   "longueur en dessous de laquelle une courbe fermée est omise, dans l'unité du terrain"),
        QUVO_FIELD(ContourOptions, smoothing, 0, longestSmoothing, "MESS_OPT_LISSAGE",
                   "rayon de lissage du MNT avant le tracé, en cellules ; 0 : pas de lissage"),
        QUVO_FIELD(ContourOptions, polygons, 0, 0, "MESS_OPT_SURFACES",
                   "surfaces entre les niveaux au lieu de courbes"),
        QUVO_FIELD(ContourOptions, lowestAttribute, 0, 0, "MESS_OPT_ATTR_BAS",
                   "attribut qui reçoit l'altitude la plus basse d'une surface"),
        QUVO_FIELD(ContourOptions, highestAttribute, 0, 0, "MESS_OPT_ATTR_HAUT",
                   "attribut qui reçoit l'altitude la plus haute d'une surface"),
        QUVO_FIELD(ContourOptions, styled, 0, 0, "MESS_OPT_STYLES",
                   "donner leur dessin aux objets, dans les formats qui le gardent"),
        QUVO_FIELD(ContourOptions, qgisStyle, 0, 0, "MESS_OPT_QML",
                   "écrire un style QGIS (.qml) à côté du produit"),
    };
}

QString fieldProblem(const ContourOptions &options)
{
    if (options.polygons
        && (options.lowestAttribute.isEmpty() || options.highestAttribute.isEmpty()
            || options.lowestAttribute.compare(options.highestAttribute, Qt::CaseInsensitive) == 0))
        return labelText(
            {"MESS_OPT_CN_ATTRIBUTS", "Les deux attributs des surfaces doivent avoir des noms différents."});
    const QString taken = takenAttributeProblem(options);
    return taken.isEmpty() ? levelsProblem(options.fixedLevels) : taken;
}

QString runProblem(const ContourOptions &options)
{
    if (!isComplete(options))
        return labelText({"MESS_OPT_CN_RIEN", "Indiquez interval ou fixedLevels."});
    if (options.interval && *options.interval <= 0.0)
        return labelText({"MESS_CN_INTERV_NUL", "Un intervalle de 0 ne donne aucune courbe."});
    if (options.indexEvery > 0 && !options.interval && !options.polygons)
        return labelText({"MESS_OPT_CN_MAITRES",
                          "Les courbes maîtresses se comptent dans un intervalle : indiquez-le aussi."});
    const QString problem = fieldProblem(options);
    return problem.isEmpty() ? ignoredValueProblem(options) : problem;
}

bool dependsOnExtremes(const ContourOptions &)
{
    return true;
}

// The words and the fragments.

struct Word
{
    QString operator()(const ShadedOptions &) const { return QStringLiteral("hillshade"); }
    QString operator()(const SlopeOptions &) const { return QStringLiteral("slope"); }
    QString operator()(const AspectOptions &) const { return QStringLiteral("aspect"); }
    QString operator()(const TerrainIndexOptions &record) const { return terrainIndexWord(record.type); }
    QString operator()(const ColorReliefOptions &) const { return QStringLiteral("color-relief"); }
    QString operator()(const IntervisibilityOptions &) const { return QStringLiteral("intervisibility"); }
    QString operator()(const ContourOptions &) const { return QStringLiteral("contour"); }
};

struct Fragment
{
    QString operator()(const ShadedOptions &record) const { return shadedFragment(record); }
    QString operator()(const SlopeOptions &record) const { return slopeFragment(record); }
    QString operator()(const AspectOptions &record) const { return aspectFragment(record); }
    QString operator()(const TerrainIndexOptions &record) const { return terrainIndexFragment(record); }
    QString operator()(const ColorReliefOptions &record) const { return colorReliefFragment(record); }
    QString operator()(const IntervisibilityOptions &record) const
    {
        return intervisibilityFragment(record, {}) + sideFileArguments(sideFiles(record));
    }
    QString operator()(const ContourOptions &record) const { return contourFragment(record); }
};

} // namespace

QString scaleProblem(int scaleIndex, const QString &scaleText)
{
    if (scaleIndex >= 0 || readNumber(scaleText).value_or(0.0) > 0.0)
        return {};
    return labelText({"MESS_OPT_RAPPORT_INV", "Le rapport des unités doit être un nombre positif, pas « %1 »."})
        .arg(scaleText);
}

QString processWord(const ProcessOptions &options)
{
    return std::visit(Word(), options);
}

QString argumentFragment(const ProcessOptions &options)
{
    return std::visit(Fragment(), options);
}

QString optionsProblem(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return runProblem(record); }, options);
}

std::optional<double> chosenRatio(const ProcessOptions &options)
{
    return std::visit(
        [](const auto &record) -> std::optional<double> {
            if constexpr (HasScale<std::decay_t<decltype(record)>>) {
                if (record.scaleIndex != 0 && scaleProblem(record.scaleIndex, record.scaleText).isEmpty())
                    return scaleRatio(record.scaleIndex, record.scaleText).toDouble();
            }
            return std::nullopt;
        },
        options);
}

QString valuesProblem(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return fieldProblem(record); }, options);
}

void completeOptions(ProcessOptions &options, const QStringList &givenFields, const QString &folder)
{
    std::visit([&](auto &record) { complete(record, givenFields, folder); }, options);
}

QString setOption(ProcessOptions &options, const QString &name, const QVariant &value)
{
    return std::visit(
        [&](auto &record) {
            if (const auto problem = setRows(record, name, value))
                return *problem;
            QStringList names;
            for (const auto &field : fieldsOf(record)) {
                if (name == QLatin1String(field.name))
                    return setField(record, field, value);
                names += QString::fromLatin1(field.name);
            }
            return labelText({"MESS_OPT_INCONNUE", "Option inconnue : « %1 ». Options de ce traitement : %2."})
                .arg(name, names.join(QLatin1String(", ")));
        },
        options);
}

QVariantMap optionValues(const ProcessOptions &options)
{
    return std::visit(
        [](const auto &record) {
            QVariantMap values = rowValues(record);
            for (const auto &field : fieldsOf(record))
                values.insert(QString::fromLatin1(field.name), fieldValue(record, field));
            return values;
        },
        options);
}

ProcessOptions withoutSideFiles(ProcessOptions options)
{
    if (auto *sight = std::get_if<IntervisibilityOptions>(&options)) {
        sight->skyline.clear();
        sight->skylineStep.reset();
        sight->statistics.clear();
    }
    return options;
}

QVector<FieldDescription> describeOptions(const ProcessOptions &options)
{
    return std::visit(
        [](const auto &record) { return describeFields(record, fieldsOf(record)) + rowDescriptions(record); },
        options);
}

bool needsExtremes(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return dependsOnExtremes(record); }, options);
}

std::optional<double> compassOf(const ProcessOptions &options)
{
    const auto *shaded = std::get_if<ShadedOptions>(&options);
    return shaded && lightOf(*shaded) != Light::Multidirectional ? std::optional(shaded->compass)
                                                                 : std::nullopt;
}
