#include "dataset/elevationgrid.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QElapsedTimer>

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <limits>

struct ElevationGridReader::Band
{
    std::unique_ptr<GDALDataset> dataset;
    GDALRasterBand *band = nullptr;
    bool hasNoData = false;
};

QVector<double> ElevationGrid::sorted() const
{
    QVector<double> values;
    values.reserve(cells.size());
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(values),
                 [](float cell) { return std::isfinite(cell); });
    std::sort(values.begin(), values.end());
    return values;
}

ElevationGridReader::ElevationGridReader(const QString &path, int band, int side)
    : m_band(std::make_unique<Band>())
{
    const GdalMessages messages; // choosing the file has already reported that it cannot be opened
    m_band->dataset.reset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    GDALDataset *dataset = m_band->dataset.get();
    if (!dataset || band < 1 || band > dataset->GetRasterCount())
        return;
    m_band->band = dataset->GetRasterBand(band);
    int isSet = FALSE;
    m_grid.noDataValue = m_band->band->GetNoDataValue(&isSet);
    m_band->hasNoData = isSet != FALSE;
    const double longest = std::max(dataset->GetRasterXSize(), dataset->GetRasterYSize());
    const double factor = std::max(1.0, longest / side);
    m_grid.width = std::max(1, static_cast<int>(dataset->GetRasterXSize() / factor));
    m_grid.height = std::max(1, static_cast<int>(dataset->GetRasterYSize() / factor));
    m_grid.cells.fill(std::numeric_limits<float>::quiet_NaN(), m_grid.width * m_grid.height);
}

ElevationGridReader::~ElevationGridReader() = default;

bool ElevationGridReader::readRow()
{
    const int rows = m_band->band->GetYSize();
    const auto row = static_cast<int>((m_nextRow + 0.5) * rows / m_grid.height);
    float *cells = m_grid.cells.data() + static_cast<qsizetype>(m_nextRow) * m_grid.width;
    const CPLErr result = m_band->band->RasterIO(GF_Read, 0, std::min(row, rows - 1), m_band->band->GetXSize(),
                                                 1, cells, m_grid.width, 1, GDT_Float32, 0, 0, nullptr);
    if (result != CE_None)
        return false;
    const auto noData = static_cast<float>(m_grid.noDataValue);
    std::for_each(cells, cells + m_grid.width, [&](float &cell) {
        if (!std::isfinite(cell) || (m_band->hasNoData && cell == noData))
            cell = std::numeric_limits<float>::quiet_NaN();
    });
    ++m_nextRow;
    return true;
}

bool ElevationGridReader::advance(int milliseconds)
{
    const GdalMessages messages;
    QElapsedTimer clock;
    clock.start();
    do {
        if (m_nextRow >= m_grid.height)
            return false;
        if (!readRow()) {
            m_nextRow = m_grid.height; // what was read stays
            return false;
        }
    } while (clock.elapsed() < milliseconds);
    return m_nextRow < m_grid.height;
}
