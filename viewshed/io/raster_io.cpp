#include "viewshed/io/raster_io.h"

#include "viewshed/jobs.h"
#include "viewshed/problem.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <mutex>
#include <numeric>
#include <thread>

namespace viewshed
{

namespace
{

/// Whether a float keeps every number of the type.
bool fitsFloat(GDALDataType type)
{
    return type == GDT_Byte || type == GDT_Int16 || type == GDT_UInt16 || type == GDT_Float32;
}

/// The number of threads that read so many rows of blocks.
int readers(int blocks, int threads)
{
    return std::max(std::min(blocks / 2, threads), 1);
}

/// Reads the cells of a window from the file's blocks. `cells` points to width × height numbers of the window
/// and must outlive the reader.
template <class Number> class BlockReader
{
public:
    /// `last` belongs to the band's dataset handle.
    BlockReader(GDALRasterBand &band, LastBlock &last, const Window &window, Number *cells)
        : m_band(band)
        , m_last(last)
        , m_window(window)
        , m_cells(cells)
    {
        band.GetBlockSize(&m_blockWidth, &m_blockHeight);
        int known = FALSE;
        const double value = band.GetNoDataValue(&known);
        if (known != FALSE)
            m_noData = static_cast<Number>(value);
        m_masked = (band.GetMaskFlags() & (GMF_ALL_VALID | GMF_NODATA)) == 0;
    }

    /// After each row of blocks calls onRowsRead(bottom): the window's rows above the raster's row `bottom`
    /// have been read.
    template <class OnRowsRead> void read(OnRowsRead onRowsRead)
    {
        const int bottom = m_window.top + m_window.height;
        const int right = m_window.left + m_window.width;
        for (int y = m_window.top / m_blockHeight; y * m_blockHeight < bottom; ++y) {
            for (int x = m_window.left / m_blockWidth; x * m_blockWidth < right; ++x)
                readBlock(x, y);
            onRowsRead(std::min((y + 1) * m_blockHeight, bottom));
        }
    }

private:
    void readBlock(int x, int y)
    {
        decode(x, y);
        const int firstColumn = std::max(x * m_blockWidth, m_window.left);
        const int endColumn = std::min(x * m_blockWidth + m_blockWidth, m_window.left + m_window.width);
        const int firstRow = std::max(y * m_blockHeight, m_window.top);
        const int endRow = std::min(y * m_blockHeight + m_blockHeight, m_window.top + m_window.height);
        const GDALDataType type = m_band.GetRasterDataType();
        const int bytes = GDALGetDataTypeSizeBytes(type);
        constexpr GDALDataType target = sizeof(Number) == sizeof(float) ? GDT_Float32 : GDT_Float64;
        const int columns = endColumn - firstColumn;
        for (int row = firstRow; row < endRow; ++row) {
            const auto inBlock =
                static_cast<std::size_t>(row - y * m_blockHeight) * static_cast<std::size_t>(m_blockWidth)
                + static_cast<std::size_t>(firstColumn - x * m_blockWidth);
            Number *to = m_cells
                + static_cast<std::size_t>(row - m_window.top) * static_cast<std::size_t>(m_window.width)
                + (firstColumn - m_window.left);
            GDALCopyWords(m_last.cells.data() + inBlock * static_cast<std::size_t>(bytes), type, bytes, to,
                          target, static_cast<int>(sizeof(Number)), columns);
            dropNoData(to, columns);
            if (m_masked)
                dropMasked(to, firstColumn, row, columns);
        }
    }

    /// Fills m_last, unless it is that block already.
    void decode(int x, int y)
    {
        if (m_last.x == x && m_last.y == y)
            return;
        const auto bytes = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(m_band.GetRasterDataType()));
        m_last.cells.resize(static_cast<std::size_t>(m_blockWidth) * static_cast<std::size_t>(m_blockHeight)
                            * bytes);
        m_last.x = -1;
        if (m_band.ReadBlock(x, y, m_last.cells.data()) != CE_None)
            throw Problem("The elevations cannot be read: " + std::string(CPLGetLastErrorMsg()));
        m_last.x = x;
        m_last.y = y;
    }

    void dropNoData(Number *cells, int count) const
    {
        constexpr Number noData = std::numeric_limits<Number>::quiet_NaN();
        constexpr Number greatest = std::numeric_limits<Number>::max();
        for (int cell = 0; cell < count; ++cell)
            cells[cell] =
                cells[cell] == m_noData || !(std::abs(cells[cell]) <= greatest) ? noData : cells[cell];
    }

