#include "panels/controls/QEditableComboBox.h"
#include "panels/shadedOptionsWidget.h"

#include "messages/QuvoLanguageManager.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <qwt_compass.h>
#include <qwt_wheel.h>

class ShadedPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void defaultsAndFragment();
    void burstGivesOneSignal();
    void typedScale();
    void resetButtons();
    void recordRoundTrip();
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

    QPushButton *button(const char *name) const { return widget.findChild<QPushButton *>(name); }
    QString label(const char *name) const { return widget.findChild<QLabel *>(name)->text(); }
    void type(const QString &text) const
    {
        scale->lineEdit()->selectAll();
        if (text.isEmpty())
            QTest::keyClick(scale->lineEdit(), Qt::Key_Delete);
        else
            QTest::keyClicks(scale->lineEdit(), text);
    }
};

const QString defaultFragment = QStringLiteral("-z 1 -s 1 -az -45 -alt 45 ");

} // namespace

void ShadedPanelTest::defaultsAndFragment()
{
    Panel panel;
    QCOMPARE(panel.widget.getCommandArguments(), defaultFragment);
    QVERIFY(panel.widget.isComplete());
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("315°"));
    QCOMPARE(panel.label("m_pAltitudeValueLabel"), QStringLiteral("45°"));
    QCOMPARE(panel.label("m_pZFactorValueLabel"), QStringLiteral("1"));

    panel.compass->setValue(0);
    panel.wheel->setValue(0.3);
    panel.altitude->setValue(60);
    panel.scale->setCurrentIndex(2);
    panel.widget.findChild<QCheckBox *>("m_pChBComputeAtEdges")->click();
    panel.widget.findChild<QRadioButton *>("m_pRBZevenbergenThorne")->click();
    QCOMPARE(panel.widget.getCommandArguments(),
             QStringLiteral("-z 0.3 -s 111120 -az 270 -alt 60  -compute_edges -alg ZevenbergenThorne"));
    QCOMPARE(panel.label("m_pZFactorValueLabel"), QStringLiteral("0.3"));
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
    const QSignalSpy changed(&panel.widget, &shadedOptionsWidget::completeChanged);
    panel.type(QStringLiteral("12"));
    QCOMPARE(panel.widget.getCommandArguments(), QStringLiteral("-z 1 -s 12  -az -45 -alt 45 "));
    QTRY_COMPARE(changed.count(), 1);
    panel.type(QString());
    QVERIFY(!panel.widget.isComplete());
    QCOMPARE(panel.widget.getCommandArguments(), QStringLiteral("-z 1 -az -45 -alt 45 "));
    QTRY_COMPARE(changed.count(), 2);
    panel.type(QStringLiteral("X"));
    QCOMPARE(panel.scale->currentText(), QStringLiteral("X")); // not completed to an entry

    QVERIFY(panel.button("m_pPBResetScale")->isEnabled());
    panel.button("m_pPBResetScale")->click();
    QCOMPARE(panel.widget.getCommandArguments(), defaultFragment);
    QVERIFY(!panel.button("m_pPBResetScale")->isEnabled());
    QTRY_COMPARE(changed.count(), 3); // although the index never changed

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

void ShadedPanelTest::resetButtons()
{
    Panel panel;
    panel.compass->setValue(10);
    panel.wheel->setValue(7);
    panel.scale->setCurrentIndex(3);
    panel.altitude->setValue(50);
    panel.altitude->setValue(45);
    QVERIFY(panel.button("m_pPBResetAltitude")->isEnabled()); // the user moved the slider back by hand
    for (const char *name :
         {"m_pPBResetAzimuth", "m_pPBResetAltitude", "m_pPBResetZFactor", "m_pPBResetScale"}) {
        panel.button(name)->click();
        QVERIFY2(!panel.button(name)->isEnabled(), name);
    }
    QCOMPARE(panel.widget.getCommandArguments(), defaultFragment);
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("315°"));
}

void ShadedPanelTest::recordRoundTrip()
{
    Panel panel;
    const ShadedOptions options{.exaggeration = 2.5,
                                .scaleIndex = -1,
                                .scaleText = "0.5",
                                .compass = 90,
                                .altitude = 10,
                                .computeEdges = true,
                                .zevenbergenThorne = true};
    const QSignalSpy changed(&panel.widget, &shadedOptionsWidget::completeChanged);
    panel.widget.setProcessOptions(options);
    QVERIFY(panel.widget.options() == options);
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("90°"));
    QVERIFY(panel.button("m_pPBResetScale")->isEnabled());
    QTRY_COMPARE(changed.count(), 1);
    panel.widget.setProcessOptions(ShadedOptions{});
    QCOMPARE(panel.widget.getCommandArguments(), defaultFragment);
}

void ShadedPanelTest::languageKeepsColonsAndTypedText()
{
    Panel panel;
    panel.type(QStringLiteral("2.5"));
    QCOMPARE(panel.label("m_pLabelExageration"), QStringLiteral("Exagération verticale:"));
    QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), "ENGLISH", {});
    QTRY_COMPARE(panel.label("m_pLabelExageration"), QStringLiteral("Vertical exaggeration:"));
    QCOMPARE(panel.label("m_pLabelCalcMethode"), QStringLiteral("Computation method:"));
    QVERIFY(panel.label("m_pLabelCalcBord").endsWith(QLatin1Char(':')));
    QCOMPARE(panel.scale->currentText(), QStringLiteral("2.5"));
    QCOMPARE(panel.scale->itemText(0), QStringLiteral("X, Y and Z are in the same unit (1)"));
    QCOMPARE(panel.label("m_pZFactorValueLabel"), QStringLiteral("1"));
}

QTEST_MAIN(ShadedPanelTest)
#include "shadedpanel_test.moc"
