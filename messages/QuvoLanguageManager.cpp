#include "messages/QuvoLanguageManager.h"

#include "messages/KeyTranslator.h"
#include "messages/dicoindex.h"
#include "messages/languages.h"
#include "messages/logging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>

#include <cstdarg>

namespace
{

/// Reads the texts of a dictionary by key. The first text of a key counts; records that reach outside the data
/// file are skipped. Empty when a file is missing.
KeyTranslator::Texts readTexts(const QString &dataPath)
{
    KeyTranslator::Texts texts;
    QFile data(dataPath);
    QFile index(dataPath + QStringLiteral(".idx"));
    for (QFile *file : {&data, &index}) {
        if (!QFileInfo(*file).isFile() || !file->open(QIODevice::ReadOnly)) // reading a pipe might never end
            return texts;
    }
    const QByteArray allTexts = data.readAll();
    const QByteArray records = index.readAll();
    for (const DicoRecord &record :
         parseDicoIndex({records.constData(), static_cast<std::size_t>(records.size())})) {
        const QByteArray key = QByteArray::fromStdString(record.key);
        const bool fits = record.offset >= 0 && record.length >= 0 && record.offset <= allTexts.size()
            && record.length <= allTexts.size() - record.offset;
        if (fits && !texts.contains(key))
            texts.insert(key,
                         QString::fromUtf8(allTexts.mid(record.offset, record.length))
                             .section(QChar::Null, 0, 0)); // a C text ends at a NUL
    }
    return texts;
}

/// The texts of a language, and the locale for Qt's own texts and for numbers.
struct LanguageTexts
{
    KeyTranslator::Texts texts;
    QString locale;
};

LanguageTexts readLanguage(const QString &folder, const QString &name)
{
    const QString stem = QDir(folder).filePath(QStringLiteral("geodico"));
    const Language language = languageNamed(name);
    const QString english = QStringLiteral("en");
    LanguageTexts read{readTexts(stem + QString::fromLatin1(dicoLanguage(name.toStdString()).suffix)),
                       language.locale};
    if (read.texts.isEmpty()) {
        read.texts = readTexts(stem + QStringLiteral(".lc"));
        if (read.texts.isEmpty())
            qCWarning(lcMessages, "no dictionary in %s for %s", qUtf8Printable(folder), qUtf8Printable(name));
        if (read.locale != english)
            read.locale = allLanguages().first().locale; // the default texts are French
    } else if (read.locale != allLanguages().first().locale && read.locale != english) {
        const KeyTranslator::Texts others = readTexts(stem + QStringLiteral(".an"));
        for (auto text = others.begin(); text != others.end(); ++text) {
            if (!read.texts.contains(text.key()))
                read.texts.insert(text.key(), text.value());
        }
    }
    return read;
}

} // namespace

QuvoLanguageManager::QuvoLanguageManager() = default;
QuvoLanguageManager::~QuvoLanguageManager() = default;

QuvoLanguageManager *QuvoLanguageManager::getInstance()
{
    static QuvoLanguageManager manager;
    return &manager;
}

void QuvoLanguageManager::defaultSetup(const QString &messagesPath, const QString &language, const QString &)
{
    m_messagesPath = messagesPath;
    m_language = language;
    m_texts.reset(); // its destructor removes the translator from the application
    m_qtTexts = std::make_unique<QTranslator>();
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    const QString translations = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
    const LanguageTexts read = readLanguage(messagesPath, language);
    const QLocale locale(read.locale);
    if (m_qtTexts->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), translations))
        QCoreApplication::installTranslator(m_qtTexts.get());
    m_texts = std::make_unique<KeyTranslator>(read.texts, nullptr);
    QCoreApplication::installTranslator(m_texts.get());
    QLocale::setDefault(locale);
}

bool QuvoLanguageManager::currentLanguageNeedsReversedLayout() const
{
    const bool byName = m_language == QLatin1String("ARABIC") || m_language == QLatin1String("HEBREW");
    return byName && m_texts && m_texts->isRightToLeft();
}

QString QuvoLanguageManager::text(const char *key) const
{
    return m_texts ? m_texts->text(key) : QString();
}

QString dico_label(const char *key, ...)
{
    const QString text = QuvoLanguageManager::getInstance()->text(key);
    if (text.isNull())
        return QString::fromUtf8(key);
    const QByteArray format = text.toLocal8Bit();
    const std::string conversions = printfConversions(format.toStdString());
    if (conversions != "%s" && !conversions.empty())
        return text;
    std::va_list arguments;
    va_start(arguments, key);
    QByteArray filled(format.size() + 5000, '\0');
    const int length =
        std::vsnprintf(filled.data(), static_cast<std::size_t>(filled.size()), format.constData(), arguments);
    va_end(arguments);
    return QString::fromLocal8Bit(filled.constData(), qMin(length, static_cast<int>(filled.size()) - 1));
}
