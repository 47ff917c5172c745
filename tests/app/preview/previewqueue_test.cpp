#include "app/preview/previewqueue.h"

#include <QHash>
#include <QTest>

#include <functional>

class PreviewQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void dueStep_data();
    void dueStep();
};

/// Each row: events, and the step that is due after them (R: reduce, C: compute, -: none), with ! when the
/// running step is stale.
void PreviewQueueTest::dueStep_data()
{
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("due");

    const auto row = [](const char *name, const char *events, const char *due) {
        QTest::newRow(name) << QString(events) << QString(due);
    };
    row("hidden", "dem complete", "-");
    row("shown", "dem complete show", "R");
    row("one at a time", "dem complete show begin", "-");
    row("reduced", "dem complete show begin good", "C");
    row("incomplete", "dem show begin good", "-");
    row("all shown", "dem complete show begin good begin good", "-");
    row("burst", "dem complete show begin good change change change", "C");
    row("change during a run", "dem complete show begin good begin change", "-");
    row("newest options after it", "dem complete show begin good begin change good", "C");
    row("and only once", "dem complete show begin good begin change good begin good", "-");
    row("run too long", "dem complete show begin good begin change expire", "-!");
    row("long run without a change", "dem complete show begin good begin expire", "-");
    row("another process", "dem complete show begin good begin other", "-!");
    row("change during a reduction", "dem complete show begin change", "-");
    row("another part", "dem complete show begin good begin part", "-!");
    row("part reduced anew", "dem complete show begin good begin part ended", "R");
    row("whole at hand", "dem complete show begin good part dem have", "C");
    row("launch", "dem complete show begin good begin hold", "-!");
    row("during a launch", "dem complete show begin good begin hold ended change", "-");
    row("after a launch", "dem complete show begin good begin hold ended release", "C");
    row("hidden during a run", "dem complete show begin hide", "-!");
    row("failure", "dem complete show begin bad change part", "-");
    row("outdated failure", "dem complete show begin good begin change bad", "C");
    row("stale failure", "dem complete show begin good begin other bad", "C");
    row("incomplete meanwhile", "dem complete show begin good begin incomplete", "-!");
}

void PreviewQueueTest::dueStep()
{
    QFETCH(QString, events);
    PreviewQueue queue;
    const QHash<QString, std::function<void()>> handlers{
        {"dem", [&] { queue.setSource("dem"); }},
        {"part", [&] { queue.setSource("part"); }},
        {"have", [&] { queue.haveReduction(); }},
        {"complete", [&] { queue.setComplete(true); }},
        {"incomplete", [&] { queue.setComplete(false); }},
        {"show", [&] { queue.setShown(true); }},
        {"hide", [&] { queue.setShown(false); }},
        {"change", [&] { queue.invalidate(); }},
        {"other", [&] { queue.discard(); }},
        {"expire", [&] { queue.expire(); }},
        {"hold", [&] { queue.hold(); }},
        {"release", [&] { queue.release(); }},
        {"begin", [&] { queue.begin(queue.next()); }},
        {"good", [&] { queue.end(true); }},
        {"bad", [&] { queue.end(false); }},
        {"ended", [&] { queue.end(false); }},
    };
    for (const QString &event : events.split(' '))
        handlers.value(event)();
    const QString due = QStringLiteral("-RC").mid(static_cast<int>(queue.next()), 1);
    QTEST(due + (queue.isStale() ? "!" : ""), "due");
}

QTEST_APPLESS_MAIN(PreviewQueueTest)
#include "previewqueue_test.moc"
