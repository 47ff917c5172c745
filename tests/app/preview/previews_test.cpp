#include "app/preview/PreviewDialog.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/rasterpicture.h"
#include "panels/colorReliefOptionsWidget.h"
#include "tests/support/files.h"
#include "tests/support/mapdialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSlider>
#include <QTableView>
#include <QTimer>

#include <gdal_priv.h>

class PreviewsTest : public MapFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init() { setUpMap(1000); }

    void placesAndCoordinates_data();
    void placesAndCoordinates();
    void northIsAbove();
    void productIsTheToolsOwn_data();
    void productIsTheToolsOwn();
    void sameGroundSamePreview();
    void vectorProducts();
    void observersAreSetInThePicture();
    void observersOfAnyKind();
    void theToolIsTimed();
    void anotherFileOfTheName();
    void aPartIsSeenAtFullResolution();
    void launchStopsPreviews();
    void aChangeIsComputedOnce();
    void failureIsReportedOnce_data();
    void failureIsReportedOnce();
};

namespace
{

using Dialog = MapDialog;

/// The product that a large view shows.
QImage pictureOf(const MapView &view)
{
    return view.map().product.isEmpty() ? QImage() : view.map().product.last().picture;
}

} // namespace

void PreviewsTest::placesAndCoordinates_data()
{
    QTest::addColumn<QVector<double>>("transform"); // empty without a georeference
    QTest::addColumn<QPointF>("expected");          // coordinates of the cell (2, 1)

    QTest::newRow("north up") << QVector<double>{100, 10, 0, 500, 0, -10} << QPointF(120, 490);
    QTest::newRow("south up") << QVector<double>{100, 10, 0, 500, 0, 10} << QPointF(120, 690);
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
    QTEST(pane.groundAt(10, 5, QSize(200, 100)), "expected"); // five pixels per cell
    QCOMPARE(pane.dem().georeferenced, !transform.isEmpty());
}

/// A DEM with rows from the south and columns from the east is shown with north above and west at the left, and
/// so is a product in its grid; a product that was turned already is not turned again.
void PreviewsTest::northIsAbove()
{
    const QVector<float> values{4, 3, 2, 1}; // south-east, south-west, north-east, north-west
    QVERIFY(writeRaster(path("turned.tif"), 2, 2, values));
    const auto file = GDALOpen(path("turned.tif").toUtf8().constData(), GA_Update);
    double transform[] = {120.0, -10.0, 0.0, 480.0, 0.0, 10.0};
    GDALSetGeoTransform(file, transform);
    GDALClose(file);
    PreviewPane pane;
    DemInfo dem;
    dem.path = path("turned.tif");
    QVERIFY(pane.setDem(dem));
    const auto isUpright = [](const QImage &picture) {
        return qGray(picture.pixel(0, 0)) > qGray(picture.pixel(1, 0)) // steeper ground is darker
            && qGray(picture.pixel(1, 0)) > qGray(picture.pixel(0, 1))
            && qGray(picture.pixel(0, 1)) >= qGray(picture.pixel(1, 1));
    };
    const QRect whole(0, 0, 2, 2);
    pane.showInput(dem.path, whole);
    QCOMPARE(pane.scene().layers().ground.size(), 1);
    ShownProduct product{.file = dem.path, .options = SlopeOptions()};
    QVERIFY(pane.showOutput(product));
    QVERIFY(isUpright(pane.scene().product().picture));
    QCOMPARE(pane.scene().productValue({0.5, 0.5}), 1.0); // the value under the mouse is that of the same cell
    product.turned = true;
    QVERIFY(pane.showOutput(product));
    QVERIFY(!isUpright(pane.scene().product().picture));
    QCOMPARE(pane.groundAt(0, 0, QSize(2, 2)), QPointF(100.0, 500.0));
}

void PreviewsTest::productIsTheToolsOwn_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QStringList>("arguments"); // "in" and "out" stand for the reduced copy and the product

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

    arguments.replaceInStrings(QRegularExpression("^in$"), mapFileNamed("tempoReducedImg"));
    arguments.replaceInStrings(QRegularExpression("^out$"), path("by hand.tif"));
    arguments.replaceInStrings(QRegularExpression("^table$"),
                               QStringLiteral(QUVO_TREE "/libraries/colormap/dtm.txt"));
    QCOMPARE(QProcess::execute(m_tools.dem, arguments), 0);
    QVERIFY(bytesOf(mapFileNamed("tempoPreviewImage")) == bytesOf(path("by hand.tif")));
    const ProductPicture byHand = readProduct(path("by hand.tif"), dialog.scene().look(), {});
    QCOMPARE(byHand.picture.size(), QSize(800, 800));
    QCOMPARE(dialog.product(), byHand.picture);
    if (tab == 5) { // spread over the elevations of the DEM, the table gives another picture
        dialog.find<QRadioButton>("m_pRBRelatifAltitude")->click();
        QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput() && dialog.product() != byHand.picture, 10000);
    }
    QVERIFY(!QFile::exists(path("dem.tif.aux.xml")));
}

