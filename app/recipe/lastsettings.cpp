#include "app/recipe/lastsettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace
{

const QString member = QStringLiteral("recipes");

} // namespace

QList<Recipe> readLastSettings(const QString &name)
{
    constexpr qint64 largestFile = 64LL * 1024 * 1024; // as of a recipe
    QFile file(name);
    if (!QFileInfo(name).isFile() || file.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return {};
    QList<Recipe> recipes;
    const QJsonArray entries = QJsonDocument::fromJson(file.readAll()).object().value(member).toArray();
    for (const QJsonValue &entry : entries) {
        const QByteArray text = QJsonDocument(entry.toObject()).toJson(QJsonDocument::Compact);
        const RecipeReading reading = readRecipe(text, QDir::rootPath());
        if (reading.problem.isEmpty())
            recipes += reading.recipe;
    }
    return recipes;
}

bool writeLastSettings(const QString &name, const QList<Recipe> &recipes)
{
    QJsonArray entries;
    for (const Recipe &recipe : recipes)
        entries += QJsonDocument::fromJson(writeRecipe(recipe)).object();
    const QByteArray text = QJsonDocument(QJsonObject{{member, entries}}).toJson(QJsonDocument::Compact);
    QDir().mkpath(QFileInfo(name).absolutePath());
    QSaveFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}