    void dropMasked(Number *cells, int column, int row, int count)
    {
        m_mask.resize(static_cast<std::size_t>(count));
        if (m_band.GetMaskBand()->RasterIO(GF_Read, column, row, count, 1, m_mask.data(), count, 1, GDT_Byte, 0,
                                           0, nullptr)
            != CE_None)
            throw Problem("The mask of the elevations cannot be read: " + std::string(CPLGetLastErrorMsg()));
        for (int cell = 0; cell < count; ++cell) {
            if (m_mask[static_cast<std::size_t>(cell)] == 0)
                cells[cell] = std::numeric_limits<Number>::quiet_NaN();
        }
    }

    GDALRasterBand &m_band;
    LastBlock &m_last;
    Window m_window;
    Number *m_cells;
    int m_blockWidth = 0;
    int m_blockHeight = 0;
    std::vector<GByte> m_mask;
    Number m_noData = std::numeric_limits<Number>::quiet_NaN(); ///< NaN if there is none: it equals no number
    bool m_masked = false;
};

/// Opens a handle of the file for each thread, because two threads must not use a GDAL dataset at a time. A
/// thread opens its handle itself: GDAL lets all datasets that one thread opens share the open files behind
/// them.
class Handles
{
public:
    /// `first` is the handle of the calling thread, and of threads that cannot open one of their own; `last` is
    /// the block that was read last with it. Both must outlive this object.
    Handles(const std::string &path, GDALDataset &first, LastBlock &last)
        : m_path(path)
        , m_first(first)
        , m_last(last)
    { }

    /// Calls work(dataset, lastBlock) while no other thread uses the dataset.
    template <class Work> void use(Work work)
    {
        if (Handle *own = ownHandle(); own != nullptr && own->dataset) {
            work(*own->dataset, own->last);
            return;
        }
        const std::lock_guard lock(m_firstGuard);
        work(m_first, m_last);
    }

private:
    struct Handle
    {
        std::unique_ptr<GDALDataset> dataset; ///< null if the file cannot be opened again
        LastBlock last;
    };

    /// Null for the calling thread.
    Handle *ownHandle()
    {
        const std::thread::id thread = std::this_thread::get_id();
        if (thread == m_caller)
            return nullptr;
        {
            const std::lock_guard lock(m_guard);
            const auto known = m_handles.find(thread);
            if (known != m_handles.end())
                return &known->second;
        }
        Handle opened{.dataset =
                          std::unique_ptr<GDALDataset>(GDALDataset::Open(m_path.c_str(), GDAL_OF_RASTER)),
                      .last = {}};
        const std::lock_guard lock(m_guard);
        return &m_handles.emplace(thread, std::move(opened)).first->second;
    }

    const std::string &m_path;
    GDALDataset &m_first;
    LastBlock &m_last;
    std::thread::id m_caller = std::this_thread::get_id();
    std::mutex m_firstGuard;
    std::mutex m_guard; ///< of m_handles
    std::map<std::thread::id, Handle> m_handles;
};

} // namespace

Raster::Raster(const std::string &path, int band)
    : m_path(path)
    , m_bandNumber(band)
    , m_dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR))
{
    if (!m_dataset)
        throw Problem("The raster cannot be opened: " + std::string(CPLGetLastErrorMsg()));
    if (band > m_dataset->GetRasterCount())
        throw Problem("The raster " + path + " has no band " + std::to_string(band) + ".");
    if (width() >= largestSide || height() >= largestSide)
        throw Problem("The raster " + path + " is too large.");
    m_band = m_dataset->GetRasterBand(band);
    const GDALDataType type = m_band->GetRasterDataType();
    if (GDALDataTypeIsComplex(type) != FALSE)
        throw Problem("The raster " + path + " holds complex numbers, not elevations.");
    m_storage = fitsFloat(type) ? Terrain::Storage::Float : Terrain::Storage::Double;
}

Raster::~Raster() = default;

int Raster::width() const
{
    return m_dataset->GetRasterXSize();
}

int Raster::height() const
{
    return m_dataset->GetRasterYSize();
}

double Raster::metresOfHeight() const
{
    const std::string unit = CPLString(m_band->GetUnitType()).tolower();
    if (unit == "ft" || unit == "foot" || unit == "feet" || unit == "international foot")
        return CPLAtof(SRS_UL_FOOT_CONV);
    if (unit == "us-ft" || unit == "ftus" || unit == "us survey foot" || unit == "us survey feet"
        || unit == "foot_us")
        return CPLAtof(SRS_UL_US_FOOT_CONV);
    return 1.0;
}

