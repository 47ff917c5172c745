// compass <tools' folder> <dem>
//
// Turns the compass of the shaded relief through 90° in two seconds, in the whole window, and counts the
// products that the map shows meanwhile. A DEM of 500 × 500 cells is cut out of `dem`. Goal: 12 frames at
// least.
//
// A timer beats in the same event loop; its longest pause is the time for which the window did not answer.
// Goal: 50 ms at most. The computations of the bare tool in two seconds, one after another, are what no preview
// can exceed.

#include "app/preview/PreviewPane.h"
#include "app/process/tools.h"
#include "app/window/quvoGdalUtilities.h"
#include "dataset/gdalmessages.h"
#include "panels/shadedOptionsWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr int turn = 2000; // ms
constexpr int step = 20;   // ms between two positions of the needle

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Measured
{
    int frames = 0;
    qint64 longestPause = 0; ///< ms
};

Measured turnCompass(shadedOptionsWidget &panel, const PreviewPane &pane)
{
    Measured measured;
    QElapsedTimer clock;
    QElapsedTimer beat;
    QEventLoop loop;
    QTimer watchdog;
    QTimer hand;
    qint64 shown = pane.scene().product().picture.cacheKey();
    QObject::connect(&watchdog, &QTimer::timeout, &loop, [&] {
        measured.longestPause = std::max(measured.longestPause, beat.restart());
        const qint64 now = pane.scene().product().picture.cacheKey();
        measured.frames += now != shown ? 1 : 0;
        shown = now;
    });
    QObject::connect(&hand, &QTimer::timeout, &loop, [&] {
        ShadedOptions options;
        options.compass = 225.0 + 90.0 * static_cast<double>(clock.elapsed()) / turn;
        panel.setProcessOptions(options);
        if (clock.elapsed() >= turn)
            loop.quit();
    });
    clock.start();
    beat.start();
    watchdog.start(1);
    hand.start(step);
    loop.exec();
    return measured;
}

int bareFrames(const ToolPaths &tools, const QString &dem, const QString &product)
{
    QElapsedTimer clock;
    clock.start();
    int frames = 0;
    for (; clock.elapsed() < turn; ++frames)
        QProcess::execute(tools.dem, {QStringLiteral("hillshade"), dem, product, QStringLiteral("-q")});
    return frames;
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8()); // the user's own settings stay as they are
    const QApplication application(argc, argv);
    setUpGdal();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: compass <tools' folder> <dem>\n", stderr);
        return 2;
    }
    const ToolPaths tools = findTools(arguments.at(1));
    const QString dem = folder.filePath(QStringLiteral("dem.tif"));
    QProcess::execute(tools.translate,
                      {QStringLiteral("-q"), QStringLiteral("-srcwin"), QStringLiteral("300"),
                       QStringLiteral("300"), QStringLiteral("500"), QStringLiteral("500"), arguments.at(2),
                       dem});
    quvoGdalUtilities window(tools, nullptr, {});
    window.resize(1366, 768);
    window.show();
    const auto pane = window.findChild<PreviewPane *>();
    if (pane->isHidden())
        window.slot_dialogExtension();
    window.setInputDem(dem);
    wait(turn); // the copy, the first product and the DEM's extremes
    const auto panel = window.findChild<shadedOptionsWidget *>();
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
        const int bare = bareFrames(tools, dem, folder.filePath(QStringLiteral("bare.tif")));
        const Measured measured = turnCompass(*panel, *pane);
        std::printf(
            "compass: %d frames in 2 s (goal 12; the bare tool alone %d), longest pause %lld ms (goal 50)\n",
            measured.frames, bare, static_cast<long long>(measured.longestPause));
    }
    return 0;
}
