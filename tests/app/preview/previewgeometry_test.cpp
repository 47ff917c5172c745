#include "app/preview/previewgeometry.h"

#include <QTest>

class PreviewGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void parts();
    void reductions();
    void zooming();
    void mirroredPlaces();
    void numbers();
};

void PreviewGeometryTest::parts()
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

void PreviewGeometryTest::reductions()
{
    const QSize size(2000, 1000);
    QCOMPARE(
        reductionArguments(
            {.dem = "/a b.tif", .demSize = size, .part = {0, 0, 2000, 1000}, .copy = "/t/tempoReducedImg"}),
        QString("-r average -outsize  800 400 \"/a b.tif\" \"/t/tempoReducedImg\""));
    QCOMPARE(reductionArguments({.dem = "/a.tif",
                                 .demSize = size,
                                 .georeferenced = false,
                                 .part = {10, 20, 300, 400},
                                 .copy = "/c"}),
             QString("-a_ullr 10 20 310 420 -srcwin 10 20 300 400 -outsize  300 400 \"/a.tif\" \"/c\""));
    QVERIFY(
        reductionArguments(
            {.dem = "/a", .demSize = size, .part = {0, 0, 2000, 1000}, .ignoresOverviews = true, .copy = "/c"})
            .startsWith("-r average -ovr NONE "));
}

void PreviewGeometryTest::zooming()
{
    const QSize dem(1000, 500);
    const QRectF whole(0, 0, 1000, 500);
    const QRectF closer = zoomed(whole, {250, 250}, 2.0, dem, dem);
    QCOMPARE(closer, QRectF(125, 125, 500, 250)); // the cell under the pointer stays in place
    QCOMPARE(zoomed(closer, {250, 250}, 0.01, dem, dem), whole);
    QCOMPARE(zoomed(whole, {0, 0}, 1e9, dem, dem).height(), 8.0);
    QCOMPARE(zoomed({0, 0, 3, 2}, {1, 1}, 2.0, {3, 2}, {300, 200}).size(),
             QSizeF(3, 2)); // a DEM smaller than the smallest view
    // The view of a long strip takes the shape of the area that shows it.
    QCOMPARE(zoomed({0, 0, 12000, 30}, {6000, 15}, 400.0, {12000, 30}, {300, 200}), QRectF(5985, 5, 30, 20));
    QCOMPARE(moved(closer, {-900, 900}, dem), QRectF(0, 250, 500, 250));
}

void PreviewGeometryTest::mirroredPlaces()
{
    const QSize dem(10, 6);
    QCOMPARE(mirrored(QPointF(0.5, 1.0), dem, {}), QPointF(0.5, 1.0));
    QCOMPARE(mirrored(QPointF(0.5, 1.0), dem, {.columns = false, .rows = true}), QPointF(0.5, 5.0));
    QCOMPARE(mirrored(QPointF(0.5, 1.0), dem, {.columns = true, .rows = false}), QPointF(9.5, 1.0));
    QCOMPARE(mirrored(QRect(1, 2, 3, 4), dem, {.columns = true, .rows = true}), QRect(6, 0, 3, 4));
    const ElevationGrid grid{3, 2, {1, 2, 3, 4, 5, 6}};
    QCOMPARE(mirrored(grid, {.columns = true, .rows = false}).cells, QVector<float>({3, 2, 1, 6, 5, 4}));
    QCOMPARE(mirrored(grid, {.columns = false, .rows = true}).cells, QVector<float>({4, 5, 6, 1, 2, 3}));
}

void PreviewGeometryTest::numbers()
{
    QCOMPARE(coordinateDecimals(30.0), 0);
    QCOMPARE(coordinateDecimals(1.0 / 1200), 5);
    const QLocale c = QLocale::c();
    QCOMPARE((QStringList{lengthText(1250, c), lengthText(12.5, c), lengthText(1.0 / 10800, c)}),
             (QStringList{"1250", "12.5", "0.0000926"}));
}

QTEST_APPLESS_MAIN(PreviewGeometryTest)
#include "previewgeometry_test.moc"
