// gdal_intervisibility.exe: computes what observers see of a DEM.

#include "viewshed/io/analysis.h"
#include "viewshed/io/inputfiles.h"
#include "viewshed/io/numbers.h"
#include "viewshed/io/observers.h"
#include "viewshed/io/picture.h"
#include "viewshed/io/raster_io.h"
#include "viewshed/io/statisticsfile.h"
#include "viewshed/io/stop.h"
#include "viewshed/options.h"

#include <gdal_priv.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace
{

using namespace viewshed;

/// The text as one line: control characters become spaces.
std::string lineOf(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return text;
}

/// Collects GDAL's warnings and prints each different one once, with its number: every handle that a thread
/// opens repeats those of the file. GDAL's errors are not printed: each makes a call fail, and main() prints
/// the Problem of that call with GDAL's message in it.
class Warnings
{
public:
    Warnings() { CPLSetErrorHandlerEx(collect, this); }
    ~Warnings()
    {
        CPLSetErrorHandler(CPLQuietErrorHandler);
        for (const auto &[text, count] : m_counts) {
            const std::string times = count > 1 ? " (" + std::to_string(count) + " times)" : "";
            std::fprintf(stderr, "gdal_intervisibility: Warning: %s%s\n", text.c_str(), times.c_str());
        }
    }
    Warnings(const Warnings &) = delete;
    Warnings &operator=(const Warnings &) = delete;

private:
    static void CPL_STDCALL collect(CPLErr kind, CPLErrorNum number, const char *message)
    {
        if (kind == CE_Warning) {
            auto &self = *static_cast<Warnings *>(CPLGetErrorHandlerUserData());
            const std::lock_guard lock(self.m_guard);
            ++self.m_counts[lineOf(message)];
        } else if (kind < CE_Warning) {
            CPLDefaultErrorHandler(kind, number, message);
        }
    }

    std::mutex m_guard; ///< of m_counts
    std::map<std::string, int> m_counts;
};

/// Makes a write fail where a signal would end the program and leave half a picture: at the limit for the size
/// of a file, and when nobody reads the progress any more.
void ignoreWriteSignals()
{
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

/// Writes the product to its file, and keeps it and the side files once all of them are complete; either may be
/// null.
void write(const Analysis &analysis, const Raster &raster, const Options &options, std::size_t observers,
           SkylineFile *skylines, SideText *statistics)
{
    const ProductForm forms[] = {pictureForm, countForm(observers), heightForm};
    ProductFile product(raster, options, forms[static_cast<int>(options.output)]);
    switch (options.output) {
    case Output::Picture:
        writePicture(product.dataset(), analysis, options);
        break;
    case Output::Count:
        writeCounts(product.dataset(), analysis);
        break;
    case Output::Height:
        writeHeights(product.dataset(), analysis);
        break;
    }
    product.close();
    if (skylines != nullptr)
        skylines->keep();
    if (statistics != nullptr)
        statistics->keep();
    product.keep();
}

/// One run from the input files to the product. Throws Problem or std::bad_alloc.
void compute(const Options &options)
{
    const InputFiles inputs = inputFiles(options);
    const Raster raster(options.source, options.band);
    const std::vector<Observer> observers = readObservers(options.pointFile);
    checkDestination(options, inputs);
    const Georeference georeference(raster.dataset());
    std::unique_ptr<SkylineFile> skylines;
    std::optional<SideText> statistics;
    if (!options.skyline.empty() || !options.statistics.empty())
        catchStopSignals();
    if (!options.skyline.empty())
        skylines = createSkylineFile({.path = options.skyline, .step = options.skylineStep}, raster.dataset(),
                                     georeference);
    if (!options.statistics.empty())
        statistics.emplace(options.statistics);

    const int threads = static_cast<int>(std::thread::hardware_concurrency());
    // The last tenth of the progress is for writing. GDAL ends the line when 1 is reported, so that comes last.
    constexpr double computing = 0.9;
    const auto report = [](double done) { GDALTermProgress(done, nullptr, nullptr); };
    report(0.0);
    const Analysis analysis =
        analysed(raster, georeference, observers, options, skylines.get(), threads, [&](double done) {
            checkStop();
            report(computing * done);
        });
    if (statistics)
        writeStatistics(*statistics, analysis, observers, georeference);
    write(analysis, raster, options, observers.size(), skylines.get(), statistics ? &*statistics : nullptr);
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
    case Options::Request::Run: {
        const Warnings warnings;
        ignoreWriteSignals();
        GDALAllRegister();
        compute(options);
        break;
    }
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
        std::fprintf(stderr, "gdal_intervisibility: %s\n", lineOf(problem.what()).c_str());
    }
    return 1;
}
