#include "colortable/colortablefile.h"

#include "tests/fuzz/mutations.h"
#include "tests/support/files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

class ColorTableTest : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void wholeTable();
    void badFiles();
    void editorLayout();
    void toolLayout();
    void spread_data();
    void spread();
    void ramp();
    void mutations();
};

namespace
{

/// "value[%] r g b a" of each entry.
QStringList described(const QList<QuvoColorDef> &entries)
{
    QStringList texts;
    for (const QuvoColorDef &entry : entries)
        texts += QStringLiteral("%1%2 %3 %4 %5 %6")
                     .arg(QString::number(entry.value), entry.percent ? "%" : "",
                          QString::number(entry.color.red()), QString::number(entry.color.green()),
                          QString::number(entry.color.blue()), QString::number(entry.color.alpha()));
    return texts;
}

} // namespace

void ColorTableTest::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("entry"); // empty when the line is no entry
    QTest::addColumn<bool>("invalid");
    QTest::addColumn<bool>("plain");

    const auto row = [](const char *line, const char *entry, bool plain = true, bool invalid = false) {
        QTest::newRow(line) << QByteArray(line) << QString(entry) << invalid << plain;
    };
    const auto invalid = [&](const char *line) { row(line, "", false, true); };
    row("1500, 255, 0, 0", "1500 255 0 0 255");
    row("50% 0 0 255 128", "50% 0 0 255 128");
    row("nv 0 0 0 0", "-9999 0 0 0 0");
    row("NV 0 0 0", "-9999 0 0 0 255", false);
    row("-9999 1 2 3", "-9999 1 2 3 255", false); // the tool reads an elevation
    row("-9999.0\t1 2 3", "-9999 1 2 3 255", false);
    row("10\t1  2:3,4\r\n", "10 1 2 3 4");
    row(" 10 1 2 3 ", "10 1 2 3 255", false);
    row("10;1;2;3", "10 1 2 3 255", false);
    row("10 1 2 3 4 5 6", "10 1 2 3 4", false);
    row("10 1 2 3,", "10 1 2 3 255", false);
    row("1.5e2 1 2 3", "150 1 2 3 255", false);
    row("-12.5% 1 2 3", "", false, true);
    row("\xef\xbb\xbf"
        "10 1 2 3",
        "10 1 2 3 255", false);
    row("\xc2\xa0"
        "10 1 2 3",
        "10 1 2 3 255", false);
    row("# COLOR_MODEL = RGB", "", false);           // the tool would read the file as another format
    row("10 green", "10 0 255 0 255", false);        // as the tool paints it
    row("10 Orchid x", "10 218 112 214 255", false); // the tool does not know it
    row("10 #0a0b0c", "10 10 11 12 255", false);
    for (const char *skipped : {"", "#10 1 2 3", "# x", "// 10 1 2 3"})
        row(skipped, "");
    for (const char *skipped :
         {"10", "   ", ";;", ";# a b c d", "500 ;"}) // the tool reads some of these as entries
        row(skipped, "", false);
    for (const char *broken : {"abc 1 2 3", "101% 1 2 3", "-1% 1 2 3", "% 1 2 3", "nan 1 2 3", "inf 1 2 3",
                               "1e999 1 2 3", "10 1 2 256", "10 -1 2 3", "10 1 2 3 300", "10 1 2 x",
                               "10 1.5 2 3", "10 nocolour", "0x10 1 2 3", "50 % 1 2 3"})
        invalid(broken);
}

void ColorTableTest::lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, entry);
    const ColorTableReading reading = parseColorTable(line);
    QCOMPARE(described(reading.entries), entry.isEmpty() ? QStringList() : QStringList{entry});
    QTEST(reading.invalidValues, "invalid");
    QTEST(reading.plain, "plain");
    QCOMPARE(reading.mixedUnits, false);
}

void ColorTableTest::wholeTable()
{
    // The sort is stable: of two entries with the value 0 the first stays first.
    const ColorTableReading reading =
        parseColorTable("# c\r\n100 3 3 3\r\nnv 9 9 9\r\n0 1 1 1\r\n0 2 2 2\r\n-50 0 0 0");
    QCOMPARE(described(reading.entries),
             (QStringList{"-9999 9 9 9 255", "-50 0 0 0 255", "0 1 1 1 255", "0 2 2 2 255", "100 3 3 3 255"}));
    QVERIFY(!reading.relative && !reading.mixedUnits);
    QVERIFY(!reading.plain); // the tool would mix the two colours in a cell of the elevation 0
    QVERIFY(parseColorTable("# c\r\n100 3 3 3\r\nnv 9 9 9\r\n0 1 1 1").plain);

    const ColorTableReading mixed = parseColorTable("nv 9 9 9\n50% 1 1 1\n10 2 2 2\nbad 1 1 1\n0% 3 3 3\n");
    QVERIFY(mixed.mixedUnits && mixed.relative && mixed.invalidValues);
    QCOMPARE(mixed.invalidLine, 4);
    QCOMPARE(described(entriesOfKind(mixed.entries, mixed.relative)),
             (QStringList{"-9999 9 9 9 255", "0% 3 3 3 255", "50% 1 1 1 255"}));
    QVERIFY(!parseColorTable("nv 0 0 0\n10% 1 1 1\n")
                 .mixedUnits); // no-data is neither an elevation nor a percentage
    QVERIFY(parseColorTable("").entries.isEmpty());
}

