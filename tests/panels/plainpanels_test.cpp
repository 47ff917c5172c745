#include "panels/aspectOptionsWidget.h"
#include "panels/controls/QEditableComboBox.h"
#include "panels/slopeOptionsWidget.h"
#include "panels/tri_tpi_roughnessOptionsWidget.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

/// The panels that hold little more than buttons: slope, aspect, terrain indices.
class PlainPanelsTest : public QObject
{
    Q_OBJECT

private slots:
    void slope();
    void aspectChoice_data();
    void aspectChoice();
    void aspectSwitches();
    void terrainIndex();
};

namespace
{

void click(const QWidget &panel, const char *name)
{
    panel.findChild<QAbstractButton *>(QLatin1String(name))->click();
}

} // namespace

void PlainPanelsTest::slope()
{
    slopeOptionsWidget panel;
    const QSignalSpy changed(&panel, &slopeOptionsWidget::completeChanged);
    const auto scale = panel.findChild<QEditableComboBox *>();
    const auto reset = panel.findChild<QAbstractButton *>("m_pPBResetScale");
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-compute_edges -s 1 "));

    click(panel, "m_pRBPercentSlope"); // must not change the method, whose buttons have the same parent
    click(panel, "m_pRBZevenbergenThorne");
    scale->setCurrentIndex(2);
    QCOMPARE(changed.count(), 3);
    QCOMPARE(panel.getCommandArguments(),
             QStringLiteral("-p -compute_edges -alg ZevenbergenThorne -s 111120 "));

    scale->lineEdit()->selectAll();
    QTest::keyClick(scale->lineEdit(), Qt::Key_Delete);
    QVERIFY(!panel.isComplete());
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-p -compute_edges -alg ZevenbergenThorne "));
    QTest::keyClicks(scale->lineEdit(), QStringLiteral("2.5"));
    QVERIFY(panel.isComplete());
    QVERIFY(panel.getCommandArguments().endsWith(QStringLiteral("-s 2.5 ")));
    emit scale->activated(2); // chooses the row that was current before the text was typed
    scale->setEditText(scale->itemText(2));
    QCOMPARE(changed.count(), 8);
    click(panel, "m_pPBResetScale");
    QVERIFY(panel.getCommandArguments().endsWith(QStringLiteral("-s 1 ")));
    QVERIFY(!reset->isEnabled());
    click(panel, "m_pRBDegreesSlope");
    click(panel, "m_pChBComputeAtEdges");
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-alg ZevenbergenThorne -s 1 "));
}

void PlainPanelsTest::aspectChoice_data()
{
    QTest::addColumn<bool>("trigonometric"); // the choice before
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<bool>("trigonometricAfter");
    QTest::addColumn<int>("signalCount");

    for (const bool before : {false, true}) {
        for (const char *part : {"RB", "PB"}) {
            const QByteArray kind = QByteArray("m_p") + part;
            QTest::addRow("%s azimuth, trigonometric %d", part, before)
                << before << QString(kind + "Azimuth") << false << int(before);
            QTest::addRow("%s trigonometric, trigonometric %d", part, before)
                << before << QString(kind + "Trigonometric") << true << int(!before);
        }
    }
}

void PlainPanelsTest::aspectChoice()
{
    QFETCH(bool, trigonometric);
    QFETCH(QString, clicked);
    QFETCH(bool, trigonometricAfter);
    aspectOptionsWidget panel;
    if (trigonometric)
        click(panel, "m_pRBTrigonometric");
    const QSignalSpy changed(&panel, &aspectOptionsWidget::completeChanged);
    click(panel, qPrintable(clicked));
    QTEST(int(changed.count()), "signalCount");
    QCOMPARE(panel.options().trigonometric, trigonometricAfter);
    QCOMPARE(panel.findChild<QAbstractButton *>("m_pRBAzimuth")->isChecked(), !trigonometricAfter);
}

void PlainPanelsTest::aspectSwitches()
{
    aspectOptionsWidget panel;
    const QSignalSpy changed(&panel, &aspectOptionsWidget::completeChanged);
    QCOMPARE(panel.getCommandArguments(), QStringLiteral(" -zero_for_flat -compute_edges"));
    click(panel, "m_pRBZevenbergenThorne");
    click(panel, "m_pPBTrigonometric");
    QCOMPARE(panel.getCommandArguments(),
             QStringLiteral("-trigonometric -zero_for_flat -compute_edges -alg ZevenbergenThorne"));
    click(panel, "m_pRBNoData");
    click(panel, "m_pChBComputeAtEdges");
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-trigonometric -alg ZevenbergenThorne"));
    QCOMPARE(changed.count(), 4);
}

void PlainPanelsTest::terrainIndex()
{
    tri_tpi_roughnessOptionsWidget panel;
    QCOMPARE(panel.getCommandArguments(), QStringLiteral("-compute_edges"));
    QCOMPARE(panel.processType(), 0);
    const QSignalSpy changed(&panel, &tri_tpi_roughnessOptionsWidget::completeChanged);
    click(panel, "m_pRBTPI");
    QCOMPARE(processWord(panel.processOptions()), QStringLiteral("TPI"));
    click(panel, "m_pRBROUGHNESS");
    QCOMPARE(panel.processType(), 2);
    click(panel, "m_pChBComputeAtEdges");
    QCOMPARE(panel.getCommandArguments(), QString());
    QCOMPARE(changed.count(), 3);
}

QTEST_MAIN(PlainPanelsTest)
#include "plainpanels_test.moc"
