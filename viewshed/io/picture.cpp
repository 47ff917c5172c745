#include "viewshed/io/picture.h"

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

volatile std::sig_atomic_t stopAsked = 0;

void askToStop(int /*signal*/)
{
    stopAsked = 1;
}

void checkStop()
{
    if (stopAsked != 0)
        throw Problem("The work was stopped.");
}

std::string lastMessage(const std::string &what)
{
    return what + ": " + CPLGetLastErrorMsg();
}

/// The files that creating a GeoTIFF may leave; it takes those away that were not there before, unless it is
/// told that all went well.
class CreatedFiles
{
public:
    explicit CreatedFiles(const std::string &path)
    {
        const fs::path world = fs::path(path).replace_extension(".tfw");
        for (const fs::path &file : {fs::path(path), fs::path(path + ".aux.xml"), world}) {
            std::error_code ignored;
            if (!fs::exists(fs::symlink_status(file, ignored)))
                m_files.push_back(file);
        }
        m_picture = path;
    }
    ~CreatedFiles()
    {
        std::error_code ignored;
        for (const fs::path &file : m_files)
            fs::remove(file, ignored);
    }
    CreatedFiles(const CreatedFiles &) = delete;
    CreatedFiles &operator=(const CreatedFiles &) = delete;

    /// An older picture is gone: what stands under its name is this one.
    void created() { m_files.push_back(m_picture); }
    void keep() { m_files.clear(); }

private:
    std::vector<fs::path> m_files;
    fs::path m_picture;
};

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

/// Some rows of the picture, a plane for each colour.
class Rows
{
public:
    static constexpr int colors = 3;

    Rows(const Options &options, int width, int most)
        : m_width(width)
        , m_stride(static_cast<std::size_t>((width + BitGrid::bitsPerWord - 1) / BitGrid::bitsPerWord)
                   * BitGrid::bitsPerWord)
        , m_plane(m_stride * static_cast<std::size_t>(most))
        , m_bytes(m_plane * colors)
    {
        for (std::size_t color = 0; color < colors; ++color) {
            constexpr std::uint64_t everyByte = 0x0101010101010101;
            m_hidden[color] = everyByte * options.hidden[color];
            m_seen[color] = everyByte * options.seen[color];
            m_noData[color] = everyByte * options.noData[color];
        }
    }

    int width() const { return m_width; }
    /// voids: the bits of the cells without data; null if there is none.
    void paint(int row, const std::uint64_t *seen, const std::uint64_t *voids)
    {
        static const std::array<std::uint64_t, 256> spread = bytesOfBits();
        constexpr int cells = 8; // of one step
        for (int column = 0; column < m_width; column += cells) {
            const int word = column / BitGrid::bitsPerWord;
            const int shift = column % BitGrid::bitsPerWord;
            const std::uint64_t see = spread[seen[word] >> shift & 0xFF];
            const std::uint64_t none = voids != nullptr ? spread[voids[word] >> shift & 0xFF] : 0;
            for (std::size_t color = 0; color < colors; ++color) {
                const std::uint64_t known = (see & m_seen[color]) | (~see & m_hidden[color]);
                const std::uint64_t bytes = (none & m_noData[color]) | (~none & known);
                std::memcpy(this->row(static_cast<int>(color), row) + column, &bytes, sizeof bytes);
            }
        }
    }
    GByte *row(int color, int row)
    {
        return m_bytes.data() + static_cast<std::size_t>(color) * m_plane
            + static_cast<std::size_t>(row) * m_stride;
    }

private:
    /// A byte of ones for each bit, the lowest bit's first in memory.
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
    std::size_t m_stride; ///< bytes of a row, whole words of cells
    std::size_t m_plane;  ///< bytes
    std::vector<GByte> m_bytes;
    std::array<std::uint64_t, colors> m_hidden{};
    std::array<std::uint64_t, colors> m_seen{};
    std::array<std::uint64_t, colors> m_noData{};
};

/// Writes whole blocks past GDAL's cache, which would take in the whole picture.
class BlockWriter
{
public:
    explicit BlockWriter(GDALDataset &picture)
        : m_picture(picture)
    {
        picture.GetRasterBand(1)->GetBlockSize(&m_width, &m_height);
        m_block.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
    }

    int height() const { return m_height; }

    /// `count` rows from `top` on, which is a multiple of the blocks' height, as `count` is but at the end.
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
            throw Problem(lastMessage("The picture cannot be written"));
    }

    GDALDataset &m_picture;
    int m_width = 0;
    int m_height = 0;
    std::vector<GByte> m_block;
};

/// Paints some rows of the picture; those of the raster are read again if its cells without data are not known.
void paintRows(Rows &rows, const Analysis &analysis, const Raster &raster, int top, int count, int threads)
{
    std::optional<BitGrid> found;
    if (!analysis.knowsVoids) {
        const Terrain terrain = raster.read({0, top, rows.width(), count}, threads);
        found.emplace(rows.width(), count);
        for (int row = 0; row < count; ++row)
            terrain.findVoids(row, found->row(row));
    }
    for (int row = 0; row < count; ++row) {
        const std::uint64_t *voids = found ? found->row(row) : nullptr;
        rows.paint(row, analysis.seen.row(top + row), analysis.voids ? analysis.voids->row(top + row) : voids);
    }
}

void writeCells(GDALDataset &picture, const Analysis &analysis, const Raster &raster, const Options &options,
                int threads)
{
    BlockWriter writer(picture);
    const int someRows = analysis.knowsVoids ? 32 : 256;
    const int step = std::max(writer.height(), someRows / writer.height() * writer.height());
    const int height = analysis.seen.height();
    Rows rows(options, analysis.seen.width(), std::min(step, height));
    for (int top = 0; top < height; top += step) {
        checkStop();
        const int count = std::min(step, height - top);
        paintRows(rows, analysis, raster, top, count, threads);
        writer.write(rows, top, count);
    }
}

bool sameFile(const std::string &one, const std::string &other)
{
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

} // namespace

void writePicture(const Analysis &analysis, const Raster &raster, const Options &options, int threads)
{
    CPLStringList creation;
    for (const std::string &option : options.creationOptions)
        creation.AddString(option.c_str());
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (driver == nullptr)
        throw Problem("GDAL has no driver for GeoTIFF.");

    CreatedFiles files(options.destination);
    std::signal(SIGTERM, askToStop);
    std::signal(SIGINT, askToStop);
    CPLErrorReset();
    std::unique_ptr<GDALDataset> picture(driver->Create(
        options.destination.c_str(), raster.width(), raster.height(), Rows::colors, GDT_Byte, creation.List()));
    if (!picture)
        throw Problem(lastMessage("The picture cannot be created"));
    files.created();
    copyGeoreference(raster.dataset(), *picture);
    writeCells(*picture, analysis, raster, options, threads);
    CPLErrorReset();
    picture.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        throw Problem(lastMessage("The picture cannot be written"));
    checkStop();
    files.keep();
}

void checkDestination(const Options &options, const Raster &raster)
{
    std::vector<std::string> read = raster.files();
    read.push_back(options.source);
    read.push_back(options.pointFile);
    const fs::path points(options.pointFile);
    for (const char *part : {".shp", ".shx", ".dbf"})
        read.push_back(fs::path(points).replace_extension(part).string());
    for (const std::string &file : read) {
        if (sameFile(file, options.destination))
            throw Problem("The picture would replace " + file + ", which is read.");
    }
}

} // namespace viewshed
