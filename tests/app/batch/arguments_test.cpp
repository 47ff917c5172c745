#include "app/batch/arguments.h"

#include <QTest>

class ArgumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void commandLines_data();
    void commandLines();
};

void ArgumentsTest::commandLines_data()
{
    QTest::addColumn<QStringList>("given");
    QTest::addColumn<bool>("good");

    QTest::newRow("all") << QStringList{"--process",    "hillshade", "--input", "a",     "--output=b",
                                        "--band",       "2",         "--of",    "COG",   "--tiled",
                                        "--world-file", "--set",     "a=b=c",   "--set", "d=",
                                        "--overwrite"}
                         << true;
    QTest::newRow("unknown") << QStringList{"--procss", "x"} << false;
    QTest::newRow("value missing") << QStringList{"--process"} << false;
    QTest::newRow("band") << QStringList{"--band", "0"} << false;
    QTest::newRow("band text") << QStringList{"--band", "two"} << false;
    QTest::newRow("set without a name") << QStringList{"--set", "=3"} << false;
    QTest::newRow("set without a value") << QStringList{"--set", "altitude"} << false;
    QTest::newRow("several DEMs and an output") << QStringList{"a.json", "b.tif", "--output", "c"} << false;
}

void ArgumentsTest::commandLines()
{
    QFETCH(QStringList, given);
    QFETCH(bool, good);
    const BatchArguments read = readBatchArguments(QStringList{"QuvoDemBatch"} + given);
    QCOMPARE(read.problem.isEmpty(), good);
    if (!good)
        return;
    QCOMPARE(read.output, std::optional<QString>("b"));
    QCOMPARE(read.band, std::optional<int>(2));
    QCOMPARE(read.options.at(0).second, QStringLiteral("b=c"));
    QCOMPARE(read.options.at(1).second, QString());
    QVERIFY(read.outputOptions.tiled && read.outputOptions.worldFile && read.overwrite);
}

QTEST_GUILESS_MAIN(ArgumentsTest)
#include "arguments_test.moc"
