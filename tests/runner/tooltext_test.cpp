#include "runner/tooltext.h"

#include <QTest>

class ToolTextTest : public QObject
{
    Q_OBJECT

private slots:
    void isBounded();
    void repeatedErrors_data();
    void repeatedErrors();
};

void ToolTextTest::isBounded()
{
    constexpr int most = 600 * 1024; // characters
    const QByteArray line = "Warning 1: odd cell\n";
    ToolText text;
    text.feed("first\n");
    QCOMPARE(text.text(), QByteArray("first\n"));
    const auto flood = [&] {
        for (int lines = 0; lines < 100000; ++lines)
            text.feed(line);
    };
    flood();
    text.feed("ERROR 3: the disk is full\n");
    flood();
    text.feed("last\n");
    QVERIFY(text.text().size() < most);
    QVERIFY(text.text().startsWith("first\n" + line) && text.text().endsWith(line + "last\n"));
    QVERIFY(text.text().contains("\nERROR 3: the disk is full\n")); // a run with an error has no product
    QVERIFY(text.text().contains("\n[...]\n"));

    ToolText oneLine;
    for (int pieces = 0; pieces < 100; ++pieces)
        oneLine.feed(QByteArray(64 * 1024, 'x'));
    QVERIFY(oneLine.text().size() < most);
}

void ToolTextTest::repeatedErrors_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("told");
    const auto row = [](const char *name, const char *text, const char *told) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(told);
    };
    row("other numbers", "ERROR 1: row 12\nERROR 1: row 13\nERROR 1: row 14\nend\n",
        "ERROR 1: row 12 (3×)\nend\n");
    row("other words", "ERROR 1: a\nERROR 1: b\n", "ERROR 1: a\nERROR 1: b\n");
    row("between others", "Warning 1: a\nb\nWarning 1: a\nb", "Warning 1: a (2×)\nb\nb");
    row("Windows", "ERROR 1: a\r\nERROR 1: a\r\n", "ERROR 1: a (2×)\n");
    row("nothing", "", "");
}

void ToolTextTest::repeatedErrors()
{
    QFETCH(QString, text);
    QFETCH(QString, told);
    QCOMPARE(toldOnce(text), told);
}

QTEST_GUILESS_MAIN(ToolTextTest)
#include "tooltext_test.moc"
