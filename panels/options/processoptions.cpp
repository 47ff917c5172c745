#include "panels/options/processoptions.h"

#include "colortable/colorrows.h"
#include "dataset/pathencoding.h"
#include "panels/options/contourlevels.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <limits>

namespace
{

// Fields that several records have, each with one meaning.

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

// The fields of each record, in the order of its declaration.

const QVector<RecordField<ShadedOptions>> &fieldsOf(const ShadedOptions &)
{
    static const QVector<RecordField<ShadedOptions>> fields{
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
    };
    return fields;
}

const QVector<RecordField<SlopeOptions>> &fieldsOf(const SlopeOptions &)
{
    static const QVector<RecordField<SlopeOptions>> fields{
        QUVO_FIELD(SlopeOptions, percent, 0, 0, "MESS_OPT_POURCENT", "pentes en pour cent au lieu de degrés"),
        scaleRowField<SlopeOptions>(),
        scaleTextField<SlopeOptions>(),
        edgesField<SlopeOptions>(),
        methodField<SlopeOptions>(),
    };
    return fields;
}

const QVector<RecordField<AspectOptions>> &fieldsOf(const AspectOptions &)
{
    static const QVector<RecordField<AspectOptions>> fields{
        QUVO_FIELD(AspectOptions, trigonometric, 0, 0, "MESS_OPT_TRIGO",
                   "angles depuis l'est, en sens inverse des aiguilles d'une montre, au lieu d'azimuts"),
        QUVO_FIELD(AspectOptions, zeroForFlat, 0, 0, "MESS_OPT_PLAT_ZERO",
                   "0 pour les zones plates au lieu de -9999"),
        edgesField<AspectOptions>(),
        methodField<AspectOptions>(),
    };
    return fields;
}

const QVector<RecordField<TerrainIndexOptions>> &fieldsOf(const TerrainIndexOptions &)
{
    static const QVector<RecordField<TerrainIndexOptions>> fields{edgesField<TerrainIndexOptions>()};
    return fields; // the word of the process says which index
}

constexpr double highestElevation = 1e9;

const QVector<RecordField<ColorReliefOptions>> &fieldsOf(const ColorReliefOptions &)
{
    static const QVector<RecordField<ColorReliefOptions>> fields{
        QUVO_FIELD(ColorReliefOptions, table, 0, 0, "MESS_OPT_TABLE",
                   "fichier de la table couleur, ou nom d'une table de la bibliothèque"),
        QUVO_FIELD(ColorReliefOptions, spread, 0, 0, "MESS_OPT_ETALER",
                   "étaler la table sur les altitudes du MNT au lieu de prendre les siennes"),
        QUVO_FIELD(ColorReliefOptions, minimum, -highestElevation, highestElevation, "MESS_OPT_ETALE_MIN",
                   "altitude où commence la table étalée ; par défaut la plus basse du MNT"),
        QUVO_FIELD(ColorReliefOptions, maximum, -highestElevation, highestElevation, "MESS_OPT_ETALE_MAX",
                   "altitude où finit la table étalée ; par défaut la plus haute du MNT"),
        QUVO_FIELD(ColorReliefOptions, alpha, 0, 0, "MESS_OPT_ALPHA", "canal alpha dans le produit"),
    };
    return fields;
}

const QVector<RecordField<IntervisibilityOptions>> &fieldsOf(const IntervisibilityOptions &)
{
    static const QVector<RecordField<IntervisibilityOptions>> fields{
        QUVO_FIELD(IntervisibilityOptions, points, 0, 0, "MESS_OPT_OBS_SOURCE",
                   "fichier vecteur dont les points, et les lignes échantillonnées, sont des observateurs"),
        QUVO_FIELD(IntervisibilityOptions, height, -highestElevation, highestElevation, "MESS_OPT_OBS_HAUTEUR",
                   "hauteur ou altitude de ces observateurs"),
        QUVO_FIELD(IntervisibilityOptions, mode, 0, 0, "MESS_OPT_OBS_MODE",
                   "Relative : au-dessus du sol ; Absolute : altitude"),
        QUVO_FIELD(IntervisibilityOptions, distance, 0, highestElevation, "MESS_OPT_OBS_DIST",
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
    };
    return fields;
}

const QVector<RecordField<ContourOptions>> &fieldsOf(const ContourOptions &)
{
    constexpr double highest = highestElevation;
    constexpr double anyNumber = std::numeric_limits<double>::max();
    static const QVector<RecordField<ContourOptions>> fields{
        QUVO_FIELD(ContourOptions, interval, 0, highest, "MESS_OPT_INTERVALLE",
                   "intervalle entre les courbes, dans l'unité du MNT"),
        QUVO_FIELD(ContourOptions, attribute, 0, 0, "MESS_OPT_ATTRIBUT",
                   "attribut qui reçoit l'altitude ; vide : aucun"),
        QUVO_FIELD(ContourOptions, threeD, 0, 0, "MESS_OPT_3D", "une altitude à chaque point des courbes"),
        QUVO_FIELD(ContourOptions, fixedLevels, 0, 0, "MESS_OPT_NIVEAUX",
                   "altitudes séparées par des espaces ; elles remplacent l'intervalle"),
        QUVO_FIELD(ContourOptions, everyValueValid, 0, 0, "MESS_OPT_TOUT_VALIDE",
                   "prendre aussi la valeur sans donnée du MNT pour une altitude"),
        QUVO_FIELD(ContourOptions, noDataValue, -anyNumber, anyNumber, "MESS_OPT_IGNORER",
                   "valeur du MNT à ignorer"),
        QUVO_FIELD(ContourOptions, offset, -highest, highest, "MESS_OPT_OFFSET",
                   "altitude à partir de laquelle comptent les intervalles"),
    };
    return fields;
}

struct Word
{
    QString operator()(const ShadedOptions &) const { return QStringLiteral("hillshade"); }
    QString operator()(const SlopeOptions &) const { return QStringLiteral("slope"); }
    QString operator()(const AspectOptions &) const { return QStringLiteral("aspect"); }
    QString operator()(const TerrainIndexOptions &record) const { return terrainIndexWord(record.type); }
    QString operator()(const IntervisibilityOptions &) const { return QStringLiteral("intervisibility"); }
    QString operator()(const ColorReliefOptions &) const { return QStringLiteral("color-relief"); }
    QString operator()(const ContourOptions &) const { return QStringLiteral("contour"); }
};

struct Fragment
{
    QString operator()(const ShadedOptions &record) const { return shadedFragment(record); }
    QString operator()(const SlopeOptions &record) const { return slopeFragment(record); }
    QString operator()(const AspectOptions &record) const { return aspectFragment(record); }
    QString operator()(const TerrainIndexOptions &record) const { return terrainIndexFragment(record); }
    QString operator()(const IntervisibilityOptions &record) const
    {
        return intervisibilityFragment(record, {});
    }
    QString operator()(const ColorReliefOptions &record) const { return colorReliefFragment(record); }
    QString operator()(const ContourOptions &record) const { return contourFragment(record); }
};

template <class Record>
concept HasScale = requires(Record record)
{
    record.scaleIndex;
    record.scaleText;
};

QString scaleProblem(int scaleIndex, const QString &scaleText)
{
    if (scaleIndex >= 0 || readNumber(scaleText).value_or(0.0) > 0.0)
        return {};
    return labelText({"MESS_OPT_RAPPORT_INV", "scaleText doit être un nombre positif, pas « %1 »."})
        .arg(scaleText);
}

QString intervisibilityValues(const IntervisibilityOptions &options)
{
    if (!readAltitudeMode(options.mode))
        return labelText({"MESS_OBS_MODE", "mode doit être Relative ou Absolute."});
    if (options.combination != QLatin1String("OR") && options.combination != QLatin1String("AND"))
        return labelText({"MESS_OBS_COMBIN", "combination doit être OR ou AND."});
    for (const QString &color : {options.visibleColor, options.hiddenColor, options.noDataColor}) {
        if (!QColor(color).isValid())
            return labelText({"MESS_OBS_COULEUR", "« %1 » n'est pas une couleur ; écrivez-la #RRVVBB."})
                .arg(color);
    }
    return {};
}

QString intervisibilityProblem(const IntervisibilityOptions &options)
{
    if (options.observers.isEmpty() && options.points.isEmpty())
        return labelText(
            {"MESS_OBS_AUCUN", "Indiquez des observateurs : points (un fichier vecteur) ou observers."});
    return intervisibilityValues(options);
}

QString setColors(ColorReliefOptions &options, const QVariant &value)
{
    const ColorRowsReading reading = readColorRows(value);
    if (reading.problem.isEmpty())
        options.colors = reading.entries;
    return reading.problem;
}

/// The rows of a recipe's "observers".
QString setObservers(IntervisibilityOptions &options, const QVariant &value)
{
    if (value.userType() != QMetaType::QVariantList)
        return labelText({"MESS_OBS_TABLEAU", "observers doit être un tableau d'observateurs."});
    options.observers.clear();
    for (const QVariant &row : value.toList()) {
        const PointRowReading reading = readPointRow(row.toMap());
        if (!reading.problem.isEmpty())
            return reading.problem;
        options.observers += reading.point;
    }
    return {};
}

QString contourProblem(const ContourOptions &options)
{
    if (!isComplete(options))
        return labelText({"MESS_OPT_CN_RIEN", "Indiquez interval ou fixedLevels."});
    if (options.interval && *options.interval <= 0.0)
        return labelText({"MESS_CN_INTERV_NUL", "Un intervalle de 0 ne donne aucune courbe."});
    return levelsProblem(options.fixedLevels);
}

} // namespace

QString processWord(const ProcessOptions &options)
{
    return std::visit(Word(), options);
}

QString optionsProblem(const ProcessOptions &options)
{
    return std::visit(
        []<class Record>(const Record &record) {
            if constexpr (HasScale<Record>)
                return scaleProblem(record.scaleIndex, record.scaleText);
            else if constexpr (std::is_same_v<Record, IntervisibilityOptions>)
                return intervisibilityProblem(record);
            else if constexpr (std::is_same_v<Record, ContourOptions>)
                return contourProblem(record);
            else
                return QString();
        },
        options);
}

QString valuesProblem(const ProcessOptions &options)
{
    if (const auto *observers = std::get_if<IntervisibilityOptions>(&options))
        return intervisibilityValues(*observers);
    if (const auto *contours = std::get_if<ContourOptions>(&options))
        return levelsProblem(contours->fixedLevels);
    const QString ratioProblem = std::visit(
        []<class Record>(const Record &record) {
            if constexpr (HasScale<Record>)
                return record.scaleText.isEmpty() ? QString()
                                                  : scaleProblem(record.scaleIndex, record.scaleText);
            else
                return QString();
        },
        options);
    if (!ratioProblem.isEmpty())
        return ratioProblem;
    const auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (colors && colors->minimum && colors->maximum && *colors->minimum > *colors->maximum)
        return labelText({"MESS_TC_BORNES", "minimum ne doit pas dépasser maximum."});
    return {};
}

void settle(ProcessOptions &options, const QStringList &givenFields)
{
    auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (colors && givenFields.contains(QLatin1String("table"))
        && !givenFields.contains(QLatin1String("colors")))
        colors->colors.clear();
    std::visit(
        [&]<class Record>(Record &record) {
            if constexpr (HasScale<Record>) {
                if (givenFields.contains(QLatin1String("scaleText"))
                    && !givenFields.contains(QLatin1String("scaleIndex")))
                    record.scaleIndex = -1;
            }
        },
        options);
}

void resolveFiles(ProcessOptions &options, const QString &folder)
{
    if (auto *observers = std::get_if<IntervisibilityOptions>(&options)) {
        if (!observers->points.isEmpty())
            observers->points = dataSetName(observers->points, folder);
    }
    auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (!colors || colors->table.isEmpty())
        return;
    const QString file = QDir(folder).filePath(colors->table);
    if (QFileInfo::exists(file)) // the name of a table of the library otherwise
        colors->table = file;
}

QString argumentFragment(const ProcessOptions &options)
{
    return std::visit(Fragment(), options);
}

QString setOption(ProcessOptions &options, const QString &name, const QVariant &value)
{
    auto *observers = std::get_if<IntervisibilityOptions>(&options);
    if (observers && name == QLatin1String("observers"))
        return setObservers(*observers, value);
    auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (colors && name == QLatin1String("colors"))
        return setColors(*colors, value);
    return std::visit(
        [&](auto &record) {
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
    QVariantMap values = std::visit(
        [](const auto &record) {
            QVariantMap fields;
            for (const auto &field : fieldsOf(record))
                fields.insert(QString::fromLatin1(field.name), fieldValue(record, field));
            return fields;
        },
        options);
    if (const auto *observers = std::get_if<IntervisibilityOptions>(&options)) {
        QVariantList rows;
        for (const ObserverPoint &point : observers->observers)
            rows += pointRow(point);
        values.insert(QStringLiteral("observers"), rows);
    }
    const auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (colors && !colors->colors.isEmpty())
        values.insert(QStringLiteral("colors"), colorRows(colors->colors));
    return values;
}

bool needsExtremes(const ProcessOptions &options)
{
    const auto *colors = std::get_if<ColorReliefOptions>(&options);
    return std::holds_alternative<ContourOptions>(options)
        || (colors && colors->spread && !(colors->minimum && colors->maximum));
}

std::optional<double> compassOf(const ProcessOptions &options)
{
    const auto *shaded = std::get_if<ShadedOptions>(&options);
    return shaded ? std::optional(shaded->compass) : std::nullopt;
}

QVector<FieldDescription> describeOptions(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return describeFields(record, fieldsOf(record)); }, options);
}
