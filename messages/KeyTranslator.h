#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QTranslator>

/// Answers translation calls by message key: the disambiguation is the key, the source text the default.
class KeyTranslator : public QTranslator
{
    Q_OBJECT

public:
    using Texts = QHash<QByteArray, QString>;

    /// texts: by key, keys cut to 23 bytes as in the dictionaries.
    KeyTranslator(Texts texts, QObject *parent);

    /// The key's text; null for an unknown key, so that the default text shows and Qt's own texts pass.
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;

    /// Never, or no LanguageChange would be sent for a language that takes all its texts from the defaults.
    bool isEmpty() const override { return false; }

    /// The text of a key; null when it is unknown.
    QString text(const QByteArray &key) const;

private:
    Texts m_texts;
};
