#include "dataset/gdalmessages.h"
#include "dataset/workfolder.h"
#include "panels/aspectOptionsWidget.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/contourOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/shadedOptionsWidget.h"
#include "panels/slopeOptionsWidget.h"
#include "panels/tri_tpi_roughnessOptionsWidget.h"

#include <QAbstractButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

/// What every new panel has in common: it shows the defaults of its record, and nothing counts as a change.
class DefaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void newPanels();
};

void DefaultsTest::newPanels()
{
    setUpGdal();
    WorkFolder workFolder;
    auto colorRelief = new colorReliefOptionsWidget(workFolder);
    colorRelief->loadLibrary(QStringLiteral(QUVO_TREE "/libraries/colormap"));
    // The panel holds the default table by value, under its name in the library.
    const ColorReliefOptions colors{
        .table = "dtm",
        .colors = readColorTable(QStringLiteral(QUVO_TREE "/libraries/colormap/") + ColorReliefOptions().table)
                      .entries};
    QVERIFY(!colors.colors.isEmpty());

    struct Row
    {
        optionsWidget *panel;
        ProcessOptions defaults;
        int resetButtons;
    };
    const Row rows[] = {{new shadedOptionsWidget, ShadedOptions{}, 4},
                        {new slopeOptionsWidget, SlopeOptions{}, 1},
                        {new aspectOptionsWidget, AspectOptions{}, 0},
                        {new intervisibilityOptionsWidget(workFolder), IntervisibilityOptions{}, 7},
                        {colorRelief, colors, 0},
                        {new contourOptionsWidget, ContourOptions{}, 0},
                        {new tri_tpi_roughnessOptionsWidget, TerrainIndexOptions{}, 0}};
    std::vector<std::unique_ptr<optionsWidget>> panels;
    std::vector<std::unique_ptr<QSignalSpy>> changes;
    for (const Row &row : rows) {
        panels.emplace_back(row.panel);
        changes.push_back(std::make_unique<QSignalSpy>(row.panel, SIGNAL(completeChanged())));
    }
    QTest::qWait(300); // longer than the pause before a signal
    for (size_t at = 0; at < panels.size(); ++at) {
        const char *panel = panels[at]->metaObject()->className();
        QVERIFY2(panels[at]->processOptions() == rows[at].defaults, panel);
        QVERIFY2(changes[at]->isEmpty(), panel);
        const auto resets = panels[at]->findChildren<QAbstractButton *>(QRegularExpression("^m_pPBReset"));
        QVERIFY2(resets.size() == rows[at].resetButtons, panel);
        for (const QAbstractButton *reset : resets)
            QVERIFY2(!reset->isEnabled(), panel);
    }
}

QTEST_MAIN(DefaultsTest)
#include "defaults_test.moc"
