#include "app/recipe/recipe.h"

#include "dataset/pathencoding.h"
#include "panels/controls/labels.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

constexpr int formatVersion = 1;

struct TextMember
{
    const char *name;
    QString Recipe::*member;
    bool isPath;
};
constexpr TextMember textMembers[] = {{"input", &Recipe::input, true},
                                      {"output", &Recipe::output, true},
                                      {"outputFormat", &Recipe::outputFormat, false},
                                      {"layerName", &Recipe::layerName, false}};

constexpr Label textValue{"MESS_REC_UN_TEXTE", "un texte"};

QString fromFolder(const QString &folder, const QString &path)
{
    return path.isEmpty() ? path : dataSetName(path, folder);
}

QString wrongMember(const QString &name, const Label &expected)
{
    return labelText({"MESS_REC_MEMBRE_INV", "« %1 » doit être %2."}).arg(name, labelText(expected));
}

/// Reads the plain members, all but "format", "process" and "options"; returns what is wrong with this one.
QString takeMember(Recipe &recipe, const QString &name, const QJsonValue &value, const QString &folder)
{
    static constexpr Label boolean{"MESS_REC_UN_BOOL", "true ou false"};
    static constexpr Label bandNumber{"MESS_REC_UNE_BANDE", "un numéro de bande, à partir de 1"};

    for (const TextMember &known : textMembers) {
        if (name == QLatin1String(known.name)) {
            recipe.*known.member = known.isPath ? fromFolder(folder, value.toString()) : value.toString();
            const bool good =
                value.isString() && !value.toString().contains(QChar(0)); // which ends a path for GDAL
            return good ? QString() : wrongMember(name, textValue);
        }
    }
    if (name == QLatin1String("band")) {
        recipe.band = value.toInt(0);
        return recipe.band >= 1 ? QString() : wrongMember(name, bandNumber);
    }
    struct SwitchMember
    {
        const char *name;
        bool Recipe::*member;
    };
    static constexpr SwitchMember switches[] = {
        {"tiled", &Recipe::tiled}, {"worldFile", &Recipe::worldFile}, {"overviews", &Recipe::overviews}};
    for (const SwitchMember &known : switches) {
        if (name == QLatin1String(known.name)) {
            recipe.*known.member = value.toBool();
            return value.isBool() ? QString() : wrongMember(name, boolean);
        }
    }
    return labelText({"MESS_REC_INCONNU", "Membre inconnu : « %1 »."}).arg(name);
}

QString takeOptions(Recipe &recipe, const QJsonValue &value, const QString &folder)
{
    if (!value.isObject())
        return wrongMember(QStringLiteral("options"), {"MESS_REC_UN_OBJET", "un objet"});
    const QJsonObject options = value.toObject();
    for (auto option = options.begin(); option != options.end(); ++option) {
        const QString problem = setOption(recipe.options, option.key(), option.value().toVariant());
        if (!problem.isEmpty())
            return problem;
    }
    settle(recipe.options, options.keys());
    resolveFiles(recipe.options, folder);
    return {};
}

QString takeObject(Recipe &recipe, QJsonObject object, const QString &folder)
{
    if (object.take(QStringLiteral("format")).toInt(0) != formatVersion)
        return labelText({"MESS_REC_FORMAT", "« format » doit être %1."}).arg(formatVersion);

    const QJsonValue word = object.take(QStringLiteral("process"));
    if (!word.isString())
        return wrongMember(QStringLiteral("process"), textValue);
    recipe.process = word.toString();
    const BatchProcess *process = findBatchProcess(recipe.process);
    if (!process)
        return unknownProcess(recipe.process);
    recipe.options = process->defaults;

    const QJsonValue options = object.take(QStringLiteral("options"));
    if (!options.isUndefined()) {
        const QString problem = takeOptions(recipe, options, folder);
        if (!problem.isEmpty())
            return problem;
    }
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString problem = takeMember(recipe, member.key(), member.value(), folder);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

} // namespace

RecipeReading readRecipe(const QByteArray &json, const QString &folder)
{
    RecipeReading reading;
    QJsonParseError fault;
    const QJsonDocument document = QJsonDocument::fromJson(json, &fault);
    if (fault.error != QJsonParseError::NoError) {
        const auto line = json.left(fault.offset).count('\n') + 1;
        reading.problem = labelText({"MESS_REC_PAS_JSON", "Ligne %1 : ce n'est pas du JSON valable (%2)."})
                              .arg(QString::number(line), fault.errorString());
    } else if (!document.isObject()) {
        reading.problem = labelText({"MESS_REC_PAS_OBJET", "Une recette est un objet JSON, entre accolades."});
    } else {
        reading.problem = takeObject(reading.recipe, document.object(), folder);
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
    QJsonObject object{
        {QStringLiteral("format"), formatVersion},       {QStringLiteral("process"), recipe.process},
        {QStringLiteral("band"), recipe.band},           {QStringLiteral("tiled"), recipe.tiled},
        {QStringLiteral("worldFile"), recipe.worldFile}, {QStringLiteral("overviews"), recipe.overviews}};
    for (const TextMember &member : textMembers) {
        const QString &text = recipe.*member.member;
        if (!text.isEmpty())
            object.insert(QLatin1String(member.name), text);
    }
    object.insert(QStringLiteral("options"), QJsonObject::fromVariantMap(optionValues(recipe.options)));
    return QJsonDocument(object).toJson();
}
