#include "app/preview/LegendView.h"
#include "app/preview/profile/ProfileView.h"
#include "panels/colorReliefOptionsWidget.h"
#include "tests/support/files.h"
#include "tests/support/mapdialog.h"

#include <QAbstractSlider>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTableView>
#include <QToolButton>

#include <gdal_priv.h>

#include <cmath>

/// The map as the user meets it: in the main dialog, with the tools, the mouse and the keys.
class MapWindowTest : public MapFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init();

    void dragShowsWhatTheToolMakes();
    void numbersAndDrags();
    void seenAreasFollow();
    void dropOnVoidChangesNothing();
    void manyChangesLeaveNothing();
    void optionsAreFollowedWhileTheyChange();
    void keysSliderAndSwipe();
    void zoomNeverEmptiesTheMap();
    void copiesAreAverages();
    void legendAndReadout_data();
    void legendAndReadout();
    void pictureIsSavedAndCopied();
    void profileFollowsTheMouse_data();
    void profileFollowsTheMouse();

private:
    void open(MapDialog &dialog, int tab, const QString &name = "dem.tif");
    void setSouthUp();
};

namespace
{

constexpr int side = 1000; // cells of the DEM, more than a reduced copy has
constexpr QRect voids(600, 300, 80, 60);
constexpr QPointF start(250, 750); // cell of the first observer
constexpr int wait = 10000;        // ms

/// Rough ground: hills with noise, a block of voids and single ones.
float roughGround(int column, int row, QRandomGenerator &random)
{
    if (voids.contains(column, row) || random.bounded(4000) == 0)
        return -9999.0f;
    return static_cast<float>(300.0 + 90.0 * std::sin(column * 0.021) * std::cos(row * 0.017)
                              + 25.0 * std::sin(column * 0.11 + row * 0.07) + 4.0 * random.generateDouble());
}

QImage plain(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32);
}

QImage grabbed(MapDialog &dialog)
{
    return dialog.map()->grab().toImage();
}

/// One of many changes that a user can make, chosen by chance.
void changeSomething(MapDialog &dialog, QRandomGenerator &random)
{
    const auto anyOf = [&](const auto &list) { return list.at(random.bounded(int(list.size()))); };
    const auto cell = [&] { return QPointF(random.bounded(500) + 20, random.bounded(900) + 20); };
    const QVector<Qt::Key> keys{Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Right, Qt::Key_Minus, Qt::Key_Up};
    const int kind = random.bounded(7);
    if (kind == 0) {
        dialog.showTab(random.bounded(7));
    } else if (kind == 1) {
        anyOf(dialog.window.findChildren<QAbstractSlider *>())->setValue(random.bounded(90));
    } else if (kind == 2) {
        anyOf(dialog.window.findChildren<QCheckBox *>())->toggle();
    } else if (kind == 3) {
        anyOf(dialog.window.findChildren<QRadioButton *>())->click();
    } else if (kind == 4) {
        dialog.find<QToolButton>("m_pTBSwipe")->click();
    } else if (kind == 5) {
        QTest::keyClick(dialog.map(), anyOf(keys));
    } else { // drags the observer on its tab, and the map on the others
        const QPointF observer = dialog.panel()->options().observers.first().position();
        const QPoint from = dialog.placeOf(dialog.scene().grid().toCells(observer));
        QTest::mousePress(dialog.map(), Qt::LeftButton, {}, from);
        for (int step = 0; step < 5; ++step) {
            QTest::qWait(random.bounded(20));
            dialog.moveTo(dialog.placeOf(cell()));
        }
        if (random.bounded(3) == 0)
            QTest::keyClick(dialog.map(), Qt::Key_Escape);
        QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, from);
    }
}

} // namespace

void MapWindowTest::init()
{
    setUpMap(4);
    QRandomGenerator random(11);
    QVector<float> cells;
    for (int cell = 0; cell < side * side; ++cell)
        cells += roughGround(cell % side, cell / side, random);
    QVERIFY(writeRaster(path("dem.tif"), side, side, cells));
}

/// Shows the map of a DEM, on the tab of the intervisibility with an observer.
void MapWindowTest::open(MapDialog &dialog, int tab, const QString &name)
{
    dialog.window.findChild<colorReliefOptionsWidget *>()->loadLibrary(
        QStringLiteral(QUVO_TREE "/libraries/colormap"));
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("25.000");
    dialog.window.setInputDem(path(name));
    dialog.panel()->placeObserver(-1, dialog.scene().grid().toGround(start));
    dialog.showTab(tab);
    dialog.map()->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), wait);
}

