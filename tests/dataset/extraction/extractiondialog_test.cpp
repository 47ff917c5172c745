#include "dataset/extraction/ExtractionDialog.h"

#include "dataset/QuvoFilerDialog.h"
#include "dataset/extraction/ExtractionView.h"
#include "dataset/extraction/vectorextent.h"
#include "dataset/gdalmessages.h"
#include "messages/Prompt.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

/// The dialog over a DEM of 100 × 100 cells of 10 m in UTM zone 32, with the corner at (500000, 5100000).
class ExtractionDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void wholeAndGiven();
    void mouse();
    void keys();
    void typed();
    void vectorExtents_data();
    void vectorExtents();
    void sizeInDegrees();
    void withoutCoordinates();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QString m_dem = path("dem.tif");
};

namespace
{

struct Shown
{
    explicit Shown(const QString &dem, const std::optional<QRect> &cells = std::nullopt)
        : dialog(dem, 1, cells, nullptr)
    {
        dialog.show();
        dialog.activateWindow();
        QApplication::setActiveWindow(&dialog);
        view = dialog.findChild<ExtractionView *>();
    }

    /// Types a value into a field and presses Return.
    void type(const char *field, const QString &text)
    {
        const auto box = dialog.findChild<QAbstractSpinBox *>(field);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_Return);
    }

    /// The pixel of a position of the DEM in the view: its picture is a square in the middle.
    QPoint pixel(double column, double row) const
    {
        const double side = std::min(view->width(), view->height()) - 18.0; // without the room of the handles
        const QPointF middle = QRectF(view->rect()).center();
        return (middle + QPointF(column - 50.0, row - 50.0) * side / 100.0).toPoint();
    }

    void drag(const QPoint &from, const QPoint &to) const
    {
        QTest::mousePress(view, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(view, &move);
        QTest::mouseRelease(view, Qt::LeftButton, {}, to);
    }

    /// Whether each edge of the rectangle is within a cell of the expected one.
    bool isNear(const QRect &expected) const
    {
        const QRect found = dialog.cells().value_or(QRect());
        return std::abs(found.left() - expected.left()) <= 1 && std::abs(found.top() - expected.top()) <= 1
            && std::abs(found.right() - expected.right()) <= 1
            && std::abs(found.bottom() - expected.bottom()) <= 1;
    }

    ExtractionDialog dialog;
    ExtractionView *view = nullptr;
};

} // namespace

void ExtractionDialogTest::initTestCase()
{
    setUpGdal();
    QVERIFY(writeHill(m_dem, 100));
    Prompt::answerBeforehand({});
    QLocale::setDefault(QLocale(QLocale::French));
}

void ExtractionDialogTest::wholeAndGiven()
{
    Shown whole(m_dem);
    QCOMPARE(whole.dialog.cells(), std::nullopt);
    const QString size = whole.dialog.findChild<QLabel *>("m_pLSize")->text();
    QCOMPARE(size, QStringLiteral("100 × 100 cellules\n%1 m × %1 m").arg(QLocale().toString(1000)));
    Shown given(m_dem, QRect(-5, 10, 20, 20));
    QCOMPARE(given.dialog.cells(), std::optional(QRect(0, 10, 15, 20)));
    QTest::mouseClick(given.dialog.findChild<QPushButton *>("m_pPBWhole"), Qt::LeftButton);
    QCOMPARE(given.dialog.cells(), std::nullopt);
    QCOMPARE(Shown(m_dem, QRect(500, 500, 5, 5)).dialog.cells(), std::nullopt);
    QVERIFY(whole.dialog.minimumSizeHint().height() <= 540 && whole.dialog.minimumSizeHint().width() <= 1024);
}

void ExtractionDialogTest::mouse()
{
    Shown shown(m_dem);
    const auto greys = [&] { // in the middle of the picture
        const QImage part = shown.view->grab({shown.pixel(40, 40), shown.pixel(60, 60)}).toImage();
        return QSet<QRgb>{part.pixel(0, 0), part.pixel(0, part.height() - 1)};
    };
    QTRY_COMPARE(greys().size(), 2);                      // the elevations are read without a click
    shown.drag(shown.pixel(20, 30), shown.pixel(60, 70)); // a new rectangle
    QVERIFY(shown.isNear({20, 30, 40, 40}));
    shown.drag(shown.pixel(40, 50), shown.pixel(50, 30)); // moved
    QVERIFY(shown.isNear({30, 10, 40, 40}));
    shown.drag(shown.pixel(70, 50), shown.pixel(90, 20)); // its lower right corner
    QVERIFY(shown.isNear({30, 10, 60, 10}));
    shown.drag(shown.pixel(30, 15), shown.pixel(-50, 15)); // its left edge
    QVERIFY(shown.isNear({0, 10, 90, 10}));
}

