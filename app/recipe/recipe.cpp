#include "app/recipe/recipe.h"

#include "dataset/pathencoding.h"
#include "dataset/views/mosaic.h"
#include "messages/label.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace
{

constexpr int formatVersion = 1;

constexpr Label textValue{"MESS_REC_UN_TEXTE", "un texte"};

QString fromFolder(const QString &folder, const QString &path)
{
    return path.isEmpty() ? path : dataSetName(path, folder);
}

QString wrongMember(const QString &name, const Label &expected)
{
    return labelText({"MESS_REC_MEMBRE_INV", "« %1 » doit être %2."}).arg(name, labelText(expected));
}

/// The text in a member of a recipe; empty for a value of another kind, and for a text with a NUL character, at
/// which GDAL would end the name.
std::optional<QString> readText(const QJsonValue &value)
{
    const QString text = value.toString();
    return value.isString() && !text.contains(QChar(0)) ? std::optional(text) : std::nullopt;
}

/// The paths in a list of at least two texts; nothing for any other value.
std::optional<QStringList> readTileList(const QJsonValue &value, const QString &folder)
{
    QStringList tiles;
    for (const auto &tile : value.toArray()) {
        const auto path = readText(tile);
        if (!path || path->isEmpty())
            return std::nullopt;
        tiles += fromFolder(folder, *path);
    }
    return tiles.size() > 1 ? std::optional(tiles) : std::nullopt;
}

// The functions below fill in the recipe. Each returns the problem of the JSON that it reads, in a sentence;
// empty when that is valid.

/// Reads a member other than "format", "process" and "options".
QString readMember(Recipe &recipe, const QString &name, const QJsonValue &value, const QString &folder)
{
    static constexpr Label partOfDem{"MESS_REC_UNE_PARTIE",
                                     "quatre nombres entiers, « colonne ligne colonnes lignes »"};
    static constexpr Label bandNumber{"MESS_REC_UNE_BANDE", "un numéro de bande, à partir de 1"};

    if (name == QLatin1String("input") || name == QLatin1String("output")) {
        const auto path = readText(value);
        (name == QLatin1String("input") ? recipe.input : recipe.output) =
            fromFolder(folder, path.value_or(QString()));
        return path ? QString() : wrongMember(name, textValue);
    }
    if (name == QLatin1String("tiles")) {
        static constexpr Label fileList{"MESS_REC_DES_TUILES", "une liste d'au moins deux fichiers"};
        const auto tiles = readTileList(value, folder);
        recipe.tiles = tiles.value_or(QStringList());
        return tiles ? QString() : wrongMember(name, fileList);
    }
    if (name == QLatin1String("band")) {
        recipe.band = value.toInt(0);
        return recipe.band >= 1 ? QString() : wrongMember(name, bandNumber);
    }
    if (name == QLatin1String("part")) {
        const auto part = value.isString() ? readPart(value.toString()) : std::nullopt;
        recipe.part = part.value_or(QRect());
        return part ? QString() : wrongMember(name, partOfDem);
    }
    for (const OutputOptionField &output : outputOptionFields()) {
        if (name == QLatin1String(output.field.name))
            return setField(recipe.outputOptions, output.field, value.toVariant());
    }
    return labelText({"MESS_REC_INCONNU", "Membre inconnu : « %1 »."}).arg(name);
}

QString readOptions(Recipe &recipe, const QJsonValue &value, const QString &folder)
{
    if (!value.isObject())
        return wrongMember(QStringLiteral("options"), {"MESS_REC_UN_OBJET", "un objet"});
    const QJsonObject options = value.toObject();
    for (auto option = options.begin(); option != options.end(); ++option) {
        const QString problem = setOption(recipe.options, option.key(), option.value().toVariant());
        if (!problem.isEmpty())
            return problem;
    }
    completeOptions(recipe.options, options.keys(), folder);
    return {};
}

QString readObject(Recipe &recipe, QJsonObject object, const QString &folder)
{
    if (object.take(QStringLiteral("format")).toInt(0) != formatVersion)
        return labelText({"MESS_REC_FORMAT", "« format » doit être %1."}).arg(formatVersion);

    const QJsonValue word = object.take(QStringLiteral("process"));
    if (!word.isString())
        return wrongMember(QStringLiteral("process"), textValue);
    recipe.process = word.toString();
    const NamedProcess *process = findProcess(recipe.process);
    if (!process)
        return unknownProcessProblem(recipe.process);
    recipe.options = process->defaults;

    const QJsonValue options = object.take(QStringLiteral("options"));
    if (!options.isUndefined()) {
        const QString problem = readOptions(recipe, options, folder);
        if (!problem.isEmpty())
            return problem;
    }
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString problem = readMember(recipe, member.key(), member.value(), folder);
        if (!problem.isEmpty())
            return problem;
    }
    if (!recipe.tiles.isEmpty() && !recipe.input.isEmpty())
        return labelText({"MESS_REC_TUILES_ENTREE",
                          "« input » et « tiles » ne s'emploient pas ensemble : le MNT est un fichier, ou la "
                          "mosaïque de plusieurs."});
    return {};
}

} // namespace

