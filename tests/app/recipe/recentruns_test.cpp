#include "app/recipe/recentruns.h"

#include "tests/support/files.h"

#include <QTemporaryDir>
#include <QTest>

class RecentRunsTest : public QObject
{
    Q_OBJECT

private slots:
    void damagedLists_data();
    void damagedLists();
    void limits();
};

namespace
{

RecentRun recentRun(const ProcessOptions &options)
{
    return {.started = QDateTime::currentDateTimeUtc(),
            .end = RunEnd::Done,
            .seconds = 0.4,
            .recipe = {.process = processWord(options), .options = options}};
}

} // namespace

void RecentRunsTest::damagedLists_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("readable");
    const QByteArray good = R"({"started": "2024-05-06T07:08:09Z", "end": "stopped", "seconds": 3661,
        "settings": {"format": 1, "process": "slope"}})";
    QTest::newRow("good") << "{\"runs\": [" + good + "]}" << 1;
    QTest::newRow("cut off") << ("{\"runs\": [" + good) << 0;
    QTest::newRow("another file") << QByteArray("[Settings]\n\0x=1") << 0;
    QTest::newRow("bad ones among good ones")
        << "{\"runs\": [3, {}, " + QByteArray(good).replace("slope", "x") + "," + good + ","
            + QByteArray(good).replace("stopped", "x") + "," + QByteArray(good).replace("2024", "x") + "]}"
        << 1;
}

void RecentRunsTest::damagedLists()
{
    QFETCH(QByteArray, text);
    const QTemporaryDir folder;
    const QString file = writeFile(folder.filePath("runs.json"), text);
    QTEST(static_cast<int>(readRecentRuns(file).size()), "readable");
    const RecentRun run = recentRun(AspectOptions{});
    QVERIFY(addRecentRun(file, run));
    const QList<RecentRun> runs = readRecentRuns(file);
    QVERIFY(runs.first().recipe == run.recipe);
    if (runs.size() > 1)
        QCOMPARE(durationText(runs.at(1).seconds) + runEndText(runs.at(1).end),
                 QStringLiteral("1:01:01Arrêté"));
}

void RecentRunsTest::limits()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("new folder/runs.json");
    for (int run = 0; run < mostRecentRuns + 5; ++run)
        QVERIFY(addRecentRun(file, recentRun(SlopeOptions{})));
    QCOMPARE(readRecentRuns(file).size(), mostRecentRuns);

    ContourOptions endless;
    endless.fixedLevels.fill('1', 17 << 20);
    QVERIFY(addRecentRun(file, recentRun(endless)));
    const QList<RecentRun> runs = readRecentRuns(file); // the run that is too large was not added
    QCOMPARE(runs.size(), mostRecentRuns);
    QCOMPARE(runs.first().recipe.process, QStringLiteral("slope"));
}

QTEST_GUILESS_MAIN(RecentRunsTest)
#include "recentruns_test.moc"
