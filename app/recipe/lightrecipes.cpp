#include "app/recipe/lightrecipes.h"

#include "app/recipe/recipe.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

namespace
{

const QString extension = QStringLiteral(".json");

} // namespace

/// Any name makes a file name: what a file system might not take is written as "%2F".
QString LightRecipes::fileOf(const QString &name) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(QUrl::toPercentEncoding(name, " ")) + extension;
}

QVector<LightPreset> LightRecipes::lights() const
{
    QVector<LightPreset> lights;
    const QStringList files = QDir(m_folder).entryList({QLatin1Char('*') + extension}, QDir::Files);
    for (const QString &file : files) {
        const RecipeReading reading = readRecipeFile(m_folder + QLatin1Char('/') + file);
        const auto *light = std::get_if<ShadedOptions>(&reading.recipe.options);
        const QString name = QUrl::fromPercentEncoding(file.left(file.size() - extension.size()).toUtf8());
        if (reading.problem.isEmpty() && light && !name.isEmpty())
            lights += {name, *light, true};
    }
    std::sort(lights.begin(), lights.end(), [](const LightPreset &one, const LightPreset &other) {
        return QString::localeAwareCompare(one.name, other.name) < 0;
    });
    return lights;
}

QString LightRecipes::keep(const QString &name, const ShadedOptions &light)
{
    const ProcessOptions options = withLight({}, light);
    const QString path = fileOf(name);
    const QByteArray text = writeRecipe({.process = processWord(options), .options = options});
    QSaveFile file(path);
    if (QDir().mkpath(m_folder) && file.open(QIODevice::WriteOnly) && file.write(text) == text.size()
        && file.commit())
        return {};
    return labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(path)
        + QLatin1Char('\n') + file.errorString();
}

QString LightRecipes::remove(const QString &name)
{
    const QString path = fileOf(name);
    if (!QFileInfo::exists(path) || QFile::remove(path))
        return {};
    return labelText({"MESS_ERR_SUPPRIMER", "Le fichier « %1 » n'a pas pu être supprimé."}).arg(path);
}
