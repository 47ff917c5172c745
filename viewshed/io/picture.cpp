#include "viewshed/io/picture.h"

#include "viewshed/io/inputfiles.h"
#include "viewshed/problem.h"

#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <filesystem>

namespace viewshed
{

namespace
{

namespace fs = std::filesystem;

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int /*signal*/)
{
    stopRequested = 1;
}

/// Throws Problem if a signal requested a stop.
void checkStop()
{
    if (stopRequested != 0)
        throw Problem("The work was stopped.");
}

/// The sentence for a failed call of GDAL, with GDAL's own message.
std::string problemOf(const std::string &what)
{
    return what + ": " + CPLGetLastErrorMsg();
}

/// Deletes on destruction the files that creating the picture may leave, unless keep() was called. Only files
/// that did not exist at construction are deleted.
class CreatedFiles
{
public:
    explicit CreatedFiles(const Options &options)
    {
        std::vector<fs::path> files = sideFiles(options.destination, options.creationOptions);
        files.emplace_back(options.destination);
        for (const fs::path &file : files) {
            std::error_code ignored;
            if (!fs::exists(fs::symlink_status(file, ignored)))
                m_files.push_back(file);
        }
    }
    ~CreatedFiles()
    {
        std::error_code ignored;
        for (const fs::path &file : m_files)
            fs::remove(file, ignored);
    }
    CreatedFiles(const CreatedFiles &) = delete;
    CreatedFiles &operator=(const CreatedFiles &) = delete;

    /// States that the picture is complete: the destructor deletes nothing.
    void keep() { m_files.clear(); }

private:
    std::vector<fs::path> m_files;
};

/// Copies the geotransform or the ground control points, and the coordinate system.
void copyGeoreference(GDALDataset &from, GDALDataset &to)
{
    double transform[6];
    if (from.GetGeoTransform(transform) == CE_None) {
        to.SetGeoTransform(transform);
        if (from.GetSpatialRef() != nullptr)
            to.SetSpatialRef(from.GetSpatialRef());
    } else if (from.GetGCPCount() > 0) {
        to.SetGCPs(from.GetGCPCount(), from.GetGCPs(), from.GetGCPSpatialRef());
    } else if (from.GetSpatialRef() != nullptr) {
        to.SetSpatialRef(from.GetSpatialRef());
    }
}

/// The bytes of some rows of the picture: a plane for each colour.
class Rows
{
public:
    static constexpr int colors = 3;

    /// For pictures of `width` columns, and up to `capacity` rows at a time.
    Rows(const Options &options, int width, int capacity)
        : m_width(width)
        , m_stride(static_cast<std::size_t>((width + BitGrid::bitsPerWord - 1) / BitGrid::bitsPerWord)
                   * BitGrid::bitsPerWord)
        , m_plane(m_stride * static_cast<std::size_t>(capacity))
        , m_bytes(m_plane * colors)
    {
        for (std::size_t color = 0; color < colors; ++color) {
            constexpr std::uint64_t everyByte = 0x0101010101010101;
            m_hidden[color] = everyByte * options.hidden[color];
            m_seen[color] = everyByte * options.seen[color];
            m_noData[color] = everyByte * options.noData[color];
        }
    }

    /// Colours a row from the bits of its seen cells and of its voids. `voids` may be null: the row has none.
    void paint(int row, const std::uint64_t *seen, const std::uint64_t *voids)
    {
        static const std::array<std::uint64_t, 256> spread = bytesOfBits();
        constexpr int cells = 8; // coloured in one step, a byte each
        for (int column = 0; column < m_width; column += cells) {
            const int word = column / BitGrid::bitsPerWord;
            const int shift = column % BitGrid::bitsPerWord;
            const std::uint64_t seenBytes = spread[seen[word] >> shift & 0xFF];
            const std::uint64_t voidBytes = voids != nullptr ? spread[voids[word] >> shift & 0xFF] : 0;
            for (std::size_t color = 0; color < colors; ++color) {
                const std::uint64_t known = (seenBytes & m_seen[color]) | (~seenBytes & m_hidden[color]);
                const std::uint64_t bytes = (voidBytes & m_noData[color]) | (~voidBytes & known);
                std::memcpy(this->row(static_cast<int>(color), row) + column, &bytes, sizeof bytes);
            }
        }
    }
    /// The first byte of a row in the plane of a colour: 0 red, 1 green, 2 blue.
    GByte *row(int color, int row)
    {
        return m_bytes.data() + static_cast<std::size_t>(color) * m_plane
            + static_cast<std::size_t>(row) * m_stride;
    }

private:
    /// For each byte of eight bits the eight bytes that are 0xFF where the bit is 1, else 0; the byte of the
    /// lowest bit is the first in memory.
    static std::array<std::uint64_t, 256> bytesOfBits()
    {
        std::array<std::uint64_t, 256> spread{};
        for (std::size_t bits = 0; bits < spread.size(); ++bits) {
            std::array<GByte, sizeof(std::uint64_t)> bytes{};
            for (std::size_t bit = 0; bit < bytes.size(); ++bit)
                bytes[bit] = (bits >> bit & 1U) != 0 ? 0xFF : 0;
            std::memcpy(&spread[bits], bytes.data(), sizeof(std::uint64_t));
        }
        return spread;
    }

