#include "dataset/extremes.h"

#include "dataset/formats.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <gdal_priv.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

namespace
{

constexpr long long estimateShare = 50; // an estimate reads one block in 50

/// Place of the n-th sample in the band, from 0 to 1. Multiples of the golden ratio are spread evenly after any
/// number of samples, and over the columns of tiles as well as over the rows.
double sampleAt(long long n)
{
    constexpr double goldenRatio = 0.6180339887498949;
    return std::fmod(0.5 + static_cast<double>(n) * goldenRatio, 1.0);
}

} // namespace

/// The open raster, and room for one block of it.
struct ExtremesReader::Band
{
    std::unique_ptr<GDALDataset> dataset;
    GDALRasterBand *band = nullptr;
    int blockWidth = 0;
    int blockHeight = 0;
    int blocksPerRow = 0;
    long long blockCount = 0;
    bool hasNoData = false;
    double noData = 0.0;
    std::vector<GByte> cells;
    std::vector<double> values; ///< of one row of a block

    Band(const QString &path, int number)
    {
        // Nothing is logged: choosing the file has already reported that it cannot be opened.
        const GdalMessages messages;
        dataset.reset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
        band = dataset && number >= 1 && number <= dataset->GetRasterCount() ? dataset->GetRasterBand(number)
                                                                             : nullptr;
        if (!band)
            return;
        band->GetBlockSize(&blockWidth, &blockHeight);
        blocksPerRow = (band->GetXSize() + blockWidth - 1) / blockWidth;
        blockCount =
            static_cast<long long>(blocksPerRow) * ((band->GetYSize() + blockHeight - 1) / blockHeight);
        int isSet = FALSE;
        noData = band->GetNoDataValue(&isSet);
        hasNoData = isSet != FALSE;
        if (band->GetRasterDataType() == GDT_Float32)
            noData = static_cast<float>(noData);
        values.resize(static_cast<std::size_t>(blockWidth));
    }

    bool isReadInOrder() const { return formatTraits(QString::fromUtf8(dataset->GetDriverName())).readInOrder; }

    /// Bytes of one block.
    std::size_t blockSize() const
    {
        return static_cast<std::size_t>(GDALGetDataTypeSizeBytes(band->GetRasterDataType()))
            * static_cast<std::size_t>(blockWidth) * static_cast<std::size_t>(blockHeight);
    }

    /// Reads one block into the extremes; false when it cannot be read.
    bool readBlock(long long index, Extremes &found)
    {
        const int column = static_cast<int>(index % blocksPerRow);
        const int row = static_cast<int>(index / blocksPerRow);
        const GdalMessages messages;
        cells.resize(blockSize());
        if (band->ReadBlock(column, row, cells.data()) != CE_None)
            return false;
        const GDALDataType type = band->GetRasterDataType();
        const int size = GDALGetDataTypeSizeBytes(type);
        const int width = std::min(blockWidth, band->GetXSize() - column * blockWidth);
        const int height = std::min(blockHeight, band->GetYSize() - row * blockHeight);
        for (int line = 0; line < height; ++line) {
            GDALCopyWords(cells.data() + static_cast<std::ptrdiff_t>(line) * blockWidth * size, type, size,
                          values.data(), GDT_Float64, sizeof(double), width);
            addValues(width, found);
        }
        return true;
    }

    void addValues(int count, Extremes &found) const
    {
        for (int at = 0; at < count; ++at) {
            const double value = values[static_cast<std::size_t>(at)];
            if (!std::isfinite(value) || (hasNoData && value == noData))
                continue;
            if (!found.known || value < found.minimum)
                found.minimum = value;
            if (!found.known || value > found.maximum)
                found.maximum = value;
            found.known = true;
        }
    }
};

ExtremesReader::ExtremesReader(const QString &path, int band, Effort effort)
    : m_band(std::make_unique<Band>(path, band))
{
    // Bytes of a block: a larger one would not fit into memory, or would block a window for too long.
    constexpr std::size_t largestBlock = std::size_t(1) << 30;
    constexpr std::size_t largestEstimate = std::size_t(64) << 20;
    if (!m_band->band || m_band->blockSize() > largestBlock) {
        m_found.unreadable = true;
        return;
    }
    m_blocksToRead = m_band->blockCount;
    if (effort == Exact || m_band->isReadInOrder())
        return;
    int hasMinimum = FALSE;
    int hasMaximum = FALSE;
    const double minimum = m_band->band->GetMinimum(&hasMinimum);
    const double maximum = m_band->band->GetMaximum(&hasMaximum);
    if (hasMinimum && hasMaximum && std::isfinite(minimum) && std::isfinite(maximum) && minimum <= maximum) {
        m_found = {.known = true, .minimum = minimum, .maximum = maximum};
        m_blocksToRead = 0;
    } else if (m_band->blockSize() > largestEstimate) {
        m_blocksToRead = 0;
    } else {
        m_blocksToRead = std::max(1LL, m_band->blockCount / estimateShare);
    }
}

ExtremesReader::~ExtremesReader() = default;

bool ExtremesReader::advance(int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (m_blocksRead < m_blocksToRead) {
        const bool all = m_blocksToRead == m_band->blockCount;
        const auto index = all
            ? m_blocksRead
            : static_cast<long long>(sampleAt(m_blocksRead) * static_cast<double>(m_band->blockCount));
        if (!m_band->readBlock(index, m_found)) {
            m_found = {};
            m_found.unreadable = true;
            m_blocksToRead = 0;
            return false;
        }
        ++m_blocksRead;
        m_found.exact = m_found.known && all && m_blocksRead == m_blocksToRead;
        if (std::chrono::steady_clock::now() >= end)
            break;
    }
    return m_blocksRead < m_blocksToRead;
}

int ExtremesReader::percent() const
{
    return m_blocksToRead == 0 ? 100 : static_cast<int>(100 * m_blocksRead / m_blocksToRead);
}

Extremes ExtremesReader::extremes() const
{
    return m_found;
}

Extremes estimatedExtremes(const QString &path, int band)
{
    ExtremesReader reader(path, band, ExtremesReader::Estimate);
    while (reader.advance(1000)) { }
    return reader.extremes();
}
