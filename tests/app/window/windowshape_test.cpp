#include "app/preview/PreviewPane.h"
#include "app/window/ProcessTabWidget.h"
#include "app/window/dialogrules.h"
#include "tests/support/maindialog.h"

#include <QSplitter>

Q_DECLARE_METATYPE(ShownPanes)

/// How the main dialog divides its width between the option panels and the map.
class WindowShapeTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init() { setUpTest(16); }

    void panes_data();
    void panes();
    void firstSizes_data();
    void firstSizes();
    void theWindowsWidthDecides();
    void splitterKeepsItsPlace();
    void oneKeyChangesPanelAndMap();
    void choiceComesBack();
    void tabsWithoutRoomShowTheirIcons();
};

namespace
{

constexpr int narrow = 800; // too narrow for panel and map
constexpr int wide = 1600;

struct Dialog : ShownDialog
{
    explicit Dialog(const ToolPaths &tools, int width)
        : ShownDialog(tools)
    {
        resize(width);
    }
    void resize(int width)
    {
        window.resize(width, 700);
        QCoreApplication::processEvents();
    }
    /// "panel", "map" or "panel map".
    QString shown() { return QString(tabs->isVisible() ? "panel " : "") + (map->isVisible() ? "map" : ""); }

    ProcessTabWidget *tabs = find<ProcessTabWidget>("m_pTabWidget");
    QWidget *map = find<QWidget>("m_pGrpBPreviews");
    QSplitter *splitter = find<QSplitter>("m_pSplitter");
    QPushButton *button = find<QPushButton>("m_pPBShowPreview");
};

} // namespace

void WindowShapeTest::panes_data()
{
    QTest::addColumn<int>("available");
    QTest::addColumn<bool>("wanted");
    QTest::addColumn<bool>("inFront");
    QTest::addColumn<ShownPanes>("shown");
    QTest::newRow("room for both") << 860 << true << false << ShownPanes::Both;
    QTest::newRow("room for both, map in front") << 860 << true << true << ShownPanes::Both;
    QTest::newRow("one pixel too few") << 859 << true << false << ShownPanes::Panel;
    QTest::newRow("one pixel too few, map in front") << 859 << true << true << ShownPanes::Map;
    QTest::newRow("no map") << 2000 << false << false << ShownPanes::Panel;
    QTest::newRow("no map, narrow") << 300 << false << true << ShownPanes::Panel;
}

void WindowShapeTest::panes()
{
    QFETCH(int, available);
    QFETCH(bool, wanted);
    QFETCH(bool, inFront);
    QTEST(shownPanes({.available = available, .panel = 500, .handle = 10, .map = 350}, wanted, inFront),
          "shown");
}

void WindowShapeTest::firstSizes_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("size");
    QTest::newRow("small: all of it") << QSize(1024, 600) << QSize(1012, 560);
    QTest::newRow("laptop") << QSize(1366, 768) << QSize(1229, 700);
    QTest::newRow("desktop") << QSize(1920, 1080) << QSize(1728, 972);
    QTest::newRow("very large") << QSize(3840, 2160) << QSize(1800, 1100);
}

void WindowShapeTest::firstSizes()
{
    QFETCH(QSize, screen);
    QTEST(firstWindowSize(screen, {12, 40}), "size");
}

void WindowShapeTest::theWindowsWidthDecides()
{
    Dialog dialog(m_tools, narrow);
    QCOMPARE(dialog.shown(), QString("panel "));
    QCOMPARE(dialog.tabs->width(), dialog.splitter->width());
    dialog.resize(wide);
    QCOMPARE(dialog.shown(), QString("panel map"));
    QCOMPARE(dialog.splitter->sizes().at(0), dialog.tabs->sizeHint().width());
    QVERIFY(dialog.map->width() > dialog.tabs->width());
    dialog.resize(narrow);
    QCOMPARE(dialog.shown(), QString("panel "));
    dialog.resize(wide);
    QuvoLanguageManager::getInstance()->changeLanguage("ENGLISH");
    QTRY_COMPARE(dialog.tabs->tabText(0), QString("Shaded relief"));
    QCOMPARE(dialog.splitter->sizes().at(0), dialog.tabs->sizeHint().width());
}