/// Lets the DEM's first row be the southernmost.
void MapWindowTest::setSouthUp()
{
    const auto file = GDALOpen(path("dem.tif").toUtf8().constData(), GA_Update);
    double transform[] = {500000.0, 10.0, 0.0, 5090000.0, 0.0, 10.0};
    GDALSetGeoTransform(file, transform);
    GDALClose(file);
}

void MapWindowTest::dragShowsWhatTheToolMakes()
{
    MapDialog dialog(m_tools);
    open(dialog, 4);
    const QImage old = plain(dialog.product());
    const auto moveOn = [&](const QPointF &cell) { // each place has a picture of its own
        const QImage before = plain(dialog.product());
        dialog.moveTo(dialog.placeOf(cell));
        QTRY_VERIFY_WITH_TIMEOUT(plain(dialog.product()) != before, wait);
        QVERIFY(!hasChildren()); // the tool had no part in it
    };
    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf(start));
    moveOn({400, 600});
    QTest::keyClick(dialog.map(), Qt::Key_Escape);
    QTRY_VERIFY(plain(dialog.product()) == old);
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({400, 600}));

    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf(start));
    moveOn({400, 600});
    moveOn({530, 280});
    const QImage live = dialog.product();
    QVERIFY(QFile::remove(mapFileNamed("tempoPreviewImage")));
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({530, 280}));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.product().cacheKey() != live.cacheKey() && !hasChildren(), wait);
    const ProductPicture made = readProduct(mapFileNamed("tempoPreviewImage"), dialog.scene().look(), {});
    QCOMPARE(made.picture.size(), QSize(800, 800));
    QCOMPARE(plain(live), plain(made.picture));
    QCOMPARE(plain(dialog.product()), plain(made.picture));

    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({530, 280}));
    dialog.moveTo(dialog.placeOf(start));
    dialog.showTab(0); // a picture that is under way does not come here
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), wait);
    QCOMPARE(dialog.scene().look().form, ProductForm::Shade);
}

/// Numbers of another place are not shown while an observer is dragged, and come back wherever it is let go.
/// The column of the seen areas follows the preview while it is shown.
void MapWindowTest::seenAreasFollow()
{
    MapDialog dialog(m_tools);
    open(dialog, 4);
    const auto table = dialog.panel()->findChild<QTableView *>();
    const auto area = [&] {
        return table->model()->index(0, ObserverPointsModel::SeenColumn).data().toString();
    };
    QVERIFY(area().isEmpty());
    QAction *column = dialog.panel()->findChild<QToolButton *>("m_pTBColumns")->menu()->actions().last();
    column->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!area().isEmpty(), wait);
    const QString before = area();
    QVERIFY2(before.toDouble() > 0.5, qPrintable(before)); // of 100 km²
    table->model()->setData(table->model()->index(0, ObserverPointsModel::HeightColumn), "80");
    QVERIFY(area().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!area().isEmpty(), wait);
    QVERIFY(area().toDouble() > before.toDouble());
}

void MapWindowTest::numbersAndDrags()
{
    MapDialog dialog(m_tools);
    open(dialog, 4);
    IntervisibilityOptions options = dialog.panel()->options();
    options.observers += options.observers.first();
    const auto choose = [&](const char *result) {
        options.result = result;
        dialog.panel()->setProcessOptions(options);
        QTRY_VERIFY_WITH_TIMEOUT(dialog.scene().look().sight == sightResult(options) && dialog.isSettled(),
                                 wait);
    };
    const auto readout = [&](const QPointF &cell) {
        dialog.moveTo(dialog.placeOf(cell), Qt::NoButton);
        return dialog.find<QLabel>("m_pLPreviewReadout")->text();
    };
    choose("count");
    QCOMPARE(dialog.find<LegendView>("m_pMapLegend")->legend().rows.first().text, QString("2 observateurs"));
    QVERIFY2(readout(start).contains("2 observateurs"), qPrintable(readout(start)));
    const QImage before = plain(dialog.product());
    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf(start));
    dialog.moveTo(dialog.placeOf({400, 600}));
    QVERIFY(!dialog.hasOutput());
    QTest::keyClick(dialog.map(), Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), wait);
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({400, 600}));
    QCOMPARE(plain(dialog.product()), before);
    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf(start));
    dialog.moveTo(dialog.placeOf({400, 600}));
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({400, 600}));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), wait);
    QVERIFY(plain(dialog.product()) != before);
    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({400, 600}));
    Prompt::answerBeforehand({});
    dialog.moveTo(dialog.placeOf(QRectF(voids).center()));
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, dialog.placeOf(QRectF(voids).center()));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), wait);
    Prompt::takeShown();

    options = dialog.panel()->options();
    choose("height");
    const double least = dialog.scene().productValue(dialog.cellOf(dialog.placeOf({700, 300})));
    const QString text = QString::number(least, 'f', 1) + " au-dessus du sol"; // the DEM has no unit
    QVERIFY2(readout({700, 300}).contains(text) && least > 1.0, qPrintable(readout({700, 300}) + text));
    QVERIFY2(readout({400, 600}).contains("sol visible"), qPrintable(readout({400, 600})));
}

