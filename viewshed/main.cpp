// gdal_intervisibility.exe: paints which cells of a DEM observers see.

#include "viewshed/io/analysis.h"
#include "viewshed/io/inputfiles.h"
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

/// Prints GDAL's warnings, but not its errors: each error makes a call fail, and main() prints the Problem of
/// that call with GDAL's message in it.
void CPL_STDCALL printWarnings(CPLErr kind, CPLErrorNum number, const char *message)
{
    if (kind < CE_Failure)
        CPLDefaultErrorHandler(kind, number, message);
}

/// One run from the input files to the picture. Throws Problem or std::bad_alloc.
void paint(const Options &options)
{
    const InputFiles inputs = inputFiles(options);
    const Raster raster(options.source, options.band);
    const std::vector<Observer> observers = readObservers(options.pointFile);
    checkDestination(options, inputs);
    const int threads = static_cast<int>(std::thread::hardware_concurrency());
    // The last tenth of the progress is for writing. GDAL ends the line when 1 is reported, so that comes last.
    constexpr double computing = 0.9;
    const auto report = [](double done) { GDALTermProgress(done, nullptr, nullptr); };
    report(0.0);
    const Analysis analysis =
        analysed(raster, observers, options, threads, [&](double done) { report(computing * done); });
    writePicture(analysis, raster, options);
    report(1.0);
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
        CPLSetErrorHandler(printWarnings);
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
