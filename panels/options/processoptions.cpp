#include "panels/options/processoptions.h"

#include "colortable/colorrows.h"
#include "dataset/pathencoding.h"
#include "panels/options/contours/contourfields.h"
#include "panels/options/contours/contourinput.h"
#include "panels/options/sightfields.h"
#include "panels/options/valueclasses.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <limits>

// Each record has a block of its own, or a file of its own if it is large: the table of its fields, and
// overloads of the templates that stand first, which answer for all other records. The words and the fragments
// of all processes follow the blocks.

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

QString missingScale(int scaleIndex, const QString &scaleText)
{
    return scaleIndex >= 0 || !scaleText.isEmpty()
        ? QString()
        : labelText({"MESS_MANQUE_RAPPORT", "Indiquez le rapport de l'unité verticale à l'unité horizontale."});
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
    if (auto *contours = std::get_if<ContourOptions>(&options))
        contours->qgisStyle = false;
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
