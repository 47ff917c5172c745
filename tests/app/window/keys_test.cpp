#include "messages/FittingArea.h"
#include "panels/controls/LinkLabel.h"
#include "panels/controls/QEditableComboBox.h"
#include "tests/support/files.h"
#include "tests/support/maindialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QWheelEvent>

/// What the keyboard does in the main dialog.
class KeysTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init() { setUpTest(64); }
    void fieldsNeitherCloseNorLaunch();
    void wrongDemKeepsItsText();
    void tabVisitsEachControlInOrder();
    void linksAreReachedInTurn();
    void controlsOfAPanelAreInSight();
    void resetButtonsNameTheirOption();
    void wheelScrollsOverControlsWithoutFocus();
};

void KeysTest::fieldsNeitherCloseNorLaunch()
{
    ShownDialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentWidget(dialog.find<QWidget>("contourTab"));
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("50");
    QTRY_VERIFY(dialog.launchButton()->isEnabled());
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    int fields = 0;
    for (QWidget *field : dialog.find<QWidget>("contourTab")->findChildren<QWidget *>()) {
        if (!field->isVisible() || !field->isEnabled() || !field->testAttribute(Qt::WA_InputMethodEnabled)
            || field->focusProxy())
            continue;
        ++fields;
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
        QTest::keyClick(field, Qt::Key_Enter);
        QVERIFY2(field->hasFocus(), qPrintable(field->objectName()));
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(!field->hasFocus());
    }
    QVERIFY(fields > 1);
    QTest::keyClick(&dialog.window, Qt::Key_Escape);
    QTest::qWait(20);
    QVERIFY(dialog.window.isVisible() && !dialog.result());

    dialog.find<QComboBox>("m_pCBInputListFile")->setFocus(); // handles Return itself
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ControlModifier);
    QTRY_VERIFY(dialog.result());
    QVERIFY(QFile::exists(dialog.find<QLineEdit>("m_pLEOutputFile")->text()));
}

void KeysTest::wrongDemKeepsItsText()
{
    writeFile(path("notes.txt"), "no raster");
    ShownDialog dialog(m_tools);
    const auto input = dialog.find<QComboBox>("m_pCBInputListFile");
    for (const auto &[name, reason] : {std::pair("absent.tif", "Ce fichier n'existe pas."),
                                       std::pair("notes.txt", "n'est pas un raster que GDAL peut lire.")}) {
        dialog.window.setInputDem(path("dem.tif"));
        input->setEditText(path(name));
        QTest::keyClick(input->lineEdit(), Qt::Key_Return);
        const QString shown = Prompt::takeShown().join("|");
        QVERIFY2(shown.contains(reason) && shown.contains(path(name)), qPrintable(shown));
        QCOMPARE(input->currentText(), path(name));
        QVERIFY(!dialog.launchButton()->isEnabled());
    }
    // A path from elsewhere leaves the DEM as it is.
    dialog.window.setInputDem(path("dem.tif"));
    dialog.window.setInputDem(path("absent.tif"));
    QCOMPARE(input->currentText(), path("dem.tif"));
    QVERIFY(dialog.launchButton()->isEnabled());
}

void KeysTest::tabVisitsEachControlInOrder()
{
    ShownDialog dialog(m_tools);
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY(dialog.launchButton()->isEnabled());
    for (const char *tab : {"contourTab", "intervisibilityTab", "colorReliefTab"}) {
        dialog.find<QTabWidget>("m_pTabWidget")->setCurrentWidget(dialog.find<QWidget>(tab));
        dialog.find<QWidget>("m_pCBInputListFile")->setFocus();
        QWidgetList visited;
        while (!visited.contains(dialog.window.focusWidget()) && visited.size() < 200) {
            visited += dialog.window.focusWidget();
            QTest::keyClick(visited.last(), Qt::Key_Tab);
        }
        QCOMPARE(dialog.window.focusWidget(), visited.first()); // no control keeps the focus
        int last = 0;
        for (const char *name :
             {"m_pPBSelectInputDEM", tab, "m_pLEOutputFile", "m_pAboutLabel", "m_pPBClose"}) {
            const auto widget = dialog.find<QWidget>(name);
            int at = 0;
            while (at < visited.size() && visited.at(at) != widget && !widget->isAncestorOf(visited.at(at)))
                ++at;
            QVERIFY2(at > last && at < visited.size(), name);
            last = at;
        }
    }
    // The link of the forecast is reached and followed without a mouse.
    dialog.find<QTabWidget>("m_pTabWidget")->setCurrentWidget(dialog.find<QWidget>("contourTab"));
    const auto interval = dialog.find<QLineEdit>("m_pLEElevationInterval");
    QTRY_COMPARE(dialog.find<QLabel>("m_pForecastLabel")->focusPolicy(), Qt::StrongFocus);
    interval->setFocus();
    QTest::keyClick(interval, Qt::Key_Tab);
    QTest::keyClick(dialog.window.focusWidget(), Qt::Key_Return);
    QVERIFY(!interval->text().isEmpty());
}

