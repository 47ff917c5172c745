// live <viewshed tool>
//
// Times the live viewshed of one observer on rough ground of 1000 × 1000 cells, from the request to its
// picture, and the tool as a process with the same files, in turn. Goal: 20 pictures a second on two cores.
// Also times the computation alone, on one thread and on two, and a terrain profile; goal of the profile: 1 ms.

#include "app/preview/live/LiveViewshed.h"
#include "app/preview/profile/profile.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "panels/options/pointfile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>

#include <gdal_priv.h>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <random>

namespace
{

constexpr int side = 1000;
constexpr int rounds = 25;

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Writes mountains with a rough surface, in cells of 25 m.
bool writeMountains(const QString &path)
{
    std::minstd_rand random(3);
    std::uniform_real_distribution<float> rough(0.0F, 4.0F);
    std::vector<float> heights;
    heights.reserve(side * side);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const double wave =
                std::sin(column / 71.0) * std::cos(row / 53.0) + 0.3 * std::sin((column + 2 * row) / 17.0);
            heights.push_back(static_cast<float>(800.0 + 400.0 * wave) + rough(random));
        }
    }
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    const std::unique_ptr<GDALDataset> file(
        driver->Create(encodePath(path).constData(), side, side, 1, GDT_Float32, nullptr));
    double transform[] = {500000.0, 25.0, 0.0, 5100000.0, 0.0, -25.0};
    return file && file->SetGeoTransform(transform) == CE_None
        && file->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, side, side, heights.data(), side, side, GDT_Float32,
                                            0, 0, nullptr)
        == CE_None;
}

/// Runs the tool. Returns the duration in milliseconds.
double runTool(const QStringList &arguments)
{
    std::vector<QByteArray> texts;
    for (const QString &argument : arguments)
        texts.push_back(argument.toLocal8Bit());
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addclose(&quiet, STDOUT_FILENO);
    QElapsedTimer timer;
    timer.start();
    pid_t child = 0;
    int status = 1;
    if (posix_spawn(&child, pointers[0], &quiet, nullptr, pointers.data(), environ) != 0
        || waitpid(child, &status, 0) < 0 || status != 0)
        std::fprintf(stderr, "%s failed\n", pointers[0]);
    posix_spawn_file_actions_destroy(&quiet);
    return milliseconds(timer);
}

/// Computes one viewshed. Returns the milliseconds from the request to the picture.
double runLive(LiveViewshed &live, const LiveRequest &request)
{
    QElapsedTimer timer;
    double time = 0.0;
    QEventLoop loop;
    QObject::connect(&live, &LiveViewshed::computed, &loop, [&](int, const SeenCells &cells) {
        const QImage picture = seenPicture(cells, qRgb(0, 158, 115), qRgb(213, 94, 0), qRgb(0, 0, 0));
        time = milliseconds(timer);
        if (picture.isNull())
            std::fprintf(stderr, "no picture\n");
        loop.quit();
    });
    timer.start();
    live.request(request);
    loop.exec();
    return time;
}

double runThreads(const LiveRequest &request, int threads)
{
    QElapsedTimer timer;
    timer.start();
    const viewshed::BitGrid seen = seenCells(request, threads);
    return milliseconds(timer);
}

double runProfile(const LiveTerrain &terrain, const ToolObserver &observer)
{
    QElapsedTimer timer;
    timer.start();
    const Profile profile = profileAlong(terrain, observer, terrain.toGround({995.0, 990.0}),
                                         {.targetHeight = 0.0, .curvature = viewshed::Options().curvature});
    return profile.samples.isEmpty() ? 1e9 : milliseconds(timer);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    setUpGdal();
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.tif"));
    QElapsedTimer timer;
    if (argc != 2 || !writeMountains(copy)) {
        std::fputs("usage: live <viewshed tool>\n", stderr);
        return 2;
    }
    timer.start();
    const auto terrain = LiveTerrain::read(copy, 1).terrain;
    const double reading = milliseconds(timer);
    LiveViewshed live;
    std::vector<double> times;
    std::vector<double> ratios;
    std::vector<double> one;
    std::vector<double> two;
    std::vector<double> profiles;
    for (int round = 0; terrain && round < rounds; ++round) {
        const QPointF point = terrain->toGround({150.0 + 30.0 * round, 840.0 - 27.0 * round});
        const QList<ToolObserver> observers{{point.x(), point.y(), 1300.0, 0.0}};
        const LiveRequest request = liveRequest(round, *terrain, observers, {}).request;
        times.push_back(runLive(live, request));
        one.push_back(runThreads(request, 1));
        two.push_back(runThreads(request, 2));
        profiles.push_back(runProfile(*terrain, observers.first()));
        ratios.push_back(runTool({QString::fromLocal8Bit(argv[1]), QStringLiteral("-SrcFile"), copy,
                                  QStringLiteral("-DstFile"), folder.filePath(QStringLiteral("seen.tif")),
                                  QStringLiteral("-point_file"), writePointFile(folder.path(), observers)})
                         / times.back());
    }
    std::printf("live viewshed: %.0f pictures a second (%.1f ms); goal 20\n", 1000.0 / median(times),
                median(times));
    std::printf("the tool as a process takes %.1f times as long\n", median(ratios));
    std::printf("computation alone: %.1f ms on one thread, %.1f ms on two; reading the copy: %.1f ms\n",
                median(one), median(two), reading);
    std::printf("terrain profile: %.2f ms; goal 1\n", median(profiles));
    return 0;
}
