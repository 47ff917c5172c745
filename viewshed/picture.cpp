#include "viewshed/picture.h"

#include "viewshed/jobs.h"

#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <csignal>
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
        throw Failure("The work was stopped.");
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

    Rows(const BitGrid &seen, const Options &options, int most)
        : m_seen(seen)
        , m_options(options)
        , m_plane(static_cast<std::size_t>(seen.width()) * static_cast<std::size_t>(most))
        , m_bytes(m_plane * colors)
    { }

    /// terrain: the whole raster, or only its rows from `first` on.
    void paint(const Terrain &terrain, int first, int top, int rows, int threads)
    {
        terrain.withCells([&](const auto *cells) {
            const auto paintRow = [&](int row) {
                this->paintRow(top + row,
                               cells + static_cast<std::ptrdiff_t>(top + row - first) * m_seen.width(), row);
            };
            runJobs(rows, threads, paintRow, {});
        });
    }
    GByte *row(int color, int row)
    {
        return m_bytes.data() + static_cast<std::size_t>(color) * m_plane
            + static_cast<std::size_t>(row) * static_cast<std::size_t>(m_seen.width());
    }

private:
    static constexpr GByte noData = 2; ///< a kind of cell; the others are the seen bit

    template <class Number> void paintRow(int rasterRow, const Number *heights, int row)
    {
        // The first plane's row holds the kinds of the cells until it gets its own colour, as the last.
        GByte *kinds = this->row(0, row);
        const int width = m_seen.width();
        for (int first = 0; first < width; first += BitGrid::bitsPerWord) {
            const std::uint64_t word = m_seen.row(rasterRow)[first / BitGrid::bitsPerWord];
            const int count = std::min(BitGrid::bitsPerWord, width - first);
            for (int cell = 0; cell < count; ++cell)
                kinds[first + cell] = static_cast<GByte>(word >> cell & 1U);
        }
        for (int column = 0; column < width; ++column)
            kinds[column] = std::isnan(heights[column]) ? noData : kinds[column];
        for (int color = colors - 1; color >= 0; --color)
            paintKinds(kinds, static_cast<std::size_t>(color), this->row(color, row), width);
    }

    void paintKinds(const GByte *kinds, std::size_t color, GByte *to, int width) const
    {
        const GByte visible = m_options.seen[color];
        const GByte hidden = m_options.hidden[color];
        const GByte none = m_options.noData[color];
        for (int column = 0; column < width; ++column) {
            const GByte kind = kinds[column];
            const GByte known = kind == 1 ? visible : hidden;
            to[column] = kind == noData ? none : known;
        }
    }

    const BitGrid &m_seen;
    const Options &m_options;
    std::size_t m_plane; ///< bytes
    std::vector<GByte> m_bytes;
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
        const int columns = std::min(m_width, m_picture.GetRasterXSize() - x * m_width);
        for (int row = 0; row < count; ++row)
            std::copy_n(rows.row(color, y * m_height + row) + x * m_width, columns,
                        m_block.data() + static_cast<std::ptrdiff_t>(row) * m_width);
        if (m_picture.GetRasterBand(color + 1)->WriteBlock(x, blockRow, m_block.data()) != CE_None)
            throw Failure(lastMessage("The picture cannot be written"));
    }

    GDALDataset &m_picture;
    int m_width = 0;
    int m_height = 0;
    std::vector<GByte> m_block;
};

void writeCells(GDALDataset &picture, const BitGrid &seen, const Raster &raster, const Terrain *terrain,
                const Options &options, int threads)
{
    BlockWriter writer(picture);
    constexpr int someRows = 256;
    const int step = std::max(writer.height(), someRows / writer.height() * writer.height());
    const int most = std::min(step, seen.height());
    Rows rows(seen, options, most);
    for (int top = 0; top < seen.height(); top += step) {
        checkStop();
        const int count = std::min(step, seen.height() - top);
        if (terrain != nullptr)
            rows.paint(*terrain, 0, top, count, threads);
        else
            rows.paint(raster.read({0, top, seen.width(), count}, 1), top, top, count, threads);
        writer.write(rows, top, count);
    }
}

bool sameFile(const std::string &one, const std::string &other)
{
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

} // namespace

void writePicture(const BitGrid &seen, const Raster &raster, const Terrain *terrain, const Options &options,
                  int threads)
{
    CPLStringList creation;
    for (const std::string &option : options.creationOptions)
        creation.AddString(option.c_str());
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (driver == nullptr)
        throw Failure("GDAL has no driver for GeoTIFF.");

    CreatedFiles files(options.destination);
    std::signal(SIGTERM, askToStop);
    std::signal(SIGINT, askToStop);
    CPLErrorReset();
    std::unique_ptr<GDALDataset> picture(driver->Create(
        options.destination.c_str(), seen.width(), seen.height(), Rows::colors, GDT_Byte, creation.List()));
    if (!picture)
        throw Failure(lastMessage("The picture cannot be created"));
    files.created();
    copyGeoreference(raster.dataset(), *picture);
    writeCells(*picture, seen, raster, terrain, options, threads);
    CPLErrorReset();
    picture.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        throw Failure(lastMessage("The picture cannot be written"));
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
            throw Failure("The picture would replace " + file + ", which is read.");
    }
}

} // namespace viewshed