    int m_width;
    std::size_t m_stride; ///< bytes of a row, for whole words of BitGrid
    std::size_t m_plane;  ///< bytes of a colour's plane
    std::vector<GByte> m_bytes;
    std::array<std::uint64_t, colors> m_hidden{};
    std::array<std::uint64_t, colors> m_seen{};
    std::array<std::uint64_t, colors> m_noData{};
};

/// Writes whole blocks without GDAL's block cache, which would hold a copy of much of the picture.
class BlockWriter
{
public:
    explicit BlockWriter(GDALDataset &picture)
        : m_picture(picture)
    {
        picture.GetRasterBand(1)->GetBlockSize(&m_width, &m_height);
        m_block.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
    }

    /// Height of a block in rows.
    int height() const { return m_height; }

    /// Writes `count` rows from the picture's row `top` on. Both must be multiples of height(), except for the
    /// count of the last rows.
    void write(Rows &rows, int top, int count)
    {
        for (int y = 0; y * m_height < count; ++y) {
            for (int x = 0; x * m_width < m_picture.GetRasterXSize(); ++x) {
                for (int color = 0; color < Rows::colors; ++color)
                    writeBlock(rows, color, x, y, top / m_height + y, std::min(m_height, count - y * m_height));
            }
        }
    }

private:
    void writeBlock(Rows &rows, int color, int x, int y, int blockRow, int count)
    {
        const int left = x * m_width;
        const int columns = std::min(m_width, m_picture.GetRasterXSize() - left);
        GByte *block = rows.row(color, y * m_height);
        if (m_height > 1 || columns < m_width) {
            for (int row = 0; row < count; ++row)
                std::copy_n(rows.row(color, y * m_height + row) + left, columns,
                            m_block.data() + static_cast<std::ptrdiff_t>(row) * m_width);
            block = m_block.data();
        }
        if (m_picture.GetRasterBand(color + 1)->WriteBlock(x, blockRow, block) != CE_None)
            throw Problem(problemOf("The picture cannot be written"));
    }

    GDALDataset &m_picture;
    int m_width = 0;
    int m_height = 0;
    std::vector<GByte> m_block;
};

void writeCells(GDALDataset &picture, const Analysis &analysis, const Options &options)
{
    BlockWriter writer(picture);
    constexpr int rowsAtATime = 32;
    const int step = std::max(writer.height(), rowsAtATime / writer.height() * writer.height());
    const int height = analysis.seen.height();
    const double bytes = (Rows::colors + 1.0) * analysis.seen.width() * std::min(step, height);
    if (bytes > availableMemory())
        throw Problem(
            "The picture's blocks are larger than the available memory; choose a smaller BLOCKYSIZE.");
    Rows rows(options, analysis.seen.width(), std::min(step, height));
    for (int top = 0; top < height; top += step) {
        checkStop();
        const int count = std::min(step, height - top);
        for (int row = 0; row < count; ++row)
            rows.paint(row, analysis.seen.row(top + row),
                       analysis.voids ? analysis.voids->row(top + row) : nullptr);
        writer.write(rows, top, count);
    }
}

using DataSet = std::unique_ptr<GDALDataset>;

/// Throws Problem if the driver refuses the creation options.
void checkCreationOptions(GDALDriver &driver, const CPLStringList &creation)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler); // the picture itself warns again
    constexpr const char *trial = "/vsimem/trial.tif";
    constexpr int side = 64;
    DataSet picture(driver.Create(trial, side, side, Rows::colors, GDT_Byte, creation.List()));
    if (!picture)
        throw Problem(problemOf("The picture cannot be created"));
    picture.reset();
    driver.Delete(trial);
}

/// Deletes an old file at the destination; with a GeoTIFF its companions, too. GDAL, left to itself, deletes
/// the whole data set around any file, for example all files of a shapefile.
void removeOld(GDALDriver &driver, const Options &options)
{
    const fs::path &old = options.destination;
    std::error_code error;
    if (!fs::is_regular_file(old, error))
        return;
    if (isGeoTiff(options.destination))
        driver.Delete(options.destination.c_str());
    else
        fs::remove(old, error);
    if (fs::exists(old))
        throw Problem("The file " + old.string()
                      + " cannot be replaced: " + (error ? error.message() : CPLGetLastErrorMsg()));
}

} // namespace

void writePicture(const Analysis &analysis, const Raster &raster, const Options &options)
{
    CPLStringList creation;
    for (const std::string &option : options.creationOptions)
        creation.AddString(option.c_str());
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (driver == nullptr)
        throw Problem("GDAL has no driver for GeoTIFF.");

    CPLErrorReset();
    checkCreationOptions(*driver, creation);
    removeOld(*driver, options);
    CreatedFiles files(options);
    std::signal(SIGTERM, requestStop);
    std::signal(SIGINT, requestStop);
    DataSet picture(driver->Create(options.destination.c_str(), raster.width(), raster.height(), Rows::colors,
                                   GDT_Byte, creation.List()));
    if (!picture)
        throw Problem(problemOf("The picture cannot be created"));
    copyGeoreference(raster.dataset(), *picture);
    writeCells(*picture, analysis, options);
    CPLErrorReset();
    picture.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        throw Problem(problemOf("The picture cannot be written"));
    checkStop();
    files.keep();
}

} // namespace viewshed
