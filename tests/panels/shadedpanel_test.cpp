#include "panels/controls/QEditableComboBox.h"
#include "panels/shadedOptionsWidget.h"

#include "messages/QuvoLanguageManager.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <qwt_compass.h>
#include <qwt_round_scale_draw.h>
#include <qwt_text.h>
#include <qwt_wheel.h>

class ShadedPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void labels();
    void burstGivesOneSignal();
    void typedScale();
    void languageKeepsColonsAndTypedText();
};

namespace
{

/// The panel with its controls at hand.
struct Panel
{
    shadedOptionsWidget widget;
    QwtCompass *compass = widget.findChild<QwtCompass *>();
    QwtWheel *wheel = widget.findChild<QwtWheel *>();
    QEditableComboBox *scale = widget.findChild<QEditableComboBox *>();
    QSlider *altitude = widget.findChild<QSlider *>("m_pAltitudeSlider");

    QString label(const char *name) const { return widget.findChild<QLabel *>(name)->text(); }
    void type(const QString &text) const
    {
        scale->lineEdit()->selectAll();
        QTest::keyClicks(scale->lineEdit(), text);
    }
};

} // namespace

void ShadedPanelTest::labels()
{
    Panel panel;
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("315°"));
    QCOMPARE(panel.label("m_pAltitudeValueLabel"), QStringLiteral("45°"));
    QCOMPARE(panel.label("m_pZFactorValueLabel"), QStringLiteral("1"));
    panel.widget.setProcessOptions(
        ShadedOptions{.exaggeration = 0.3, .scaleIndex = -1, .scaleText = "0.5", .compass = 0, .altitude = 60});
    QVERIFY(panel.widget.findChild<QPushButton *>("m_pPBResetScale")->isEnabled());
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("0°"));
    QCOMPARE(panel.label("m_pAltitudeValueLabel"), QStringLiteral("60°"));
    QCOMPARE(panel.label("m_pZFactorValueLabel"), QStringLiteral("0.3"));
    QString around;
    for (const double direction : {0.0, 90.0, 180.0, 270.0})
        around += panel.compass->scaleDraw()->label(direction).text();
    QCOMPARE(around, QStringLiteral("NESW"));
}

void ShadedPanelTest::burstGivesOneSignal()
{
    Panel panel;
    const QSignalSpy changed(&panel.widget, &shadedOptionsWidget::completeChanged);
    for (int value = 10; value < 30; ++value) {
        panel.altitude->setValue(value);
        panel.compass->setValue(value);
    }
    QCOMPARE(changed.count(), 0);
    QTRY_COMPARE(changed.count(), 1);
    QTest::qWait(250);
    QCOMPARE(changed.count(), 1);
}

void ShadedPanelTest::typedScale()
{
    Panel panel;
    panel.type(QStringLiteral("X"));
    QCOMPARE(panel.scale->currentText(), QStringLiteral("X")); // not completed to an entry

    const auto note = panel.widget.findChild<QLabel *>("m_pScaleNote");
    panel.type("2,5");
    QCOMPARE(panel.scale->currentText(), QStringLiteral("2.5")); // the tool reads a point
    QVERIFY(note->isHidden());
    for (const char *ratio : {"0", "-1", "1 -of PNG", "x"}) {
        panel.type(ratio);
        QVERIFY2(!note->isHidden() && note->text().contains(ratio), ratio);
        QVERIFY(!optionsProblem(panel.widget.processOptions()).isEmpty());
    }
    panel.scale->choose(2);
    QVERIFY(note->isHidden());
}

void ShadedPanelTest::languageKeepsColonsAndTypedText()
{
    Panel panel;
    panel.type(QStringLiteral("2.5"));
    QCOMPARE(panel.label("m_pLabelExageration"), QStringLiteral("Exagération verticale:"));
    QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), "ENGLISH", {});
    QTRY_COMPARE(panel.label("m_pLabelExageration"), QStringLiteral("Vertical exaggeration:"));
    QCOMPARE(panel.scale->currentText(), QStringLiteral("2.5"));
    QCOMPARE(panel.label("m_pZFactorValueLabel"), QStringLiteral("1"));
}

QTEST_MAIN(ShadedPanelTest)
#include "shadedpanel_test.moc"
