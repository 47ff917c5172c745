#include "dataset/rasterpicture.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

using Cells = std::vector<float>;

/// A reduced picture averages the cells of a part that is read without a noticeable wait, and picks single
/// cells of a larger part.
GDALRasterIOExtraArg resampling(const QRect &part, const QSize &size)
{
    constexpr double mostCells = 16e6;
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    const double cells = static_cast<double>(part.width()) * part.height();
    if (cells <= mostCells && part.width() > size.width() && part.height() > size.height())
        extra.eResampleAlg = GRIORA_Average;
    return extra;
}

/// Reads a part of a band; cells without data are NaN. Empty when it cannot be read.
Cells readCells(GDALRasterBand &band, const QRect &part, const QSize &size, bool classes = false)
{
    Cells cells(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()));
    GDALRasterIOExtraArg extra = resampling(part, size);
    if (classes)
        extra.eResampleAlg = GRIORA_NearestNeighbour;
    if (band.RasterIO(GF_Read, part.x(), part.y(), part.width(), part.height(), cells.data(), size.width(),
                      size.height(), GDT_Float32, 0, 0, &extra)
        != CE_None)
        return {};
    int hasNoData = FALSE;
    const auto noData = static_cast<float>(band.GetNoDataValue(&hasNoData));
    if (hasNoData)
        std::replace(cells.begin(), cells.end(), noData, std::nanf(""));
    return cells;
}

int colourBandsOf(GDALDataset &dataset)
{
    const int bands = dataset.GetRasterCount();
    for (int band = 1; band <= std::min(bands, 4); ++band) {
        if (dataset.GetRasterBand(band)->GetRasterDataType() != GDT_Byte)
            return 0;
    }
    return bands == 3 || bands == 4 ? bands : 0;
}

} // namespace

RasterPicture::RasterPicture(const QString &path, int band)
    : m_band(std::max(band, 1))
{
    const GdalMessages messages;
    m_dataset.reset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (m_dataset && m_dataset->GetRasterCount() < m_band)
        m_dataset.reset();
    if (!m_dataset)
        return;
    m_size = {m_dataset->GetRasterXSize(), m_dataset->GetRasterYSize()};
    m_colourBands = band > 0 ? 0 : colourBandsOf(*m_dataset);
    const bool asItIs = band == 0 && m_dataset->GetRasterBand(1)->GetRasterDataType() == GDT_Byte;
    if (m_colourBands == 0)
        m_range = asItIs ? Range{0.0, 255.0} : stretchRange();
}

QImage RasterPicture::read(const QRect &part, const QSize &size, bool classes) const
{
    if (!m_dataset || size.isEmpty() || !QRect(QPoint(0, 0), m_size).contains(part))
        return {};
    const GdalMessages messages;
    return m_colourBands > 0 ? readColours(part, size, classes) : readGrey(part, size);
}

QVector<float> RasterPicture::values(const QRect &part, const QSize &size, bool classes) const
{
    if (!m_dataset || size.isEmpty() || !QRect(QPoint(0, 0), m_size).contains(part))
        return {};
    const GdalMessages messages;
    const Cells cells = readCells(*m_dataset->GetRasterBand(m_band), part, size, classes);
    return QVector<float>(cells.begin(), cells.end());
}

QImage RasterPicture::readColours(const QRect &part, const QSize &size, bool classes) const
{
    constexpr int opacity = 3;
    QImage image(size, QImage::Format_RGBA8888);
    image.fill(Qt::white); // opaque where there is no fourth band
    GDALRasterIOExtraArg extra = resampling(part, size);
    if (classes || m_colourBands > opacity) // an average would mix in the colours of transparent cells
        extra.eResampleAlg = GRIORA_NearestNeighbour;
    const CPLErr error = m_dataset->RasterIO(GF_Read, part.x(), part.y(), part.width(), part.height(),
                                             image.bits(), size.width(), size.height(), GDT_Byte, m_colourBands,
                                             nullptr, 4, image.bytesPerLine(), 1, &extra);
    return error == CE_None ? image : QImage();
}

QImage RasterPicture::readGrey(const QRect &part, const QSize &size) const
{
    const Cells cells = readCells(*m_dataset->GetRasterBand(m_band), part, size);
    if (cells.empty())
        return {};
    const double span = m_range.high - m_range.low;
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    std::size_t at = 0;
    for (int y = 0; y < size.height(); ++y) {
        auto pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x, ++at) {
            const float cell = cells[at];
            const double part255 = span > 0.0 ? (cell - m_range.low) / span * 255.0 : 128.0;
            const int grey = std::isfinite(cell) ? static_cast<int>(std::clamp(part255, 0.0, 255.0)) : 0;
            pixels[x] = std::isfinite(cell) ? qRgb(grey, grey, grey) : 0;
        }
    }
    return image;
}

RasterPicture::Range RasterPicture::stretchRange() const
{
    constexpr int side = 512;           // the percentiles of so many cells differ little from those of all
    constexpr std::size_t outside = 50; // one cell in 50 is cut off at each end
    const QSize sample = m_size.boundedTo({side, side});
    Cells cells = readCells(*m_dataset->GetRasterBand(m_band), QRect(QPoint(0, 0), m_size), sample);
    cells.erase(std::remove_if(cells.begin(), cells.end(), [](float cell) { return !std::isfinite(cell); }),
                cells.end());
    if (cells.empty())
        return {};
    const auto low = cells.begin() + static_cast<std::ptrdiff_t>(cells.size() / outside);
    const auto high = cells.end() - 1 - static_cast<std::ptrdiff_t>(cells.size() / outside);
    std::nth_element(cells.begin(), low, cells.end());
    const double lowest = *low;
    std::nth_element(cells.begin(), high, cells.end());
    return {lowest, *high};
}

bool noteExtremes(const QString &path, int band, double minimum, double maximum)
{
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
    if (!dataset || band > dataset->GetRasterCount())
        return false;
    const double mean = (minimum + maximum) / 2.0; // not used, but GDAL ignores statistics without a mean
    return dataset->GetRasterBand(band)->SetStatistics(minimum, maximum, mean, 0.0) == CE_None;
}
