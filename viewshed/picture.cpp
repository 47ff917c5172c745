#include "viewshed/picture.h"

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

/// Colours of the cells, row by row, in three planes.
class Painter
{
public:
    Painter(const BitGrid &seen, const Options &options)
        : m_seen(seen)
        , m_options(options)
    { }

    /// terrain: the whole raster, or `rows` rows of it from `top`, of which `first` is the first at hand.
    void paint(const Terrain &terrain, int first, int top, int rows, std::vector<GByte> &planes) const
    {
        const auto width = static_cast<std::size_t>(m_seen.width());
        const std::size_t plane = width * static_cast<std::size_t>(rows);
        planes.resize(plane * colors);
        terrain.withCells([&](const auto *cells) {
            for (int row = top; row < top + rows; ++row) {
                const auto *heights = cells + static_cast<std::size_t>(row - first) * width;
                GByte *to = planes.data() + static_cast<std::size_t>(row - top) * width;
                paintRow(m_seen.row(row), heights, to, plane);
            }
        });
    }

    static constexpr std::size_t colors = 3;

private:
    template <class Number>
    void paintRow(const std::uint64_t *seen, const Number *heights, GByte *to, std::size_t plane) const
    {
        for (std::size_t color = 0; color < colors; ++color, to += plane) {
            const GByte choice[] = {m_options.hidden[color], m_options.seen[color], m_options.noData[color]};
            for (int column = 0; column < m_seen.width(); ++column) {
                const auto bit =
                    seen[column / BitGrid::bitsPerWord] >> (column % BitGrid::bitsPerWord) & std::uint64_t(1);
                to[column] = choice[std::isnan(heights[column]) ? 2U : bit];
            }
        }
    }

    const BitGrid &m_seen;
    const Options &m_options;
};

void writeCells(GDALDataset &picture, const BitGrid &seen, const Raster &raster, const Terrain *terrain,
                const Options &options)
{
    int blockWidth = 0;
    int blockHeight = 0;
    picture.GetRasterBand(1)->GetBlockSize(&blockWidth, &blockHeight);
    constexpr int fewRows = 256; // a picture in one strip is not painted at once
    const int step = std::max(blockHeight, fewRows / blockHeight * blockHeight);
    const Painter painter(seen, options);
    std::vector<GByte> planes;
    for (int top = 0; top < seen.height(); top += step) {
        checkStop();
        const int rows = std::min(step, seen.height() - top);
        if (terrain != nullptr)
            painter.paint(*terrain, 0, top, rows, planes);
        else
            painter.paint(raster.read({0, top, seen.width(), rows}), top, top, rows, planes);
        if (picture.RasterIO(GF_Write, 0, top, seen.width(), rows, planes.data(), seen.width(), rows, GDT_Byte,
                             static_cast<int>(Painter::colors), nullptr, 0, 0, 0, nullptr)
            != CE_None)
            throw Failure(lastMessage("The picture cannot be written"));
    }
}

bool sameFile(const std::string &one, const std::string &other)
{
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

} // namespace

void writePicture(const BitGrid &seen, const Raster &raster, const Terrain *terrain, const Options &options)
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
    std::unique_ptr<GDALDataset> picture(driver->Create(options.destination.c_str(), seen.width(),
                                                        seen.height(), static_cast<int>(Painter::colors),
                                                        GDT_Byte, creation.List()));
    if (!picture)
        throw Failure(lastMessage("The picture cannot be created"));
    files.created();
    copyGeoreference(raster.dataset(), *picture);
    writeCells(*picture, seen, raster, terrain, options);
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
