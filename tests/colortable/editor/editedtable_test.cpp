#include "colortable/editor/editedtable.h"

#include "colortable/colortablefile.h"

#include <QTest>

#include <functional>

/// Tables are written as texts: "value color; value~ color" with ~ for an even segment behind the cursor,
/// colours as six hexadecimal digits, "%" at the end for percentages, "nv color" for the no-data entry.
class EditedTableTest : public QObject
{
    Q_OBJECT

private slots:
    void operations_data();
    void operations();
    void cursors_data();
    void cursors();
    void layoutsRoundTrip();
    void evenSegments();
    void shares();
    void lightness();
};

namespace
{

using Operation = std::function<EditedTable(const EditedTable &)>;
using CursorOperation = std::function<CursorChange(const EditedTable &)>;

EditedTable tableOf(const char *text)
{
    EditedTable table;
    QStringList parts = QString::fromLatin1(text).split(QStringLiteral("; "));
    if (parts.last() == QLatin1String("%")) {
        table.percent = true;
        parts.removeLast();
    }
    for (const QString &part : parts) {
        QString value = part.section(' ', 0, 0);
        const QColor color(QLatin1Char('#') + part.section(' ', 1, 1));
        if (value == QLatin1String("nv")) {
            table.noData = color;
            continue;
        }
        const bool even = value.endsWith('~');
        table.cursors += ColorCursor{value.remove('~').toDouble(), color, even};
    }
    return table;
}

QString textOf(const EditedTable &table)
{
    QStringList parts;
    for (const ColorCursor &cursor : table.cursors)
        parts += QStringLiteral("%1%2 %3").arg(QString::number(cursor.value), cursor.even ? "~" : "",
                                               cursor.color.name().mid(1));
    if (table.noData)
        parts += QStringLiteral("nv ") + table.noData->name().mid(1);
    if (table.percent)
        parts += QStringLiteral("%");
    return parts.join(QStringLiteral("; "));
}

} // namespace

Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(CursorOperation)

void EditedTableTest::operations_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *before, const Operation &operation, const char *after) {
        QTest::newRow(name) << QString::fromLatin1(before) << operation << QString::fromLatin1(after);
    };
    row("invert", "0~ 0000ff; 10 00ff00; 40 ff0000; nv 010203", inverted,
        "0 ff0000; 30~ 00ff00; 40 0000ff; nv 010203");
    row("negative", "0 0010ff; 9.5 ffffff; nv 010203", negative, "0 ffef00; 9.5 000000; nv 010203");
    row("spread evenly", "0 000000; 1 111111; 1 222222; 90 333333", spreadEvenly,
        "0 000000; 30 111111; 60 222222; 90 333333");
    row("spread one", "5 000000", spreadEvenly, "5 000000");
    const QVector<double> sample{-3, 0, 0, 1, 2, 3, 50, 900, 1000};
    row(
        "equal area", "0 000000; 10 111111; 20 222222",
        [=](const EditedTable &t) { return spreadByArea(t, sample); }, "-3 000000; 2 111111; 1000 222222");
    row(
        "no cells", "0 000000; 10 111111", [](const EditedTable &t) { return spreadByArea(t, {}); },
        "0 000000; 10 111111");
    row(
        "to percent", "-50 000000; 0 111111; 200 222222",
        [](const EditedTable &t) { return toPercent(t, 0.0, 150.0); }, "0 000000; 0 111111; 100 222222; %");
    row(
        "to elevations", "0 000000; 33.3 111111; 100 222222; %",
        [](const EditedTable &t) { return toAbsolute(t, -100.0, 900.0); },
        "-100 000000; 233 111111; 900 222222");
    row(
        "flat DEM", "0 000000; 10 111111", [](const EditedTable &t) { return toPercent(t, 7.0, 7.0); },
        "0 000000; 10 111111");
    row(
        "feet to metres", "0 000000; 100 111111",
        [](const EditedTable &t) { return scaledAndShifted(t, 0.3048, -1.0); }, "-1 000000; 29.5 111111");
    row(
        "no scale", "0 000000; 100 111111", [](const EditedTable &t) { return scaledAndShifted(t, 0.0, 5.0); },
        "0 000000; 100 111111");
    row(
        "fit", "0 000000; 50 111111; 100 222222",
        [](const EditedTable &t) { return fitted(t, -10.0, 30.0, true); },
        "-10 000000; 10 111111; 30 222222"); // the table has nothing below 0, so there is no hinge in it
    row(
        "fit with the hinge", "-100 000000; -50 0000ff; 0 0000aa; 0 00aa00; 100 ffffff",
        [](const EditedTable &t) { return fitted(t, -4.0, 2000.0, true); },
        "-4 000000; -2 0000ff; 0 0000aa; 0 00aa00; 2000 ffffff");
    row(
        "the hinge comes in", "-100 000000; 100 c8c8c8",
        [](const EditedTable &t) { return fitted(t, -1.0, 10.0, true); }, "-1 000000; 0 646464; 10 c8c8c8");
    row(
        "no sea", "-100 000000; 0 0000aa; 100 ffffff",
        [](const EditedTable &t) { return fitted(t, 50.0, 70.0, true); }, "-100 000000; 0 0000aa; 70 ffffff");
}

void EditedTableTest::operations()
{
    QFETCH(QString, before);
    QFETCH(Operation, operation);
    QFETCH(QString, after);
    QCOMPARE(textOf(operation(tableOf(before.toLatin1().constData()))), after);
}

