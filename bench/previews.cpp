// previews <tools' folder> <dem>
//
// Times a preview after a change of options, from the start of its computation to its picture, and the tool
// alone on the same reduced copy, in turn. Goal: the preview takes at most 1.3 times as long. The pause in
// which a preview waits for further changes is not counted.

#include "app/preview/Previews.h"
#include "app/process/tools.h"
#include "dataset/gdalmessages.h"
#include "dataset/rasterinfo.h"
#include "dataset/rasterpicture.h"
#include "runner/QuvoScriptRunner.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace
{

constexpr int rounds = 15;

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Runs the tool alone. Returns the duration in milliseconds.
double runTool(const QString &tool, const QStringList &arguments)
{
    std::vector<QByteArray> texts{tool.toLocal8Bit()};
    for (const QString &argument : arguments)
        texts.push_back(argument.toLocal8Bit());
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    QElapsedTimer timer;
    timer.start();
    pid_t child = 0;
    int status = 1;
    if (posix_spawn(&child, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0
        || waitpid(child, &status, 0) < 0 || status != 0)
        std::fprintf(stderr, "%s failed\n", pointers[0]);
    return milliseconds(timer);
}

/// Computes one preview. Returns the milliseconds from the start of the computation to its picture.
double runPreview(Previews &previews)
{
    QElapsedTimer timer;
    double time = 0.0;
    QEventLoop loop;
    QObject::connect(&previews, &Previews::computationStarted, &loop, [&] { timer.start(); });
    QObject::connect(&previews, &Previews::computed, &loop, [&] {
        const RasterPicture picture(previews.product());
        const QImage image = picture.read(QRect(QPoint(0, 0), picture.size()), picture.size());
        time = milliseconds(timer);
        if (image.isNull())
            std::fprintf(stderr, "no picture\n");
        loop.quit();
    });
    previews.update(true);
    loop.exec();
    return time;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    setUpGdal();
    const QStringList arguments = QApplication::arguments();
    const RasterInfo info = arguments.size() == 3 ? readRasterInfo(arguments.at(2)) : RasterInfo();
    if (info.width == 0) {
        std::fputs("usage: previews <tools' folder> <dem>\n", stderr);
        return 2;
    }
    const ToolPaths tools = findTools(arguments.at(1));
    WorkFolder workFolder;
    QuvoScriptRunner runner(nullptr);
    Previews previews(runner, tools, workFolder, [](const QString &) {
        ProcessingRequest request;
        request.process = Process::ShadedRelief;
        request.mode = QStringLiteral("hillshade");
        request.toolInput.fragment = QStringLiteral("-z 1 -az -45 -alt 45");
        return std::optional(request);
    });
    previews.setShown(true);
    previews.setDem({arguments.at(2), QString(), {info.width, info.height}, true});
    runPreview(previews); // not counted: the first preview also makes the reduced copy

    const QString product = workFolder.path() + QStringLiteral("/bare");
    std::vector<double> ratios;
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(runTool(tools.dem,
                               {QStringLiteral("hillshade"), previews.copy(), product, QStringLiteral("-z"),
                                QStringLiteral("1"), QStringLiteral("-az"), QStringLiteral("-45"),
                                QStringLiteral("-alt"), QStringLiteral("45"), QStringLiteral("-q"),
                                QStringLiteral("-of"), QStringLiteral("GTiff")}));
        ratios.push_back(runPreview(previews) / bare.back());
    }
    std::printf("preview after a change: %.2f times the bare tool (%.0f ms); goal 1.3\n", median(ratios),
                median(bare));
    return 0;
}