void MapWindowTest::dropOnVoidChangesNothing()
{
    MapDialog dialog(m_tools);
    open(dialog, 4);
    const QImage before = grabbed(dialog);
    const QImage product = plain(dialog.product());
    const QList<ObserverPoint> observers = dialog.panel()->options().observers;
    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, dialog.placeOf(start));
    dialog.moveTo(dialog.placeOf({400, 600}));
    QTRY_VERIFY_WITH_TIMEOUT(plain(dialog.product()) != product, wait);
    const QPoint place = dialog.placeOf(QRectF(voids).center());
    dialog.moveTo(place);
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, place);
    QStringList shown;
    QTRY_COMPARE((shown += Prompt::takeShown()).size(), 1);
    QVERIFY(observers.first().enabled && dialog.panel()->options().observers == observers);
    QTRY_VERIFY(plain(dialog.product()) == product); // it is not what was seen on the way
    dialog.moveTo(dialog.placeOf(start), Qt::NoButton);
    QTRY_VERIFY(grabbed(dialog) == before);
}

/// Whatever was done before, the map shows what another window makes of the last options and the same view.
void MapWindowTest::manyChangesLeaveNothing()
{
    {
        MapDialog dialog(m_tools);
        MapDialog anew(m_tools);
        open(dialog, 0);
        open(anew, 0);
        QRandomGenerator random(7);
        for (const int lastTab : {4, 0, 6, 1, 0}) {
            for (int turn = 0; turn < 60; ++turn) {
                changeSomething(dialog, random);
                QTest::qWait(turn % 20 == 0 ? 300 : random.bounded(3)); // now and then a run starts
            }
            dialog.showTab(lastTab);
            QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), wait);
            for (int turn = 0; turn < 2; ++turn) { // the last change finds a run under way
                if (lastTab == 4)
                    dialog.panel()->placeObserver(
                        0, dialog.scene().grid().toGround(start * random.generateDouble()));
                else
                    dialog.find<QAbstractSlider>("m_pAltitudeSlider")->setValue(random.bounded(90));
                QTest::qWait(15 * (1 - turn));
            }
            anew.window.setRecipe(dialog.window.recipe());
            emit anew.map()->viewChanged(dialog.map()->view());
            const auto isSame = [&] {
                return dialog.isSettled() && anew.isSettled()
                    && plain(dialog.product()) == plain(anew.product()) && dialog.lines() == anew.lines();
            };
            QTRY_VERIFY_WITH_TIMEOUT(isSame(), wait);
            QTest::qWait(250); // a late picture would come now
            QVERIFY(isSame());
        }
        QCOMPARE(Prompt::takeShown(), QStringList());
    }
    QVERIFY(!hasChildren());
    QVERIFY(QDir(path("tmp")).isEmpty());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{"dem.tif"});
}

void MapWindowTest::optionsAreFollowedWhileTheyChange()
{
    MapDialog dialog(m_tools);
    open(dialog, 0);
    const auto altitude = dialog.find<QAbstractSlider>("m_pAltitudeSlider");
    QSet<qint64> seen;
    for (int turn = 0; turn < 250; ++turn) {
        altitude->setValue(5 + turn % 80);
        QTest::qWait(5);
        seen += dialog.product().cacheKey();
    }
    QVERIFY2(seen.size() > 2, qPrintable(QString::number(seen.size()))); // the first was there before
    altitude->setValue(33);
    QCOMPARE(QProcess::execute(m_tools.dem,
                               {"hillshade", "-q", mapFileNamed("tempoReducedImg"), path("by hand.tif"), "-z",
                                "1", "-az", "-45", "-alt", "33"}),
             0);
    const QImage last = readProduct(path("by hand.tif"), dialog.scene().look(), {}).picture;
    QTRY_VERIFY_WITH_TIMEOUT(dialog.product() == last && !hasChildren(), wait);
    QTest::qWait(300); // nothing comes after it
    QCOMPARE(dialog.product(), last);
    QVERIFY(bytesOf(mapFileNamed("tempoPreviewImage")) == bytesOf(path("by hand.tif")));
}

