#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/label.h"
#include "messages/languages.h"
#include "tests/fuzz/mutations.h"
#include "tests/support/dictionaries.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDirIterator>
#include <QFile>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

class LanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKeyHasAnEnglishText();
    void bothLanguages();
    void thirdLanguage();
    void missingDictionaries();
    void longKeysAreComparedByTheirStart();
    void prompts();
    void mutations();
};

namespace
{

DictionarySource source(const char *name)
{
    return parseDictionary(bytesOf(QStringLiteral(QUVO_SOURCE "/messages/dictionary/") + name).toStdString());
}

const QString messagesFolder = QStringLiteral(QUVO_TREE "/MESSAGES");

/// The keys in code and forms, each with its default text where one is found beside it.
QHash<QString, QString> keysInSources()
{
    static const QRegularExpression inCode(
        QStringLiteral("\"(MESS_[^\"]+)\"(?:\\s*,\\s*((?:\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+))?"));
    static const QRegularExpression inForms(QStringLiteral("comment=\"(MESS_[^\"]+)\">([^<]*)<"));
    QHash<QString, QString> keys;
    for (const char *folder :
         {"messages", "dataset", "runner", "panels", "app", "colortable", "resources/forms"}) {
        QDirIterator files(QStringLiteral(QUVO_SOURCE "/") + folder, {"*.cpp", "*.h", "*.ui"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString text = QString::fromUtf8(bytesOf(files.next()));
            auto matches = (files.fileName().endsWith(".ui") ? inForms : inCode).globalMatch(text);
            while (matches.hasNext()) {
                const auto match = matches.next();
                keys.insert(match.captured(1), match.captured(2));
            }
        }
    }
    return keys;
}

} // namespace

void LanguageTest::everyKeyHasAnEnglishText()
{
    QHash<QString, std::string> english;
    for (const DictionaryEntry &entry : source("english.txt").entries)
        english.insert(QString::fromStdString(entry.key), entry.text);
    const auto keys = keysInSources();
    QVERIFY(keys.size() > 50);
    QHash<QString, QString> starts;
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        const QString start = key.key().left(23);
        QVERIFY2(english.contains(start), qPrintable(key.key()));
        QVERIFY2(!starts.contains(start), qPrintable(start));
        starts.insert(start, key.key());
        QVERIFY2(key.value() != QLatin1String("\"\""), qPrintable(key.key()));
        if (!key.value().isEmpty())
            QVERIFY2(qtPlaces(key.value().toStdString()) == qtPlaces(english.value(start)),
                     qPrintable(key.key()));
    }
    for (const DictionaryEntry &entry : source("french.txt").entries)
        QVERIFY2(english.contains(QString::fromStdString(entry.key)), entry.key.c_str());
}

void LanguageTest::bothLanguages()
{
    QuvoLanguageManager *languages = QuvoLanguageManager::getInstance();
    languages->defaultSetup(messagesFolder, "FRENCH", {});
    QCOMPARE(labelText({"MESS_SECONDES", "second(s)"}), QStringLiteral("seconde(s)"));
    QCOMPARE(labelText({"MESS_TRAIT_ANNULE", "défaut"}), QStringLiteral("défaut"));
    QCOMPARE(dico_label("MESS_FICHIER_EXISTANT", "/a %1 %s/é.tif"),
             QStringLiteral("Le fichier « /a %1 %s/é.tif » existe déjà. Voulez-vous le remplacer ?"));
    const auto cancelText = [] {
        return QDialogButtonBox(QDialogButtonBox::Cancel).buttons().constFirst()->text();
    };
    QVERIFY(cancelText().contains("Annuler"));

    struct Window : QWidget
    {
        int changes = 0;
        void changeEvent(QEvent *event) override { changes += event->type() == QEvent::LanguageChange; }
    } window;
    languages->defaultSetup(messagesFolder, "ENGLISH", {});
    QCOMPARE(labelText({"MESS_TRAIT_ANNULE", "défaut"}), QStringLiteral("The process was cancelled."));
    QCoreApplication::processEvents();
    QVERIFY(window.changes > 0);
    QVERIFY(cancelText().contains("Cancel"));
    QCOMPARE(labelText({"MESS_NO_SUCH_KEY", "défaut"}), QStringLiteral("défaut"));
    QCOMPARE(dico_label("MESS_NO_SUCH_KEY", "x"), QStringLiteral("MESS_NO_SUCH_KEY"));
    QVERIFY(!languages->currentLanguageNeedsReversedLayout());
}

