#pragma once

#include <QString>
#include <QVector>

/// A language for which there may be a dictionary.
struct Language
{
    QString name;    ///< in settings and in GEOLANGUE; a name of messages/dicoindex.h
    QString locale;  ///< for QLocale and Qt's own texts, such as "zh_TW"
    QString ownName; ///< what its speakers call it
};

/// Every language of messages/dicoindex.h once: French and English, then the others in the order of that table.
const QVector<Language> &allLanguages();

/// The languages whose texts can be shown: French and English always, another one where `messagesPath` holds
/// its dictionary (geodico.it and geodico.it.idx for Italian).
QVector<Language> availableLanguages(const QString &messagesPath);

/// The language that `name` means, also by another of its names ("FR", "ANGLAIS"). French, the language of the
/// default texts, for an unknown name.
Language languageNamed(const QString &name);
