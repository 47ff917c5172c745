#include "app/process/processes.h"
#include "app/window/dialogs/guidepages.h"
#include "messages/dictionary/dictionarysource.h"
#include "panels/options/processoptions.h"
#include "tests/support/files.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

// The pages of the guide as they stand beside the programs.

class GuideTest : public QObject
{
    Q_OBJECT

private slots:
    void linksAndPicturesResolve_data();
    void linksAndPicturesResolve();
    void bothLanguagesAreAlike();
    void boldTextsAreInTheWindow_data();
    void boldTextsAreInTheWindow();
    void everyOptionIsExplained();
};

namespace
{

const QString guide = QStringLiteral(QUVO_TREE "/guide");

QStringList matches(const QString &text, const char *pattern)
{
    const QRegularExpression expression(QString::fromUtf8(pattern), QRegularExpression::MultilineOption);
    QStringList found;
    auto all = expression.globalMatch(text);
    while (all.hasNext())
        found += all.next().captured(1);
    return found;
}

QStringList pictures(const QString &markdown)
{
    return matches(markdown, "!\\[[^\\]]+\\]\\(([^)]+)\\)");
}

QStringList pageNames(const QString &folder)
{
    QStringList names;
    for (const QString &file : QDir(folder).entryList({"*.md"}, QDir::Files, QDir::Name))
        names += file.chopped(3);
    return names;
}

/// A text of the window as the guide quotes it: on one line, with … for %1, and without a colon, dots or a %1
/// at its end.
QString quoted(QString text)
{
    static const QRegularExpression end(QStringLiteral("( ?:|…|\\.\\.\\.)?( \\(?…\\)?)?$"));
    static const QRegularExpression place(QStringLiteral("%[0-9]"));
    return text.replace(place, "…")
        .replace("\\n", " ")
        .replace(QChar(0xA0), ' ')
        .simplified()
        .remove('&')
        .remove(end);
}

/// The texts of a dictionary's source, "english.txt" or "french.txt".
QSet<QString> dictionaryTexts(const QString &name)
{
    QSet<QString> texts;
    const auto dictionary =
        parseDictionary(bytesOf(QStringLiteral(QUVO_SOURCE "/messages/dictionary/") + name).toStdString());
    for (const DictionaryEntry &entry : dictionary.entries)
        texts += quoted(QString::fromStdString(entry.text));
    return texts;
}

/// The texts of the French dictionary, of the forms, and the string literals of the code.
QSet<QString> frenchTexts()
{
    QSet<QString> texts = dictionaryTexts("french.txt");
    static const QRegularExpression split(QStringLiteral("\"\\s*\\n\\s*\""));
    for (const char *folder :
         {"messages", "dataset", "runner", "panels", "app", "colortable", "resources/forms"}) {
        QDirIterator files(QStringLiteral(QUVO_SOURCE "/") + folder, {"*.cpp", "*.h", "*.ui"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QString text = QString::fromUtf8(bytesOf(files.next()));
            const bool isForm = files.fileName().endsWith(".ui");
            for (const QString &found : isForm ? matches(text, ">([^<>]+)</string>")
                                               : matches(text.remove(split), "\"((?:[^\"\\\\]|\\\\.)*)\""))
                texts += quoted(QString(found).replace("&amp;", "&").replace("&apos;", "'"));
        }
    }
    return texts;
}

} // namespace

void GuideTest::linksAndPicturesResolve_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("English") << guide + "/en";
    QTest::newRow("French") << guide + "/fr";
}

void GuideTest::linksAndPicturesResolve()
{
    QFETCH(const QString, folder);
    QStringList listed;
    for (const GuidePage &page : guidePages(folder)) {
        const QString text = guideText(folder, page.name);
        listed += page.name;
        QVERIFY2(page.title != page.name, qPrintable(page.name)); // it has a title
        const QStringList links = matches(text, "(?<!!)\\[[^\\]]+\\]\\(([^)]+)\\)");
        for (const QString &file : links + pictures(text)) {
            const QString path = QDir::cleanPath(folder + '/' + file);
            QVERIFY2(path.startsWith(guide + '/') && QFileInfo(path).isFile(),
                     qPrintable(page.name + ": " + file));
        }
    }
    listed.sort();
    QCOMPARE(listed, pageNames(folder)); // no page is out of reach
}

void GuideTest::bothLanguagesAreAlike()
{
    QCOMPARE(pageNames(guide + "/fr"), pageNames(guide + "/en"));
    QSet<QString> shown;
    for (const QString &page : pageNames(guide + "/en")) {
        const QString english = guideText(guide + "/en", page);
        const QString french = guideText(guide + "/fr", page);
        for (const char *pattern : {"^(#+) ", "(`[^`]*[a-z]-?[^`]*`)", "^( *(?:-|[0-9]\\.|\\|)) ", "(\\*\\*)"})
            QVERIFY2(matches(english, pattern).size() == matches(french, pattern).size(),
                     qPrintable(page + ": " + pattern));
        QCOMPARE(pictures(french), pictures(english));
        QCOMPARE(linkedPages(french), linkedPages(english));
        for (const QString &picture : pictures(english))
            shown += QFileInfo(picture).fileName();
    }
    const QStringList made = QDir(guide + "/pictures").entryList({"*.png"}, QDir::Files);
    QCOMPARE(shown, QSet<QString>(made.begin(), made.end()));
}

void GuideTest::boldTextsAreInTheWindow_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QSet<QString>>("texts");
    QTest::newRow("English") << guide + "/en" << dictionaryTexts("english.txt");
    QTest::newRow("French") << guide + "/fr" << frenchTexts();
}

void GuideTest::boldTextsAreInTheWindow()
{
    QFETCH(const QString, folder);
    QFETCH(const QSet<QString>, texts);
    QStringList unknown;
    for (const QString &page : pageNames(folder)) {
        for (const QString &text : matches(guideText(folder, page), "\\*\\*([^*]+)\\*\\*")) {
            if (!texts.contains(quoted(text)))
                unknown += page + ": " + text;
        }
    }
    QVERIFY2(unknown.isEmpty(), qPrintable(unknown.join('\n')));
}

void GuideTest::everyOptionIsExplained()
{
    for (const NamedProcess &process : namedProcesses()) {
        for (const QString &language : {QStringLiteral("/en"), QStringLiteral("/fr")}) {
            const QString text = guideText(guide + language, helpPage(process.process));
            for (const FieldDescription &field : describeOptions(process.defaults)) {
                const QString name = field.name.startsWith("shade.") ? QStringLiteral("shade.") : field.name;
                QVERIFY2(text.contains('`' + name),
                         qPrintable(language + ' ' + processWord(process.defaults) + ' ' + field.name));
            }
        }
    }
}

QTEST_GUILESS_MAIN(GuideTest)
#include "guide_test.moc"