void MapWindowTest::keysSliderAndSwipe()
{
    MapDialog dialog(m_tools);
    open(dialog, 1);
    const auto slider = dialog.find<QAbstractSlider>("m_pSliderOpacity");
    const QImage product = grabbed(dialog);
    QTest::keyClick(dialog.map(), Qt::Key_D);
    const QImage ground = grabbed(dialog);
    QVERIFY(ground != product);
    QCOMPARE(slider->value(), 0);
    slider->setValue(50);
    const QImage half = grabbed(dialog);
    QVERIFY(half != product && half != ground);
    QTest::keyClick(dialog.map(), Qt::Key_P);
    QCOMPARE(slider->value(), 100);
    QCOMPARE(grabbed(dialog), product);

    const auto swipe = dialog.find<QToolButton>("m_pTBSwipe");
    swipe->click();
    const QRect shown = shownRect(dialog.map()->view(), dialog.map()->size()).toRect();
    const auto isSplitAt = [&](double share) {
        constexpr int knob = 12; // pixels beside the line
        const int line = shown.left() + qRound(shown.width() * share);
        const QRect left(shown.topLeft(), QPoint(line - knob, shown.bottom()));
        const QRect right(QPoint(line + knob, shown.top()), shown.bottomRight());
        const QImage now = grabbed(dialog);
        return now.copy(left) == ground.copy(left) && now.copy(right) == product.copy(right);
    };
    QVERIFY(isSplitAt(0.5));
    const QPoint place(shown.left() + shown.width() / 4, shown.top() + shown.height() / 5);
    const QRectF view = dialog.map()->view();
    QTest::mousePress(dialog.map(), Qt::LeftButton, {}, {shown.center().x(), place.y()});
    dialog.moveTo(place);
    QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, place);
    QCOMPARE(dialog.map()->view(), view); // the line was dragged, not the map
    QVERIFY(isSplitAt(0.25));
    QTest::keyClick(dialog.map(), Qt::Key_D); // other layers leave the line where it is
    QTest::keyClick(dialog.map(), Qt::Key_P);
    QVERIFY(isSplitAt(0.25));
    swipe->click();
    QCOMPARE(grabbed(dialog), product);
}

void MapWindowTest::zoomNeverEmptiesTheMap()
{
    MapDialog dialog(m_tools);
    open(dialog, 1);
    const MapPicture &map = dialog.map()->map();
    const auto covers = [&](const MapLayer &layer) { return layer.part.contains(dialog.map()->view()); };
    const auto isCovered = [&] {
        return std::any_of(map.ground.begin(), map.ground.end(), covers)
            && std::any_of(map.product.begin(), map.product.end(), covers);
    };
    const auto cellSize = [](const MapLayer &layer) { return layer.part.width() / layer.picture.width(); };
    QCOMPARE(cellSize(map.product.last()), 1.25);
    for (const Qt::Key key :
         {Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Right, Qt::Key_Minus, Qt::Key_Down, Qt::Key_Plus}) {
        QTest::keyClick(dialog.map(), key);
        QVERIFY(isCovered());
        QTest::qWait(30);
    }
    const auto isFine = [&](const MapLayer &layer) { return cellSize(layer) == 1.0 && covers(layer); };
    for (int turn = 0; turn < 5; ++turn) { // more parts than the map keeps
        QTRY_VERIFY_WITH_TIMEOUT(isFine(map.ground.last()) && isFine(map.product.last()), wait);
        QTest::keyClick(dialog.map(), turn % 2 ? Qt::Key_Left : Qt::Key_Up);
        QVERIFY(isCovered());
    }
    QTest::keyClick(dialog.map(), Qt::Key_0);
    QVERIFY(isCovered());
    QTRY_VERIFY_WITH_TIMEOUT(cellSize(map.product.last()) == 1.25 && !hasChildren(), wait);

    for (int turn = 0; turn < 4; ++turn)
        QTest::keyClick(dialog.map(), Qt::Key_Plus);
    QTRY_VERIFY_WITH_TIMEOUT(isFine(map.product.last()), wait);
    QCOMPARE(map.product.size(), 2);
    dialog.find<QRadioButton>("m_pRBPercentSlope")->click();
    QTRY_COMPARE_WITH_TIMEOUT(map.product.size(), 1, wait); // that of the whole is of other options
}

