#include "app/preview/PreviewDialog.h"
#include "app/preview/PreviewPane.h"
#include "app/preview/previewgeometry.h"
#include "app/preview/previewqueue.h"
#include "dataset/gdalmessages.h"
#include "dataset/rasterpicture.h"
#include "messages/Prompt.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "tests/support/maindialog.h"
#include "tests/support/rasters.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSettings>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

#include <functional>
#include <numeric>

class PreviewsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void queue_data();
    void queue();
    void parts();
    void reductions();
    void zooming();
    void placesAndCoordinates_data();
    void placesAndCoordinates();
    void pictures();
    void productIsTheToolsOwn_data();
    void productIsTheToolsOwn();
    void vectorProducts();
    void observersAreSetInThePicture();
    void observersOfAnyKind();
    void anotherFileOfTheName();
    void aPartIsSeenAtFullResolution();
    void launchEndsPreviews();
    void failureIsToldOnce();
    void manyChangesLeaveNothing();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_home;
    ToolPaths m_tools;
};

namespace
{

/// The dialog with its previews shown.
struct Dialog : ShownDialog
{
    explicit Dialog(const ToolPaths &tools)
        : ShownDialog(tools)
    {
        if (!find<PreviewPane>("m_pGrpBPreviews")->isVisible()) // the screen is too small for them
            find<QPushButton>("m_pPBShowPreview")->click();
    }
    PreviewLabel *input() { return find<PreviewLabel>("m_pLInputImgPreview"); }
    PreviewLabel *output() { return find<PreviewLabel>("m_pLOutputImgPreview"); }
    void showTab(int tab) { find<QTabWidget>("m_pTabWidget")->setCurrentIndex(tab); }
    bool hasOutput() { return !output()->picture().isNull(); }
};

QPoint placeOf(const PreviewLabel &label, const QPointF &cell)
{
    const QRectF shown = shownRect(label.view(), label.size());
    return (shown.topLeft() + (cell - label.view().topLeft()) * (shown.width() / label.view().width()))
        .toPoint();
}

/// Whether a child process of this one is alive.
bool hasChildren()
{
    QFile children(QStringLiteral("/proc/self/task/%1/children").arg(QCoreApplication::applicationPid()));
    return children.open(QIODevice::ReadOnly) && !children.readAll().trimmed().isEmpty();
}

} // namespace

void PreviewsTest::initTestCase()
{
    qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8());
    Q_INIT_RESOURCE(quvo);
    setUpGdal();
}

void PreviewsTest::init()
{
    qunsetenv("TMPDIR");
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/l'été \"中\" XXXXXX"));
    QVERIFY(QDir().mkpath(path("tmp")));
    qputenv("TMPDIR", path("tmp").toUtf8());
    m_tools = findTools(QStringLiteral(QUVO_TREE));
    QSettings("KARVEX", "Riglios").clear();
    QVERIFY(writeHill(path("dem.tif"), 1000));
    Prompt::answerBeforehand({});
}

// Events, and what is due after them: R a reduction, C a product, - nothing; ! where the running step is stale.
void PreviewsTest::queue_data()
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

void PreviewsTest::queue()
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

void PreviewsTest::parts()
{
    const QSize dem(12000, 6000);
    QCOMPARE(reducedSize(dem), QSize(800, 400));
    QCOMPARE(reducedSize({800, 3}), QSize(800, 3));
    QCOMPARE(reducedSize({100000, 1}), QSize(800, 1));
    QCOMPARE(previewPart({}, dem, {{5, 5}}), QRect(0, 0, 12000, 6000));
    QCOMPARE(previewPart({100, 100, 400, 400}, dem, {}), QRect(98, 98, 404, 404));
    QCOMPARE(previewPart({0, 0, 1600, 1600}, dem, {}), QRect(0, 0, 1604, 1604));
    QCOMPARE(previewPart({100, 100, 400, 400}, dem, {{900.5, 300.5}, {-50, 0}}), QRect(98, 98, 804, 404));
}

