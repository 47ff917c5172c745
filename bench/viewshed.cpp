// viewshed <gdal_intervisibility.exe>
//
// Generates rough terrains, runs gdal_viewshed and gdal_intervisibility.exe on them in turn, as whole
// processes, and prints the ratio of the medians. Goals on a terrain of 6000 × 6000 cells, with the worst
// acceptable value in parentheses: one observer 2.5 times faster (1.5), ten observers 4 times faster than ten
// runs (2), a hundred observers in 2.5 ns for each cell and observer (5), 0.8 of the memory (1.0);
// count against picture for 100 observers 1.2 (1.5) times the duration; height against picture 2.5 (4) times;
// an eye 10,000 km away 1.5 (3) times one in the middle; 10,000 observers of 100 cells' reach 5 s (20 s) of
// processor time, an observer of 10 cells' reach 0.03 ms (0.1 ms); one compressed strip, where a limit keeps
// most of it unseen, 2 times the duration of tiles (3).

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <random>
#include <sched.h>
#include <string>
#include <vector>

namespace
{

using DataSet = std::unique_ptr<GDALDataset>;
using Words = std::vector<std::string>;

constexpr double cell = 10.0; // width and height of a cell in metres

/// Random numbers on a lattice, interpolated smoothly between its points.
class Noise
{
public:
    explicit Noise(unsigned seed)
        : m_values(side * side)
    {
        std::minstd_rand random(seed);
        for (float &value : m_values)
            value = std::uniform_real_distribution<float>(-1.0F, 1.0F)(random);
    }
    float at(float x, float y) const
    {
        const float column = std::floor(x);
        const float row = std::floor(y);
        const float right = smooth(x - column);
        const float down = smooth(y - row);
        const float upper = std::lerp(value(column, row), value(column + 1.0F, row), right);
        const float lower = std::lerp(value(column, row + 1.0F), value(column + 1.0F, row + 1.0F), right);
        return std::lerp(upper, lower, down);
    }

private:
    static float smooth(float part) { return part * part * (3.0F - 2.0F * part); }
    float value(float column, float row) const
    {
        return m_values[static_cast<std::size_t>(row) % side * side + static_cast<std::size_t>(column) % side];
    }

    static constexpr std::size_t side = 256;
    std::vector<float> m_values;
};

/// Elevation in metres: mountains of about 2000 m with ever smaller ones on them, down to the size of a cell.
float heightAt(const Noise &noise, int column, int row)
{
    constexpr int octaves = 10;
    float height = 0.0F;
    float amplitude = 1000.0F;
    float period = 1024.0F;
    for (int octave = 0; octave < octaves; ++octave, period /= 2.0F, amplitude *= 0.45F)
        height += amplitude * noise.at(static_cast<float>(column) / period, static_cast<float>(row) / period);
    return height;
}

/// Writes a GeoTIFF of side × side cells; null if it could not be written. `options` are GDAL's creation
/// options.
DataSet writeTerrain(const std::string &path, int side, const char *const *options)
{
    DataSet dem(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(path.c_str(), side, side, 1,
                                                                         GDT_Float32, options));
    if (!dem)
        return nullptr;
    double transform[] = {0.0, cell, 0.0, cell * side, 0.0, -cell};
    dem->SetGeoTransform(transform);
    const Noise noise(1);
    std::vector<float> line(static_cast<std::size_t>(side));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column)
            line[static_cast<std::size_t>(column)] = heightAt(noise, column, row);
        if (dem->GetRasterBand(1)->RasterIO(GF_Write, 0, row, side, 1, line.data(), side, 1, GDT_Float32, 0, 0,
                                            nullptr)
            != CE_None)
            return nullptr;
    }
    dem->FlushCache();
    return dem;
}

struct Eye
{
    int column;
    int row;
    double ground; ///< elevation of the cell in metres
};