/// The same ground has the same preview, with rows from the south and without a georeference, and whatever part
/// of it a run would process.
void PreviewsTest::sameGroundSamePreview()
{
    QVERIFY(copyRaster(path("dem.tif"), path("north.tif"),
                       {"-srcwin", "0", "0", "60", "40", "-a_ullr", "0", "40", "60", "0"}));
    QVector<float> values(60 * 40);
    {
        const auto file = GDALOpen(path("north.tif").toUtf8().constData(), GA_ReadOnly);
        QCOMPARE(GDALRasterIO(GDALGetRasterBand(file, 1), GF_Read, 0, 0, 60, 40, values.data(), 60, 40,
                              GDT_Float32, 0, 0),
                 CE_None);
        GDALClose(file);
    }
    const auto write = [&](const char *name, const QVector<float> &cells, QVector<double> transform) {
        const auto file = GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
            path(name).toUtf8().constData(), 60, 40, 1, GDT_Float32, nullptr);
        QVector<float> copy = cells;
        const bool isWritten = file->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 60, 40, copy.data(), 60, 40,
                                                                GDT_Float32, 0, 0, nullptr)
            == CE_None;
        if (!transform.isEmpty())
            file->SetGeoTransform(transform.data());
        GDALClose(file);
        return isWritten;
    };
    QVector<float> fromTheSouth;
    for (int row = 39; row >= 0; --row)
        fromTheSouth += values.mid(row * 60, 60);
    QVERIFY(write("south.tif", fromTheSouth, {0, 1, 0, 0, 0, 1}) && write("plain.tif", values, {}));
    for (const int tab : {0, 2}) {
        Dialog dialog(m_tools);
        dialog.showTab(tab);
        dialog.window.setInputDem(path("north.tif"));
        QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);
        const QImage expected = dialog.product();
        Recipe settings = dialog.window.recipe();
        settings.part = QRect(10, 10, 8, 8);
        dialog.window.setRecipe(settings);
        QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput() && !hasChildren(), 10000);
        QCOMPARE(dialog.product(), expected);
        for (const char *other : {"south.tif", "plain.tif"}) {
            dialog.window.setInputDem(path(other));
            QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput() && dialog.product() == expected, 5000);
        }
    }
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
    QTRY_VERIFY(coloured(dialog.lines()) > 500);
    QImage tenMetres;
    while (tenMetres != dialog.lines()) { // each slice of the drawing adds lines
        tenMetres = dialog.lines();
        QTest::qWait(100);
    }
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("0.000"); // not valid for the tool
    QVERIFY(!dialog.hasOutput());
    dialog.find<QLineEdit>("m_pLEElevationInterval")->setText("50.000");
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput() && coloured(dialog.lines()) > 0, 10000);
    QVERIFY(coloured(dialog.lines()) < coloured(tenMetres));

    QCOMPARE(QProcess::execute(m_tools.contour, {"-q", "-i", "10", path("dem.tif"), path("lines.shp")}), 0);
    const ProductSource source{ContourOptions{.interval = 10.0}, path("dem.tif"), 1, "Contours"};
    PreviewDialog large(path("lines.shp"), source, nullptr);
    QVERIFY(large.canShow());
    large.show();
    const auto label = large.findChild<MapView *>();
    QTRY_VERIFY(coloured(pictureOf(*label)) > 500);
    const QImage whole = pictureOf(*label);
    large.findChild<MapView *>()->slot_zoomIn();
    QTRY_VERIFY(coloured(pictureOf(*label)) > 0 && pictureOf(*label) != whole);
    QVERIFY(!PreviewDialog(path("none.tif"), std::nullopt, nullptr).canShow());
}