void PreviewsTest::reductions()
{
    const QSize size(2000, 1000);
    QCOMPARE(reductionArguments({"/a b.tif", size, true, {0, 0, 2000, 1000}, "/t/tempoReducedImg"}),
             QString("-outsize  800 400 \"/a b.tif\" \"/t/tempoReducedImg\""));
    QCOMPARE(reductionArguments({"/a.tif", size, false, {10, 20, 300, 400}, "/c"}),
             QString("-a_ullr 10 20 310 420 -srcwin 10 20 300 400 -outsize  300 400 \"/a.tif\" \"/c\""));
}

void PreviewsTest::zooming()
{
    const QSize dem(1000, 500);
    const QRectF whole(0, 0, 1000, 500);
    const QRectF closer = zoomed(whole, {250, 250}, 2.0, dem, dem);
    QCOMPARE(closer, QRectF(125, 125, 500, 250)); // the place stays
    QCOMPARE(zoomed(closer, {250, 250}, 0.01, dem, dem), whole);
    QCOMPARE(zoomed(whole, {0, 0}, 1e9, dem, dem).height(), 8.0);
    QCOMPARE(zoomed({0, 0, 3, 2}, {1, 1}, 2.0, {3, 2}, {300, 200}).size(),
             QSizeF(3, 2)); // smaller than the least
    // A long strip comes to have the shape of the area that shows it.
    QCOMPARE(zoomed({0, 0, 12000, 30}, {6000, 15}, 400.0, {12000, 30}, {300, 200}), QRectF(5985, 5, 30, 20));
    QCOMPARE(moved(closer, {-900, 900}, dem), QRectF(0, 250, 500, 250));
    QCOMPARE(lightDirection(315.0, false, false), 315.0);
    QCOMPARE(lightDirection(315.0, true, false), 225.0); // its rows are seen upside down
    QCOMPARE(lightDirection(0.0, false, false), 270.0);
    QCOMPARE(lightDirection(315.0, false, true), 45.0);
    QCOMPARE(coordinateDecimals(30.0), 0);
    QCOMPARE(coordinateDecimals(1.0 / 1200), 5);
    const QLocale c = QLocale::c();
    QCOMPARE((QStringList{lengthText(1250, c), lengthText(12.5, c), lengthText(1.0 / 10800, c)}),
             (QStringList{"1250", "12.5", "0.0000926"}));
}

void PreviewsTest::placesAndCoordinates_data()
{
    QTest::addColumn<QVector<double>>("transform"); // none: no georeference
    QTest::addColumn<QPointF>("expected");          // of the cell (2, 1)

    QTest::newRow("north up") << QVector<double>{100, 10, 0, 500, 0, -10} << QPointF(120, 490);
    QTest::newRow("south up") << QVector<double>{100, 10, 0, 500, 0, 10} << QPointF(120, 510);
    QTest::newRow("rotated") << QVector<double>{100, 0, 10, 500, 10, 0} << QPointF(110, 520);
    QTest::newRow("none") << QVector<double>{} << QPointF(2, 1);
}

void PreviewsTest::placesAndCoordinates()
{
    QFETCH(QVector<double>, transform);
    {
        const auto file = GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
            path("place.tif").toUtf8().constData(), 40, 20, 1, GDT_Float32, nullptr);
        QVERIFY(file);
        if (!transform.isEmpty())
            file->SetGeoTransform(transform.data());
        GDALClose(file);
    }
    PreviewPane pane;
    DemInfo dem;
    dem.path = path("place.tif");
    QVERIFY(pane.setDem(dem));
    QTEST(pane.groundAt(10, 5, QSize(200, 100)), "expected"); // five pixels a cell
    QCOMPARE(pane.dem().georeferenced, !transform.isEmpty());
}