void ColorTableTest::badFiles()
{
    const QTemporaryDir folder;
    const auto write = [&](const char *name, const QByteArray &bytes) {
        return writeFile(folder.filePath(name), bytes);
    };
    QVERIFY(!readColorTable(folder.path()).problem.isEmpty());
    QVERIFY(!readColorTable(folder.filePath("absent")).problem.isEmpty());
    QVERIFY(!readColorTable(write("binary", QByteArray("10 1 2 3\n\0", 10))).problem.isEmpty());
    QVERIFY(!readColorTable(write("huge", QByteArray(100'000'000, '1'))).problem.isEmpty());
    QByteArray many;
    for (int at = 0; at < 300000; ++at)
        many += "1 2 3 4\n";
    QVERIFY(!readColorTable(write("long", many)).problem.isEmpty());
    const QString pipe = folder.filePath("pipe");
    QCOMPARE(::mkfifo(pipe.toUtf8().constData(), 0600), 0);
    QVERIFY(!readColorTable(pipe).problem.isEmpty()); // without waiting for a writer
    const ColorTableReading empty = readColorTable(write("empty", ""));
    QVERIFY(empty.problem.isEmpty() && empty.entries.isEmpty());
}

void ColorTableTest::editorLayout()
{
    const QList<QuvoColorDef> entries{
        {-9999.0, QColor(0, 0, 0, 0)}, {-0.25, QColor(1, 2, 3)}, {12.5, QColor(4, 5, 6, 7), true}};
    QCOMPARE(colorTableText(entries), QByteArray("nv\t0\t0\t0\t0\n-0.3\t1\t2\t3\t255\n12.5%\t4\t5\t6\t7\n"));
    QCOMPARE(described(parseColorTable(colorTableText(entries)).entries),
             (QStringList{"-9999 0 0 0 0", "-0.3 1 2 3 255", "12.5% 4 5 6 7"}));
}

void ColorTableTest::toolLayout()
{
    const auto entries =
        parseColorTable("100.0625 green\n-12000 1 1 1\n33.333333333333336% red\n-9999 5 5 5 0").entries;
    const QByteArray text = toolTableText(entries);
    QCOMPARE(text,
             QByteArray("nv\t5  5  5  0\n-12000\t1  1  1  255\n33.333333333333336%\t255  0  0  255\n"
                        "100.0625\t0  255  0  255\n"));
    QVERIFY(parseColorTable(text).plain);
    const ColorTableReading returns = parseColorTable("# heights\r0 1 1 1\r10 2 2 2\r");
    QVERIFY(returns.entries.size() == 2 && !returns.plain); // one line, a comment, to the tool
    const QTemporaryDir folder;
    const QString file = freeTableName(folder.path(), "t");
    QCOMPARE(writeTableFile(file, text), QString());
    QCOMPARE(freeTableName(folder.path(), "t"), folder.filePath("t_1.txt"));
    QVERIFY(!writeTableFile(folder.filePath("no/t.txt"), text).isEmpty());
}

void ColorTableTest::spread_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("merged");

    const QByteArray a = "\t1  1  1  255\n";
    const QByteArray b = "\t2  2  2  255\n";
    const QByteArray c = "\t3  3  3  255\n";
    const auto row = [](const char *name, const char *table, double minimum, double maximum,
                        const QByteArray &text, int merged = 0) {
        QTest::newRow(name) << QByteArray(table) << minimum << maximum << text << merged;
    };
    row("plain", "0 1 1 1\n10 2 2 2\n20 3 3 3", 100.0, 300.0, "100" + a + "200" + b + "300" + c);
    row("no-data apart", "0 1 1 1\n10 2 2 2\nnv 7 8 9 10", -50.4, 50.6, "nv\t7  8  9  10\n-50" + a + "51" + b);
    row("below zero", "-100 1 1 1\n0 2 2 2\n100 3 3 3", -0.4, 1000.0, "0" + a + "500" + b + "1000" + c);
    row("percent", "0% 1 1 1\n25% 2 2 2\n100% 3 3 3", 0.0, 10.0, "0" + a + "3" + b + "10" + c);
    row("equal ends", "5 1 1 1\n5 2 2 2", 7.0, 9.0, "7" + a + "7" + b);
    row("small range", "0 1 1 1\n10 2 2 2\n20 3 3 3", 1.0, 1.4, "1" + a + "1" + b + "1" + c, 2);
    row("sharp edge", "0 1 1 1\n10 2 2 2\n10 3 3 3", 0.0, 100.0, "0" + a + "100" + b + "100" + c);
    row("empty", "", 0.0, 1.0, "");
}

void ColorTableTest::spread()
{
    QFETCH(QByteArray, table);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    const SpreadTable result = spreadTable(parseColorTable(table).entries, minimum, maximum);
    QTEST(result.text, "text");
    QTEST(result.merged, "merged");
}

void ColorTableTest::ramp()
{
    const auto entries =
        elevationEntries(parseColorTable("nv 9 9 9\n0 0 0 0\n10 100 0 0 55\n10 0 200 0\n20 0 0 0").entries);
    QCOMPARE(rampColor(entries, 0.0), QColor(0, 0, 0));
    QCOMPARE(rampColor(entries, 0.25), QColor(50, 0, 0, 155));
    QCOMPARE(rampColor(entries, 0.5), QColor(0, 200, 0)); // at an edge the second entry counts
    QCOMPARE(rampColor(entries, 1.0), QColor(0, 0, 0));
    QCOMPARE(rampColor({}, 0.5).alpha(), 0);
}

void ColorTableTest::mutations()
{
    fuzzMutations(fuzzCorpus("colortable"), 2000);
}

QTEST_APPLESS_MAIN(ColorTableTest)
#include "colortable_test.moc"