void MapWindowTest::copiesAreAverages()
{
    constexpr int cells = 1600; // two to a cell of the copy
    constexpr QRect block(400, 200, 300, 100);
    QVector<float> board;
    for (int row = 0; row < cells; ++row) {
        for (int column = 0; column < cells; ++column)
            board += block.contains(column, row) ? -9999.0f : (row + column) % 2 ? 200.0f : 100.0f;
    }
    QVERIFY(writeRaster(path("board.tif"), cells, cells, board));
    MapDialog dialog(m_tools);
    open(dialog, 1, "board.tif");
    const ElevationGrid copy = readElevations(mapFileNamed("tempoReducedImg"), 1, {});
    QCOMPARE(copy.cells.count(150.0f), 800 * 800 - block.width() * block.height() / 4);
    QVERIFY(std::isnan(copy.cells.at(120 * 800 + 300))); // in the block
}

void MapWindowTest::legendAndReadout_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<bool>("southUp");

    QTest::newRow("slope") << 1 << false;
    QTest::newRow("slope, south up") << 1 << true;
    QTest::newRow("aspect") << 2 << false;
    QTest::newRow("index, south up") << 3 << true;
    QTest::newRow("intervisibility") << 4 << false;
    QTest::newRow("colours") << 5 << false;
    QTest::newRow("contours") << 6 << false;
}

void MapWindowTest::legendAndReadout()
{
    QFETCH(int, tab);
    QFETCH(bool, southUp);
    if (southUp)
        setSouthUp();
    MapDialog dialog(m_tools);
    open(dialog, tab);
    const auto view = dialog.find<LegendView>("m_pMapLegend");
    QTRY_VERIFY(!view->legend().elevations.isEmpty() && dialog.isSettled());
    const MapLegend legend = view->legend();
    QCOMPARE(legend.title,
             tab == 3 ? QStringLiteral("TRI") : dialog.find<QLabel>("m_pLOutputImgPreviewText")->text());
    QCOMPARE(legend.strip.ticks.size() > 1, tab != 4 && tab != 6);
    for (const auto &tick : legend.strip.ticks)
        QVERIFY(tick.value >= legend.strip.low && tick.value <= legend.strip.high);
    if (tab == 4) {
        double shares = 0.0;
        for (const MapLegend::Row &row : legend.rows) {
            const auto share = QRegularExpression("\\(([0-9]+[.,][0-9]) %\\)").match(row.detail);
            shares += share.captured(1).replace(',', '.').toDouble();
        }
        QCOMPARE(legend.rows.size(), 3);          // seen, hidden, no data
        QVERIFY(std::abs(shares - 100.0) < 0.16); // each is rounded
    } else if (tab == 5) {
        QVERIFY(!legend.marks.isEmpty());
    } else if (tab == 6) {
        QVERIFY(legend.rows.first().line && legend.rows.first().text.contains("25"));
        QVERIFY(legend.marks.size() > 4 && legend.marks.at(1).elevation - legend.marks.at(0).elevation == 25.0);
    } else {
        QCOMPARE(legend.unit, QString(tab == 3 ? "" : "°"));
        QVERIFY(legend.rows.size() == 1 && legend.rows.first().hatched); // the voids
    }
    if (tab > 3)
        return;

    const DemGround values(mapFileNamed("tempoPreviewImage"), 1);
    const DemGround dem(path("dem.tif"), 1);
    const auto readout = dialog.find<QLabel>("m_pLPreviewReadout");
    for (const QPointF &cell : {QPointF(125, 375), QPointF(501, 97), QPointF(916, 800), QPointF(640, 330)}) {
        const QPoint place = dialog.placeOf(cell);
        dialog.moveTo(place, Qt::NoButton);
        const QRectF shown = shownRect(dialog.map()->view(), dialog.map()->size());
        const QPointF under = (place - shown.topLeft()) * (side / shown.width()); // north is above
        const QPointF ground = {500000.0 + 10.0 * under.x(), 5100000.0 - 10.0 * under.y()};
        const QString value =
            valueText(dialog.scene().look(), values.elevation(ground).value_or(std::nan("")), QLocale());
        const QString elevation = dem.elevation(ground) ? QString::number(*dem.elevation(ground), 'g', 7)
                                                        : QStringLiteral("sans donnée");
        QVERIFY2(readout->text().endsWith(value) && readout->text().contains("Altitude " + elevation),
                 qPrintable(readout->text() + " / " + elevation + value));
    }
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(dialog.map(), &leave);
    QVERIFY(readout->text().isEmpty());
}

