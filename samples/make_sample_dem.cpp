#include "samples/terrain.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace
{

constexpr int side = 1200;        // cells
constexpr double cellSize = 30.0; // metres
constexpr float noData = -9999.0F;

/// False in the south-eastern corner, which the sample leaves without data.
bool isSurveyed(int row, int column)
{
    const double down = side - row;
    const double right = side - column;
    return down + right + 12.0 * std::sin(down / 17.0) > 170.0;
}

void require(bool condition, const char *what)
{
    if (!condition)
        throw std::runtime_error(what);
}

/// Writes the sample DEM: GeoTIFF, float32 metres, UTM zone 32 north.
void writeSample(const char *path)
{
    const Terrain terrain = makeTerrain(side);
    std::vector<float> cells(terrain.height.size());
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const auto at = static_cast<std::size_t>(row * side + column);
            const double decimetres = std::round(10.0 * terrain.height[at]) / 10.0;
            cells[at] = isSurveyed(row, column) ? static_cast<float>(decimetres) : noData;
        }
    }

    GDALAllRegister();
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    require(driver, "GDAL has no GeoTIFF driver");
    const char *const options[] = {"COMPRESS=DEFLATE", "PREDICTOR=3", nullptr};
    const std::unique_ptr<GDALDataset> dataset(
        driver->Create(path, side, side, 1, GDT_Float32, const_cast<char **>(options)));
    require(dataset != nullptr, "the file could not be created");

    double transform[] = {540000.0, cellSize, 0.0, 5164000.0, 0.0, -cellSize};
    OGRSpatialReference utm;
    require(utm.importFromEPSG(32632) == OGRERR_NONE, "the reference system is not known");
    GDALRasterBand *band = dataset->GetRasterBand(1);
    require(
        dataset->SetGeoTransform(transform) == CE_None && dataset->SetSpatialRef(&utm) == CE_None
            && band->SetNoDataValue(noData) == CE_None && band->SetUnitType("m") == CE_None
            && band->RasterIO(GF_Write, 0, 0, side, side, cells.data(), side, side, GDT_Float32, 0, 0, nullptr)
                == CE_None,
        "the file could not be written");
    dataset->FlushCache(true);
}

} // namespace

/// make_sample_dem <file.tif>
int main(int argc, char *argv[])
try {
    if (argc != 2) {
        std::fputs("usage: make_sample_dem <file.tif>\n", stderr);
        return 2;
    }
    writeSample(argv[1]);
    return 0;
} catch (const std::exception &fault) {
    std::fprintf(stderr, "make_sample_dem: %s\n", fault.what());
    return 1;
}
