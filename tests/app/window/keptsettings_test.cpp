#include "app/window/mnemonics.h"
#include "panels/contourOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "tests/support/files.h"
#include "tests/support/maindialog.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTabWidget>
#include <QToolButton>

/// What comes back at the next start and after a reset, and what the window says and offers besides.
class KeptSettingsTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init();
    void nextStartTakesUpWhatWasChosen();
    void lostDemLeavesTheOptions();
    void resetReturnsTheDefaults();
    void launchSaysWhatIsMissing();
    void mnemonics_data();
    void mnemonics();
    void lettersDifferInAWindow();
};

namespace
{

struct Dialog : ShownDialog
{
    using ShownDialog::ShownDialog;
    QAction *action(const char *name)
    {
        QMenu *menu = find<QToolButton>("m_pTBSettings")->menu();
        emit menu->aboutToShow();
        for (QAction *action : menu->actions()) {
            if (action->objectName() == name)
                return action;
        }
        return nullptr;
    }
    void showTab(const char *tab) { find<QTabWidget>("m_pTabWidget")->setCurrentWidget(find<QWidget>(tab)); }
    QLabel *obstacle() { return find<QLabel>("m_pLObstacle"); }
};

} // namespace

void KeptSettingsTest::init()
{
    setUpTest(32);
    QFile::remove(lastSettingsFile());
}

void KeptSettingsTest::nextStartTakesUpWhatWasChosen()
{
    {
        Dialog first(m_tools);
        first.window.setInputDem(path("dem.tif"));
        first.find<QLineEdit>("m_pLEElevationInterval")->setText("50");
        first.window.close();
    }
    Recipe shown;
    {
        Dialog second(m_tools); // the user has not switched it on
        second.window.takeUpLastSettings(true);
        QVERIFY(second.window.recipe().input.isEmpty());
        QVERIFY(second.find<QLineEdit>("m_pLEElevationInterval")->text().isEmpty());
        second.action("m_pActionTakeUp")->setChecked(true);
        second.window.setInputDem(path("dem.tif"));
        second.find<QWidget>("slopeTab")->findChild<QAbstractButton *>("m_pRBPercentSlope")->click();
        second.showTab("contourTab");
        second.find<QLineEdit>("m_pLEElevationInterval")->setText("50");
        shown = second.window.recipe();
        second.window.close();
    }
    {
        Dialog third(m_tools);
        third.window.takeUpLastSettings(true);
        QCOMPARE(writeRecipe(third.window.recipe()), writeRecipe(shown));
        third.showTab("slopeTab");
        QVERIFY(std::get<SlopeOptions>(third.window.recipe().options).percent);
        third.window.close();
    }
    Dialog fourth(m_tools); // a DEM from the command line replaces the last one
    fourth.window.takeUpLastSettings(false);
    QVERIFY(fourth.window.recipe().input.isEmpty());
    QVERIFY(std::get<SlopeOptions>(fourth.window.recipe().options).percent);
    fourth.action("m_pActionTakeUp")->setChecked(false);
    QVERIFY(!QFile::exists(lastSettingsFile()));
}

void KeptSettingsTest::lostDemLeavesTheOptions()
{
    {
        Dialog dialog(m_tools);
        dialog.action("m_pActionTakeUp")->setChecked(true);
        dialog.window.setInputDem(path("dem.tif"));
        dialog.showTab("contourTab");
        dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("50");
        dialog.window.close();
    }
    QFile::remove(path("dem.tif"));
    Dialog dialog(m_tools);
    dialog.window.takeUpLastSettings(true);
    const QString warning = Prompt::takeShown().join('|');
    QVERIFY2(warning.contains("dem.tif"), qPrintable(warning));
    QCOMPARE(dialog.find<QLineEdit>("m_pLEElevationInterval")->text(), QStringLiteral("50.000"));

    writeFile(lastSettingsFile(), "{\"recipes\": [{\"format\": 1, \"process\": \"sloop\"}, 7");
    Dialog damaged(m_tools);
    damaged.window.takeUpLastSettings(true);
    QVERIFY(Prompt::takeShown().isEmpty());
}