void EditedTableTest::cursors_data()
{
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("at");
    QTest::addColumn<CursorOperation>("operation");
    const auto row = [](const char *name, const char *after, int at, const CursorOperation &operation) {
        QTest::newRow(name) << QString::fromLatin1(after) << at << operation;
    };
    using Table = const EditedTable &;
    // Of the table "0~ 000000; 10 646464; 10 ff0000; 20 ffffff".
    row("added", "0~ 000000; 10 646464; 10 ff0000; 15 ff7f7f; 20 ffffff", 3,
        [](Table t) { return withCursor(t, 15.04); });
    row("added beyond", "0~ 000000; 10 646464; 10 ff0000; 20 ffffff; 30 ffffff", 4,
        [](Table t) { return withCursor(t, 30.0); });
    row("removed", "0~ 000000; 10 ff0000; 20 ffffff", 1, [](Table t) { return withoutCursor(t, 1); });
    row("last removed", "0~ 000000; 10 646464; 10 ff0000", 2, [](Table t) { return withoutCursor(t, 3); });
    row("moved to a neighbour", "0~ 000000; 10 646464; 20 ff0000; 20 ffffff", 2,
        [](Table t) { return moved(t, 2, 99.0); });
    row("moved down to a neighbour", "0~ 000000; 10 646464; 10 ff0000; 10 ffffff", 3,
        [](Table t) { return moved(t, 3, -5.0); });
    row("typed beyond", "10 646464; 10 ff0000; 15~ 000000; 20 ffffff", 2,
        [](Table t) { return withValue(t, 0, 15.0); });
    row("typed onto the next", "10~ 000000; 10 646464; 10 ff0000; 20 ffffff", 0,
        [](Table t) { return withValue(t, 0, 10.0); });
    row("typed onto the one before", "0~ 000000; 10 646464; 10 ff0000; 10 ffffff", 3,
        [](Table t) { return withValue(t, 3, 10.0); });
    row("typed unchanged", "0~ 000000; 10 646464; 10 ff0000; 20 ffffff", 1,
        [](Table t) { return withValue(t, 1, 10.04); });
    row("no such cursor", "0~ 000000; 10 646464; 10 ff0000; 20 ffffff", -1,
        [](Table t) { return moved(t, 4, 1.0); });
}

void EditedTableTest::cursors()
{
    QFETCH(QString, after);
    QFETCH(int, at);
    QFETCH(CursorOperation, operation);
    const CursorChange change = operation(tableOf("0~ 000000; 10 646464; 10 ff0000; 20 ffffff"));
    QCOMPARE(textOf(change.table), after);
    QCOMPARE(change.at, at);
}

void EditedTableTest::layoutsRoundTrip()
{
    for (const char *text : {"-12.5 000000; 0 0000aa; 0 00aa00; 4810.9 ffffff; nv 010203",
                             "0 000000; 33.3 111111; 100 222222; %", "-10000 000000; 0 ffffff; nv 010203"}) {
        const EditedTable table = tableOf(text);
        for (const QByteArray &layout :
             {colorTableText(plainEntries(table)), exactTableText(plainEntries(table))})
            QCOMPARE(textOf(editedTable(parseColorTable(layout).entries)), QString::fromLatin1(text));
    }
    QCOMPARE(roundedValue(-9999.04, false), -9998.9); // would be read as the no-data entry
    QCOMPARE(textOf(randomized(tableOf("0 000000; 1 111111"), 7)),
             textOf(randomized(tableOf("0 ffffff; 1 222222"), 7)));
    QVERIFY(!(randomized(tableOf("0 000000"), 7) == randomized(tableOf("0 000000"), 8)));
}

void EditedTableTest::evenSegments()
{
    const EditedTable table = tableOf("0~ 0000ff; 1000 ffff00; 2000 000000");
    const QList<QuvoColorDef> entries = plainEntries(table);
    QVERIFY(entries.size() > 4);
    for (int value = 0; value <= 2000; value += 10) {
        const QColor written = colorAt(entries, value);
        const QColor shown = colorOf(table, value);
        QVERIFY(qAbs(written.red() - shown.red()) <= 2 && qAbs(written.green() - shown.green()) <= 2
                && qAbs(written.blue() - shown.blue()) <= 2);
    }
    const EditedTable split = withCursor(table, 500.0).table; // changes nothing in the ramp
    QVERIFY(split.cursors.at(1).even);
    QCOMPARE(colorOf(split, 500.0), colorOf(table, 500.0));
}

void EditedTableTest::shares()
{
    const QVector<double> sample{-5, 0, 1, 2, 10, 10, 11, 30};
    QCOMPARE(segmentShares(tableOf("0 000000; 10 111111; 10 222222; 20 333333"), sample),
             (QVector<double>{12.5, 37.5, 0.0, 37.5, 12.5}));
    QVERIFY(segmentShares(tableOf("0 000000"), {}).isEmpty());
}

void EditedTableTest::lightness()
{
    QCOMPARE(lightnessTurns(tableOf("0 000000; 100 ffffff")), QVector<double>());
    QCOMPARE(lightnessTurns(tableOf("0 ffffff; 50 000000; 100 ffffff")), QVector<double>{50.0});
    QCOMPARE(lightnessTurns(tableOf("0 808080; 50 818181; 100 808080")), QVector<double>()); // nobody sees it
    QCOMPARE(lightnessTurns(tableOf("7 000000")), QVector<double>());
}

QTEST_GUILESS_MAIN(EditedTableTest)
#include "editedtable_test.moc"
