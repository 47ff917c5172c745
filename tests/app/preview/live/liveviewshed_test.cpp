#include "app/preview/live/LiveViewshed.h"
#include "dataset/gdalmessages.h"
#include "dataset/rasterpicture.h"
#include "panels/options/pointfile.h"
#include "tests/support/programs.h"
#include "tests/support/rasters.h"
#include "viewshed/io/observers.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

/// An observer's position and maximum distance, in cells.
struct Place
{
    double column;
    double row;
    double distance;
};
Q_DECLARE_METATYPE(Place)

/// The live viewshed: cell by cell the picture of the tool, and requests that overtake each other.
class LiveViewshedTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void equalsTheTool_data();
    void equalsTheTool();
    void numbersOfTheTool();
    void refused();
    void newestRequestWins();
    void picturesWhileDragging_data();
    void picturesWhileDragging();
    void stopsAtOnce();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    LiveRequest slowRequest(int number, int observers) const;

    QTemporaryDir m_folder;
    std::shared_ptr<const LiveTerrain> m_large;
};

namespace
{

constexpr int width = 150;
constexpr int height = 130;

IntervisibilityOptions optionsOf(const QString &combination, std::optional<double> groundHeight)
{
    IntervisibilityOptions options;
    options.combined = !combination.isEmpty();
    options.combination = combination;
    options.groundHeight = groundHeight;
    return options;
}

QList<ToolObserver> observersAt(const LiveTerrain &terrain, const QList<Place> &places)
{
    QList<ToolObserver> observers;
    for (const Place &place : places) {
        const QPointF point = terrain.toGround({place.column, place.row});
        ToolObserver observer{point.x(), point.y(), 180.0, 0.0};
        observer.maxDistance = place.distance * std::sqrt(terrain.sight(observer, {}).ground.xx);
        observers += observer;
    }
    return observers;
}

/// The numbers of the computed() signals, in their order.
QVector<int> *numbersOf(LiveViewshed &live)
{
    auto *numbers = new QVector<int>;
    QObject::connect(&live, &LiveViewshed::computed, &live, [numbers](int number) { *numbers += number; });
    return numbers;
}

} // namespace

void LiveViewshedTest::initTestCase()
{
    setUpGdal();
    QRandomGenerator random(7);
    QVector<float> heights;
    for (int cell = 0; cell < width * height; ++cell) {
        const int row = cell / width;
        const double wave = 60.0 * std::sin(cell % width / 17.0) * std::cos(row / 11.0);
        heights += random.bounded(40) == 0 ? -9999.F : static_cast<float>(100.0 + wave + random.bounded(12.0));
    }
    QVERIFY(writeRaster(path("utm.tif"), width, height, heights));
    const auto copy = [this](const char *name, const QList<QByteArray> &options) {
        return copyRaster(path("utm.tif"), path(name), options);
    };
    QVERIFY(copy("degrees.tif", {"-a_srs", "EPSG:4326", "-a_ullr", "6", "46.2", "6.5", "45.8"}));
    QVERIFY(copy("southup.tif", {"-a_ullr", "500000", "5000000", "503000", "5002600"}));
    QVERIFY(writeHill(path("large.tif"), 700));
    m_large = LiveTerrain::read(path("large.tif"), 1).terrain;
    QVERIFY(m_large);
}

LiveRequest LiveViewshedTest::slowRequest(int number, int observers) const
{
    QList<ToolObserver> list;
    for (int index = 0; index < observers; ++index) {
        const QPointF point = m_large->toGround({100.0 + index % 500, 350.0});
        list += {point.x(), point.y(), 3000.0, 0.0};
    }
    return liveRequest(number, *m_large, list, optionsOf("OR", 0.0)).request;
}