void PreviewsTest::pictures()
{
    QVector<float> values(100);
    std::iota(values.begin(), values.end(), 0.0f);
    values[0] = -9999;
    QVERIFY(writeRaster(path("ramp.tif"), 10, 10, values));
    const QImage picture = RasterPicture(path("ramp.tif"), 1).read({0, 0, 10, 10}, {10, 10});
    QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
    QCOMPARE(qRed(picture.pixel(1, 0)), 0); // below the 2nd percentile
    QCOMPARE(qRed(picture.pixel(9, 9)), 255);
    QVERIFY(qAbs(qRed(picture.pixel(0, 5)) - 128) < 5);
    // Percentages are taken of what was noted, not of the cells.
    QVERIFY(noteExtremes(path("ramp.tif"), 1, 0.0, 198.0));
    QFile table(path("percent.txt"));
    QVERIFY(table.open(QIODevice::WriteOnly) && table.write("0% 0 0 0\n100% 198 198 198\n") > 0);
    table.close();
    QCOMPARE(QProcess::execute(m_tools.dem,
                               {"color-relief", path("ramp.tif"), path("percent.txt"), path("grey.tif"), "-q"}),
             0);
    QCOMPARE(qRed(RasterPicture(path("grey.tif")).read({0, 0, 10, 10}, {10, 10}).pixel(9, 9)), 99);

    QVERIFY(RasterPicture(path("ramp.tif"), 1).read({5, 5, 10, 10}, {10, 10}).isNull());
    QVERIFY(!RasterPicture(path("ramp.tif"), 2).isOpen());
    QVERIFY(!RasterPicture(path("none.tif"), 1).isOpen());
}

void PreviewsTest::productIsTheToolsOwn_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QStringList>("arguments"); // in and out stand for the reduced copy and the product

    QTest::newRow("hillshade") << 0
                               << QStringList{"hillshade", "in", "out", "-z", "1", "-az", "-45", "-alt", "45"};
    QTest::newRow("slope") << 1 << QStringList{"slope", "in", "out", "-compute_edges"};
    QTest::newRow("aspect") << 2 << QStringList{"aspect", "in", "out", "-zero_for_flat", "-compute_edges"};
    QTest::newRow("index") << 3 << QStringList{"TRI", "in", "out", "-compute_edges"};
    QTest::newRow("colours") << 5 << QStringList{"color-relief", "in", "table", "out"};
}

void PreviewsTest::productIsTheToolsOwn()
{
    QFETCH(int, tab);
    QFETCH(QStringList, arguments);
    Dialog dialog(m_tools);
    dialog.showTab(tab);
    dialog.window.findChild<colorReliefOptionsWidget *>()->loadLibrary(
        QStringLiteral(QUVO_TREE "/libraries/colormap"));
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);

    QString copy;
    for (QDirIterator files(path("tmp"), QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        if (QFileInfo(files.next()).fileName() == QLatin1String("tempoReducedImg"))
            copy = files.filePath();
    }
    arguments.replaceInStrings(QRegularExpression("^in$"), copy);
    arguments.replaceInStrings(QRegularExpression("^out$"), path("by hand.tif"));
    arguments.replaceInStrings(QRegularExpression("^table$"),
                               QStringLiteral(QUVO_TREE "/libraries/colormap/dtm.txt"));
    QCOMPARE(QProcess::execute(m_tools.dem, arguments), 0);
    const RasterPicture byHand(path("by hand.tif"));
    QCOMPARE(byHand.size(), QSize(800, 800));
    QCOMPARE(dialog.output()->picture(), byHand.read({0, 0, 800, 800}, {800, 800}));
    if (tab == 5) { // spread over the DEM's elevations it is another picture
        dialog.find<QRadioButton>("m_pRBRelatifAltitude")->click();
        QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput()
                                     && dialog.output()->picture() != byHand.read({0, 0, 800, 800}, {800, 800}),
                                 10000);
    }
    QVERIFY(!QFile::exists(path("dem.tif.aux.xml")));
}

void PreviewsTest::vectorProducts()
{
    Dialog dialog(m_tools);
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("10.000");
    dialog.showTab(6);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);
    const auto coloured = [](const QImage &image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += qRed(image.pixel(x, y)) - qBlue(image.pixel(x, y)) > 40;
        }
        return count;
    };
    QTRY_VERIFY(coloured(dialog.output()->picture()) > 500); // lines over the greys
    const QImage tenMetres = dialog.output()->picture();
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("0.000"); // what the tool would not understand
    QVERIFY(!dialog.hasOutput());
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("50.000");
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput() && coloured(dialog.output()->picture()) > 0, 10000);
    QVERIFY(coloured(dialog.output()->picture()) < coloured(tenMetres));

    QCOMPARE(QProcess::execute(m_tools.contour, {"-q", "-i", "10", path("dem.tif"), path("lines.shp")}), 0);
    PreviewDialog large(path("lines.shp"), nullptr);
    QVERIFY(large.canShow());
    large.show();
    const auto label = large.findChild<PreviewLabel *>();
    QTRY_VERIFY(coloured(label->picture()) > 500);
    const QImage whole = label->picture();
    large.slot_zoomIn();
    QTRY_VERIFY(coloured(label->picture()) > 0 && label->picture() != whole);
    QVERIFY(!PreviewDialog(path("none.tif"), nullptr).canShow());
}