QString namingInput(const Recipe &recipe)
{
    return recipe.tiles.isEmpty() ? recipe.input : mosaicName(recipe.tiles);
}

ProcessOptions withOwnSideFiles(ProcessOptions options, const QString &product)
{
    auto *sight = std::get_if<IntervisibilityOptions>(&options);
    if (!sight)
        return options;
    const auto rename = [&product](QString &file, const QString &word) {
        if (!file.isEmpty())
            file = sideFileName(product, word, QFileInfo(file).suffix());
    };
    rename(sight->skyline, skylineWord);
    rename(sight->statistics, statisticsWord);
    return options;
}

RecipeReading readRecipe(const QByteArray &json, const QString &folder)
{
    RecipeReading reading;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = json.left(error.offset).count('\n') + 1;
        reading.problem = labelText({"MESS_REC_PAS_JSON", "Ligne %1 : ce n'est pas du JSON valable (%2)."})
                              .arg(QString::number(line), error.errorString());
    } else if (!document.isObject()) {
        reading.problem = labelText({"MESS_REC_PAS_OBJET", "Une recette est un objet JSON, entre accolades."});
    } else {
        reading.problem = readObject(reading.recipe, document.object(), folder);
    }
    return reading;
}

RecipeReading readRecipeFile(const QString &name)
{
    constexpr qint64 largestRecipe = 64LL * 1024 * 1024;
    QFile file(name);
    RecipeReading reading;
    if (QFileInfo(name).isFile() && file.size() <= largestRecipe && file.open(QIODevice::ReadOnly)) {
        reading = readRecipe(file.readAll(), QFileInfo(name).absolutePath());
        if (!reading.problem.isEmpty())
            reading.problem = withColon(name) + QLatin1Char(' ') + reading.problem;
    } else {
        reading.problem =
            labelText({"MESS_REC_ILLISIBLE", "La recette « %1 » ne peut pas être lue."}).arg(name);
    }
    return reading;
}

QByteArray writeRecipe(const Recipe &recipe)
{
    QJsonObject object{{QStringLiteral("format"), formatVersion},
                       {QStringLiteral("process"), recipe.process},
                       {QStringLiteral("band"), recipe.band}};
    const auto insertText = [&](const QString &name, const QString &text) {
        if (!text.isEmpty())
            object.insert(name, text);
    };
    if (recipe.tiles.isEmpty())
        insertText(QStringLiteral("input"), recipe.input);
    else
        object.insert(QStringLiteral("tiles"), QJsonArray::fromStringList(recipe.tiles));
    insertText(QStringLiteral("output"), recipe.output);
    insertText(QStringLiteral("part"), partText(recipe.part));
    for (const OutputOptionField &output : outputOptionFields()) {
        const QVariant value = fieldValue(recipe.outputOptions, output.field);
        if (value.userType() == QMetaType::QString)
            insertText(QString::fromLatin1(output.field.name), value.toString());
        else
            object.insert(QString::fromLatin1(output.field.name), QJsonValue::fromVariant(value));
    }
    object.insert(QStringLiteral("options"), QJsonObject::fromVariantMap(optionValues(recipe.options)));
    return QJsonDocument(object).toJson();
}