double Raster::blockBytes(int threads) const
{
    int blockWidth = 0;
    int blockHeight = 0;
    m_band->GetBlockSize(&blockWidth, &blockHeight);
    const int handles = readers((height() + blockHeight - 1) / blockHeight, threads);
    return static_cast<double>(GDALGetDataTypeSizeBytes(m_band->GetRasterDataType())) * blockWidth * blockHeight
        * handles;
}

/// Calls readRows(band, lastBlock, rows) for windows that together make up `window`; each begins with a row of
/// the file's blocks, so that no block is read twice.
template <class ReadRows> void Raster::readParts(const Window &window, int threads, ReadRows readRows) const
{
    int blockWidth = 0;
    int blockHeight = 0;
    m_band->GetBlockSize(&blockWidth, &blockHeight);
    constexpr int parts = 16;
    const int blocks = (window.top % blockHeight + window.height + blockHeight - 1) / blockHeight;
    const int step = std::max(blocks / parts, 1) * blockHeight;
    const int first = window.top - window.top % blockHeight;
    Handles handles(m_path, *m_dataset, m_last);
    const auto readPart = [&](int part) {
        const int top = std::max(first + part * step, window.top);
        const int bottom = std::min(first + (part + 1) * step, window.top + window.height);
        handles.use([&](GDALDataset &dataset, LastBlock &last) {
            readRows(*dataset.GetRasterBand(m_bandNumber), last,
                     Window{.left = window.left, .top = top, .width = window.width, .height = bottom - top});
        });
    };
    const int count = (window.top + window.height - first + step - 1) / step;
    runJobs(count, readers(blocks, threads), readPart, {});
}

Terrain Raster::read(const Window &window, int threads, const RowsRead &onRowsRead) const
{
    Terrain terrain(window.width, window.height, m_storage);
    readParts(window, threads, [&](GDALRasterBand &band, LastBlock &last, const Window &rows) {
        const std::ptrdiff_t skipped = static_cast<std::ptrdiff_t>(rows.top - window.top) * window.width;
        const auto reportRows = [&](int end) {
            if (onRowsRead)
                onRowsRead(terrain, rows.top - window.top, end - window.top);
        };
        terrain.withCells(
            [&](auto *cells) { BlockReader(band, last, rows, cells + skipped).read(reportRows); });
    });
    return terrain;
}

void Raster::addVoids(int firstRow, int threads, BitGrid &voids) const
{
    int blockWidth = 0;
    int blockHeight = 0;
    m_band->GetBlockSize(&blockWidth, &blockHeight);
    // As few cells at a time as whole blocks and whole words of bits allow. A block as wide as the raster can
    // be read in parts, because the reader keeps it for the next part.
    constexpr int rowsOfWideBlock = 256;
    const int columns = std::min(std::lcm(blockWidth, BitGrid::bitsPerWord), width());
    const int step = blockWidth >= width() ? std::min(blockHeight, rowsOfWideBlock) : blockHeight;
    const auto addRows = [&](GDALRasterBand &band, LastBlock &last, const Window &some) {
        Terrain terrain(some.width, some.height, m_storage);
        terrain.withCells([&](auto *cells) { BlockReader(band, last, some, cells).read([](int) {}); });
        for (int row = 0; row < some.height; ++row)
            terrain.findVoids(row, voids.row(some.top + row) + some.left / BitGrid::bitsPerWord);
    };
    const Window window{.left = 0, .top = firstRow, .width = width(), .height = height() - firstRow};
    readParts(window, threads, [&](GDALRasterBand &band, LastBlock &last, const Window &rows) {
        const int bottom = rows.top + rows.height;
        for (int top = rows.top; top < bottom; top += step - top % step) {
            const int end = std::min(top - top % step + step, bottom);
            for (int left = 0; left < width(); left += columns)
                addRows(band, last, {left, top, std::min(columns, width() - left), end - top});
        }
    });
}

double availableMemory()
{
    std::ifstream info("/proc/meminfo");
    for (std::string name; info >> name;) {
        constexpr double kilobyte = 1024.0;
        double number = 0.0;
        if (name == "MemAvailable:" && info >> number)
            return number * kilobyte;
    }
    return std::numeric_limits<double>::max();
}

} // namespace viewshed
