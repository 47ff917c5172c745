// contours <dem> <interval>
//
// Draws the contour lines of a DEM into 1000 x 1000 pixels in three ways, in turn within one run, and prints
// how they compare: cairo fed with every point; the drawing of features; reading the features alone. Goals: at
// least 7 times faster than every point, at most 4.5 times the reading; and the longest portion of the drawing,
// between two looks at the clock, at most 30 milliseconds.

#include "vectordraw/featurelayer.h"

#include <cairo.h>
#include <gdal_alg.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

constexpr int side = 1000; // pixels
constexpr int rounds = 3;

using DataSet = std::unique_ptr<GDALDataset>;

/// The DEM at five times its resolution, with a little noise: many short lines, as real elevations give them,
/// with vertices much nearer to each other than the picture's pixels.
DataSet fineDem(const char *dem)
{
    const DataSet raster(GDALDataset::Open(dem, GDAL_OF_RASTER));
    if (!raster)
        return nullptr;
    const int width = raster->GetRasterXSize() * 5;
    const int height = raster->GetRasterYSize() * 5;
    std::vector<float> cells(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    GDALRasterIOExtraArg smooth;
    INIT_RASTERIO_EXTRA_ARG(smooth);
    smooth.eResampleAlg = GRIORA_Cubic;
    if (raster->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, raster->GetRasterXSize(), raster->GetRasterYSize(),
                                           cells.data(), width, height, GDT_Float32, 0, 0, &smooth)
        != CE_None)
        return nullptr;
    constexpr float amplitude = 2.4F;
    std::minstd_rand random(1);
    std::uniform_real_distribution<float> noise(-amplitude, amplitude);
    for (float &cell : cells)
        cell += noise(random);
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("MEM");
    DataSet fine(driver->Create("", width, height, 1, GDT_Float32, nullptr));
    if (fine->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, width, height, cells.data(), width, height,
                                         GDT_Float32, 0, 0, nullptr)
        != CE_None)
        return nullptr;
    return fine;
}

std::string writeContours(const char *dem, const char *interval)
{
    const DataSet raster = fineDem(dem);
    if (!raster)
        return {};
    const std::string file = (std::filesystem::temp_directory_path()
                              / ("contours" + std::to_string(std::random_device()()) + ".shp"))
                                 .string();
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    const DataSet lines(driver->Create(file.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer *layer = lines->CreateLayer("contours", nullptr, wkbLineString);
    std::string option = std::string("LEVEL_INTERVAL=") + interval;
    char *options[] = {option.data(), nullptr};
    return GDALContourGenerateEx(raster->GetRasterBand(1), layer, options, nullptr, nullptr) == CE_None
        ? file
        : std::string();
}

vectordraw::View viewOf(OGRLayer &layer)
{
    OGREnvelope extent;
    if (layer.GetExtent(&extent) != OGRERR_NONE)
        return {};
    const double pixel = std::max(extent.MaxX - extent.MinX, extent.MaxY - extent.MinY) / side;
    return {side, side, {extent.MinX, pixel, 0.0, extent.MaxY, 0.0, -pixel}, {}};
}

long long readAll(OGRLayer &layer)
{
    long long points = 0;
    layer.ResetReading();
    for (auto &feature : layer)
        points += feature->GetGeometryRef()->toLineString()->getNumPoints();
    return points;
}

void drawEveryPoint(OGRLayer &layer, const vectordraw::View &view)
{
    vectordraw::Surface surface = vectordraw::Surface::image(side, side);
    cairo_t *cairo = surface.context();
    cairo_set_line_width(cairo, 1.0);
    layer.ResetReading();
    for (auto &feature : layer) {
        for (const OGRPoint &point : *feature->GetGeometryRef()->toLineString())
            cairo_line_to(cairo, (point.getX() - view.geoTransform[0]) / view.geoTransform[1],
                          (view.geoTransform[3] - point.getY()) / view.geoTransform[1]);
        cairo_stroke(cairo);
    }
}

/// Returns the seconds that the longest portion took.
double drawFeatures(OGRLayer &layer, const vectordraw::View &view)
{
    using Clock = std::chrono::steady_clock;
    constexpr long long portion = 10000; // vertices
    double longest = 0.0;
    vectordraw::Surface surface = vectordraw::Surface::image(side, side);
    vectordraw::Painter painter(surface, {96.0, view.groundPerPixel()});
    vectordraw::FeatureLayer drawing(layer, view, painter);
    bool more = true;
    while (more) {
        const auto begin = Clock::now();
        more = drawing.drawNext(portion);
        longest = std::max(longest, std::chrono::duration<double>(Clock::now() - begin).count());
    }
    return longest;
}

template <class Work> double secondsOf(Work work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3) {
        std::fputs("usage: contours <dem> <interval>\n", stderr);
        return 2;
    }
    GDALAllRegister();
    const std::string file = writeContours(argv[1], argv[2]);
    const DataSet lines(GDALDataset::Open(file.c_str(), GDAL_OF_VECTOR));
    if (!lines)
        return 1;
    OGRLayer &layer = *lines->GetLayer(0);
    const vectordraw::View view = viewOf(layer);
    double every = 1e9;
    double ours = 1e9;
    double reading = 1e9;
    double longest = 1e9;
    long long points = 0;
    for (int round = 0; round < rounds; ++round) {
        reading = std::min(reading, secondsOf([&] { points = readAll(layer); }));
        ours = std::min(ours, secondsOf([&] { longest = std::min(longest, drawFeatures(layer, view)); }));
        every = std::min(every, secondsOf([&] { drawEveryPoint(layer, view); }));
    }
    std::printf("%lld lines, %lld points\n", static_cast<long long>(layer.GetFeatureCount()), points);
    std::printf("every point / features: %.1f (at least 7)\n", every / ours);
    std::printf("features / reading:     %.1f (at most 4.5)\n", ours / reading);
    std::printf("longest portion:        %.1f ms (at most 30)\n", longest * 1000.0);
    std::printf("seconds: every point %.2f, features %.2f, reading %.2f\n", every, ours, reading);
    GDALDriver::QuietDelete(file.c_str());
    return 0;
}