void KeptSettingsTest::resetReturnsTheDefaults()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.showTab("slopeTab");
    const QByteArray slope = writeRecipe(dialog.window.recipe());
    QVERIFY(!dialog.action("m_pActionReset")->isEnabled());
    QVERIFY(!dialog.action("m_pActionResetAll")->isEnabled());
    dialog.find<QWidget>("slopeTab")->findChild<QAbstractButton *>("m_pRBPercentSlope")->click();
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("50");
    dialog.find<intervisibilityOptionsWidget>(nullptr)->placeObserver(-1, QPointF(500015, 5099985));

    dialog.action("m_pActionReset")->trigger(); // answered with no
    QVERIFY(writeRecipe(dialog.window.recipe()) != slope);
    QVERIFY(Prompt::takeShown().value(0).contains("« Pentes »"));
    Prompt::answerBeforehand({true, true});
    dialog.action("m_pActionReset")->trigger();
    QCOMPARE(writeRecipe(dialog.window.recipe()), slope);
    QCOMPARE(dialog.find<QLineEdit>("m_pLEElevationInterval")->text(), QStringLiteral("50"));
    dialog.action("m_pActionResetAll")->trigger();
    QVERIFY(dialog.find<QLineEdit>("m_pLEElevationInterval")->text().isEmpty());
    QCOMPARE(dialog.find<intervisibilityOptionsWidget>(nullptr)->observerCount(), 0);
    QVERIFY(!dialog.action("m_pActionResetAll")->isEnabled());
    QCOMPARE(dialog.window.recipe().input, path("dem.tif"));
}

void KeptSettingsTest::launchSaysWhatIsMissing()
{
    Dialog dialog(m_tools);
    const auto says = [&](const QString &sentence) {
        const bool isOn = dialog.launchButton()->isEnabled();
        return dialog.obstacle()->text() == sentence && isOn == sentence.isEmpty()
            && dialog.launchButton()->toolTip() == (isOn ? QStringLiteral("Ctrl+Entrée") : sentence);
    };
    QTRY_VERIFY(says("Choisissez un MNT."));
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY(says({}));
    dialog.find<QLineEdit>("m_pLEOutputFile")->clear();
    QVERIFY(says("Donnez un nom au fichier à créer."));
    dialog.showTab("contourTab");
    QTRY_VERIFY(says("Indiquez un intervalle ou des altitudes."));
    dialog.showTab("intervisibilityTab");
    QTRY_VERIFY(says("Placez un observateur : cliquez sur la carte ou ajoutez un point."));
    dialog.find<intervisibilityOptionsWidget>(nullptr)->placeObserver(-1, QPointF(500015, 5099985));
    QTRY_VERIFY(says("Donnez un nom au fichier à créer.") || says({}));
}

void KeptSettingsTest::mnemonics_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("taken");
    QTest::addColumn<QString>("shown");
    QTest::newRow("first letter") << "Lancer le traitement"
                                  << ""
                                  << "&Lancer le traitement";
    QTest::newRow("first letter of a later word") << "Lancer le traitement"
                                                  << "l"
                                                  << "Lancer le &traitement";
    QTest::newRow("inside a word") << "Lancer"
                                   << "lan"
                                   << "Lan&cer";
    QTest::newRow("letters that keyboards lack") << "Été à 2 %"
                                                 << ""
                                                 << "É&té à 2 %";
    QTest::newRow("apostrophe") << "l'azimut"
                                << "l"
                                << "l'&azimut";
    QTest::newRow("none is free") << "Non"
                                  << "no"
                                  << "Non";
    QTest::newRow("ampersand") << "A && B"
                               << "a"
                               << "A && &B";
}

void KeptSettingsTest::mnemonics()
{
    QFETCH(QString, text);
    QFETCH(QString, taken);
    QSet<QChar> letters(taken.begin(), taken.end());
    QTEST(withMnemonic(text, letters), "shown");
    QCOMPARE(withoutMnemonic(withMnemonic(text, letters)), text);
}

void KeptSettingsTest::lettersDifferInAWindow()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    const auto tabs = dialog.find<QTabWidget>("m_pTabWidget");
    putMnemonics(dialog.window);
    putMnemonics(dialog.window); // the letters are chosen anew, not added
    qsizetype count = 0;
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QStringList texts;
        for (int index = 0; index < tabs->count(); ++index)
            texts += tabs->tabText(index);
        for (const QWidget *widget : dialog.window.findChildren<QWidget *>()) {
            const auto label = qobject_cast<const QLabel *>(widget);
            if (widget->isVisible() && (widget->inherits("QAbstractButton") || (label && label->buddy())))
                texts += widget->property("text").toString();
        }
        QSet<QChar> letters;
        for (const QString &text : qAsConst(texts)) {
            const auto at = text.indexOf('&');
            if (at < 0)
                continue;
            const QChar letter = text.at(at + 1).toLower();
            QVERIFY2(!letters.contains(letter), qPrintable(texts.join('|')));
            letters += letter;
        }
        QVERIFY2(letters.size() > 10, qPrintable(texts.join('|')));
        count += letters.size();
    }
    QVERIFY(count > 80);
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    QTest::keyClick(&dialog.window, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), 0); // after the last tab comes the first one
}

QTEST_MAIN(KeptSettingsTest)
#include "keptsettings_test.moc"
