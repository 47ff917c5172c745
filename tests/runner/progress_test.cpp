#include "runner/progress.h"

#include "tests/fuzz/mutations.h"

#include <QTest>

class ProgressTest : public QObject
{
    Q_OBJECT

private slots:
    void protocol_data();
    void protocol();
    void readerEqualsParser();
    void neverFalls();
    void mutations();
};

namespace
{

const QString fullPass = QStringLiteral("0...10...20...30...40...50...60...70...80...90...100 - done.");

} // namespace

void ProgressTest::protocol_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("passes");
    QTest::addColumn<double>("percent");

    QTest::newRow("nothing") << "" << 1 << 0.0;
    QTest::newRow("start") << "0" << 1 << 0.0;
    QTest::newRow("one dot") << "0." << 1 << 2.5;
    QTest::newRow("group at the end counts as dots") << "0...10..." << 1 << 17.5;
    QTest::newRow("inside a group") << "0...10...20." << 1 << 22.5;
    QTest::newRow("whole pass") << fullPass << 1 << 100.0;
    QTest::newRow("first of two passes") << fullPass << 2 << 50.0;
    QTest::newRow("inside the second pass") << fullPass + "\n0...10...20." << 2 << 61.25;
    QTest::newRow("line feed after the pass") << fullPass + "\n" << 1 << 100.0;
    QTest::newRow("sentence without line feed") << "Using band 1." << 1 << 2.5;
    QTest::newRow("sentence with line feed") << "Using band 1.\n" << 1 << 0.0;
    QTest::newRow("full stops only") << "...." << 1 << 10.0;
}

void ProgressTest::protocol()
{
    QFETCH(QString, output);
    QFETCH(int, passes);
    QTEST(parseProgress(output, passes), "percent");
}

void ProgressTest::readerEqualsParser()
{
    const QString output =
        QStringLiteral("Input file size is 10, 10.\n") + fullPass + "\n - - done.. - done. -\n" + fullPass;
    const QByteArray bytes = output.toLatin1();
    for (int cut = 0; cut <= bytes.size(); ++cut) {
        ProgressReader reader;
        reader.feed(bytes.left(cut));
        QCOMPARE(reader.percentage(3), parseProgress(output.left(cut), 3));
        reader.feed(bytes.mid(cut));
        QCOMPARE(reader.percentage(3), parseProgress(output, 3));
    }
}

void ProgressTest::neverFalls()
{
    ProgressReader reader;
    double before = 0.0;
    for (const char byte : (fullPass + '\n' + fullPass).toLatin1()) {
        reader.feed(QByteArray(1, byte));
        QVERIFY(reader.percentage(2) >= before);
        before = reader.percentage(2);
    }
    QCOMPARE(before, 100.0);
}

void ProgressTest::mutations()
{
    fuzzMutations(fuzzCorpus("progress"), 3000);
}

QTEST_APPLESS_MAIN(ProgressTest)
#include "progress_test.moc"