/// Eyes at random places of the terrain, each on the highest of 64 × 64 cells.
std::vector<Eye> eyesOn(GDALDataset &dem, int count)
{
    std::minstd_rand random(5);
    constexpr int around = 64;
    std::uniform_int_distribution<int> place(0, dem.GetRasterXSize() - around);
    std::vector<Eye> eyes;
    std::vector<float> cells(static_cast<std::size_t>(around) * around);
    while (static_cast<int>(eyes.size()) < count) {
        const int left = place(random);
        const int top = place(random);
        if (dem.GetRasterBand(1)->RasterIO(GF_Read, left, top, around, around, cells.data(), around, around,
                                           GDT_Float32, 0, 0, nullptr)
            != CE_None)
            break;
        const auto highest = std::max_element(cells.begin(), cells.end());
        const int index = static_cast<int>(highest - cells.begin());
        eyes.push_back({.column = left + index % around,
                        .row = top + index / around,
                        .ground = static_cast<double>(*highest)});
    }
    return eyes;
}

constexpr double eyeHeight = 1.7; // above the ground, in metres

double xOf(const Eye &eye)
{
    return (eye.column + 0.5) * cell;
}

double yOf(const Eye &eye, int side)
{
    return (side - eye.row - 0.5) * cell;
}

/// `reach` in metres; 0 is without limit.
void writePoints(const std::string &path, const std::vector<Eye> &eyes, std::size_t count, int side,
                 double reach = 0.0)
{
    const DataSet points(GetGDALDriverManager()
                             ->GetDriverByName("ESRI Shapefile")
                             ->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer *layer = points->CreateLayer("points", nullptr, wkbPoint25D);
    OGRFieldDefn field("Max_Dist", OFTReal);
    layer->CreateField(&field);
    for (std::size_t index = 0; index < count; ++index) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField("Max_Dist", reach);
        const OGRPoint point(xOf(eyes[index]), yOf(eyes[index], side), eyes[index].ground + eyeHeight);
        feature.SetGeometry(&point);
        if (layer->CreateFeature(&feature) != OGRERR_NONE)
            return;
    }
}

struct Cost
{
    double seconds = 0.0;   ///< duration of the run
    double processor = 0.0; ///< seconds of all processors together
    double megabytes = 0.0; ///< greatest resident memory
};

/// Runs a command on the first `processors` processors, or on all if that is 0.
Cost costOf(const Words &command, int processors)
{
    std::vector<char *> arguments;
    for (const std::string &word : command)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        cpu_set_t few;
        CPU_ZERO(&few);
        for (int processor = 0; processor < processors; ++processor)
            CPU_SET(static_cast<std::size_t>(processor), &few);
        if (processors > 0)
            sched_setaffinity(0, sizeof few, &few);
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(1);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (status != 0)
        std::fprintf(stderr, "%s failed\n", arguments[0]);
    constexpr double kilobytes = 1024.0; // of a megabyte
    const auto secondsOf = [](const timeval &time) {
        constexpr double microseconds = 1e6;
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / microseconds;
    };
    return {.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(),
            .processor = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
            .megabytes = static_cast<double>(usage.ru_maxrss) / kilobytes};
}

/// The cost with the median duration.
Cost median(std::vector<Cost> costs)
{
    std::sort(costs.begin(), costs.end(),
              [](const Cost &one, const Cost &other) { return one.seconds < other.seconds; });
    return costs[costs.size() / 2];
}

/// The terrain under measurement, and the command lines of both programs on it.
struct Bench
{
    std::string tool;      ///< path of gdal_intervisibility.exe
    std::string folder;    ///< temporary folder for all files
    int side;              ///< width and height of the terrain in cells
    std::vector<Eye> eyes; ///< on that terrain

    Words theirs(const Eye &eye, const std::string &dem, const std::string &curvature) const
    {
        return {"gdal_viewshed",
                "-q",
                "-cc",
                curvature,
                "-ox",
                std::to_string(xOf(eye)),
                "-oy",
                std::to_string(yOf(eye, side)),
                "-oz",
                std::to_string(eyeHeight),
                "-md",
                "0",
                folder + "/" + dem,
                folder + "/theirs.tif"};
    }
    Words ours(std::size_t count, const std::string &dem, const std::string &curvature) const
    {
        const std::string points = folder + "/points" + std::to_string(count) + ".shp";
        writePoints(points, eyes, count, side);
        return {tool,          "-SrcFile", folder + "/" + dem, "-DstFile", folder + "/ours.tif",
                "-point_file", points,     "-DstOp",           "OR",       "-cc",
                curvature};
    }

