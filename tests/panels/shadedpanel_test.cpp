#include "panels/controls/QEditableComboBox.h"
#include "panels/shadedOptionsWidget.h"

#include "messages/QuvoLanguageManager.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
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
    void lightInWords();
    void compassFollowsClicksDragsAndKeys();
    void clickSetsTheAltitude();
    void readingsComeBack();
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
    QDoubleSpinBox *field = widget.findChild<QDoubleSpinBox *>("m_pAzimuthField");
    QSlider *altitude = widget.findChild<QSlider *>("m_pAltitudeSlider");

    QString label(const char *name) const { return widget.findChild<QLabel *>(name)->text(); }
    void type(const QString &text) const
    {
        scale->lineEdit()->selectAll();
        QTest::keyClicks(scale->lineEdit(), text);
    }
};

/// Moves the mouse with its left button held down. QTest's own move holds no button.
void drag(QWidget &widget, const QPoint &place)
{
    QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&widget, &move);
}

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

void ShadedPanelTest::lightInWords()
{
    Panel panel;
    QCOMPARE(panel.label("m_pLightLabel"), QStringLiteral("Lumière venant du nord-ouest, azimut 315°"));
    panel.compass->setValue(90);
    QCOMPARE(panel.label("m_pLightLabel"), QStringLiteral("Lumière venant du sud, azimut 180°"));
    QCOMPARE(panel.field->value(), 90.0);
    panel.widget.findChild<QPushButton *>("m_pPBResetAzimuth")->click();
    QCOMPARE(panel.label("m_pLightLabel"), QStringLiteral("Lumière venant du nord-ouest, azimut 315°"));
}

void ShadedPanelTest::compassFollowsClicksDragsAndKeys()
{
    Panel panel;
    panel.compass->resize(200, 200);
    const QSignalSpy turned(panel.compass, &QwtCompass::valueChanged);
    for (const auto &[place, reading] : {std::pair{QPoint(100, 40), 0.0},
                                         {QPoint(160, 100), 90.0},
                                         {QPoint(100, 160), 180.0},
                                         {QPoint(40, 100), 270.0},
                                         {QPoint(60, 60), 315.0}}) {
        QTest::mousePress(panel.compass, Qt::LeftButton, {}, place);
        QCOMPARE(panel.compass->value(), reading);
        QTest::mouseRelease(panel.compass, Qt::LeftButton, {}, place);
    }
    QCOMPARE(turned.count(), 5);
    QTest::mouseClick(panel.compass, Qt::RightButton, {}, {160, 100});
    QTest::mouseClick(panel.compass, Qt::LeftButton, {}, {100, 100}); // the centre has no direction
    QTest::mouseClick(panel.compass, Qt::LeftButton, {}, {2, 2});     // beside the dial
    QCOMPARE(panel.compass->value(), 315.0);
    QTest::mousePress(panel.compass, Qt::LeftButton, {}, {160, 100});
    drag(*panel.compass, {100, 160});
    QCOMPARE(panel.compass->value(), 180.0);
    QTest::mouseRelease(panel.compass, Qt::LeftButton, {}, {100, 160});

    panel.compass->setValue(359);
    for (const auto &[key, reading] : {std::pair{Qt::Key_Up, 0.0},
                                       {Qt::Key_Left, 359.0},
                                       {Qt::Key_PageUp, 14.0},
                                       {Qt::Key_PageDown, 359.0},
                                       {Qt::Key_Home, 0.0},
                                       {Qt::Key_Down, 359.0},
                                       {Qt::Key_Right, 0.0},
                                       {Qt::Key_End, 359.0}}) {
        QTest::keyClick(panel.compass, key);
        QCOMPARE(panel.compass->value(), reading);
    }
    QTest::keyClick(panel.field, Qt::Key_Up); // the steps of the field go round, too
    QCOMPARE(panel.compass->value(), 0.0);
    QTest::keyClick(panel.field, Qt::Key_Down);
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("359°"));
}

void ShadedPanelTest::clickSetsTheAltitude()
{
    Panel panel;
    panel.altitude->resize(40, 200);
    for (const int y : {30, 150, 90}) {
        QTest::mousePress(panel.altitude, Qt::LeftButton, {}, {3, y});
        const double expected = 90.0 * (200 - y) / 200;
        QVERIFY2(qAbs(panel.altitude->value() - expected) < 5.0, qPrintable(QString::number(y)));
        const int clicked = panel.altitude->value();
        drag(*panel.altitude, {3, y + 40});
        QVERIFY(panel.altitude->value() < clicked - 10); // the drag goes on from there
        QTest::mouseRelease(panel.altitude, Qt::LeftButton, {}, {3, y + 40});
    }
}

void ShadedPanelTest::readingsComeBack()
{
    for (const double reading : {0.0, 12.5, 12.345678, 359.5, 360.0}) {
        Panel panel;
        const ShadedOptions options{.compass = reading};
        panel.widget.setProcessOptions(options);
        panel.field->setFocus();
        panel.field->clearFocus(); // a field that rounds its number leaves the option alone
        QCOMPARE(panel.widget.processOptions(), ProcessOptions(options));
        QVERIFY(qAbs(panel.field->value() - reading) < 1e-4);
    }
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

    panel.compass->setValue(12.5);
    QCOMPARE(panel.field->text(), QStringLiteral("12.5°"));
    QCOMPARE(panel.label("m_pLightLabel"), QStringLiteral("Light from the west, azimuth 257.5°"));
    QuvoLanguageManager::getInstance()->changeLanguage("FRENCH");
    QTRY_COMPARE(panel.label("m_pLightLabel"), QStringLiteral("Lumière venant de l'ouest, azimut 257.5°"));
    QCOMPARE(panel.label("m_pAzimuthValueLabel"), QStringLiteral("12.5°"));
    QCOMPARE(panel.field->text(), QStringLiteral("12.5°"));
    QVERIFY(panel.widget.getCommandArguments().contains("-az 257.5 "));
}

QTEST_MAIN(ShadedPanelTest)
#include "shadedpanel_test.moc"