void PreviewsTest::observersAreSetInThePicture()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.showTab(4);
    const auto panel = dialog.window.findChild<intervisibilityOptionsWidget *>();
    QTRY_VERIFY(!dialog.ground().isNull());
    QVERIFY(!dialog.hasOutput()); // there is no observer yet

    const auto cellOfFirst = [&] {
        const ObserverPoint point = panel->options().observers.value(0);
        return DemGround(path("dem.tif"), 1).toCells(point.position());
    };
    QTest::mouseClick(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({250, 750}));
    QCOMPARE(panel->options().observers.size(), 1);
    QVERIFY(QLineF(cellOfFirst(), {250, 750}).length() < 1000.0 / dialog.map()->width() * 2);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);

    const QImage before = dialog.product();
    QTest::mouseClick(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({500, 250}));
    QCOMPARE(panel->options().observers.size(), 1); // the click moves the current observer
    const QPoint from = dialog.placeOf(cellOfFirst());
    const QPoint to = dialog.placeOf({800, 800});
    for (const bool escape : {true, false}) {
        const QPointF start = cellOfFirst();
        QTest::mousePress(dialog.map(), Qt::LeftButton, {}, from);
        for (const QPoint &place : {(from + to) / 2, to})
            dialog.moveTo(place);
        if (escape)
            QTest::keyClick(dialog.map(), Qt::Key_Escape); // leaves the drag, not the window
        QTest::mouseRelease(dialog.map(), Qt::LeftButton, {}, to);
        QCOMPARE(cellOfFirst() == start, escape);
        QVERIFY(dialog.window.isVisible());
    }
    QVERIFY(QLineF(cellOfFirst(), {800, 800}).length() < 1000.0 / dialog.map()->width() * 2);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.product() != before, 10000);

    // The keys do the same: Insert is a click in the middle, and Shift with an arrow is a drag.
    QTest::keyClick(dialog.map(), Qt::Key_Insert);
    QVERIFY(QLineF(cellOfFirst(), {500, 500}).length() < 1000.0 / dialog.map()->width() * 2);
    const QPointF middle = cellOfFirst();
    QTest::keyClick(dialog.map(), Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(dialog.map(), Qt::Key_Down, Qt::ShiftModifier);
    QVERIFY(QLineF(cellOfFirst(), middle + QPointF(-10, 10)).length() < 2);
    dialog.map()->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&dialog.window));
    QTest::keyClick(dialog.map(), Qt::Key_Z, Qt::ControlModifier); // both moves are one step
    QCOMPARE(cellOfFirst(), middle);
    for (int press = 0; press < 110; ++press)
        QTest::keyClick(dialog.map(), Qt::Key_Up, Qt::ShiftModifier);
    QVERIFY(cellOfFirst().y() >= 0.0 && cellOfFirst().y() < 1.0); // inside the DEM
}

void PreviewsTest::observersOfAnyKind()
{
    constexpr int side = 1600; // the reduced copy holds every second cell
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
    panel->placeObserver(-1, ground.toGround({800.5, 800.5})); // on a cell that is not in the copy
    QVERIFY(panel->isComplete());
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);

    const auto model = dialog.find<QTableView>("m_pTViewObsPos")->model();
    QVERIFY(model->setData(model->index(0, ObserverPointsModel::DistanceColumn), "1e9"));
    for (const char *unusable : {"inf", "nan", "-1", "1e10"})
        QVERIFY2(!model->setData(model->index(0, ObserverPointsModel::DistanceColumn), unusable), unusable);
    QVERIFY(!dialog.map()->grab().isNull()); // drawing so large a circle ends
    panel->placeObserver(-1, ground.toGround({200.5, 200.5}));
    QTest::mouseClick(dialog.map(), Qt::LeftButton, {}, dialog.placeOf({800.5, 800.5}));
    QCOMPARE(panel->currentRow(), 0); // a click on the mark of an observer selects it
    QCOMPARE(panel->options().observers.at(1).position(), ground.toGround({200.5, 200.5}));
    QVERIFY(Prompt::takeShown().isEmpty());
}

void PreviewsTest::theToolIsTimed()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    dialog.showTab(4);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasGround(), 10000);
    const DemGround ground(path("dem.tif"), 1);
    QFile file(path("line.csv"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QPointF begin = ground.toGround({10, 10});
    const QPointF end = ground.toGround({900, 900});
    file.write(QStringLiteral("id,WKT\n1,\"LINESTRING(%1 %2,%3 %4)\"\n")
                   .arg(begin.x(), 0, 'f')
                   .arg(begin.y(), 0, 'f')
                   .arg(end.x(), 0, 'f')
                   .arg(end.y(), 0, 'f')
                   .toUtf8());
    file.close();
    QuvoFilerDialog::answerBeforehand({file.fileName()});
    QTimer::singleShot(100, this, [&] {
        QTRY_VERIFY(QApplication::activeModalWidget());
        QWidget *question = QApplication::activeModalWidget();
        const auto here = question->findChild<QLabel *>("m_pLabelTimeHere");
        QVERIFY(here);
        QTRY_VERIFY_WITH_TIMEOUT(here->text().startsWith("(ici "), 10000);
        question->close();
    });
    dialog.find<QPushButton>("m_pPBAddFromVector")->click();
    QVERIFY(mapFileNamed("timed.tif").isEmpty());

    QList<ObserverPoint> many;
    for (int at = 0; at < 30; ++at) {
        const QPointF place = ground.toGround({100.0 + 20.0 * at, 500.0});
        many += {.x = place.x(), .y = place.y()};
    }
    IntervisibilityOptions options = dialog.panel()->options();
    options.observers = many;
    dialog.panel()->setProcessOptions(options);
    const auto note = dialog.find<QLabel>("m_pTimeNote");
    QTRY_VERIFY_WITH_TIMEOUT(note->isVisible() && note->text().contains("ici "), 10000);
    QTRY_VERIFY(!hasChildren());
}

void PreviewsTest::anotherFileOfTheName()
{
    QVERIFY(writeRaster(path("bands.tif"), 40, 40, QVector<float>(1600, 5), 2));
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);
    QVERIFY(writeHill(path("dem.tif"), 300));
    dialog.window.setInputDem(path("dem.tif"));
    QCOMPARE(dialog.map()->view(), QRectF(0, 0, 300, 300));
    QTRY_COMPARE(dialog.ground().width(), 300);

    dialog.find<QPushButton>("m_pPBShowPreview")->click();
    dialog.window.setInputDem(path("bands.tif"));
    dialog.find<QComboBox>("m_pCBBand")->setCurrentIndex(1);
    QVERIFY(dialog.ground().isNull()); // not the picture of the DEM before
}