void WindowShapeTest::splitterKeepsItsPlace()
{
    Dialog dialog(m_tools, wide);
    QWidget *handle = dialog.splitter->handle(1);
    const int before = dialog.tabs->width();
    QTest::mousePress(handle, Qt::LeftButton, {}, {5, 50});
    QMouseEvent move(QEvent::MouseMove, QPoint(-115, 50), handle->mapToGlobal(QPoint(-115, 50)), Qt::NoButton,
                     Qt::LeftButton, {});
    QApplication::sendEvent(handle, &move);
    QTest::mouseRelease(handle, Qt::LeftButton, {}, {-115, 50});
    QCOMPARE(dialog.tabs->width(), before - 120); // narrower than its content, which scrolls
    for (const int width : {wide - 200, narrow, wide}) {
        dialog.resize(width);
        QVERIFY(width == narrow || dialog.tabs->width() == before - 120);
    }
    dialog.button->click();
    QCOMPARE(dialog.shown(), QString("panel "));
    dialog.button->click();
    dialog.resize(wide);
    QCOMPARE(dialog.tabs->width(), before - 120);
}

void WindowShapeTest::oneKeyChangesPanelAndMap()
{
    Dialog dialog(m_tools, narrow);
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    QCOMPARE(dialog.button->text(), QString("Carte"));
    QVERIFY(dialog.button->toolTip().contains("F6"));
    QTest::keyClick(&dialog.window, Qt::Key_F6);
    QCOMPARE(dialog.shown(), QString("map"));
    QTRY_COMPARE(dialog.map->width(), dialog.splitter->width());
    QCOMPARE(dialog.button->text(), QString("Options"));
    QCOMPARE(dialog.window.focusWidget()->objectName(),
             QString("m_pLInputImgPreview")); // its keys work at once
    QTest::mouseClick(dialog.button, Qt::LeftButton);
    QCOMPARE(dialog.shown(), QString("panel "));

    dialog.resize(wide);
    QVERIFY(dialog.button->text().isEmpty());
    for (const QWidget *pane : {dialog.map, static_cast<QWidget *>(dialog.tabs), dialog.map}) {
        QTest::keyClick(&dialog.window, Qt::Key_F6);
        QCOMPARE(dialog.shown(), QString("panel map"));
        QVERIFY(pane->isAncestorOf(dialog.window.focusWidget()));
    }
}

void WindowShapeTest::choiceComesBack()
{
    const auto stored = [] {
        return QSettings("KARVEX", "Riglios").value("LastGeometry/showPreview").toBool();
    };
    {
        Dialog dialog(m_tools, narrow);
        QTest::keyClick(&dialog.window, Qt::Key_F6);
        QTest::keyClick(&dialog.window, Qt::Key_F6); // changes what is in front, and no choice
        dialog.window.close();
    }
    QVERIFY(stored());
    {
        Dialog dialog(m_tools, wide);
        dialog.button->click();
        QCOMPARE(dialog.shown(), QString("panel "));
        QVERIFY(dialog.window.width() < wide);
        dialog.window.close();
    }
    QVERIFY(!stored());
    Dialog dialog(m_tools, wide);
    QCOMPARE(dialog.shown(), QString("panel "));
    QVERIFY(!dialog.button->isChecked());
    dialog.button->click();
    QCOMPARE(dialog.shown(), QString("panel map"));
}

void WindowShapeTest::tabsWithoutRoomShowTheirIcons()
{
    Dialog dialog(m_tools, wide);
    const auto bar = qobject_cast<ProcessTabBar *>(dialog.tabs->tabBar());
    QVERIFY(bar);
    const QString last = "Courbes de niveau";
    for (const int current : {0, 6, 3}) {
        dialog.tabs->setCurrentIndex(current);
        QCOMPARE(dialog.tabs->tabText(6), last);
        int right = 0;
        for (int tab = 0; tab < bar->count(); ++tab) {
            QCOMPARE(bar->showsTitle(tab), tab == current);
            QCOMPARE(bar->tabToolTip(tab), tab == current ? QString() : bar->tabText(tab));
            QCOMPARE(bar->tabRect(tab).left(), right); // no gap is left of a title that went
            right = bar->tabRect(tab).right() + 1;
            QVERIFY(tab == current || bar->tabRect(tab).width() < 2 * bar->tabRect(tab).height());
        }
        QVERIFY(right <= bar->width());
    }
    dialog.button->click(); // the panel alone
    dialog.resize(bar->sizeHint().width() + 100);
    QVERIFY(bar->showsTitle(6) && bar->tabToolTip(6).isEmpty());
    QVERIFY(bar->tabRect(6).right() < bar->width());
}

QTEST_MAIN(WindowShapeTest)
#include "windowshape_test.moc"
