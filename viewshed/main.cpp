// gdal_intervisibility.exe: paints what observers see of a DEM.

#include "viewshed/io/analysis.h"
#include "viewshed/io/observers.h"
#include "viewshed/io/picture.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/options.h"

#include <gdal_priv.h>

#include <cstdio>
#include <exception>
#include <thread>

namespace
{

using namespace viewshed;

/// GDAL's failures are told by what they make fail, in one sentence; the rest goes its usual way.
void CPL_STDCALL passOn(CPLErr kind, CPLErrorNum number, const char *message)
{
    if (kind < CE_Failure)
        CPLDefaultErrorHandler(kind, number, message);
}

void paint(const Options &options)
{
    const Raster raster(options.source, options.band);
    checkDestination(options, raster);
    const std::vector<Observer> observers = readObservers(options.pointFile);
    const int threads = static_cast<int>(std::thread::hardware_concurrency());
    // The last tenth is the writing's: GDAL ends the line itself at 1, so that is told when the picture is
    // there.
    constexpr double computing = 0.9;
    const auto tell = [](double done) { GDALTermProgress(done, nullptr, nullptr); };
    tell(0.0);
    const Analysis analysis =
        analysed(raster, observers, options, threads, [&](double done) { tell(computing * done); });
    writePicture(analysis, raster, options, threads);
    tell(1.0);
}

int run(const std::vector<std::string> &arguments)
{
    const Options options = parsedOptions(arguments);
    switch (options.request) {
    case Options::Request::Help:
        std::fputs(usage().c_str(), stdout);
        break;
    case Options::Request::Version:
        std::printf("gdal_intervisibility %s, %s\n", QUVO_VERSION, GDALVersionInfo("--version"));
        break;
    case Options::Request::Run:
        CPLSetErrorHandler(passOn);
        GDALAllRegister();
        paint(options);
        break;
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::bad_alloc &) {
        std::fputs("gdal_intervisibility: There is not enough memory.\n", stderr);
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "gdal_intervisibility: %s\n", problem.what());
    }
    return 1;
}