void PreviewsTest::observersAreSetInThePicture()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.showTab(4);
    const auto panel = dialog.window.findChild<intervisibilityOptionsWidget *>();
    QTRY_VERIFY(!dialog.input()->picture().isNull());
    QVERIFY(!dialog.hasOutput()); // nobody looks yet

    const auto cellOfFirst = [&] {
        const ObserverPoint point = panel->options().observers.value(0);
        return DemGround(path("dem.tif"), 1).toCells(point.position());
    };
    QTest::mouseClick(dialog.input(), Qt::LeftButton, {}, placeOf(*dialog.input(), {250, 750}));
    QCOMPARE(panel->options().observers.size(), 1);
    QVERIFY(QLineF(cellOfFirst(), {250, 750}).length() < 1000.0 / dialog.input()->width() * 2);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);

    const QImage before = dialog.output()->picture();
    QTest::mouseClick(dialog.input(), Qt::LeftButton, {}, placeOf(*dialog.input(), {500, 250}));
    QCOMPARE(panel->options().observers.size(), 1); // the current one goes there
    const QPoint from = placeOf(*dialog.input(), cellOfFirst());
    const QPoint to = placeOf(*dialog.input(), {800, 800});
    QTest::mousePress(dialog.input(), Qt::LeftButton, {}, from);
    for (const QPoint &place : {(from + to) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(dialog.input(), &move);
    }
    QTest::mouseRelease(dialog.input(), Qt::LeftButton, {}, to);
    QVERIFY(QLineF(cellOfFirst(), {800, 800}).length() < 1000.0 / dialog.input()->width() * 2);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.output()->picture() != before, 10000);
}

void PreviewsTest::observersOfAnyKind()
{
    constexpr int side = 1600; // the copy picks every second cell
    QVector<float> cells(side * side, -9999.0f);
    for (int row = 0; row < side; row += 2) {
        for (int column = 0; column < side; column += 2)
            cells[row * side + column] = 100.0f;
    }
    QVERIFY(writeRaster(path("voids.tif"), side, side, cells));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("voids.tif"));
    dialog.showTab(4);
    const auto panel = dialog.window.findChild<intervisibilityOptionsWidget *>();
    const DemGround ground(path("voids.tif"), 1);
    panel->placeObserver(-1, ground.toGround({800.5, 800.5})); // on a cell that the copy does not have
    QVERIFY(panel->isComplete());
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);

    const auto model = dialog.find<QTableView>("m_pTViewObsPos")->model();
    QVERIFY(model->setData(model->index(0, ObserverPointsModel::DistanceColumn), "1e300"));
    QVERIFY(!model->setData(model->index(0, ObserverPointsModel::DistanceColumn), "inf"));
    QVERIFY(!dialog.input()->grab().isNull()); // comes back
    panel->placeObserver(-1, ground.toGround({200.5, 200.5}));
    QTest::mouseClick(dialog.input(), Qt::LeftButton, {}, placeOf(*dialog.input(), {800.5, 800.5}));
    QCOMPARE(panel->currentRow(), 0); // a click on a mark chooses it
    QCOMPARE(panel->options().observers.at(1).position(), ground.toGround({200.5, 200.5}));
    QVERIFY(Prompt::takeShown().isEmpty());
}

