#include "dataset/contours/smoothing.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/views/rastercopy.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace
{

using Numbers = std::vector<double>;

/// The weights from -radius to radius.
Numbers gaussianBell(int radius)
{
    const double sigma = radius / 2.0;
    Numbers weights;
    for (int at = -radius; at <= radius; ++at)
        weights.push_back(std::exp(-0.5 * (at / sigma) * (at / sigma)));
    return weights;
}

/// A row of the DEM, smoothed along itself.
struct Row
{
    Numbers cells;   ///< as the DEM has them
    Numbers sums;    ///< sum of the weighted elevations around each cell
    Numbers weights; ///< what the weights of those elevations add up to
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();
};

/// Smooths along the rows while they are read, and across them when enough of them are there.
class Smoother
{
public:
    Smoother(GDALRasterBand &from, GDALRasterBand &to, const SmoothRequest &request)
        : m_from(from)
        , m_to(to)
        , m_voids(from, request.voids, VoidValues::Both)
        , m_radius(request.radius)
        , m_width(from.GetXSize())
        , m_height(from.GetYSize())
        , m_bell(gaussianBell(request.radius))
        , m_rows(m_bell.size())
        , m_padded(static_cast<std::size_t>(m_width + 2 * m_radius))
        , m_paddedWeights(m_padded.size())
    { }

    /// Returns whether all rows were written; false also after a stop.
    bool run(const std::function<bool(int)> &progress, bool &isStopped)
    {
        for (int next = 0; next < m_height + m_radius; ++next) {
            if (next < m_height && !read(next))
                return false;
            if (next >= m_radius && !write(next - m_radius))
                return false;
            isStopped = !progress(static_cast<int>(100.0 * (next + 1) / (m_height + m_radius)));
            if (isStopped)
                return false;
        }
        return true;
    }

private:
    Row &rowAt(int row) { return m_rows[static_cast<std::size_t>(row) % m_rows.size()]; }

    bool transfer(GDALRasterBand &band, GDALRWFlag direction, int row, Numbers &cells) const
    {
        return band.RasterIO(direction, 0, row, m_width, 1, cells.data(), m_width, 1, GDT_Float64, 0, 0,
                             nullptr)
            == CE_None;
    }

    bool read(int number)
    {
        Row &row = rowAt(number);
        const auto width = static_cast<std::size_t>(m_width);
        row = {};
        row.cells.resize(width);
        if (!transfer(m_from, GF_Read, number, row.cells))
            return false;
        for (std::size_t at = 0; at < width; ++at) {
            const double cell = row.cells[at];
            const bool isVoid = m_voids.holds(cell);
            m_padded[at + static_cast<std::size_t>(m_radius)] = isVoid ? 0.0 : cell;
            m_paddedWeights[at + static_cast<std::size_t>(m_radius)] = isVoid ? 0.0 : 1.0;
            if (!isVoid) {
                row.lowest = std::min(row.lowest, cell);
                row.highest = std::max(row.highest, cell);
            }
        }
        row.sums.assign(width, 0.0);
        row.weights.assign(width, 0.0);
        for (std::size_t shift = 0; shift < m_bell.size(); ++shift) {
            for (std::size_t at = 0; at < width; ++at) {
                row.sums[at] += m_bell[shift] * m_padded[at + shift];
                row.weights[at] += m_bell[shift] * m_paddedWeights[at + shift];
            }
        }
        return true;
    }

    bool write(int number)
    {
        const auto width = static_cast<std::size_t>(m_width);
        Numbers sums(width);
        Numbers weights(width);
        double lowest = std::numeric_limits<double>::infinity();
        double highest = -lowest;
        for (int other = std::max(0, number - m_radius); other <= std::min(m_height - 1, number + m_radius);
             ++other) {
            const Row &row = rowAt(other);
            const double share = m_bell[static_cast<std::size_t>(other - number + m_radius)];
            for (std::size_t at = 0; at < width; ++at) {
                sums[at] += share * row.sums[at];
                weights[at] += share * row.weights[at];
            }
            lowest = std::min(lowest, row.lowest);
            highest = std::max(highest, row.highest);
        }
        Numbers &cells = rowAt(number).cells; // not read again
        for (std::size_t at = 0; at < width; ++at) {
            if (!m_voids.holds(cells[at])) // rounding alone would leave the range
                cells[at] = aside(std::clamp(sums[at] / weights[at], lowest, highest), cells[at]);
        }
        return transfer(m_to, GF_Write, number, cells);
    }

    /// A mean that happens to be the value for no data would make a hole; the elevation that the cell had is
    /// none.
    double aside(double mean, double cell) const
    {
        const bool isFloat = m_to.GetRasterDataType() == GDT_Float32;
        return m_voids.holds(isFloat ? static_cast<float>(mean) : mean) ? cell : mean;
    }

    GDALRasterBand &m_from;
    GDALRasterBand &m_to;
    const VoidValues m_voids;
    const int m_radius;
    const int m_width;
    const int m_height;
    const Numbers m_bell;
    std::vector<Row> m_rows; ///< the last ones that were read; a row's number modulo their count is its place
    Numbers m_padded;        ///< a row with `m_radius` zeros at each end
    Numbers m_paddedWeights;
};

GDALDataType smoothedType(GDALDataType type)
{
    const bool fitsFloat32 = type == GDT_Byte || type == GDT_Int16 || type == GDT_UInt16 || type == GDT_Float32;
    return fitsFloat32 ? GDT_Float32 : GDT_Float64;
}

bool smooth(const SmoothRequest &request, const std::function<bool(int)> &progress, SmoothResult &result)
{
    const std::unique_ptr<GDALDataset> source(
        GDALDataset::Open(encodePath(request.dem).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    GDALRasterBand *from =
        source ? source->GetRasterBand(request.band) : nullptr; // an error where there is none
    if (!from)
        return false;
    const std::unique_ptr<GDALDataset> target =
        createLike(request.smoothed, *source, smoothedType(from->GetRasterDataType()));
    if (!target)
        return false;
    GDALRasterBand &to = *target->GetRasterBand(1);
    describeLike(*from, to);
    // Closing the copy, which writes its last cells, may fail as well; the caller looks for GDAL's messages.
    return Smoother(*from, to, request).run(progress, result.isStopped);
}

} // namespace

SmoothResult smoothDem(const SmoothRequest &request, const std::function<bool(int)> &progress)
{
    SmoothResult result;
    const GdalMessages messages;
    if (smooth(request, progress, result) && messages.lastError().isEmpty())
        return result;
    QFile::remove(request.smoothed);
    if (!result.isStopped)
        result.problem = messages.lastError();
    return result;
}