void LiveViewshedTest::equalsTheTool_data()
{
    QTest::addColumn<QString>("copy");
    QTest::addColumn<QList<Place>>("places");
    QTest::addColumn<QString>("combination");
    QTest::addColumn<bool>("flat");
    QTest::addColumn<bool>("limited");
    const QList<Place> one{{71.3, 60.8, 0.0}};
    const QList<Place> three{{71.3, 60.8, 90.0}, {20.0, 100.0, 0.0}, {130.5, 15.2, 70.0}};
    for (const char *copy : {"utm.tif", "degrees.tif", "southup.tif"}) {
        const auto row = [copy](const char *name) -> QTestData & {
            return QTest::addRow("%s %s", copy, name) << QString(copy);
        };
        row("one") << one << QString() << false << false;
        row("one, flat") << one << QString() << true << false;
        row("or") << three << "OR" << false << false;
        row("and") << three << "AND" << false << false;
        row("overwrite") << three << QString() << false << false;
        row("or, limited") << three << "OR" << false << true;
        row("outside, flat") << QList<Place>{{-30.0, 50.0, 150.0}} << QString() << true << false;
    }
    QTest::newRow("far apart, and") << "utm.tif" << QList<Place>{{5.0, 5.0, 20.0}, {120.0, 100.0, 20.0}}
                                    << "AND" << false << false;
}

void LiveViewshedTest::equalsTheTool()
{
    QFETCH(QString, copy);
    QFETCH(QList<Place>, places);
    QFETCH(QString, combination);
    QFETCH(bool, flat);
    const auto terrain = LiveTerrain::read(path(copy), 1).terrain;
    QVERIFY(terrain);
    QFETCH(bool, limited);
    QList<ToolObserver> observers = observersAt(*terrain, places);
    if (limited) {
        observers[0].limits = {3.0, 100.0 / 3.0, 360.0, -7.5, 0.5, 1000.0 / 3.0};
        observers[1].limits = {.azimuthFrom = 300.0, .azimuthTo = 80.0};
    }
    const IntervisibilityOptions options = optionsOf(combination, 1.23456789);
    const QStringList files{"-SrcFile",       path(copy),    "-DstFile",
                            path("seen.tif"), "-point_file", writePointFile(m_folder.path(), observers)};
    const QStringList fragment = intervisibilityFragment(options, {}).split(' ', Qt::SkipEmptyParts);
    const QStringList curvature = flat ? QStringList{"-cc", "0"} : QStringList();
    QCOMPARE(
        runProgram(QStringLiteral(QUVO_TREE "/gdal_intervisibility.exe"), files + fragment + curvature).code,
        0);
    const RasterPicture product(path("seen.tif"));
    const QImage expected = product.read(QRect(0, 0, width, height), {width, height});

    const LiveRequestReading reading = liveRequest(1, *terrain, observers, options);
    QCOMPARE(reading.problem, QString());
    LiveRequest request = reading.request;
    for (viewshed::Sight &sight : request.sights)
        sight.curvatureDrop = flat ? 0.0 : sight.curvatureDrop;
    const QRgb visible = QColor(options.visibleColor).rgb();
    const QRgb hidden = QColor(options.hiddenColor).rgb();
    for (const int threads : {1, 2}) {
        const SeenCells cells{seenCells(request, threads), request.ground};
        const QImage live = seenPicture(cells, visible, hidden, QColor(options.noDataColor).rgb());
        QCOMPARE(live.convertToFormat(QImage::Format_RGB32), expected.convertToFormat(QImage::Format_RGB32));
    }
    int seen = 0;
    for (int cell = 0; cell < width * height; ++cell)
        seen += expected.pixel(cell % width, cell / width) == visible ? 1 : 0;
    QVERIFY(seen < width * height && (seen > 200 || combination == "AND"));
}

void LiveViewshedTest::numbersOfTheTool()
{
    // The command line has six digits of the target's height, and the shapefile has 15 decimals of a distance.
    QCOMPARE(toolOptions(optionsOf("AND", 1.23456789)).options.targetHeight, 1.23457);
    QCOMPARE(toolOptions(optionsOf("AND", 0.0)).options.combination, viewshed::Combination::And);
    QCOMPARE(toolOptions(optionsOf({}, std::nullopt)).options.targetHeight, 0.0);
    const auto terrain = LiveTerrain::read(path("degrees.tif"), 1).terrain;
    QList<ToolObserver> observers;
    for (const double distance : {1.0 / 3.0, 1e-16, 0.0, 1e9, 12345.6789, 4.0 / 3.0})
        observers += {6.0 + 1.0 / 7.0, 46.0 + 1.0 / 9.0, 1.0 / 3.0, distance};
    const auto read = viewshed::readObservers(writePointFile(m_folder.path(), observers).toStdString());
    for (int index = 0; index < observers.size(); ++index) {
        const viewshed::Sight sight = terrain->sight(observers.at(index), {0.0, 1.0});
        QVERIFY(sight.reach == read.at(static_cast<std::size_t>(index)).reach);
        QVERIFY(sight.eye.z == read.at(static_cast<std::size_t>(index)).z);
    }
    QCOMPARE(terrain->toCells(terrain->toGround({12.0, 34.5})), QPointF(12.0, 34.5));
}