    /// Measures the tool with one eye that sees 3 km far, on a file compressed as one strip against the same
    /// cells in compressed tiles, and prints a line of results.
    void compareStrip(const std::string &strip, const std::string &tiles) const
    {
        constexpr int rounds = 5;
        constexpr double reach = 3000.0;
        const std::string points = folder + "/near.shp";
        writePoints(points, eyes, 1, side, reach);
        std::vector<Cost> one;
        std::vector<Cost> other;
        for (int round = 0; round < rounds; ++round) {
            for (const auto &[dem, costs] : {std::pair{&strip, &one}, std::pair{&tiles, &other}})
                costs->push_back(costOf({tool, "-SrcFile", folder + "/" + *dem, "-DstFile",
                                         folder + "/ours.tif", "-point_file", points},
                                        0));
        }
        const double inStrip = median(one).seconds;
        const double inTiles = median(other).seconds;
        std::printf("%5d  1 observer within 3 km, DEFLATE in one strip: %.2f times the duration of tiles (%.3f "
                    "s, %.3f s)\n",
                    side, inStrip / inTiles, inStrip, inTiles);
        std::fflush(stdout);
    }

    /// The command for the observers in a file, with further options.
    Words command(const std::string &points, const Words &options) const
    {
        Words words{tool,
                    "-SrcFile",
                    folder + "/dem.tif",
                    "-DstFile",
                    folder + "/ours.tif",
                    "-point_file",
                    folder + "/" + points,
                    "-DstOp",
                    "OR"};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }

    /// Measures two commands of the tool in turn, and prints how many times as long the second takes, with the
    /// seconds that all processors need for it.
    void compareCommands(const char *what, const Words &one, const Words &other) const
    {
        constexpr int rounds = 5;
        std::vector<Cost> ones;
        std::vector<Cost> others;
        for (int round = 0; round < rounds; ++round) {
            ones.push_back(costOf(one, 0));
            others.push_back(costOf(other, 0));
        }
        const Cost first = median(ones);
        const Cost second = median(others);
        std::printf("%5d  %s: %.2f times the duration, %.2f times the processor time (%.3f s, %.3f s)\n", side,
                    what, second.seconds / first.seconds, second.processor / first.processor, first.processor,
                    second.processor);
        std::fflush(stdout);
    }

    /// Measures many observers of a short reach on the terrain, and prints their processor time.
    void measureReach(std::size_t count, double cells) const
    {
        writePoints(folder + "/one.shp", eyes, 1, side, cells * cell);
        writePoints(folder + "/many.shp", eyes, count, side, cells * cell);
        const Cost one = costOf(command("one.shp", {}), 0);
        const Cost many = costOf(command("many.shp", {}), 0);
        constexpr double milliseconds = 1e3;
        std::printf("%5d  %zu observers of %g cells' reach: %.2f s of processor time, %.3f ms an observer\n",
                    side, count, cells, many.processor,
                    (many.processor - one.processor) / static_cast<double>(count) * milliseconds);
        std::fflush(stdout);
    }

    /// Measures gdal_viewshed with one eye against the tool with `count` eyes, and prints a line of results.
    void compare(const char *what, std::size_t count, const std::string &dem, const std::string &curvature,
                 int processors = 0) const
    {
        constexpr int rounds = 5;
        std::vector<Cost> one;
        std::vector<Cost> other;
        for (int round = 0; round < rounds; ++round) {
            one.push_back(
                costOf(theirs(eyes[static_cast<std::size_t>(round) % count], dem, curvature), processors));
            other.push_back(costOf(ours(count, dem, curvature), processors));
        }
        const Cost theirs = median(one);
        const Cost ours = median(other);
        const double cells = static_cast<double>(side) * side * static_cast<double>(count);
        std::printf("%5d  %-28s %5.2f times faster (%.3f s for one, %.3f s for %zu), %.2f of the memory, %.2f "
                    "ns a cell "
                    "and observer\n",
                    side, what, theirs.seconds * static_cast<double>(count) / ours.seconds, theirs.seconds,
                    ours.seconds, count, ours.megabytes / theirs.megabytes, ours.seconds * 1e9 / cells);
        std::fflush(stdout);
    }
};

