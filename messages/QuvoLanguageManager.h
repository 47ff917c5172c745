#pragma once

#include <QString>

#include <memory>

class KeyTranslator;
class QTranslator;

/// The current language. Loads its message texts and installs the translators of the application.
class QuvoLanguageManager
{
public:
    /// The only manager. It needs an application object once a language is set up.
    static QuvoLanguageManager *getInstance();

    /// Loads the texts of a language ("FRENCH", "ENGLISH" …, see messages/dicoindex.h) from the dictionary in
    /// `messagesPath` and installs them with Qt's own texts in that language; every window receives a
    /// LanguageChange. Without that dictionary "geodico.lc" is used, and without both the default texts in the
    /// code. A text that a dictionary other than the French one lacks is shown in English, and one that English
    /// lacks, too, is the default text. `unused` is not read.
    void defaultSetup(const QString &messagesPath, const QString &language, const QString &unused);

    /// Switches to another language of the dictionaries that were set up last.
    void changeLanguage(const QString &language) { defaultSetup(m_messagesPath, language, QString()); }

    /// Whether the language is written from right to left, and so are the texts that are shown: without a
    /// dictionary of its own the texts of another language keep their layout.
    bool currentLanguageNeedsReversedLayout() const;

    /// The name of the language that was set up last.
    QString language() const { return m_language; }

    /// The folder of the dictionaries that were set up last.
    QString messagesPath() const { return m_messagesPath; }

    /// The text of a key in the dictionary; null for an unknown key.
    QString text(const char *key) const;

private:
    QuvoLanguageManager();
    ~QuvoLanguageManager();

    QString m_messagesPath;
    QString m_language;
    std::unique_ptr<KeyTranslator> m_texts;
    std::unique_ptr<QTranslator> m_qtTexts;
};

/// The text of a key that only the dictionaries hold. The arguments, C strings in the local encoding, replace
/// its printf conversions. A text with other conversions than at most one %s is returned unchanged, because
/// callers pass no more arguments than that. An unknown key is returned itself.
QString dico_label(const char *key, ...);
