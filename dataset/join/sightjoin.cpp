#include "dataset/join/sightjoin.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QFile>

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace
{

constexpr int rowsAtOnce = 64;
constexpr double noHeight = -9999.0; // as the tool writes it
constexpr double neverSeen = std::numeric_limits<double>::infinity();

using Dataset = std::unique_ptr<GDALDataset>;

Dataset open(const QString &path)
{
    return Dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
}

/// Sums of some rows of the DEM.
class Rows
{
public:
    Rows(const SightJoin &join, int width)
        : m_join(join)
        , m_width(width)
    { }

    void begin(int top, int count)
    {
        m_top = top;
        m_count = count;
        const std::size_t cells = static_cast<std::size_t>(m_width) * count;
        const bool isLeast = m_join.sum == SightSum::LeastHeight && !m_join.byAll;
        m_values.assign(cells, isLeast ? neverSeen : 0.0);
        m_shares.assign(cells, 0);
    }

    /// Adds the rows of a share. Returns false where they cannot be read.
    bool add(GDALDataset &share, const QRect &window)
    {
        const int first = std::max(m_top, window.top());
        const int end = std::min(m_top + m_count, window.top() + window.height());
        if (first >= end)
            return true;
        const int rows = end - first;
        m_read.resize(static_cast<std::size_t>(window.width()) * rows);
        if (share.GetRasterBand(1)->RasterIO(GF_Read, 0, first - window.top(), window.width(), rows,
                                             m_read.data(), window.width(), rows, GDT_Float64, 0, 0, nullptr)
            != CE_None)
            return false;
        const double nothing =
            m_join.sum == SightSum::LeastHeight ? noHeight : share.GetRasterBand(1)->GetNoDataValue();
        for (int row = 0; row < rows; ++row) {
            std::size_t to = static_cast<std::size_t>(first + row - m_top) * m_width + window.left();
            const double *from = m_read.data() + static_cast<std::size_t>(row) * window.width();
            for (int column = 0; column < window.width(); ++column, ++to, ++from) {
                if (*from != nothing)
                    add(to, *from);
            }
        }
        return true;
    }

    /// The value of a cell that has data in the DEM.
    double value(std::size_t cell, int shares) const
    {
        if (m_join.sum != SightSum::LeastHeight)
            return m_values[cell];
        const bool isSeen = m_join.byAll ? m_shares[cell] == shares : m_shares[cell] > 0;
        return isSeen ? m_values[cell] : noHeight;
    }

    int count() const { return m_count; }

private:
    void add(std::size_t cell, double value)
    {
        ++m_shares[cell];
        double &sum = m_values[cell];
        if (m_join.sum != SightSum::LeastHeight)
            sum += value;
        else
            sum = m_join.byAll ? std::max(sum, value) : std::min(sum, value);
    }

    const SightJoin &m_join;
    int m_width;
    int m_top = 0;
    int m_count = 0;
    std::vector<double> m_values;
    std::vector<int> m_shares; ///< number of shares that have a value for the cell
    std::vector<double> m_read;
};

/// The product while it is written.
class Product
{
public:
    Product(const SightJoin &join, GDALDataset &dem)
        : m_join(join)
        , m_mask(*dem.GetRasterBand(join.band))
        , m_width(dem.GetRasterXSize())
    {
        char **creation = nullptr;
        for (const QString &option : join.creationOptions)
            creation = CSLAddString(creation, option.toUtf8().constData());
        creation = CSLSetNameValue(creation, "BIGTIFF", "IF_SAFER");
        GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        const bool isPicture = join.sum == SightSum::Picture;
        m_file.reset(driver->Create(encodePath(join.path).constData(), m_width, dem.GetRasterYSize(),
                                    isPicture ? int(join.seen.size()) : 1, type(), creation));
        CSLDestroy(creation);
        double transform[6];
        if (m_file && dem.GetGeoTransform(transform) == CE_None)
            m_file->SetGeoTransform(transform);
        if (m_file && dem.GetSpatialRef())
            m_file->SetSpatialRef(dem.GetSpatialRef());
        if (m_file && !isPicture)
            m_file->GetRasterBand(1)->SetNoDataValue(noValue());
    }

    bool isOpen() const { return m_file != nullptr; }

    /// Returns false where the rows cannot be written, or the DEM not be read.
    bool write(const Rows &rows, int top, int shares)
    {
        if (!readVoids(top, rows.count()))
            return false;
        for (int band = 0; band < m_file->GetRasterCount(); ++band) {
            for (std::size_t cell = 0; cell < m_isVoid.size(); ++cell)
                m_cells[cell] = cellValue(rows, cell, shares, band);
            if (m_file->GetRasterBand(band + 1)->RasterIO(GF_Write, 0, top, m_width, rows.count(),
                                                          m_cells.data(), m_width, rows.count(), GDT_Float64, 0,
                                                          0, nullptr)
                != CE_None)
                return false;
        }
        return true;
    }

    void close() { m_file.reset(); }

private:
    GDALDataType type() const
    {
        switch (m_join.sum) {
        case SightSum::Picture:
            return GDT_Byte;
        case SightSum::Count:
            return m_join.observers < std::numeric_limits<GUInt16>::max() ? GDT_UInt16 : GDT_UInt32;
        case SightSum::LeastHeight:
            break;
        }
        return GDT_Float32;
    }

    double noValue() const
    {
        return m_join.sum == SightSum::LeastHeight ? noHeight
            : type() == GDT_UInt16                 ? std::numeric_limits<GUInt16>::max()
                                                   : std::numeric_limits<GUInt32>::max();
    }

    bool readVoids(int top, int rows)
    {
        const std::size_t cells = static_cast<std::size_t>(m_width) * rows;
        m_isVoid.resize(cells);
        m_cells.resize(cells);
        std::vector<unsigned char> mask(cells);
        if (m_mask.GetMaskBand()->RasterIO(GF_Read, 0, top, m_width, rows, mask.data(), m_width, rows, GDT_Byte,
                                           0, 0, nullptr)
                != CE_None
            || m_mask.RasterIO(GF_Read, 0, top, m_width, rows, m_cells.data(), m_width, rows, GDT_Float64, 0, 0,
                               nullptr)
                != CE_None)
            return false;
        for (std::size_t cell = 0; cell < cells; ++cell)
            m_isVoid[cell] = mask[cell] == 0 || !std::isfinite(m_cells[cell]);
        return true;
    }

    double cellValue(const Rows &rows, std::size_t cell, int shares, int band) const
    {
        const auto color = static_cast<std::size_t>(band);
        const double value = rows.value(cell, shares);
        if (m_join.sum != SightSum::Picture)
            return m_isVoid[cell] ? noValue() : value;
        if (m_isVoid[cell])
            return m_join.noData[color];
        const bool isSeen = m_join.byAll ? value == m_join.observers : value > 0.0;
        return isSeen ? m_join.seen[color] : m_join.hidden[color];
    }

    const SightJoin &m_join;
    GDALRasterBand &m_mask;
    int m_width;
    Dataset m_file;
    std::vector<char> m_isVoid;
    std::vector<double> m_cells;
};

QString unreadable(const QString &path, const GdalMessages &messages)
{
    return labelText({"MESS_JOINDRE_ILLISIBLE", "« %1 » ne peut pas être lu."}).arg(path) + QLatin1Char('\n')
        + messages.lastError();
}

QString unwritable(const QString &path, const GdalMessages &messages)
{
    return labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(path)
        + QLatin1Char('\n') + messages.lastError();
}

/// Returns the problem. A stop has none, and sets `isStopped`.
QString writeSums(const QVector<SightShare> &shares, const SightJoin &join,
                  const std::function<bool(double)> &progress, bool &isStopped)
{
    const GdalMessages messages;
    const Dataset dem = open(join.dem);
    if (!dem)
        return unreadable(join.dem, messages);
    Product product(join, *dem);
    if (!product.isOpen())
        return unwritable(join.path, messages);
    const int height = dem->GetRasterYSize();
    Rows rows(join, dem->GetRasterXSize());
    std::vector<Dataset> files(static_cast<std::size_t>(shares.size())); // open while their rows are read
    for (int top = 0; top < height; top += rowsAtOnce) {
        isStopped = !progress(static_cast<double>(top) / height);
        if (isStopped)
            return {};
        rows.begin(top, std::min(rowsAtOnce, height - top));
        for (int at = 0; at < shares.size(); ++at) {
            const SightShare &share = shares.at(at);
            Dataset &file = files[static_cast<std::size_t>(at)];
            const bool isHere = share.window.top() < top + rows.count() && share.window.bottom() >= top;
            if (isHere && !file)
                file = open(share.path);
            else if (!isHere)
                file.reset();
            if (isHere && (!file || !rows.add(*file, share.window)))
                return unreadable(share.path, messages);
        }
        if (!product.write(rows, top, static_cast<int>(shares.size())))
            return unwritable(join.path, messages);
    }
    product.close();
    return messages.lastError().isEmpty() ? QString() : unwritable(join.path, messages);
}

} // namespace

QString joinSights(const QVector<SightShare> &shares, const SightJoin &join,
                   const std::function<bool(double)> &progress)
{
    bool isStopped = false;
    const QString problem = writeSums(shares, join, progress, isStopped);
    if (isStopped || !problem.isEmpty())
        QFile::remove(join.path);
    return problem;
}
