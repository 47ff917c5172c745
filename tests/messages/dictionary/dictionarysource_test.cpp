#include "messages/dictionary/dictionarysource.h"

#include <QTest>

class DictionarySourceTest : public QObject
{
    Q_OBJECT

private slots:
    void goodSource();
    void badSources();
    void languagesDiffer();
};

void DictionarySourceTest::goodSource()
{
    const DictionarySource good =
        parseDictionary("# comment\r\n\n  MESS_ A B = a = b\\nc\\\\ \nW (warning 7) = %s\nEMPTY =");
    QCOMPARE(good.faults.size(), std::size_t(0));
    QCOMPARE(good.entries.at(0).key, std::string("MESS_ A B"));
    QCOMPARE(good.entries.at(0).text, std::string("a = b\nc\\"));
    QCOMPARE(good.entries.at(1).kind, 2);
    QCOMPARE(good.entries.at(1).number, 7);
}

void DictionarySourceTest::badSources()
{
    for (const char *bad :
         {"no equals", " = text", "A = x\nA = y", "ABCDEFGHIJKLMNOPQRSTUVWX = 24 bytes", "A = %n", "A = %'n",
          "A (warning) = x", "A (notice 3) = x", "A (error 99999999999) = x"})
        QVERIFY2(!parseDictionary(bad).faults.empty(), bad);
}

void DictionarySourceTest::languagesDiffer()
{
    const auto differ = [](const char *one, const char *other) {
        return !compareDictionaries(parseDictionary(one), parseDictionary(other)).empty();
    };
    QVERIFY(differ("A = %s", "A = %d") && differ("A = %1", "A = x") && differ("A = %1 %2", "A = %1 %3"));
    QVERIFY(!differ("A = %1 of %2 %", "A = %2 - %1") && !differ("A = 5 %% %s", "A = %s"));
}

QTEST_APPLESS_MAIN(DictionarySourceTest)
#include "dictionarysource_test.moc"