void LanguageTest::thirdLanguage()
{
    // The compiler refuses a language whose places differ from those of any other one.
    const QTemporaryDir folder;
    const auto compile = [&](const QByteArray &italian) {
        const QString sources = QStringLiteral(QUVO_SOURCE "/messages/dictionary/");
        return runProgram(QStringLiteral(QUVO_TREE "/../messages/dictionary_compiler"),
                          {folder.path(), "fr", sources + "french.txt", "an", sources + "english.txt", "it",
                           writeFile(folder.filePath("italian.txt"), italian)})
            .code;
    };
    QCOMPARE(compile("MESS_FICHIER_EXISTANT = Il file %d esiste."), 1);
    QCOMPARE(availableLanguages(folder.path()).size(), 2);
    QCOMPARE(compile("MESS_FERMER = Chiudi\nMESS_OUI = Sì"), 0);
    const auto available = availableLanguages(folder.path());
    QCOMPARE(available.size(), 3);
    QCOMPARE(available.last().ownName, QStringLiteral("Italiano"));

    QuvoLanguageManager *languages = QuvoLanguageManager::getInstance();
    for (const QString &name : {available.last().name, QStringLiteral("IT")}) {
        languages->defaultSetup(folder.path(), name, {});
        QCOMPARE(labelText({"MESS_FERMER", "Fermer"}), QStringLiteral("Chiudi"));
        QCOMPARE(labelText({"MESS_TRAIT_ANNULE", "défaut"}), QStringLiteral("The process was cancelled."));
        QVERIFY(dico_label("MESS_FICHIER_EXISTANT", "a").startsWith("The file \"a\""));
        QCOMPARE(labelText({"MESS_NO_SUCH_KEY", "défaut"}), QStringLiteral("défaut"));
        QVERIFY(QDialogButtonBox(QDialogButtonBox::Cancel).buttons().constFirst()->text().contains("Annulla"));
        QCOMPARE(QLocale().language(), QLocale::Italian);
        languages->changeLanguage("ALLEMAND"); // has no dictionary: the default one is French
        QCOMPARE(labelText({"MESS_SECONDES", "second(s)"}), QStringLiteral("seconde(s)"));
        QCOMPARE(QLocale().language(), QLocale::French);
    }

    // Every language is found again under its own name.
    for (const Language &language : allLanguages())
        QCOMPARE(languageNamed(language.name).locale, language.locale);
}

void LanguageTest::missingDictionaries()
{
    QuvoLanguageManager *languages = QuvoLanguageManager::getInstance();
    languages->defaultSetup(messagesFolder, "HEBREW", {}); // has no dictionary: the default one is used
    QCOMPARE(labelText({"MESS_SECONDES", "second(s)"}), QStringLiteral("seconde(s)"));
    QVERIFY(!languages->currentLanguageNeedsReversedLayout());
    const QTemporaryDir hebrew;
    writeDictionary(hebrew.filePath("geodico.lc"), "MESS_FERMER = סגור");
    languages->defaultSetup(hebrew.path(), "HEBREW", {});
    QVERIFY(languages->currentLanguageNeedsReversedLayout());
    writeDictionary(hebrew.filePath("geodico.lc"),
                    "MESS_FERMER =  \nMESS_OUI = Oh\nMESS_A = %1 %L2\nMESS_B = %s");
    languages->defaultSetup(hebrew.path(), "FRENCH", {});
    // A text without words counts as missing: an empty sentence would pass for "no problem".
    QCOMPARE(labelText({"MESS_FERMER", "Fermer"}), QStringLiteral("Fermer"));
    QCOMPARE(labelText({"MESS_A", "« %1 » de %2 ?"}).arg(QString(), QString()), QStringLiteral("«  » de  ?"));
    QCOMPARE(dico_label("MESS_B", ""), QStringLiteral("MESS_B"));
    QVERIFY(!languages->currentLanguageNeedsReversedLayout());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no dictionary in /no/such"));
    languages->defaultSetup("/no/such", "ENGLISH", {});
    QCOMPARE(labelText({"MESS_SECONDES", "second(s)"}), QStringLiteral("second(s)"));
}

void LanguageTest::longKeysAreComparedByTheirStart()
{
    const QTemporaryDir folder;
    writeDictionary(folder.filePath("geodico.an"), "MESS_ ATN_TC_VAL_INVALI = bad value\nODD = a %s %s\n");
    QuvoLanguageManager::getInstance()->defaultSetup(folder.path(), "EN", {});
    QCOMPARE(labelText({"MESS_ ATN_TC_VAL_INVALID", "défaut"}), QStringLiteral("bad value"));
    // A text with more conversions than callers fill:
    QCOMPARE(dico_label("ODD", "x"), QStringLiteral("a %s %s"));
}

void LanguageTest::prompts()
{
    Prompt::answerBeforehand({true});
    QVERIFY(Prompt::question(nullptr, "one"));
    QVERIFY(!Prompt::question(nullptr, "two"));
    Prompt::warning(nullptr, "three");
    QCOMPARE(Prompt::takeShown(), (QStringList{"Question: one", "Question: two", "Attention: three"}));
}

void LanguageTest::mutations()
{
    // Records of a plain text, of one with a place, of one that reaches beyond the texts, and of one outside.
    const std::vector<DicoRecord> records{{"ERREUR", 0, 6, 0, 0},
                                          {"FICHIER", 6, 10, 12, DicoError},
                                          {"LENT", 10, 99, 3, DicoWarning},
                                          {"LOIN", -1, 9, 0, 0}};
    QByteArray seed(1, static_cast<char>(records.size()));
    for (const DicoRecord &record : records) {
        const auto bytes = dicoRecordBytes(record);
        seed.append(bytes.data(), static_cast<int>(bytes.size()));
    }
    fuzzMutations({seed + "ERREURfichier %s"}, 1000);
}

QTEST_MAIN(LanguageTest)
#include "language_test.moc"
