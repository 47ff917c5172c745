#include "messages/languages.h"

#include "messages/dicoindex.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace
{

constexpr int alwaysThere = 2; ///< French and English, the first rows

DicoLanguage dictionaryOf(const QString &name)
{
    return dicoLanguage(name.toStdString());
}

} // namespace

const QVector<Language> &allLanguages()
{
    static const QVector<Language> languages{
        {QStringLiteral("FRENCH"), QStringLiteral("fr"), QStringLiteral("Français")},
        {QStringLiteral("ENGLISH"), QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("SPANISH"), QStringLiteral("es"), QStringLiteral("Español")},
        {QStringLiteral("PORTUGAIS"), QStringLiteral("pt"), QStringLiteral("Português")},
        {QStringLiteral("ALLEMAND"), QStringLiteral("de"), QStringLiteral("Deutsch")},
        {QStringLiteral("ITALIEN"), QStringLiteral("it"), QStringLiteral("Italiano")},
        {QStringLiteral("INDONESIEN"), QStringLiteral("id"), QStringLiteral("Bahasa Indonesia")},
        {QStringLiteral("CHINESE"), QStringLiteral("zh_TW"), QStringLiteral("繁體中文")},
        {QStringLiteral("CHINESE_CN"), QStringLiteral("zh_CN"), QStringLiteral("简体中文")},
        {QStringLiteral("RUSSIAN"), QStringLiteral("ru"), QStringLiteral("Русский")},
        {QStringLiteral("JAPANESE"), QStringLiteral("ja"), QStringLiteral("日本語")},
        {QStringLiteral("TURKISH"), QStringLiteral("tr"), QStringLiteral("Türkçe")},
    };
    return languages;
}

QVector<Language> availableLanguages(const QString &messagesPath)
{
    const QString stem = QDir(messagesPath).filePath(QStringLiteral("geodico"));
    QVector<Language> available = allLanguages().mid(0, alwaysThere);
    for (const Language &language : allLanguages().mid(alwaysThere)) {
        const QString dictionary = stem + QString::fromLatin1(dictionaryOf(language.name).suffix);
        if (QFileInfo(dictionary).isFile() && QFileInfo(dictionary + QStringLiteral(".idx")).isFile())
            available += language;
    }
    return available;
}

Language languageNamed(const QString &name)
{
    const int number = dictionaryOf(name).number;
    const auto found =
        std::find_if(allLanguages().begin(), allLanguages().end(),
                     [&](const Language &language) { return dictionaryOf(language.name).number == number; });
    return found == allLanguages().end() ? allLanguages().first() : *found;
}