void PreviewsTest::anotherFileOfTheName()
{
    QVERIFY(writeRaster(path("bands.tif"), 40, 40, QVector<float>(1600, 5), 2));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);
    QVERIFY(writeHill(path("dem.tif"), 300));
    dialog.window.setInputDem(path("dem.tif"));
    QCOMPARE(dialog.input()->view(), QRectF(0, 0, 300, 300));
    QTRY_COMPARE(dialog.input()->picture().width(), 300);

    dialog.find<QPushButton>("m_pPBShowPreview")->click();
    dialog.window.setInputDem(path("bands.tif"));
    dialog.find<QComboBox>("m_pCBBand")->setCurrentIndex(1);
    QVERIFY(dialog.input()->picture().isNull()); // and not that of the DEM before
}

void PreviewsTest::aPartIsSeenAtFullResolution()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);
    const auto note = dialog.find<QLabel>("m_pLPreviewNote");
    const QString wholeNote = note->text();
    const QImage whole = dialog.input()->picture();
    for (int turn = 0; turn < 8; ++turn)
        QTest::keyClick(dialog.input(), Qt::Key_Plus);
    QCOMPARE(dialog.output()->view(), dialog.input()->view()); // both show the same part
    QTRY_VERIFY_WITH_TIMEOUT(note->text() != wholeNote && dialog.hasOutput(), 10000);
    QVERIFY(std::min(dialog.input()->picture().width(), dialog.input()->picture().height())
            < 600); // not enlarged
    QTest::keyClick(dialog.output(), Qt::Key_Home);
    QTRY_COMPARE(dialog.input()->picture(), whole);
}

void PreviewsTest::launchEndsPreviews()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(hasChildren(), 5000);
    QTest::mouseClick(dialog.find<QPushButton>("m_pPBLaunchProcess"), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path("dem_hillshade.tif")), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000); // and come back
    QVERIFY(RasterPicture(path("dem_hillshade.tif")).isOpen());
}

void PreviewsTest::failureIsToldOnce()
{
    QFile tool(path("tool.exe"));
    QVERIFY(tool.open(QIODevice::WriteOnly) && tool.write("#!/bin/sh\necho no such light >&2\nexit 3\n") > 0);
    QVERIFY(tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    tool.close();
    m_tools.dem = tool.fileName();
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QStringList shown;
    QTRY_VERIFY_WITH_TIMEOUT((shown += Prompt::takeShown()).size() == 1, 10000);
    QVERIFY(shown.first().contains("preview") && shown.first().contains("no such light"));
    QVERIFY(!dialog.find<QWidget>("m_pGrpBPreviews")->isVisible());
    QVERIFY(!dialog.find<QPushButton>("m_pPBShowPreview")->isEnabled());
    dialog.showTab(1);
    QTest::qWait(600);
    QVERIFY(Prompt::takeShown().isEmpty());
    dialog.window.close();
    QVERIFY(QSettings("KARVEX", "Riglios").value("LastGeometry/showPreview").toBool()); // the user's own choice
}

void PreviewsTest::manyChangesLeaveNothing()
{
    {
        Dialog dialog(m_tools);
        dialog.window.setInputDem(path("dem.tif"));
        QRandomGenerator random(7);
        const QList<QAbstractSlider *> sliders = dialog.window.findChildren<QAbstractSlider *>();
        const QList<QCheckBox *> boxes = dialog.window.findChildren<QCheckBox *>();
        const QList<QRadioButton *> buttons = dialog.window.findChildren<QRadioButton *>();
        dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("10.000");
        for (int change = 0; change < 200; ++change) {
            switch (random.bounded(5)) {
            case 0:
                dialog.showTab(random.bounded(7));
                break;
            case 1:
                sliders.at(random.bounded(int(sliders.size())))->setValue(random.bounded(90));
                break;
            case 2:
                boxes.at(random.bounded(int(boxes.size())))->toggle();
                break;
            case 3:
                buttons.at(random.bounded(int(buttons.size())))->click();
                break;
            default:
                QTest::keyClick(dialog.output(), random.bounded(2) ? Qt::Key_Plus : Qt::Key_Right);
            }
            QTest::qWait(change % 20 == 0 ? 420 : random.bounded(3)); // now and then a run gets under way
        }
        QVERIFY(Prompt::takeShown().isEmpty());
    }
    QVERIFY(!hasChildren());
    QVERIFY(QDir(path("tmp")).isEmpty());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{"dem.tif"});
}

QTEST_MAIN(PreviewsTest)
#include "previews_test.moc"
