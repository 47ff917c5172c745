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

    QTest::newRow("hidden") << "dem complete"
                            << "-";
    QTest::newRow("shown") << "dem complete show"
                           << "R";
    QTest::newRow("one at a time") << "dem complete show begin"
                                   << "-";
    QTest::newRow("reduced") << "dem complete show begin good"
                             << "C";
    QTest::newRow("incomplete") << "dem show begin good"
                                << "-";
    QTest::newRow("all shown") << "dem complete show begin good begin good"
                               << "-";
    QTest::newRow("burst") << "dem complete show begin good change change change"
                           << "C";
    QTest::newRow("change during a run") << "dem complete show begin good begin change"
                                         << "-!";
    QTest::newRow("change after it") << "dem complete show begin good begin change ended"
                                     << "C";
    QTest::newRow("change during a reduction") << "dem complete show begin change"
                                               << "-";
    QTest::newRow("another part") << "dem complete show begin good begin part"
                                  << "-!";
    QTest::newRow("part reduced anew") << "dem complete show begin good begin part ended"
                                       << "R";
    QTest::newRow("whole at hand") << "dem complete show begin good part dem have"
                                   << "C";
    QTest::newRow("launch") << "dem complete show begin good begin hold"
                            << "-!";
    QTest::newRow("during a launch") << "dem complete show begin good begin hold ended change"
                                     << "-";
    QTest::newRow("after a launch") << "dem complete show begin good begin hold ended release"
                                    << "C";
    QTest::newRow("hidden during a run") << "dem complete show begin hide"
                                         << "-!";
    QTest::newRow("failure") << "dem complete show begin bad change part"
                             << "-";
    QTest::newRow("stale failure") << "dem complete show begin good begin change bad"
                                   << "C";
    QTest::newRow("incomplete meanwhile") << "dem complete show begin good begin incomplete"
                                          << "-!";
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
