#include "dataset/contours/voidrule.h"

#include "dataset/pathencoding.h"

#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

VoidValues::VoidValues(GDALRasterBand &band, const VoidRule &rule, Meaning meaning)
{
    if (rule.everyValueValid)
        return;
    int hasNoData = FALSE;
    const double noData = band.GetNoDataValue(&hasNoData);
    if (hasNoData && (meaning == Both || !rule.ignored))
        m_values.push_back(noData);
    if (rule.ignored)
        m_values.push_back(*rule.ignored);
    // The cells hold the nearest number of their own type.
    if (band.GetRasterDataType() == GDT_Float32)
        for (double &value : m_values)
            value = static_cast<float>(value);
}

bool VoidValues::holds(double value) const
{
    return !std::isfinite(value) || std::find(m_values.begin(), m_values.end(), value) != m_values.end();
}

CellRange cellRange(const QString &dem, int band, const VoidRule &rule,
                    const std::function<bool(double)> &progress)
{
    CellRange range;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(dem).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!dataset || band < 1 || band > dataset->GetRasterCount())
        return range;
    std::array<double, 6> toGround{};
    dataset->GetGeoTransform(toGround.data()); // without one the cells are squares of size 1
    range.cellArea = std::abs(toGround[1] * toGround[5] - toGround[2] * toGround[4]);
    GDALRasterBand &cells = *dataset->GetRasterBand(band);
    const VoidValues voids(cells, rule, VoidValues::IgnoredReplaces);
    std::vector<double> row(static_cast<std::size_t>(cells.GetXSize()));
    for (int at = 0; at < cells.GetYSize(); ++at) {
        if (cells.RasterIO(GF_Read, 0, at, cells.GetXSize(), 1, row.data(), cells.GetXSize(), 1, GDT_Float64, 0,
                           0, nullptr)
            != CE_None)
            return range;
        for (const double value : row) {
            if (voids.holds(value))
                continue;
            range.lowest = range.count == 0 ? value : std::min(range.lowest, value);
            range.highest = range.count == 0 ? value : std::max(range.highest, value);
            ++range.count;
        }
        if (!progress((at + 1.0) / cells.GetYSize())) {
            range.isStopped = true;
            return range;
        }
    }
    range.isRead = true;
    return range;
}
