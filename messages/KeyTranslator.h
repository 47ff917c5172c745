#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QTranslator>

/// Translates by message key: the disambiguation of a translation call is the key, its source text the default.
class KeyTranslator : public QTranslator
{
    Q_OBJECT

public:
    using Texts = QHash<QByteArray, QString>;

    /// texts: by key, where keys are cut to 23 bytes as in the dictionaries. A text of nothing but blanks and
    /// places for values (%1, %s) counts as missing. So no message is ever shown as an empty text, which would
    /// mean "no problem" to its reader.
    KeyTranslator(Texts texts, QObject *parent);

    /// The text of the key `disambiguation`. Null for an unknown key: the default text is then shown, and Qt's
    /// own texts are left to Qt's translator.
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;

    /// Always false: Qt would send no LanguageChange for an empty translator, such as that of a language
    /// without a dictionary.
    bool isEmpty() const override { return false; }

    /// The text of a key; null when it is unknown.
    QString text(const QByteArray &key) const;

    /// Whether most of the texts run from right to left; false without texts.
    bool isRightToLeft() const;

private:
    Texts m_texts;
};