void LiveViewshedTest::refused()
{
    QVERIFY(!LiveTerrain::read(path("none.tif"), 1).problem.isEmpty());
    QVERIFY(LiveTerrain::read(path("utm.tif"), 2).problem.contains("band 2"));
    const auto problem = [this](const QList<ToolObserver> &observers, double groundHeight) {
        return liveRequest(1, *m_large, observers, optionsOf("OR", groundHeight)).problem;
    };
    const QPointF middle = m_large->toGround({350, 350});
    const ToolObserver good{middle.x(), middle.y(), 500.0, 0.0};
    QCOMPARE(problem({good}, 0.0), QString());
    QVERIFY(!problem({}, 0.0).isEmpty());
    QVERIFY(problem({good}, 1e10).contains("-SH"));
    QVERIFY(!problem({good, {1e12, 0.0, 0.0, 0.0}}, 0.0).isEmpty());
    QVERIFY(!problem({{middle.x(), middle.y(), std::nan(""), 0.0}}, 0.0).isEmpty());
}

void LiveViewshedTest::newestRequestWins()
{
    LiveViewshed live;
    const std::unique_ptr<QVector<int>> numbers(numbersOf(live));
    for (int number = 1; number <= 50; ++number)
        live.request(slowRequest(number, 1));
    QTRY_COMPARE(numbers->isEmpty() ? 0 : numbers->last(), 50);
    QVERIFY(numbers->size() < 25);
    QVERIFY(std::is_sorted(numbers->begin(), numbers->end()));

    numbers->clear();
    live.request(slowRequest(51, 1));
    live.request(slowRequest(52, 1));
    QTest::qSleep(200); // the results wait in the event loop
    live.cancel();
    QTest::qWait(200);
    QCOMPARE(*numbers, QVector<int>());

    // A long computation does not delay the request after it.
    const double oneObserver = live.expectedMilliseconds(slowRequest(1, 1));
    live.request(slowRequest(60, static_cast<int>(20'000 / oneObserver)));
    QTest::qWait(100);
    live.request(slowRequest(61, 1));
    QTRY_COMPARE_WITH_TIMEOUT(*numbers, QVector<int>{61}, 5000);
}

void LiveViewshedTest::picturesWhileDragging_data()
{
    QTest::addColumn<int>("pause");
    QTest::newRow("continuous") << 10;
    QTest::newRow("hesitating") << 140; // longer than the worker's patience with a superseded computation
}

void LiveViewshedTest::picturesWhileDragging()
{
    QFETCH(int, pause);
    LiveViewshed live;
    const std::unique_ptr<QVector<int>> numbers(numbersOf(live));
    live.request(slowRequest(1, 1));
    QTRY_COMPARE(numbers->size(), 1);
    // A computation lasts longer than patience and pause together.
    const int observers = static_cast<int>(400.0 / live.expectedMilliseconds(slowRequest(1, 1))) + 1;
    for (int number = 2; number * pause < 4000 && numbers->size() < 3; ++number) {
        live.request(slowRequest(number, observers));
        QTest::qWait(pause);
    }
    QVERIFY(numbers->size() >= 3);
}

void LiveViewshedTest::stopsAtOnce()
{
    auto live = std::make_unique<LiveViewshed>();
    live->request(slowRequest(1, 3000));
    QTest::qWait(50);
    QElapsedTimer timer;
    timer.start();
    live.reset();
    QVERIFY2(timer.elapsed() < 500, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(LiveViewshedTest)
#include "liveviewshed_test.moc"
