#include "app/preview/profile/profiletexts.h"
#include "dataset/gdalmessages.h"
#include "tests/support/rasters.h"
#include "viewshed/lineofsight.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

/// The profile: its truth is viewshed::sees().
class ProfileTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpGdal(); }
    void agreesWithTheViewshed_data();
    void agreesWithTheViewshed();
    void ridge();
    void roundEarth();
    void ties();
    void voids();
    void lineEnds();
    void degrees();
    void texts();

private:
    std::shared_ptr<const LiveTerrain> terrainOf(int width, int height, const QVector<float> &heights);
    /// From the centre of a cell, at an altitude, to a position in cells.
    static Profile profileOf(const LiveTerrain &terrain, const QPointF &eye, double z, const QPointF &farCell,
                             const viewshed::SightOptions &options);

    QTemporaryDir m_folder;
};

namespace
{

constexpr viewshed::SightOptions flat{.targetHeight = 0.0, .curvature = 0.0};
constexpr viewshed::SightOptions curved{.targetHeight = 0.0, .curvature = 0.85714};

/// The samples as characters: '.' seen, '#' hidden, ' ' without ground.
QString pattern(const Profile &profile)
{
    QString text;
    for (const ProfileSample &sample : profile.samples)
        text += !sample.ground ? ' ' : sample.hidden ? '#' : '.';
    return text;
}

} // namespace

std::shared_ptr<const LiveTerrain> ProfileTest::terrainOf(int width, int height, const QVector<float> &heights)
{
    const QString path = m_folder.filePath("dem.tif");
    return writeRaster(path, width, height, heights) ? LiveTerrain::read(path, 1).terrain : nullptr;
}

Profile ProfileTest::profileOf(const LiveTerrain &terrain, const QPointF &eye, double z, const QPointF &farCell,
                               const viewshed::SightOptions &options)
{
    const QPointF point = terrain.toGround(eye);
    return profileAlong(terrain, {point.x(), point.y(), z, 0.0}, terrain.toGround(farCell), options);
}

void ProfileTest::agreesWithTheViewshed_data()
{
    QTest::addColumn<bool>("centred");
    QTest::addColumn<double>("targetHeight");
    QTest::addColumn<int>("voidsIn");
    QTest::newRow("eye on a centre") << true << 0.0 << 30;
    QTest::newRow("eye beside the centres") << false << 1.5 << 30;
    QTest::newRow("many voids") << true << 0.5 << 2;
    QTest::newRow("targets below the ground") << false << -0.5 << 1000;
}

void ProfileTest::agreesWithTheViewshed()
{
    QFETCH(bool, centred);
    QFETCH(double, targetHeight);
    QFETCH(int, voidsIn);
    constexpr int width = 41;
    constexpr int height = 33;
    QRandomGenerator random(11);
    QVector<float> heights;
    for (int cell = 0; cell < width * height; ++cell)
        heights += random.bounded(voidsIn) == 0 ? -9999.F : static_cast<float>(random.bounded(12));
    const auto terrain = terrainOf(width, height, heights);
    QVERIFY(terrain);
    const viewshed::Terrain &cells = terrain->ground()->terrain;
    int seen = 0;
    int hidden = 0;
    int centres = 0;
    for (int round = 0; round < 1500; ++round) {
        QPointF eye(random.bounded(width), random.bounded(height));
        if (!centred)
            eye += {random.bounded(1.0), random.bounded(1.0) - 3.0};
        const QPointF far(random.bounded(width), random.bounded(height));
        const QPointF point = terrain->toGround(eye);
        const ToolObserver observer{point.x(), point.y(), 9.0, 0.0};
        viewshed::Sight sight = terrain->sight(observer, {targetHeight, 0.85714});
        const auto sees = [&](const QPointF &cell) {
            return viewshed::sees(cells, sight, qRound(cell.x()), qRound(cell.y()));
        };
        const Profile profile =
            profileAlong(*terrain, observer, terrain->toGround(far), {targetHeight, 0.85714});
        QCOMPARE(profile.farSeen, sees(far));
        for (const ProfileSample &sample : profile.samples) {
            const QPointF cell = terrain->toCells(sample.point);
            const bool isCentre = std::hypot(cell.x() - qRound(cell.x()), cell.y() - qRound(cell.y())) < 1e-7;
            if (isCentre && sample.ground && sample.distance > 0.0) {
                ++centres;
                QCOMPARE(sample.hidden, !sees(cell));
                QCOMPARE(*sample.ground, cells.at(qRound(cell.x()), qRound(cell.y())));
            }
        }
        (profile.farSeen ? seen : hidden) += profile.leastHeight ? 1 : 0;
        if (profile.farSeen)
            QCOMPARE(*profile.leastHeight, 0.0);
        if (profile.farSeen || !profile.leastHeight)
            continue;
        for (const double more : {1e-6, -1e-6}) {
            sight.targetHeight = *profile.leastHeight + more;
            QCOMPARE(sees(far), more > 0.0);
        }
    }
    QVERIFY(seen > 40 && hidden > 40 && centres > 400);
}