void ExtractionDialogTest::keys()
{
    Shown shown(m_dem, QRect(10, 10, 20, 20));
    QTRY_VERIFY(shown.view->hasFocus());
    QTest::keyClick(shown.view, Qt::Key_Right, Qt::ControlModifier);
    QTest::keyClick(shown.view, Qt::Key_Up, Qt::ControlModifier);
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(11, 9, 20, 20)));
    QTest::keyClick(shown.view, Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(shown.view, Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(11, 9, 19, 21)));
    QTest::keyClick(shown.view, Qt::Key_Return);
    QCOMPARE(shown.dialog.result(), static_cast<int>(QDialog::Accepted));
}

void ExtractionDialogTest::typed()
{
    Shown shown(m_dem);
    shown.type("m_pSBColumn", "30"); // the width is cut at the edge of the DEM
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(30, 0, 70, 100)));
    shown.type("m_pSBHeight", "5");
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(30, 0, 70, 5)));
    QCOMPARE(shown.dialog.findChild<QDoubleSpinBox *>("m_pSBFirstX")->value(), 500300.0);
    QCOMPARE(shown.dialog.findChild<QDoubleSpinBox *>("m_pSBLastY")->value(), 5099950.0);
    shown.type("m_pSBLastX", "500404,9"); // the nearest edge of a cell
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(30, 0, 10, 5)));
    QCOMPARE(shown.dialog.findChild<QDoubleSpinBox *>("m_pSBLastX")->value(), 500400.0);
    shown.type("m_pSBFirstX", "9");
    shown.type("m_pSBFirstY", "5099900"); // below the lower corner: the two change places
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(0, 5, 40, 5)));
    QVERIFY(shown.dialog.isVisible()); // Return in a field does not close
}

void ExtractionDialogTest::vectorExtents_data()
{
    QTest::addColumn<QByteArray>("geometry"); // in degrees
    QTest::addColumn<QRect>("expected");      // invalid: refused
    QTest::newRow("line") << QByteArray(R"("LineString", "coordinates": [[9.002, 46.0521], [9.006, 46.0501]])")
                          << QRect(13, 14, 36, 27); // by gdaltransform
    QTest::newRow("beyond") << QByteArray(R"("LineString", "coordinates": [[9.002, 46.0521], [19, 6]])")
                            << QRect(13, 0, 87, 100);
    QTest::newRow("elsewhere") << QByteArray(R"("Point", "coordinates": [3, 46])") << QRect();
}

void ExtractionDialogTest::vectorExtents()
{
    QFETCH(QByteArray, geometry);
    QFETCH(QRect, expected);
    const QString file =
        writeFile(path("zone.geojson"),
                  R"({"type": "Feature", "properties": {}, "geometry": {"type": )" + geometry + "}}");
    Shown shown(m_dem, QRect(1, 1, 5, 5));
    shown.dialog.findChild<QSpinBox *>("m_pSBMargin")->setValue(2);
    QuvoFilerDialog::answerBeforehand({file});
    QTest::mouseClick(shown.dialog.findChild<QPushButton *>("m_pPBVector"), Qt::LeftButton);
    QCOMPARE(Prompt::takeShown().size(), expected.isValid() ? 0 : 1);
    QCOMPARE(shown.dialog.cells(), std::optional(expected.isValid() ? expected : QRect(1, 1, 5, 5)));
    QVERIFY(!readVectorExtent(m_dem, {}).problem.isEmpty());
    QVERIFY(!readVectorExtent(file, {}).note.isEmpty());
}

/// At 60 degrees north a degree is 111.41 km along the meridian and 55.80 km along the parallel.
void ExtractionDialogTest::sizeInDegrees()
{
    QVERIFY(
        copyRaster(m_dem, path("degrees.tif"), {"-a_srs", "EPSG:4326", "-a_ullr", "6", "60.5", "7", "59.5"}));
    Shown shown(path("degrees.tif"));
    QCOMPARE(shown.dialog.findChild<QLabel *>("m_pLSize")->text(),
             QStringLiteral("100 × 100 cellules\n1 ° × 1 °\n%1 km × %2 km").arg("55.8", "111.4"));
}

void ExtractionDialogTest::withoutCoordinates()
{
    Shown shown(writeFile(path("plain.pgm"), "P5\n2 2\n255\nabcd"));
    QVERIFY(!shown.dialog.findChild<QGroupBox *>("m_pGrpBCorners")->isVisible());
    shown.type("m_pSBWidth", "1");
    QCOMPARE(shown.dialog.cells(), std::optional(QRect(0, 0, 1, 2)));
    Shown missing(path("none.tif"));
    QVERIFY(!missing.dialog.findChild<QPushButton *>("m_pPBAccept")->isEnabled());
    missing.drag({50, 50}, {80, 80});
    QCOMPARE(missing.dialog.cells(), std::nullopt);
}

QTEST_MAIN(ExtractionDialogTest)
#include "extractiondialog_test.moc"
