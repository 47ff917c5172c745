#include "dataset/elevationgrid.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QElapsedTimer>

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double mostCells = 64e6; // some seconds of most formats

int blocksOf(int cells, int block)
{
    return (cells + block - 1) / std::max(1, block);
}

/// The smallest overview with at least so many columns and rows; the band itself where it has none.
GDALRasterBand *smallestBand(GDALRasterBand *band, const QSize &wanted)
{
    GDALRasterBand *smallest = band;
    for (int index = 0; index < band->GetOverviewCount(); ++index) {
        GDALRasterBand *overview = band->GetOverview(index);
        if (overview && overview->GetXSize() >= wanted.width() && overview->GetYSize() >= wanted.height()
            && overview->GetXSize() < smallest->GetXSize())
            smallest = overview;
    }
    return smallest;
}

QSize sizeOf(GDALRasterBand &band)
{
    return {band.GetXSize(), band.GetYSize()};
}

QSize blockOf(GDALRasterBand &band)
{
    int width = 0;
    int height = 0;
    band.GetBlockSize(&width, &height);
    return {width, height};
}

} // namespace

QVector<double> ElevationGrid::sorted() const
{
    QVector<double> values;
    values.reserve(cells.size());
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(values),
                 [](float cell) { return std::isfinite(cell); });
    std::sort(values.begin(), values.end());
    return values;
}

QSize sampleSize(const QSize &band, const QSize &block, int side, double mostCells)
{
    const double factor = std::max(1.0, static_cast<double>(std::max(band.width(), band.height())) / side);
    int columns = std::max(1, static_cast<int>(band.width() / factor));
    int rows = std::max(1, static_cast<int>(band.height() / factor));
    const int blockColumns = blocksOf(band.width(), block.width());
    const int blockRows = blocksOf(band.height(), block.height());
    const double blockCells = static_cast<double>(block.width()) * block.height();
    for (;;) {
        const int readColumns = std::min(columns, blockColumns);
        const int readRows = std::min(rows, blockRows);
        if (blockCells * readColumns * readRows <= mostCells || readColumns * readRows <= 1)
            return {columns, rows};
        if (readColumns > 1)
            columns = std::max(1, std::min(columns, blockColumns) / 2);
        if (readRows > 1)
            rows = std::max(1, std::min(rows, blockRows) / 2);
    }
}

SampleSummary summaryOf(const ElevationGrid &grid)
{
    const QVector<double> values = grid.sorted();
    SampleSummary summary;
    if (grid.cells.isEmpty())
        return summary;
    summary.voids = 1.0 - static_cast<double>(values.size()) / static_cast<double>(grid.cells.size());
    summary.known = !values.isEmpty();
    if (!summary.known)
        return summary;
    summary.minimum = values.first();
    summary.maximum = values.last();
    double sum = 0.0;
    for (const double value : values)
        sum += value;
    summary.mean = sum / static_cast<double>(values.size());
    return summary;
}

struct ElevationGridReader::Band
{
    std::unique_ptr<GDALDataset> dataset;
    GDALRasterBand *band = nullptr; ///< the band or one of its overviews
    bool hasNoData = false;
};

ElevationGridReader::ElevationGridReader(const QString &name, int band, int side)
    : m_band(std::make_unique<Band>())
{
    const GdalMessages messages;
    m_band->dataset.reset(
        GDALDataset::Open(encodePath(name).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    GDALDataset *dataset = m_band->dataset.get();
    if (!dataset || band < 1 || band > dataset->GetRasterCount()) {
        m_problem = messages.lastError();
        return;
    }
    GDALRasterBand *whole = dataset->GetRasterBand(band);
    int isSet = FALSE;
    m_grid.noDataValue = whole->GetNoDataValue(&isSet);
    m_band->hasNoData = isSet != FALSE;
    m_band->band = smallestBand(whole, sampleSize(sizeOf(*whole), {1, 1}, side, mostCells));
    const QSize size = sampleSize(sizeOf(*m_band->band), blockOf(*m_band->band), side, mostCells);
    m_bandSize = sizeOf(*whole);
    m_isWhole = size == m_bandSize;
    m_grid.width = size.width();
    m_grid.height = size.height();
    m_grid.cells.fill(std::numeric_limits<float>::quiet_NaN(), m_grid.width * m_grid.height);
}

ElevationGridReader::~ElevationGridReader() = default;

/// Reads a row of the sample. Where not every block is to be read, each cell of the row is read alone.
bool ElevationGridReader::readRow()
{
    GDALRasterBand &band = *m_band->band;
    const QSize size = sizeOf(band);
    const auto row =
        std::min(size.height() - 1, static_cast<int>((m_nextRow + 0.5) * size.height() / m_grid.height));
    float *cells = m_grid.cells.data() + static_cast<qsizetype>(m_nextRow) * m_grid.width;
    const bool allBlocks = m_grid.width >= blocksOf(size.width(), blockOf(band).width());
    const int reads = allBlocks ? 1 : m_grid.width;
    for (int read = 0; read < reads; ++read) {
        const int column = allBlocks ? 0 : static_cast<int>((read + 0.5) * size.width() / m_grid.width);
        const int width = allBlocks ? size.width() : 1;
        const int count = allBlocks ? m_grid.width : 1;
        if (band.RasterIO(GF_Read, column, row, width, 1, cells + read, count, 1, GDT_Float32, 0, 0, nullptr)
            != CE_None)
            return false;
    }
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
            m_problem = messages.lastError();
            return false;
        }
    } while (clock.elapsed() < milliseconds);
    return m_nextRow < m_grid.height;
}