/// Measures the outputs that are no pictures, and observers with a short reach or far away.
void compareOutputs(Bench &bench)
{
    writePoints(bench.folder + "/one.shp", bench.eyes, 1, bench.side);
    writePoints(bench.folder + "/hundred.shp", bench.eyes, bench.eyes.size(), bench.side);
    bench.compareCommands("count against picture, 100 observers", bench.command("hundred.shp", {}),
                          bench.command("hundred.shp", {"-Output", "count"}));
    bench.compareCommands("height against picture, 1 observer", bench.command("one.shp", {}),
                          bench.command("one.shp", {"-Output", "height"}));
    bench.compareCommands("skyline besides a picture, 1 observer", bench.command("one.shp", {}),
                          bench.command("one.shp", {"-Skyline", bench.folder + "/skyline.csv"}));
}

/// An eye in the middle of the terrain against one 10,000 km away; both see all the terrain from high above.
void compareFarEye(Bench &bench)
{
    constexpr int farColumns = 333'000; // of 30 m, were the cells as large
    const int middle = bench.side / 2;
    const std::vector<Eye> near{{.column = middle, .row = middle, .ground = 3000.0}};
    const std::vector<Eye> far{{.column = -farColumns, .row = middle, .ground = 1e6}};
    writePoints(bench.folder + "/near.shp", near, 1, bench.side);
    writePoints(bench.folder + "/far.shp", far, 1, bench.side);
    bench.compareCommands("an eye 333,000 cells away against one in the middle", bench.command("near.shp", {}),
                          bench.command("far.shp", {}));
}

/// Writes a terrain of side × side cells to the bench's folder and chooses its eyes. False if it cannot be
/// written.
bool prepare(Bench &bench, int side, std::size_t eyes)
{
    const DataSet dem = writeTerrain(bench.folder + "/dem.tif", side, nullptr);
    if (!dem)
        return false;
    bench.side = side;
    bench.eyes = eyesOn(*dem, static_cast<int>(eyes));
    return true;
}

/// A name that no file has, in the system's folder for temporary files.
std::string temporaryFolder()
{
    return (std::filesystem::temp_directory_path() / ("viewshed" + std::to_string(getpid()))).string();
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("usage: viewshed <gdal_intervisibility.exe>\n", stderr);
        return 2;
    }
    GDALAllRegister();
    constexpr int small = 2000;
    constexpr int usual = 6000;
    constexpr int large = 12000;
    constexpr std::size_t few = 10;
    constexpr std::size_t many = 100;
    Bench bench{.tool = argv[1], .folder = temporaryFolder(), .side = 0, .eyes = {}};
    const char *const tiles[] = {"TILED=YES", "COMPRESS=DEFLATE", nullptr};
    if (VSIMkdir(bench.folder.c_str(), 0700) != 0) // NOLINT: rwx------
        return 1;
    constexpr int tiny = 400;
    constexpr int local = 1200;
    constexpr std::size_t crowd = 10'000;
    if (!prepare(bench, tiny, 1))
        return 1;
    compareFarEye(bench);
    if (!prepare(bench, local, crowd))
        return 1;
    bench.measureReach(crowd, 100.0); // NOLINT: cells
    bench.measureReach(crowd, 10.0);  // NOLINT: cells
    for (const int side : {small, large}) {
        if (!prepare(bench, side, 1))
            return 1;
        bench.compare("1 observer", 1, "dem.tif", "0");
    }
    const std::string height = "BLOCKYSIZE=" + std::to_string(usual);
    const char *const strip[] = {"COMPRESS=DEFLATE", height.c_str(), nullptr};
    if (!prepare(bench, usual, many) || !writeTerrain(bench.folder + "/tiles.tif", usual, tiles)
        || !writeTerrain(bench.folder + "/strip.tif", usual, strip))
        return 1;
    compareOutputs(bench);
    bench.compareStrip("strip.tif", "tiles.tif");
    bench.compare("1 observer", 1, "dem.tif", "0");
    bench.compare("10 observers", few, "dem.tif", "0");
    bench.compare("100 observers", many, "dem.tif", "0");
    bench.compare("1 observer, 1 thread", 1, "dem.tif", "0", 1);
    bench.compare("10 observers, 1 thread", few, "dem.tif", "0", 1);
    bench.compare("1 observer, DEFLATE in tiles", 1, "tiles.tif", "0");
    bench.compare("1 observer, curvature", 1, "dem.tif", "0.85714");
    VSIRmdirRecursive(bench.folder.c_str());
    return 0;
}