void MapWindowTest::pictureIsSavedAndCopied()
{
    MapDialog dialog(m_tools);
    open(dialog, 1);
    const QList<QAction *> actions = dialog.find<QToolButton>("m_pTBSaveMap")->menu()->actions();
    const auto save = [&](const QString &name) {
        QuvoFilerDialog::answerBeforehand({path(name)});
        actions.at(0)->trigger();
        return bytesOf(path(name));
    };
    QVERIFY(save("map.svg").contains("<svg"));
    QCOMPARE(QuvoFilerDialog::takeShown().first().split('|').at(1), path("dem_slope.png"));
    QVERIFY(save("map.pdf").startsWith("%PDF"));
    const QImage png = QImage::fromData(save("map.png"));
    const QSizeF shown = shownRect(dialog.map()->view(), dialog.map()->size()).size();
    QVERIFY(png.width() > shown.width() && png.height() > shown.height()); // the legend and the scale bar
    actions.at(1)->trigger();
    QCOMPARE(plain(QApplication::clipboard()->image()), plain(png));

    writeFile(path("map.png"), "mine");
    Prompt::answerBeforehand({false, true});
    QCOMPARE(save("map.png"), QByteArray("mine"));
    QCOMPARE(plain(QImage::fromData(save("map.png"))), plain(png));
    QCOMPARE(Prompt::takeShown().size(), 2);
    const auto contents = [this] { return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden); };
    const QStringList before = contents();
    save("none/map.png");
    QCOMPARE(Prompt::takeShown().size(), 1);
    QCOMPARE(contents(), before);
}

void MapWindowTest::profileFollowsTheMouse_data()
{
    QTest::addColumn<bool>("southUp");

    QTest::newRow("north up") << false;
    QTest::newRow("south up") << true;
}

void MapWindowTest::profileFollowsTheMouse()
{
    QFETCH(bool, southUp);
    if (southUp)
        setSouthUp();
    MapDialog dialog(m_tools);
    open(dialog, 4);
    const auto button = dialog.find<QToolButton>("m_pTBProfile");
    for (const int tab : {0, 1, 2, 3, 5, 6, 4}) {
        dialog.showTab(tab);
        QCOMPARE(button->isVisible(), tab == 4);
    }
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), wait);
    button->click();
    QTest::qWait(50); // the profile takes its room from the map
    const auto profile = dialog.window.findChild<ProfileView *>();
    QVERIFY(profile->isVisible() && profile->profile().samples.isEmpty());
    const QImage without = grabbed(dialog);
    const auto isFarEnd = [&](const QPointF &cell) {
        return QLineF(dialog.scene().grid().toCells(profile->profile().samples.last().point), cell).length()
            < 3.0;
    };
    const auto hover = [&](const QPointF &cell) { dialog.moveTo(dialog.placeOf(cell), Qt::NoButton); };
    hover({800, 150});
    QVERIFY(profile->profile().samples.size() > 100 && isFarEnd({800, 150}));
    const auto isLineAt = [&](const QPointF &cell) {
        const QRect place(dialog.placeOf(cell) - QPoint(5, 5), QSize(10, 10));
        return grabbed(dialog).copy(place) != without.copy(place);
    };
    const QPointF far = QPointF(800, 150) - start;
    for (const double share : {0.1, 0.5, 0.95})
        QVERIFY(isLineAt(start + share * far));
    QVERIFY(!isLineAt(start + 1.05 * far) && !isLineAt(start - 0.1 * far) && !isLineAt({300, 300}));

    const QList<ObserverPoint> observers = dialog.panel()->options().observers;
    QTest::mouseClick(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({800, 150}));
    hover({500, 500});
    QVERIFY(isFarEnd({800, 150})); // pinned
    QTest::mouseClick(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({500, 500}));
    hover({300, 100});
    QVERIFY(isFarEnd({300, 100}));
    QCOMPARE(dialog.panel()->options().observers, observers);
    button->click();
    QVERIFY(!profile->isVisible());
}

QTEST_MAIN(MapWindowTest)
#include "mapwindow_test.moc"
