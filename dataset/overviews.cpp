#include "dataset/overviews.h"

#include "dataset/formats.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QFile>

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace
{

struct Listener
{
    const OverviewProgress &progress;
    bool isStopped = false;

    static int report(double complete, const char *, void *listener)
    {
        auto &self = *static_cast<Listener *>(listener);
        self.isStopped = !self.progress(static_cast<int>(complete * 100.0));
        return self.isStopped ? FALSE : TRUE;
    }
};

} // namespace

QVector<int> overviewFactors(int width, int height)
{
    constexpr int smallEnough = 256;
    QVector<int> factors;
    for (int factor = 2; std::min(width, height) / (factor / 2) >= smallEnough; factor *= 2)
        factors += factor;
    return factors;
}

bool takesOverviews(const QString &format)
{
    return formatTraits(format).overviews == OverviewPlace::Beside;
}

QString overviewFile(const QString &raster)
{
    return raster + QStringLiteral(".ovr");
}

bool hasAveragedOverviews(const QString &raster, int band)
{
    constexpr int side = 16; // cells of the overview to compare, in each direction
    constexpr int largestFactor = 8;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(raster).constData(), GDAL_OF_RASTER));
    GDALRasterBand *cells = dataset ? dataset->GetRasterBand(band) : nullptr;
    GDALRasterBand *overview = cells && cells->GetOverviewCount() > 0 ? cells->GetOverview(0) : nullptr;
    if (!overview || overview->GetXSize() < side || overview->GetYSize() < side)
        return false;
    const int factor = qRound(static_cast<double>(cells->GetXSize()) / overview->GetXSize());
    if (factor < 2 || factor > largestFactor
        || std::abs(cells->GetXSize() - factor * overview->GetXSize()) >= factor)
        return false;
    const int left = (overview->GetXSize() - side) / 2;
    const int top = (overview->GetYSize() - side) / 2;
    const auto count = static_cast<std::size_t>(side);
    std::vector<double> coarse(count * count);
    std::vector<double> averages(coarse.size());
    // The averages are made from the band's own cells: an overview would be compared with itself.
    const int fineSide = side * factor;
    std::vector<double> fine(static_cast<std::size_t>(fineSide) * static_cast<std::size_t>(fineSide));
    if (overview->RasterIO(GF_Read, left, top, side, side, coarse.data(), side, side, GDT_Float64, 0, 0,
                           nullptr)
            != CE_None
        || cells->RasterIO(GF_Read, left * factor, top * factor, fineSide, fineSide, fine.data(), fineSide,
                           fineSide, GDT_Float64, 0, 0, nullptr)
            != CE_None)
        return false;
    for (std::size_t at = 0; at < fine.size(); ++at) {
        const std::size_t row = at / static_cast<std::size_t>(fineSide) / static_cast<std::size_t>(factor);
        const std::size_t column = at % static_cast<std::size_t>(fineSide) / static_cast<std::size_t>(factor);
        averages[row * count + column] += fine[at] / factor / factor;
    }
    // The cells of whole numbers are rounded, and level ground shows nothing.
    const bool isWhole = !GDALDataTypeIsFloating(cells->GetRasterDataType());
    int unlike = 0;
    int known = 0;
    for (std::size_t at = 0; at < coarse.size(); ++at) {
        const double first = fine[at / count * count * static_cast<std::size_t>(factor * factor)
                                  + at % count * static_cast<std::size_t>(factor)];
        const double tolerance = isWhole ? 1.0 : 1e-4 * std::max(1.0, std::abs(averages[at]));
        if (!std::isfinite(averages[at]) || std::abs(first - averages[at]) <= tolerance)
            continue;
        ++known;
        unlike += std::abs(coarse[at] - averages[at]) > tolerance ? 1 : 0;
    }
    constexpr int fewest = 8; // cells that tell an average from a single cell
    return known >= fewest && unlike * 10 <= known;
}

OverviewResult buildOverviews(const QString &raster, const OverviewProgress &progress)
{
    const GdalMessages messages;
    // Opened for reading only, the raster stays as it is and the overviews go beside it.
    std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(raster).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!dataset)
        return {OverviewResult::Failed, messages.lastError()};
    QVector<int> factors = overviewFactors(dataset->GetRasterXSize(), dataset->GetRasterYSize());
    if (factors.isEmpty())
        return {OverviewResult::NotNeeded, {}};
    const bool existed = QFile::exists(overviewFile(raster));
    Listener listener{progress};
    const CPLErr result = dataset->BuildOverviews("NEAREST", static_cast<int>(factors.size()), factors.data(),
                                                  0, nullptr, Listener::report, &listener);
    dataset.reset(); // writes the last cells, for which a full disk may have no room
    if (result == CE_None && messages.lastError().isEmpty())
        return {OverviewResult::Built, {}};
    if (!existed)
        QFile::remove(overviewFile(raster));
    if (listener.isStopped)
        return {OverviewResult::Stopped, {}};
    return {OverviewResult::Failed, messages.lastError()};
}