/// One press of the Tab key brings the next link, in both directions, and each time that the label is reached.
void KeysTest::linksAreReachedInTurn()
{
    QWidget window;
    QVBoxLayout column(&window);
    QLineEdit before;
    LinkLabel label;
    LinkLabel plain;
    QLineEdit after;
    for (QWidget *part : QList<QWidget *>{&before, &label, &plain, &after})
        column.addWidget(part);
    label.showText("<a href=\"1\">one</a> <a href=\"2\">two</a>");
    plain.showText("no link");
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QString followed;
    connect(&label, &QLabel::linkActivated, &label, [&followed](const QString &link) { followed += link; });
    before.setFocus();
    for (int round = 0; round < 2; ++round) {
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Backtab}) {
            QTest::keyClick(window.focusWidget(), key);
            QTest::keyClick(window.focusWidget(), Qt::Key_Return);
            if (window.focusWidget() == &after)
                followed += '|';
        }
        QTest::keyClick(window.focusWidget(), Qt::Key_Backtab);
        QCOMPARE(window.focusWidget(), &before);
        QCOMPARE(followed, QString("12|21").repeated(round + 1));
    }
}

/// The Tab key goes from the top of a panel to its bottom, and the panel scrolls to each control.
void KeysTest::controlsOfAPanelAreInSight()
{
    ShownDialog dialog(m_tools);
    dialog.window.resize(dialog.window.minimumSize());
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    const auto tabs = dialog.find<QTabWidget>("m_pTabWidget");
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QCoreApplication::processEvents(); // the page is laid out
        tabs->tabBar()->setFocus();        // outside of the area that scrolls
        const QWidget *panel = tabs->currentWidget()->findChild<FittingArea *>()->widget();
        QWidgetList visited;
        for (;;) {
            QTest::keyClick(dialog.window.focusWidget(), Qt::Key_Tab);
            QWidget *control = dialog.window.focusWidget();
            if (!panel->isAncestorOf(control))
                break;
            QVERIFY2(!control->visibleRegion().isEmpty(), qPrintable(control->objectName()));
            visited += control;
        }
        QVERIFY(visited.size() > 2);
        const auto placeOf = [panel](const QWidget *control) {
            return QRect(control->mapTo(panel, QPoint(0, 0)), control->size());
        };
        for (int at = 1; at < visited.size(); ++at) {
            for (int earlier = 0; earlier < at; ++earlier) {
                const QRect first = placeOf(visited.at(earlier));
                const QRect second = placeOf(visited.at(at));
                const bool sharesColumn = first.left() < second.right() && second.left() < first.right();
                QVERIFY2(!sharesColumn || second.bottom() >= first.top(),
                         qPrintable(visited.at(at)->objectName()));
            }
        }
    }
    // A letter with Alt scrolls as well: the azimuth is far above the list of lights.
    tabs->setCurrentIndex(0);
    const auto azimuth = dialog.find<QWidget>("m_pAzimuthField");
    dialog.find<QWidget>("m_pPBKeepLight")->setFocus();
    QVERIFY(azimuth->visibleRegion().isEmpty());
    azimuth->setFocus(Qt::ShortcutFocusReason);
    QVERIFY(!azimuth->visibleRegion().isEmpty());
}

void KeysTest::resetButtonsNameTheirOption()
{
    ShownDialog dialog(m_tools);
    for (const auto *area : dialog.find<QTabWidget>("m_pTabWidget")->findChildren<FittingArea *>()) {
        QStringList names;
        for (const QPushButton *button : area->findChildren<QPushButton *>()) {
            if (!button->objectName().contains(QLatin1String("Reset")))
                continue;
            QVERIFY2(button->accessibleName().startsWith(QStringLiteral("Par défaut : ")),
                     qPrintable(button->objectName()));
            QCOMPARE(button->toolTip(), button->accessibleName());
            QVERIFY2(!names.contains(button->toolTip()), qPrintable(button->toolTip()));
            names += button->toolTip();
        }
        if (area->widget()->objectName() == QLatin1String("shadedOptionsWidget"))
            QCOMPARE(names.value(0), QStringLiteral("Par défaut : azimuth du soleil"));
    }
}

void KeysTest::wheelScrollsOverControlsWithoutFocus()
{
    ShownDialog dialog(m_tools);
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    const auto turn = [](QWidget *widget) {
        const QPointF middle = QRectF(widget->rect()).center();
        QWheelEvent event(middle, widget->mapToGlobal(middle.toPoint()), {}, QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &event);
    };
    const auto tabs = dialog.find<QTabWidget>("m_pTabWidget");
    const auto scales = dialog.find<QWidget>("shadedTab")->findChild<QEditableComboBox *>();
    int controls = 0;
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        dialog.find<QPushButton>("m_pPBClose")->setFocus();
        const Recipe before = dialog.window.recipe();
        for (QWidget *control : tabs->currentWidget()->findChildren<QWidget *>()) {
            if (!control->isEnabled() || !control->isVisible() || control->focusPolicy() == Qt::NoFocus)
                continue;
            turn(control);
            ++controls;
        }
        QCOMPARE(writeRecipe(dialog.window.recipe()), writeRecipe(before));
    }
    QVERIFY(controls > 20);

    tabs->setCurrentIndex(0);
    scales->setFocus();
    turn(scales);
    QCOMPARE(scales->currentIndex(), 1);
}

QTEST_MAIN(KeysTest)
#include "keys_test.moc"