void ProfileTest::ridge()
{
    const auto terrain = terrainOf(6, 3, {0, 0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    const Profile profile = profileOf(*terrain, {0, 1}, 2.0, {4.3, 1.2}, flat);
    QCOMPARE(pattern(profile), QString("...##"));
    QCOMPARE(profile.hiddenCount, 2);
    QCOMPARE(profile.length, 40.0);
    QCOMPARE(profile.leastHeight, std::optional(16.0)); // 2 + 7 · 40 / 20
    QCOMPARE(profile.samples.at(1).distance, 10.0);
    QCOMPARE(profile.samples.at(1).point, QPointF(500015.0, 5099985.0));
    QCOMPARE(profile.samples.at(1).sightLine, std::optional(1.5));
    QCOMPARE(profile.samples.last().sightLine, std::optional(0.0));
    // The column of the ridge is crossed between the ridge and flat ground.
    const Profile slanting = profileOf(*terrain, {0, 1}, 2.0, {4, 2}, flat);
    QCOMPARE(pattern(slanting), QString("...##"));
    QCOMPARE(slanting.samples.at(2).ground, std::optional(4.5));
    QCOMPARE(slanting.leastHeight, std::optional(7.0)); // 2 + 2.5 · 2
    QVERIFY(profileOf(*terrain, {0, 1}, 2.0, {4, 1}, {16.5, 0.0}).farSeen);

    const ProfileSample between = sampleAt(profile, 25.0);
    QCOMPARE(between.ground, std::optional(4.5));
    QCOMPARE(between.point, QPointF(500030.0, 5099985.0));
    QVERIFY(between.hidden);
    QCOMPARE(sampleAt(profile, 15.0).hidden, false);
    QCOMPARE(sampleAt(profile, -1.0).distance, 0.0);
    QCOMPARE(sampleAt(profile, 99.0).distance, 40.0);
}

void ProfileTest::roundEarth()
{
    constexpr int width = 1201;
    const auto terrain = terrainOf(width, 1, QVector<float>(width, 100.F));
    const Profile profile = profileOf(*terrain, {0, 0}, 101.7, {1200, 0}, curved);
    // A level sea is seen to the distance √(height / drop), and the rest of the way hides what is lower than
    // drop · (rest)² beyond it.
    const double horizon = std::sqrt(1.7 / profile.curvatureDrop);
    QVERIFY(horizon > 4900.0 && horizon < 5200.0);
    for (const ProfileSample &sample : profile.samples)
        QVERIFY(std::abs(sample.distance - horizon) < 20.0 || sample.hidden == (sample.distance > horizon));
    const double expected = profile.curvatureDrop * std::pow(12000.0 - horizon, 2.0);
    QVERIFY(std::abs(*profile.leastHeight - expected) < 0.001);
    // The sight line to that height touches the true ground, and does not cut it.
    double least = 1e9;
    const Profile touching = profileOf(*terrain, {0, 0}, 101.7, {1200, 0}, {*profile.leastHeight, 0.85714});
    for (const ProfileSample &sample : touching.samples)
        least = std::min(least, *sample.sightLine - *sample.ground);
    QVERIFY(std::abs(least) < 1e-9);
}

void ProfileTest::ties()
{
    // An eye in the plane of the ground sees all of it: a tie is visible.
    QVector<float> plane;
    for (int row = 0; row < 30; ++row) {
        for (int column = 0; column < 40; ++column)
            plane += static_cast<float>(3 * column + 7 * row);
    }
    const auto terrain = terrainOf(40, 30, plane);
    for (const QPointF &far : {QPointF(39, 29), QPointF(39, 0), QPointF(20, 20), QPointF(7, 29)}) {
        const Profile profile = profileOf(*terrain, {0, 0}, 0.0, far, flat);
        QVERIFY(profile.farSeen);
        QCOMPARE(profile.hiddenCount, 0);
    }
}

void ProfileTest::voids()
{
    const auto terrain = terrainOf(6, 1, {5, -9999, 1, 1, -9999, -9999});
    const Profile profile = profileOf(*terrain, {0, 0}, 6.0, {5, 0}, curved);
    QCOMPARE(pattern(profile), QString(". ..  "));
    QCOMPARE(profile.voidCount, 3);
    QVERIFY(!profile.leastHeight && !profile.farSeen && !profile.samples.at(2).sightLine);
    QVERIFY(!sampleAt(profile, 5.0).ground);
    QCOMPARE(profileCsv(profile).split('\n').at(2), QByteArray("10,500015,5099995,,,"));
    QCOMPARE(profileCsv(profile).split('\n').at(3), QByteArray("20,500025,5099995,1,,0"));
}

void ProfileTest::lineEnds()
{
    const auto terrain = terrainOf(4, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    const Profile own = profileOf(*terrain, {1, 1}, 8.0, {1.3, 0.8}, curved);
    QCOMPARE(own.samples.size(), 1);
    QVERIFY(own.farSeen && own.length == 0.0 && own.leastHeight == 0.0 && own.samples.first().ground == 6.0);
    const Profile beside = profileOf(*terrain, {1.25, 1.25}, 8.0, {1, 1}, curved);
    QCOMPARE(pattern(beside), QString(".."));
    QCOMPARE(beside.samples.first().ground, std::optional(7.25));

    // There is no sample for the columns and rows outside of the DEM.
    const Profile outwards = profileOf(*terrain, {1, 1}, 20.0, {90000, 1}, curved);
    QCOMPARE(pattern(outwards), QString("... "));
    QVERIFY(!outwards.farSeen && !outwards.leastHeight);
    QCOMPARE(pattern(profileOf(*terrain, {0, 1}, 20.0, {3, 40}, curved)), QString(".. "));
    const Profile inwards = profileOf(*terrain, {-5, 1}, 20.0, {2, 1}, curved);
    QCOMPARE(pattern(inwards), QString(" ..."));
    QVERIFY(inwards.farSeen);
    for (const QPointF &far : {QPointF(1e9, 0.0), QPointF(std::nan(""), 0.0)})
        QVERIFY(profileOf(*terrain, {1, 1}, 8.0, far, curved).samples.isEmpty());
    QVERIFY(profileOf(*terrain, {1, 1}, 1e9, {2, 2}, curved).samples.isEmpty());

    const QPointF eye = terrain->toGround({0, 1});
    QVERIFY(
        profileAlong(*terrain, {eye.x(), eye.y(), 20.0, 25.0}, terrain->toGround({3, 1}), flat).beyondReach);
    QVERIFY(
        !profileAlong(*terrain, {eye.x(), eye.y(), 20.0, 30.0}, terrain->toGround({3, 1}), flat).beyondReach);
}

void ProfileTest::degrees()
{
    const QString path = m_folder.filePath("degrees.tif");
    QVERIFY(writeHill(m_folder.filePath("hill.tif"), 50));
    QVERIFY(copyRaster(m_folder.filePath("hill.tif"), path,
                       {"-a_srs", "EPSG:4326", "-a_ullr", "6", "46", "6.5", "45.5"}));
    const auto terrain = LiveTerrain::read(path, 1).terrain;
    const QPointF eye = terrain->toGround({0, 0});
    const Profile eastwards =
        profileAlong(*terrain, {eye.x(), eye.y(), 5000.0, 0.0}, terrain->toGround({10, 0}), curved);
    // A tenth of a degree of longitude at 46° north is 7.7 km long.
    QVERIFY(std::abs(eastwards.length - 7745.0) < 10.0);
    QCOMPARE(eastwards.samples.size(), 11);
    QVERIFY(std::abs(eastwards.samples.at(3).distance - 0.3 * eastwards.length) < 0.001);
}

void ProfileTest::texts()
{
    const QLocale french(QLocale::French, QLocale::France);
    Profile profile;
    QCOMPARE(verdictText(profile, "m", french), QString());
    profile.samples = {ProfileSample{.ground = 12.0, .sightLine = 10.0}};
    QVERIFY(verdictText(profile, "m", french).contains("pas d'altitude"));
    profile.leastHeight = 23.44;
    QVERIFY(verdictText(profile, "m", french).contains("23.4 m"));
    QVERIFY(verdictText(profile, {}, french).contains("23.4 au-dessus"));
    profile.beyondReach = true;
    QVERIFY(!verdictText(profile, "m", french).contains("23.4"));
    profile.length = 12345.0;
    profile.curvature = 0.85714;
    QVERIFY(conditionsText(profile, french).startsWith("12.3 km")
            && conditionsText(profile, french).endsWith("0.857"));
    QCOMPARE(distanceText(849.6, french), QString("850 m"));
    QVERIFY(readoutText(profile.samples.first(), "m", french).contains("2.0 m sous"));
    profile.samples.first().sightLine = 13.5;
    QVERIFY(readoutText(profile.samples.first(), "m", french).contains("1.5 m au-dessus"));
    QCOMPARE(profileCsv(profile), QByteArray("distance_m,x,y,ground,sight_line,hidden\n0,0,0,12,13.5,0\n"));
}

QTEST_GUILESS_MAIN(ProfileTest)
#include "profile_test.moc"
