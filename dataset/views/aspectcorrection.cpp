#include "dataset/views/aspectcorrection.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/views/truecells.h"
#include "messages/label.h"

#include <gdal_priv.h>

#include <cmath>
#include <memory>
#include <vector>

namespace
{

constexpr double radian = 0.017453292519943295;

bool correctRow(GDALRasterBand &band, int row, double ratio, bool trigonometric, std::vector<float> &cells)
{
    const int width = band.GetXSize();
    if (band.RasterIO(GF_Read, 0, row, width, 1, cells.data(), width, 1, GDT_Float32, 0, 0, nullptr) != CE_None)
        return false;
    for (float &cell : cells) {
        if (!(cell >= 0.0F)) // cells without a direction hold -9999
            continue;
        cell = static_cast<float>(trueDirection(cell, ratio, trigonometric));
        if (cell >= 360.0F) // rounded up
            cell = 0.0F;
    }
    return band.RasterIO(GF_Write, 0, row, width, 1, cells.data(), width, 1, GDT_Float32, 0, 0, nullptr)
        == CE_None;
}

} // namespace

double trueDirection(double direction, double ratio, bool trigonometric)
{
    const double sine = std::sin(direction * radian);
    const double cosine = std::cos(direction * radian);
    // The component towards the east grows by height over width.
    const double turned = trigonometric ? std::atan2(sine, cosine * ratio) : std::atan2(sine * ratio, cosine);
    const double degrees = turned / radian;
    const double positive = degrees < 0.0 ? degrees + 360.0 : degrees;
    return positive >= 360.0 ? 0.0 : positive;
}

CorrectionResult correctDirections(const QString &raster, const QString &dem, int band, bool trigonometric,
                                   const CorrectionProgress &progress)
{
    const DemFacts facts = readDemFacts(dem, band);
    const GdalMessages messages;
    std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(
        encodePath(raster).constData(), GDAL_OF_RASTER | GDAL_OF_UPDATE | GDAL_OF_VERBOSE_ERROR));
    if (!dataset)
        return {false, messages.lastError()};
    if (!facts.isOpen || facts.width != dataset->GetRasterXSize() || facts.height != dataset->GetRasterYSize())
        return {false, labelText({"MESS_CALAGE_TAILLE", "Les deux rasters n'ont pas les mêmes dimensions."})};
    std::vector<float> cells(static_cast<std::size_t>(facts.width));
    for (int row = 0; row < facts.height; ++row) {
        const QSizeF cell = trueCell(facts, row + 0.5);
        if (!correctRow(*dataset->GetRasterBand(1), row, cell.height() / cell.width(), trigonometric, cells))
            return {false, messages.lastError()};
        if (!progress(static_cast<int>(100.0 * row / facts.height)))
            return {true, {}};
    }
    dataset.reset(); // writes the last cells, for which a full disk may have no room
    return {false, messages.lastError()};
}
