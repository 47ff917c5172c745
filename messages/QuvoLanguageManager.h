#pragma once

#include <QString>

#include <memory>

class KeyTranslator;
class QTranslator;

/// The language in use: loads its message texts and has the application's translation calls answered in it.
class QuvoLanguageManager
{
public:
    /// The single manager. It needs an application object when a language is set up.
    static QuvoLanguageManager *getInstance();

    /// Loads the texts of a language ("FRENCH", "ENGLISH": the names of messages/dicoindex.h) from the
    /// dictionary in `messagesPath` and installs them; every window gets a LanguageChange. A dictionary that is
    /// missing is replaced by "geodico.lc", and that by the default texts in the code. Qt's own texts follow.
    /// `unused` is always empty.
    void defaultSetup(const QString &messagesPath, const QString &language, const QString &unused);

    /// Another language from the dictionaries of the last set-up.
    void changeLanguage(const QString &language) { defaultSetup(m_messagesPath, language, QString()); }

    /// Whether the language is written from right to left.
    bool currentLanguageNeedsReversedLayout() const;

    /// The name that was given last.
    QString language() const { return m_language; }

    /// The text of a key in the dictionary; null when it is in none.
    QString text(const char *key) const;

private:
    QuvoLanguageManager();
    ~QuvoLanguageManager();

    QString m_messagesPath;
    QString m_language;
    std::unique_ptr<KeyTranslator> m_texts;
    std::unique_ptr<QTranslator> m_qtTexts;
};

/// The text of a key that lives only in the dictionary, with its printf places filled by the arguments, C
/// strings in the local encoding. A text whose places are not the ones that callers fill (at most one %s) shows
/// as it stands; an unknown key shows as itself.
QString dico_label(const char *key, ...);