void PreviewsTest::aPartIsSeenAtFullResolution()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000);
    const auto note = dialog.find<QLabel>("m_pLPreviewNote");
    const QString wholeNote = note->text();
    const QImage whole = dialog.ground();
    for (int turn = 0; turn < 8; ++turn)
        QTest::keyClick(dialog.map(), Qt::Key_Plus);
    QCOMPARE(dialog.map()->view(), dialog.map()->view()); // both previews show the same part
    QTRY_VERIFY_WITH_TIMEOUT(note->text() != wholeNote && dialog.hasOutput(), 10000);
    QVERIFY(std::min(dialog.ground().width(), dialog.ground().height()) < 600); // the part is not enlarged
    QTest::keyClick(dialog.map(), Qt::Key_Home);
    QTRY_COMPARE(dialog.ground(), whole);
}

void PreviewsTest::launchStopsPreviews()
{
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(hasChildren(), 5000);
    QTest::mouseClick(dialog.launchButton(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path("dem_hillshade.tif")), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.hasOutput(), 10000); // the previews start again after the run
    QVERIFY(RasterPicture(path("dem_hillshade.tif")).isOpen());
}

/// A panel reports a change as it happens and again once it has settled: the second report computes nothing.
void PreviewsTest::aChangeIsComputedOnce()
{
    const QString log = path("runs");
    m_tools.dem = writeScript(path("tool.exe"),
                              "echo run >>'" + log.toUtf8().replace("'", "'\\''") + "'\nexec '"
                                  + m_tools.dem.toUtf8().replace("'", "'\\''") + "' \"$@\"\n");
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), 10000);
    QTest::qWait(500); // the DEM's extremes are found
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isSettled(), 10000);
    const auto before = bytesOf(log).count('\n');
    const QImage product = dialog.product();
    dialog.find<QSlider>("m_pAltitudeSlider")->setValue(60);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.product() != product, 10000);
    QTest::qWait(400); // longer than the panel waits before it reports that it has settled
    QCOMPARE(bytesOf(log).count('\n'), before + 1);
}

void PreviewsTest::failureIsReportedOnce_data()
{
    QTest::addColumn<QByteArray>("script"); // empty: there is no tool
    QTest::addColumn<QString>("reason");
    QTest::newRow("it fails") << QByteArray("echo no such light >&2\nexit 3\n") << "no such light";
    QTest::newRow("it cannot be started") << QByteArray() << "tool.exe";
}

void PreviewsTest::failureIsReportedOnce()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, reason);
    m_tools.dem = script.isEmpty() ? path("tool.exe") : writeScript(path("tool.exe"), script);
    Dialog dialog(m_tools);
    dialog.window.setInputDem(path("dem.tif"));
    QStringList shown;
    QTRY_VERIFY_WITH_TIMEOUT((shown += Prompt::takeShown()).size() == 1, 10000);
    QVERIFY(shown.first().contains("preview") && shown.first().contains(reason));
    QVERIFY(!dialog.find<QWidget>("m_pGrpBPreviews")->isVisible());
    QVERIFY(!dialog.find<QPushButton>("m_pPBShowPreview")->isEnabled());
    dialog.showTab(1);
    QTest::qWait(600);
    QVERIFY(Prompt::takeShown().isEmpty());
    dialog.window.close();
    QVERIFY(
        QSettings("KARVEX", "Riglios").value("LastGeometry/showPreview").toBool()); // the user's choice is kept
}

QTEST_MAIN(PreviewsTest)
#include "previews_test.moc"
